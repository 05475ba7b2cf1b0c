#include "commands/range_operations.h"

#include "model/coverage_cell.h"
#include "model/services.h"
#include "persist/command_file.h"
#include "qal/all.h"

namespace coverage {

AddressLimits LimitsOf(qal::IQHost* host) {
  auto* service = FindService<qal::IQAddressLimits>(host, qal::iid::kAddressLimits);
  AddressLimits limits;
  if (service == nullptr || qal::Failed(service->GetLimits(&limits.lowest, &limits.highest))) return {};
  return limits;
}

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
