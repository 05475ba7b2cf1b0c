#include "commands/range_operations.h"

#include "model/coverage_cell.h"
#include "persist/command_file.h"

namespace coverage {

qal::Status CheckRange(std::uint32_t start, std::uint32_t end) {
  if (start > end) return automation::kStartAboveEnd;
  if (start == end) return automation::kEmptyRange;
  if (end - start > kMaxRangeSpan) return automation::kTooLarge;
  if (start & 1) return automation::kOddStart;
  return qal::kOk;
}

bool ReplaceRange(CommandHost& view, std::uint32_t start, std::uint32_t end) {
  view.Model().RemoveAllWindows();
  if ((end & 1) == 0) --end;
  const bool registered = view.Model().SetStoreRange(start, end) == 1;
  view.UpdateCoverageSwitch();
  return registered;
}

}  // namespace coverage
