#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "dialogs/file_name_dialog.h"

namespace coverage {

struct AddressRange {
  std::uint32_t start = 0;
  std::uint32_t end = 0;
  friend bool operator==(const AddressRange&, const AddressRange&) = default;
};

/// What a dialog with a range knows from before: texts entered or opened lately, newest first.
struct RecentRanges {
  std::vector<std::string> starts;
  std::vector<std::string> ends;
};

/// Base of the two dialogs in which a range is typed.
class RangeInputDialog : public FileNameDialog {
 protected:
  struct RangeControls {
    std::uint32_t start;
    std::uint32_t end;
  };
  RangeInputDialog(std::uint32_t templateId, EndButtons buttons, FileControls file, RangeControls combos,
                   qal::IQHost* host)
      : FileNameDialog(templateId, buttons, file, host), combos_(combos) {}

  void FillRange(const RecentRanges& recent, const std::string& startText, const std::string& endText);
  /// The range typed, when it passes every check; else the person has been told why and the focus is on the
  /// field.
  std::optional<AddressRange> CheckedRange();
  std::string StartText() const { return NameIn(combos_.start); }
  std::string EndText() const { return NameIn(combos_.end); }

 private:
  RangeControls combos_;
};

}  // namespace coverage
