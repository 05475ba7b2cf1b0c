#include <array>

#include "commands/address_words.h"
#include "commands/arguments.h"
#include "commands/command_paths.h"
#include "commands/coverage_commands.h"
#include "commands/range_operations.h"
#include "model/address_text.h"
#include "persist/automation_status.h"
#include "platform/message_box.h"
#include "platform/text.h"
#include "util/texts.h"

namespace coverage {

CRangeCommand::CRangeCommand(CommandHost& owner)
    : CCoverageCommand(owner, "coverage_range", "cvr", strings::kSyntaxCoverageRange) {}

qal::Status CRangeCommand::DoCommand(const std::string& line, std::string& result, std::uint32_t&) {
  const AddressLimits limits = LimitsOfTarget(host);
  CArgNumberUnsigned start(false, 16, expressionService, 0xFFFFFFFF, limits.lowest, limits.highest);
  CArgNumberUnsigned end(false, 16, expressionService, 0, limits.lowest, limits.highest);
  CArgStringFileName file(true, {}, SharedPlaceholders());

  std::string_view rest = line;
  const std::array<CArg*, 2> addresses = {&start, &end};
  if (ParseArguments(rest, addresses) != addresses.size()) return Fail(result, strings::kInvalidParameter);
  const bool hasStart = start.defaulted == 0;
  const bool hasEnd = end.defaulted == 0;
  if (hasStart && hasEnd) {
    return SetRange(static_cast<std::uint32_t>(start.value), static_cast<std::uint32_t>(end.value), rest,
                    result);
  }
  if (hasStart) return Fail(result, strings::kInvalidParameter);
  if (hasEnd) return Fail(result, strings::kStartExceedsEnd);

  std::string_view restOfFile = line;
  const std::array<CArg*, 1> files = {&file};
  if (ParseArguments(restOfFile, files) == files.size()) return OpenFile(file.value, restOfFile, result);
  return OnlyBlanksRemain(line) ? List(result) : Fail(result, strings::kInvalidParameter);
}

qal::Status CRangeCommand::OpenFile(const std::string& typed, std::string_view rest, std::string& result) {
  if (!OnlyBlanksRemain(rest)) return Fail(result, strings::kTooManyParameters);
  const std::string path = WithDefaultExtension(ExpandPath(typed, *SharedPlaceholders()).path, ".c");
  if (!HasExtension(path, ".C") && !HasExtension(path, ".CPP"))
    return Fail(result, strings::kInvalidSourceFileName);
  const bool opened = model().OpenFile(path, view.Messages());
  if (!opened) return Fail(result, strings::kInvalidCoverageFile);
  view.BringUpToDate();
  return qal::kOk;
}

qal::Status CRangeCommand::SetRange(std::uint32_t start, std::uint32_t end, std::string_view rest,
                                    std::string& result) {
  switch (CheckRange(start, end)) {
    case automation::kStartAboveEnd:
      return Fail(result, strings::kStartExceedsEnd);
    case automation::kEmptyRange:
      return Fail(result, strings::kNoRange);
    case automation::kTooLarge:
      platform::ShowMessageBox(Text(strings::kRangeTooLarge), platform::Icon::kInformation);
      return qal::kFail;
    case automation::kOddStart:
      platform::ShowMessageBox(Text(strings::kStartOdd), platform::Icon::kInformation);
      return qal::kFail;
    default:
      break;
  }
  if (!OnlyBlanksRemain(rest)) return Fail(result, strings::kInvalidParameter);
  const bool registered = ReplaceRange(model(), start, end, view.Messages());
  view.RefreshViews();
  if (!registered) return Fail(result, strings::kRangeCannotBeSet);
  view.BringUpToDate();
  return qal::kOk;
}

qal::Status CRangeCommand::List(std::string& result) {
  const AddressWords words(host);
  const std::uint32_t windows = model().windowCount();
  for (std::uint32_t number = 1; number <= windows; ++number) {
    const CommandEntry* entry = model().FirstEntry(number);
    if (entry == nullptr) continue;
    WriteLine(platform::Format("\t%u\t", number) + NameOf(*entry) + " : " + words.Of(entry->counts->start()) +
              " - " + words.Of(entry->counts->end()) + "\n");
  }
  if (windows != 0) return qal::kOk;
  // Digits stand in for a text that the IDE does not give, but they are no success.
  bool worded = true;
  const std::string start = words.Of(model().commandStore().start(), &worded);
  const std::string end = words.Of(model().commandStore().end(), &worded);
  result = Text(strings::kCoverageRange) + start + " - " + end;
  return worded ? qal::kOk : qal::kFail;
}

}  // namespace coverage
