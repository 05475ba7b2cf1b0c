#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "dialogs/file_name_dialog.h"
#include "util/recent_list.h"

namespace coverage {

struct AddressRange {
  std::uint32_t start = 0;
  std::uint32_t end = 0;
  friend bool operator==(const AddressRange&, const AddressRange&) = default;
};

/// Texts of addresses entered or opened lately; what is accepted is put in front.
struct RecentRanges {
  RecentList& starts;
  RecentList& ends;
};

/// Base of the two dialogs in which a range is typed.
class RangeInputDialog : public FileNameDialog {
 protected:
  struct RangeControls {
    std::uint32_t start;
    std::uint32_t end;
  };
  RangeInputDialog(std::uint32_t templateId, EndButtons buttons, FileControls file, RangeControls combos,
                   qal::IQHost* host, RecentRanges recent)
      : FileNameDialog(templateId, buttons, file, host), combos_(combos), recent_(recent) {}

  void FillRange(const std::string& startText, const std::string& endText);
  /// The range typed, when it passes every check; its texts are then recent ones. Else the person has been
  /// told why and the focus is on the field.
  std::optional<AddressRange> CheckedRange();
  std::string StartText() const { return TypedIn(combos_.start); }
  std::string EndText() const { return TypedIn(combos_.end); }

 private:
  RangeControls combos_;
  RecentRanges recent_;
};

}  // namespace coverage
