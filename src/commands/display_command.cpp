#include "commands/coverage_commands.h"
#include "commands/tokenizer.h"
#include "util/texts.h"

namespace coverage {

CDisplayCommand::CDisplayCommand(CommandHost& owner)
    : CCoverageCommand(owner, "coverage_display", "cvd", strings::kSyntaxCoverageDisplay) {}

qal::Status CDisplayCommand::DoCommand(const std::string& line, std::string& result, std::uint32_t&) {
  if (!OnlyBlanksRemain(line)) return Fail(result, strings::kInvalidParameter);
  workers_.Start(host, model(), output);
  status = 0xFFFF;
  return qal::kOk;
}

qal::Status CDisplayCommand::CancelCommand() {
  workers_.StopAll();
  return qal::kOk;
}

}  // namespace coverage
