#include "panes/data_pane.h"

#include <tuple>

#include "model/address_text.h"
#include "model/services.h"
#include "panes/pane_commands.h"
#include "panes/statistics_pane.h"
#include "platform/text.h"
#include "util/texts.h"

namespace coverage {
namespace {

constexpr char kClassName[] = "CJepCoverageInstanceCtrlCovData";

constexpr PaneColumn kColumns[] = {{strings::kColumnTimes, 5},
                                   {strings::kColumnPass, 5},
                                   {strings::kColumnAddress, 10},
                                   {strings::kColumnAssembler, 15},
                                   {strings::kColumnSource, 20}};

}  // namespace

using DataPane = CJepCoverageInstanceCtrlCovData;

DataPane::CJepCoverageInstanceCtrlCovData(qal::IQHost* hostObject, CUiCustomizer* customizerObject,
                                          PaneHost& owner, std::uint32_t start, std::uint32_t end,
                                          std::string functionName, std::uint32_t shown)
    : CJepDebugInstanceDataCtrl(hostObject, customizerObject, owner, kClassName),
      instance_(std::make_unique<CoverageInstance>(hostObject, start, end, std::move(functionName), shown)) {}

DataPane::~CJepCoverageInstanceCtrlCovData() {
  if (statistics_) statistics_->RemovePane(*this);
  RemoveFromDebugger();
}

DataPane& DataPane::View() {
  DataPane* view = statistics_ ? statistics_->ViewPane() : nullptr;
  return view ? *view : *this;
}

DataPane& DataPane::Displayed() {
  DataPane* displayed = statistics_ ? statistics_->DisplayedPane() : nullptr;
  return displayed ? *displayed : *this;
}

std::span<const PaneColumn> DataPane::Columns() const { return kColumns; }

void DataPane::OnPaneCreated() {
  instance_->RenewCounts();
  if (owner().LoadingWindows()) {
    ReRegisterRange();
  } else {
    RegisterRange(true);
  }
  ShowTitle();
  paneWindowCreated_ = true;
}

void DataPane::OnPaneDestroyed() {
  paneWindowCreated_ = false;
  instance_->enableStatus = 0;
  owner().UpdateCoverageSwitch();
  RemoveFromDebugger();
}

void DataPane::RemoveFromDebugger() {
  if (instance_->counts->registered()) instance_->counts->RemoveRange();
}

RowBuilder DataPane::Rows() {
  DataPane& view = View();
  return RowBuilder(host, *instance_, owner().Instructions(), view.List(), view.rowsPerPage_);
}

std::uint32_t DataPane::RebuildRows(bool rewrite, std::uint32_t fromAddress, int firstRow, int rowCount) {
  if (instance_->shown == 0 || !View().List().Exists()) return 0;
  View().nextAddress_ = Rows().Build(rewrite, fromAddress, firstRow, rowCount);
  return View().nextAddress_;
}

void DataPane::ResetRows() {
  View().List().DeleteAllRows();
  RebuildRows(true, 0, -1, -1);
}

void DataPane::RegisterRange(bool clearRows) {
  if (clearRows && instance_->shown != 0) View().List().DeleteAllRows();
  instance_->rangeSet = instance_->counts->SetRange(instance_->start, instance_->end);
  if (instance_->rangeSet == 0) return;
  instance_->counts->SetActive(instance_->enableStatus);
  owner().UpdateCoverageSwitch();
}

void DataPane::ReRegisterRange() {
  if (instance_->shown != 0) View().List().DeleteAllRows();
  instance_->rangeSet = instance_->counts->SetRange(instance_->start, instance_->end);
}

void DataPane::RefreshStatistics() {
  instance_->ComputePercentage(false, owner().Instructions());
  if (statistics_) statistics_->RefreshFromDebugger();
}

void DataPane::ClearCounts(bool resetModified) {
  if (resetModified) {
    instance_->modified = 0;
    instance_->counts->Clear();
  }
  owner().DropLineMarks();
}

void DataPane::ShowTitle() {
  View().SetFrameTitle(platform::Format(coverage::Text(strings::kWindowTitle).c_str(),
                                        AddressText(host, instance_->start).value_or("").c_str(),
                                        AddressText(host, instance_->end).value_or("").c_str()));
}

void DataPane::Retitle() {
  ShowTitle();
  DataPane& view = View();
  if (view.List().Exists()) view.FitColumns();
}

void DataPane::Reuse(std::uint32_t start, std::uint32_t end, std::string functionName, std::uint32_t shown) {
  owner().DropCaches();
  CoverageInstance& instance = *instance_;
  instance.start = start;
  instance.end = end;
  instance.enableStatus = 0;
  instance.refreshLocked = 0;
  instance.averageInstructionSize = 2;
  instance.modified = 1;
  instance.functionName = std::move(functionName);
  instance.shown = shown;
  nextAddress_ = 0;
  if (shown == 0) instance.RenewCounts();
  RegisterRange(true);
  Retitle();
}

void DataPane::SetEnabled(std::uint32_t enabled) { instance_->SetEnabled(enabled); }

void DataPane::ClearData() {
  if (instance_->isFunction()) {
    ClearFunction();
  } else {
    ClearRange();
  }
}

void DataPane::ClearRange() {
  if (instance_->modified != 0) {
    if (instance_->enableStatus != 0 && owner().ClearAsks()) {
      const auto confirmation = owner().ConfirmClear();
      if (confirmation == PaneHost::Confirmation::kCancelled) return;
      if (confirmation == PaneHost::Confirmation::kSaveFirst) owner().SavePane(*this);
      owner().Macro().FinishReset(true);
    }
  } else {
    owner().Macro().FinishReset(true);
    instance_->saved = 0;
  }
  ClearCounts(true);
  instance_->ComputePercentage(false, owner().Instructions());
}

void DataPane::ClearFunction() {
  if (!owner().MayClearFunction(*this)) return;
  owner().Macro().FinishReset(true);
  ClearCounts(true);
  instance_->ComputePercentage(false, owner().Instructions());
}

void DataPane::Refresh() {
  owner().DropCaches();
  RefreshStatistics();
}

void DataPane::EditRange() {
  if (instance_->isFunction()) {
    owner().RequestSourceChange(*this);
    ClearCounts(true);
    return;
  }
  if (instance_->modified != 0 && instance_->enableStatus != 0 && owner().ClearAsks()) {
    const auto confirmation = owner().ConfirmClear();
    if (confirmation == PaneHost::Confirmation::kCancelled) return;
    if (confirmation == PaneHost::Confirmation::kSaveFirst) {
      owner().SavePane(*this);
    } else {
      instance_->modified = 0;
    }
  } else {
    instance_->counts->Clear();
  }
  const auto range = owner().AskRange(*this);
  if (!range || owner().RangeShownElsewhere(*this, range->first, range->second)) return;

  const std::uint32_t oldStart = instance_->start;
  const std::uint32_t oldEnd = instance_->end;
  std::tie(instance_->start, instance_->end) = *range;
  instance_->percentage = 0;
  RegisterRange(true);
  if (instance_->rangeSet == 0) {
    instance_->start = oldStart;
    instance_->end = oldEnd;
    RegisterRange(true);
    ResetRows();
    owner().DropLineMarks();
    if (statistics_) statistics_->RefreshFromDebugger();
    return;
  }
  owner().Macro().RecordRangeEdit(range->first, range->second);
  owner().NoteRecentRange(range->first, range->second);
  Retitle();
  ResetRows();
  owner().DropLineMarks();
  if (statistics_) statistics_->RefreshFromDebugger();
  instance_->modified = 1;
  instance_->saved = 0;
}

bool DataPane::SourceOf(std::uint32_t address, char16_t** file, std::uint32_t* line) const {
  auto* source = FindService<qal::IQSource>(host, qal::iid::kSource);
  return source && qal::Succeeded(source->AddressToLine(address, file, line));
}

std::optional<std::uint32_t> DataPane::SelectedAddress() {
  const int row = View().List().SelectedRow();
  return row < 0 ? std::nullopt : Rows().AddressOfRow(row);
}

}  // namespace coverage
