#include "view/window_saver.h"

#include <algorithm>

#include "commands/command_paths.h"
#include "dialogs/file_name_dialog.h"
#include "model/address_text.h"
#include "persist/cov_save.h"
#include "persist/section_writer.h"
#include "platform/message_box.h"
#include "platform/paths.h"
#include "platform/text.h"
#include "util/placeholder_resolver.h"
#include "util/texts.h"

namespace coverage {
namespace {

bool AlreadySaved(const CoverageInstance& instance) {
  const CoverageWindow& window = *instance.window;
  if (!window.isFile()) return instance.saved == 1 && instance.modified == 0;
  return std::all_of(window.instances.begin(), window.instances.end(),
                     [](const auto& each) { return each.second->saved == 1; });
}

/// The table's own entry of a window, so that it lives on while a person is asked.
CoverageModel::WindowPtr Kept(const CoverageModel& model, const CoverageWindow& window) {
  for (const auto& each : model.Windows()) {
    if (each.get() == &window) return each;
  }
  return nullptr;
}

}  // namespace

std::optional<std::string> WindowSaver::AskPath(bool* resolved) {
  const auto answer = SaveDataDialog(services_.host, services_.history.coveragePath).Ask(&services_.sink);
  if (!answer) return std::nullopt;
  if (resolved != nullptr) *resolved = answer->resolved;
  services_.history.coveragePath = answer->path;
  return answer->path;
}

bool WindowSaver::Write(const std::string& path, const Windows& saved, WindowKind type, bool withFileLine) {
  const ProjectNames names = CurrentProjectNames(services_.host, services_.keys);
  CovHeader header{
      names.configuration, names.project, type == WindowKind::kFile ? CovType::kFile : CovType::kRange, {}};
  if (withFileLine && !saved.empty()) {
    header.fileName = PlaceholderResolver(services_.host).CollapsePlaceholders(saved.front()->sourceFile);
  }
  const qal::Status status = SaveCoverageFile(path, header, withFileLine, [&](CovOutput& out) {
    for (const auto& window : saved) {
      for (const auto& [number, instance] : window->instances) {
        WriteInstanceSection(out, *instance, number, services_.host, services_.model.Instructions());
      }
    }
    return qal::kOk;
  });
  if (qal::Failed(status)) {
    services_.reporter.Inform(strings::kDataCannotBeSaved);
    return false;
  }
  for (const auto& window : saved) {
    for (const auto& [number, instance] : window->instances) {
      instance->modified = 0;
      instance->saved = 1;
    }
  }
  if (HasExtension(path, ".COV")) {
    auto& files = services_.history.recentCoverageFiles;
    if (std::find(files.begin(), files.end(), path) == files.end()) files.push_back(path);
  }
  return true;
}

bool WindowSaver::SaveWindow(CoverageWindow& window) {
  const auto kept = Kept(services_.model, window);
  if (!kept || kept->instances.empty()) return false;
  const auto path = AskPath(nullptr);
  if (!path || !kept->open) return false;
  services_.macro.RecordSave(*path);
  return Write(*path, {kept}, kept->kind, true);
}

bool WindowSaver::SaveRangeWindows(CoverageWindow& window, bool individual) {
  if (window.isFile()) return SaveWindow(window);
  const auto kept = Kept(services_.model, window);
  const auto path = kept ? AskPath(nullptr) : std::nullopt;
  if (!path || !kept->open) return false;
  Windows saved{kept};
  if (!individual) {
    saved = services_.model.Windows();
    std::erase_if(saved, [](const auto& each) { return each->isFile(); });
  }
  return Write(*path, saved, WindowKind::kRange, false);
}

bool WindowSaver::SaveData(CoverageInstance& instance) {
  const auto kept = instance.window != nullptr ? Kept(services_.model, *instance.window) : nullptr;
  if (!kept) return false;
  if (AlreadySaved(instance) && services_.options.CanAsk(MessageOption::kSaveAgain) &&
      !services_.options.Ask(MessageOption::kSaveAgain,
                             MessageOptions::Question(MessageOption::kSaveAgain))) {
    return true;
  }
  if (!kept->open) return false;
  if (kept->isFile()) return SaveWindow(*kept);
  bool resolved = true;
  const auto path = AskPath(&resolved);
  if (!path || !kept->open) return false;
  if (!resolved && platform::ShowMessageBox(Text(strings::kSaveUnderProject), platform::Icon::kQuestion,
                                            platform::Buttons::kYesNo) != platform::Answer::kYes) {
    services_.reporter.Inform(strings::kDataCannotBeSaved);
    return false;
  }
  if (!kept->open) return false;
  services_.macro.RecordSave(*path);
  return Write(*path, {kept}, WindowKind::kRange, false);
}

std::string WindowSaver::SaveQuestion(const CoverageWindow& window) const {
  if (window.isFile()) {
    return platform::Format(Text(strings::kRangeFromFile).c_str(),
                            platform::FilePart(window.sourceFile).c_str());
  }
  const auto first = window.Instance(1);
  const auto text = [&](std::uint32_t address) { return AddressText(services_.host, address).value_or(""); };
  return platform::Format(Text(strings::kAddressRange).c_str(),
                          text(first ? first->start : window.start).c_str(),
                          text(first ? first->end : window.end).c_str());
}

}  // namespace coverage
