#include <array>
#include <limits>

#include "commands/arguments.h"
#include "commands/coverage_commands.h"
#include "platform/text.h"
#include "util/texts.h"

namespace coverage {
namespace {

constexpr char kStates[] = "enable\0disable\0reset\0";
constexpr std::int32_t kNoState = -1;
constexpr std::int32_t kEnableState = 0;
constexpr std::int32_t kDisableState = 1;
constexpr std::int32_t kResetState = 2;

std::string StateText(const CoverageCounts& counts) {
  return Text(counts.active() == 1 ? strings::kEnabled : strings::kDisabled);
}

}  // namespace

CStateCommand::CStateCommand(CommandHost& owner)
    : CCoverageCommand(owner, "coverage", "cv", strings::kSyntaxCoverage) {}

qal::Status CStateCommand::DoCommand(const std::string& line, std::string& result, std::uint32_t&) {
  const std::uint32_t windows = model().windowCount();
  CArgKeyword leading(false, kStates, kNoState);
  CArgNumberUnsigned number(false, 10, expressionService, std::numeric_limits<std::uint64_t>::max(), 1,
                            windows);
  CArgKeyword following(false, kStates, kNoState);

  std::string_view cursor = line;
  const std::array<CArg*, 1> first = {&leading};
  const std::array<CArg*, 2> second = {&number, &following};
  ParseArguments(cursor, first);
  const bool parsed = ParseArguments(cursor, second) == second.size() && OnlyBlanksRemain(cursor);
  const bool hasNumber = number.defaulted == 0;
  const bool ledByState = leading.defaulted == 0;
  if (!parsed || (ledByState && (hasNumber || following.defaulted == 0))) {
    return Fail(result, strings::kInvalidParameter);
  }

  if (hasNumber) {
    ActOnWindow(static_cast<std::uint32_t>(number.value), following.index);
  } else if (windows == 0) {
    ActOnRange(leading.index, result);
    view.RefreshViews();
  } else {
    for (std::uint32_t window = 1; window <= windows; ++window) ActOnWindow(window, leading.index);
  }
  view.BringUpToDate();
  return qal::kOk;
}

void CStateCommand::ActOnRange(std::int32_t state, std::string& result) {
  switch (state) {
    case kEnableState:
    case kDisableState:
      model().SetStoreEnabled(state == kEnableState);
      break;
    case kResetState:
      model().ClearStore();
      break;
    default:
      result = platform::ReplaceAll(Text(strings::kCoverageState), "%s", StateText(model().commandStore()));
  }
}

void CStateCommand::ActOnWindow(std::uint32_t number, std::int32_t state) {
  switch (state) {
    case kEnableState:
    case kDisableState:
      model().SetWindowEnabled(number, state == kEnableState);
      break;
    case kResetState:
      model().ClearWindow(number);
      break;
    default:
      if (const CommandEntry* entry = model().FirstEntry(number)) {
        WriteLine("\t" + NameOf(*entry) + " : " + StateText(*entry->counts) + "\n");
      }
  }
}

}  // namespace coverage
