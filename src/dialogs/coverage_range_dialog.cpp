#include "dialogs/coverage_range_dialog.h"

#include <array>

#include "model/address_text.h"
#include "util/resource_ids.h"

namespace coverage {
namespace {

constexpr std::uint32_t kRange = 9044, kStartLabel = 9019, kStart = 204, kStartSelect = 9049,
                        kEndLabel = 9020, kEnd = 205, kEndSelect = 9050, kFile = 9045, kEdit = 9046,
                        kArrow = 9047, kBrowse = 9048, kOk = 9021, kCancel = 9022;

}  // namespace

CoverageRangeDialog::CoverageRangeDialog(qal::IQHost* host, RecentRanges recent)
    : RangeInputDialog(resource::kDialogCoverageRange, {kOk, kCancel}, {kEdit, kArrow}, {kStart, kEnd}, host,
                       recent) {}

std::optional<AddressRange> CoverageRangeDialog::AskRange(platform::Window* owner, AddressRange current) {
  fileMode_ = false;
  range_ = current;
  return Run(owner) ? std::optional(range_) : std::nullopt;
}

std::optional<CoverageRangeDialog::SourceChoice> CoverageRangeDialog::AskFile(platform::Window* owner,
                                                                              std::string typedSourceFile) {
  fileMode_ = true;
  source_ = {std::move(typedSourceFile), {}};
  return Run(owner) ? std::optional(source_) : std::nullopt;
}

void CoverageRangeDialog::OnInitDialog() {
  RangeInputDialog::OnInitDialog();
  if (fileMode_) {
    SetFileName(source_.typed);
    EnableItems({kRange, kStartLabel, kStart, kStartSelect, kEndLabel, kEnd, kEndSelect}, false);
    CheckRadio({kRange, kFile}, kFile);
    FocusItem(kEdit);
    return;
  }
  FillRange(AddressText(host(), range_.start).value_or(""), AddressText(host(), range_.end).value_or(""));
  CheckRadio({kRange, kFile}, kRange);
  EnableItems({kFile, kEdit, kArrow, kBrowse}, false);
}

void CoverageRangeDialog::OnOK() {
  if (!fileMode_) {
    const auto range = CheckedRange();
    if (!range) return;
    range_ = *range;
    return RangeInputDialog::OnOK();
  }
  const std::string typed = CheckedSourceName();
  if (typed.empty()) return;
  source_ = {typed, Expand(typed)};
  RangeInputDialog::OnOK();
}

void CoverageRangeDialog::OnLabel(std::uint32_t buttonId) {
  ChooseLabel(buttonId == kStartSelect ? kStart : kEnd);
}

platform::LResult CoverageRangeDialog::OnMessage(const platform::Message& received) {
  static constexpr auto kRoutes = std::to_array<platform::Route<CoverageRangeDialog>>({
      {platform::message::kCommand, kBrowse, &CoverageRangeDialog::OnBrowse},
      {platform::message::kCommand, kStartSelect, &CoverageRangeDialog::OnLabel},
      {platform::message::kCommand, kEndSelect, &CoverageRangeDialog::OnLabel},
  });
  if (const auto answer = platform::Dispatch(*this, kRoutes, received)) return *answer;
  return RangeInputDialog::OnMessage(received);
}

}  // namespace coverage
