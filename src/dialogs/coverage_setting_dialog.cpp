#include "dialogs/coverage_setting_dialog.h"

#include <algorithm>
#include <array>

#include "model/address_text.h"
#include "model/services.h"
#include "platform/paths.h"
#include "platform/text.h"
#include "qal/program_services.h"
#include "util/resource_ids.h"
#include "util/texts.h"

namespace coverage {
namespace {

constexpr std::uint32_t kNew = 9060, kRange = 9039, kStartLabel = 9008, kStart = 9005, kStartSelect = 9058,
                        kEndLabel = 9009, kEnd = 9006, kEndSelect = 9057, kFile = 9040, kEdit = 9041,
                        kArrow = 9042, kBrowse = 9043, kRecent = 9061, kRecentFiles = 9007, kAnother = 9004,
                        kOk = 9029, kCancel = 9030;

}  // namespace

CoverageSettingDialog::CoverageSettingDialog(qal::IQHost* host, Request request, LastTexts& last,
                                             CoverageSettingHooks& hooks)
    : RangeInputDialog(resource::kDialogCoverageSetting, {kOk, kCancel}, {kEdit, kArrow}, {kStart, kEnd},
                       host, request.recent),
      request_(std::move(request)),
      last_(last),
      hooks_(hooks) {}

std::optional<CoverageSettingDialog::Answer> CoverageSettingDialog::Ask(platform::Window* owner) {
  return Run(owner) ? std::optional(answer_) : std::nullopt;
}

void CoverageSettingDialog::OnInitDialog() {
  RangeInputDialog::OnInitDialog();
  const std::vector<std::string> files = OfferedFiles();
  if (auto* combo = Item<platform::ComboBox>(kRecentFiles)) {
    combo->SetItems(files);
    if (!files.empty()) combo->SelectItem(0);
  }
  const std::string zero =
      last_.start.empty() || last_.end.empty() ? AddressText(host(), 0).value_or("") : "";
  FillRange(last_.start.empty() ? zero : last_.start, last_.end.empty() ? zero : last_.end);
  SetFileName(request_.lastSourceFile);
  CheckRadio({kNew, kRecent, kAnother}, kNew);
  CheckRadio({kRange, kFile}, kRange);
  EnableControls();
  FocusItem(kStart);
}

std::vector<std::string> CoverageSettingDialog::OfferedFiles() const {
  std::vector<std::string> files;
  std::vector<std::string> paths;
  for (const std::string& file : request_.recentFiles) {
    if (files.size() == kMostRecentFiles) break;
    const std::string path = platform::FullPath(Expand(file));
    const bool offered = std::any_of(paths.begin(), paths.end(), [&](const std::string& other) {
      return platform::EqualNoCase(other, path);
    });
    if (offered) continue;
    files.push_back(file);
    paths.push_back(path);
  }
  return files;
}

void CoverageSettingDialog::EnableControls() {
  const bool opensNew = IsItemChecked(kNew);
  const bool file = opensNew && IsItemChecked(kFile);
  const bool range = opensNew && !file;
  EnableItems({kRange, kFile}, opensNew);
  EnableItems({kStartLabel, kStart, kStartSelect, kEndLabel, kEnd, kEndSelect}, range);
  EnableItems({kEdit, kArrow, kBrowse}, file);
  const auto* files = Item<platform::ComboBox>(kRecentFiles);
  EnableItem(kRecentFiles, IsItemChecked(kRecent) && files && !files->Items().empty());
}

void CoverageSettingDialog::OnFileChoice() {
  if (!ProgramDownloaded()) {
    platform::ShowMessageBox(coverage::Text(strings::kProgramNotDownloaded), platform::Icon::kInformation);
    CheckRadio({kRange, kFile}, kRange);
    FocusItem(kRange);
  }
  EnableControls();
}

bool CoverageSettingDialog::ProgramDownloaded() const {
  auto* modules = FindService<qal::IQModules>(host(), qal::iid::kModules);
  std::uint32_t count = 0;
  if (!modules || qal::Failed(modules->GetCount(&count))) return false;
  for (std::uint32_t index = 0; index < count; ++index) {
    qal::IQModule* module = nullptr;
    if (qal::Failed(modules->GetModule(index, &module)) || !module) continue;
    if (qal::Succeeded(module->IsDownloaded())) return true;
  }
  return false;
}

void CoverageSettingDialog::OnLabel(std::uint32_t buttonId) {
  ChooseLabel(buttonId == kStartSelect ? kStart : kEnd);
}

void CoverageSettingDialog::OnOK() {
  if (IsItemChecked(kAnother)) {
    answer_.result = Result::kAnother;
  } else if (IsItemChecked(kRecent)) {
    const std::string file = ItemText(kRecentFiles);
    if (file.empty()) return FocusItem(kRecent);
    answer_.result = Result::kRecent;
    hooks_.LoadRecentFile(file);
  } else if (IsItemChecked(kFile)) {
    const std::string typed = CheckedSourceName();
    if (typed.empty()) return;
    answer_ = {Result::kNewFromFile, {}, typed, Expand(typed)};
    hooks_.RecordFileWindow(answer_.typedSourceFile, answer_.sourceFile);
  } else {
    const auto range = CheckedRange();
    if (!range) return;
    answer_ = {Result::kNewFromRange, *range, {}, {}};
    last_ = {StartText(), EndText()};
    hooks_.RecordRangeWindow(range->start, range->end);
  }
  RangeInputDialog::OnOK();
}

platform::LResult CoverageSettingDialog::OnMessage(const platform::Message& received) {
  static constexpr auto kRoutes = std::to_array<platform::Route<CoverageSettingDialog>>({
      {platform::message::kCommand, kNew, &CoverageSettingDialog::EnableControls},
      {platform::message::kCommand, kRange, &CoverageSettingDialog::EnableControls},
      {platform::message::kCommand, kFile, &CoverageSettingDialog::OnFileChoice},
      {platform::message::kCommand, kRecent, &CoverageSettingDialog::EnableControls},
      {platform::message::kCommand, kAnother, &CoverageSettingDialog::EnableControls},
      {platform::message::kCommand, kBrowse, &CoverageSettingDialog::OnBrowse},
      {platform::message::kCommand, kStartSelect, &CoverageSettingDialog::OnLabel},
      {platform::message::kCommand, kEndSelect, &CoverageSettingDialog::OnLabel},
  });
  if (const auto answer = platform::Dispatch(*this, kRoutes, received)) return *answer;
  return RangeInputDialog::OnMessage(received);
}

}  // namespace coverage
