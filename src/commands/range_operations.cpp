#include "commands/range_operations.h"

#include "model/coverage_cell.h"
#include "persist/automation_status.h"

namespace coverage {

qal::Status CheckRange(std::uint32_t start, std::uint32_t end) {
  if (start > end) return automation::kStartAboveEnd;
  if (start == end) return automation::kEmptyRange;
  if (end - start > kMaxRangeSpan) return automation::kTooLarge;
  if (start & 1) return automation::kOddStart;
  return qal::kOk;
}

bool ReplaceRange(CommandModel& model, std::uint32_t start, std::uint32_t end, Reporter& reporter) {
  model.RemoveAllWindows();
  if ((end & 1) == 0) --end;
  return model.SetStoreRange(start, end, reporter) == 1;
}

}  // namespace coverage
