#include "view/source_change.h"

#include <utility>

#include "dialogs/coverage_range_dialog.h"
#include "formatview/command_sink.h"
#include "platform/paths.h"
#include "view/control_commands.h"

namespace coverage {

void SourceChange::Request(CoverageInstance& instance) {
  if (instance.window == nullptr) return;
  asking_ = instance.window->Instance(instance.window->NumberOf(instance));
  services_.sink.Post(platform::message::kCommand, control_command::kChangeSourceFile);
}

void SourceChange::ChangeSourceFile() {
  const auto instance = std::exchange(asking_, {}).lock();
  if (!instance || instance->window == nullptr) return;
  if (!questions_.MayLose(DataLoss::kChangeSource, *instance)) return;
  const CoverageWindow& window = *instance->window;
  for (const auto& [number, each] : window.instances) {
    each->modified = 0;
    services_.model.Clear(*each);
  }
  marks_.DropLineMarks();

  const qal::WindowHandle frame = window.frame;
  DialogHistory& history = services_.history;
  const auto source = CoverageRangeDialog(services_.host, {history.starts, history.ends})
                          .AskFile(&services_.sink, window.typedSourceFile);
  if (!source || !services_.sink.Exists()) return;
  services_.macro.RecordFileWindow(source->typed, source->expanded);
  history.sourcePath = platform::DirectoryPart(source->expanded);
  if (opener_.NewFileWindow(source->expanded, source->typed) == nullptr) return;
  services_.sink.Send(sink_message::kCloseChild, frame);
}

}  // namespace coverage
