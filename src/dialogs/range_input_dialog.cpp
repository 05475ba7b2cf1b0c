#include "dialogs/range_input_dialog.h"

#include "model/address_text.h"
#include "model/coverage_cell.h"
#include "util/texts.h"

namespace coverage {

void RangeInputDialog::FillRange(const std::string& startText, const std::string& endText) {
  if (auto* combo = Item<platform::ComboBox>(combos_.start)) combo->SetItems(recent_.starts.texts());
  if (auto* combo = Item<platform::ComboBox>(combos_.end)) combo->SetItems(recent_.ends.texts());
  SetItemText(combos_.start, startText);
  SetItemText(combos_.end, endText);
}

std::optional<AddressRange> RangeInputDialog::CheckedRange() {
  const auto start = AddressIn(combos_.start);
  if (!start) return std::nullopt;
  const auto end = AddressIn(combos_.end);
  if (!end) return std::nullopt;
  const auto refuse = [this](std::uint32_t textId, std::uint32_t focusId) {
    Complain(textId, focusId);
    return std::nullopt;
  };
  if (*start > *end) return refuse(strings::kStartExceedsEnd, combos_.start);
  if (*start == *end) return refuse(strings::kNoRange, combos_.start);
  if (*end - *start > kMaxRangeSpan) return refuse(strings::kRangeTooLarge, combos_.start);
  if (*start % kCellStep != 0) return refuse(strings::kStartOdd, combos_.start);
  const AddressLimits limits = LimitsOfTarget(host());
  const auto outside = [&](std::uint32_t address) {
    return address < limits.lowest || address > limits.highest;
  };
  if (outside(*start)) return refuse(strings::kAddressOutOfRange, combos_.start);
  if (outside(*end)) return refuse(strings::kAddressOutOfRange, combos_.end);
  recent_.starts.Note(StartText(), *start);
  recent_.ends.Note(EndText(), *end);
  return AddressRange{*start, *end};
}

}  // namespace coverage
