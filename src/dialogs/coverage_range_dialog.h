#pragma once

#include <optional>
#include <string>

#include "dialogs/range_input_dialog.h"

namespace coverage {

/// "Coverage Range": another range for an instance, or another source file for a file window.
class CoverageRangeDialog final : public RangeInputDialog {
 public:
  struct SourceChoice {
    std::string typed;     ///< with its placeholders
    std::string expanded;  ///< full path
  };

  CoverageRangeDialog(qal::IQHost* host, RecentRanges recent);

  std::optional<AddressRange> AskRange(platform::Window* owner, AddressRange current);
  std::optional<SourceChoice> AskFile(platform::Window* owner, std::string typedSourceFile);

 protected:
  void OnInitDialog() override;
  void OnOK() override;
  platform::LResult OnMessage(const platform::Message& message) override;

 private:
  void OnBrowse() { BrowseForSource(); }
  void OnLabel(std::uint32_t buttonId);

  bool fileMode_ = false;
  AddressRange range_;
  SourceChoice source_;
};

}  // namespace coverage
