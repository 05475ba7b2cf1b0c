#include "commands/message_reporter.h"

#include "model/coverage_counts.h"
#include "platform/message_box.h"
#include "util/texts.h"

namespace coverage {

void MessageReporter::Refused(qal::Status status) {
  if (const auto text = DebuggerErrorText(host_, status)) {
    platform::ShowMessageBox(*text, platform::Icon::kExclamation);
  }
}

void MessageReporter::Inform(std::uint32_t textId) {
  platform::ShowMessageBox(Text(textId), platform::Icon::kInformation);
}

}  // namespace coverage
