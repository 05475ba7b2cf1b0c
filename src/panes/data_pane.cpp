#include "panes/data_pane.h"

#include <utility>

#include "dialogs/coverage_range_dialog.h"
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

DataPane::CJepCoverageInstanceCtrlCovData(const PaneServices& services, CoverageModel::InstancePtr instance)
    : CJepDebugInstanceDataCtrl(services, kClassName), instance_(std::move(instance)) {}

DataPane::~CJepCoverageInstanceCtrlCovData() {
  if (statistics_) statistics_->Forget(*this);
}

DataPane& DataPane::View() {
  DataPane* view = statistics_ ? statistics_->ViewPane() : nullptr;
  return view ? *view : *this;
}

DataPane* DataPane::Displayed() { return statistics_ ? statistics_->DisplayedPane() : this; }

std::span<const PaneColumn> DataPane::Columns() const { return kColumns; }

void DataPane::OnPaneCreated() {
  instance_->RenewCounts();
  if (above().LoadingWindows()) {
    ReRegisterRange();
  } else {
    RegisterRange(true);
  }
  ShowTitle();
  paneWindowCreated_ = true;
}

void DataPane::OnPaneDestroyed() {
  paneWindowCreated_ = false;
  model().Enable(*instance_, false);
  model().UpdateCoverageSwitch();
  model().Withdraw(*instance_);
}

RowBuilder DataPane::Rows() {
  DataPane& view = View();
  return RowBuilder(host, *instance_, model().Instructions(), view.List(), view.rowsPerPage_);
}

std::uint32_t DataPane::RebuildRows(bool rewrite, std::uint32_t fromAddress, int firstRow, int rowCount) {
  if (instance_->shown == 0 || !View().List().Exists()) return 0;
  if (firstRow < 0 && rowCount < 0 && instance_->window) instance_->window->stale.rows = StaleRows::kNone;
  DataPane& view = View();
  view.nextAddress_ = Rows().Build(rewrite, fromAddress, firstRow, rowCount);
  view.builtTop_ = view.List().TopRow();
  return view.nextAddress_;
}

void DataPane::ResetRows() {
  View().List().DeleteAllRows();
  RebuildRows(true, 0, -1, -1);
}

void DataPane::EmptyRows() {
  if (instance_->shown == 0) return;
  View().List().DeleteAllRows();
  if (instance_->window) instance_->window->stale.MarkRows(StaleRows::kReset);
}

void DataPane::RegisterRange(bool clearRows) {
  if (clearRows) EmptyRows();
  model().Register(*instance_, services().reporter);
  if (instance_->rangeSet != 0) model().UpdateCoverageSwitch();
}

void DataPane::ReRegisterRange() {
  EmptyRows();
  model().ReRegister(*instance_, services().reporter);
}

void DataPane::ClearCounts(bool resetModified) {
  if (resetModified) {
    instance_->modified = 0;
    model().Clear(*instance_);
  }
  above().DropLineMarks();
}

void DataPane::ShowTitle() {
  View().SetFrameTitle(platform::Format(coverage::Text(strings::kWindowTitle).c_str(),
                                        AddressText(host, instance_->start).value_or("").c_str(),
                                        AddressText(host, instance_->end).value_or("").c_str()));
}

void DataPane::Retitle() {
  if (instance_->window) instance_->window->stale.title = false;
  ShowTitle();
  DataPane& view = View();
  if (view.List().Exists()) view.FitColumns();
}

void DataPane::Reuse(std::uint32_t start, std::uint32_t end, std::string functionName, std::uint32_t shown) {
  model().Instructions().Drop();
  model().Reuse(*instance_, start, end, std::move(functionName), shown);
  nextAddress_ = 0;
  RegisterRange(true);
  Retitle();
}

void DataPane::ClearData() {
  const auto instance = instance_;
  const DataLoss loss = instance->isFunction() ? DataLoss::kClearFunction : DataLoss::kClearRange;
  if (!above().MayLose(loss, *instance)) return;
  instance->modified = 0;
  model().Clear(*instance);
}

void DataPane::EditRange() {
  const auto instance = instance_;
  if (instance->isFunction()) {
    above().ChangeSource(*instance);
    ClearCounts(true);
    return;
  }
  if (!above().MayLose(DataLoss::kEditRange, *instance)) return;
  const AddressRange old{instance->start, instance->end};
  const auto range = CoverageRangeDialog(host, {services().history.starts, services().history.ends})
                         .AskRange(&services().sink, old);
  // While the dialog was open, the window may have gone or another pane may have taken the instance.
  if (!range || instance != instance_ || instance->window == nullptr ||
      model().RangeShownElsewhere(instance->window, range->start, range->end)) {
    return;
  }
  const std::uint32_t enabled = instance->enableStatus;
  model().SetRange(*instance, range->start, range->end);
  RegisterRange(true);
  if (instance->window == nullptr) return;
  if (instance->rangeSet == 0) {
    model().PutBack(*instance, old.start, old.end, enabled);
    RegisterRange(true);
    if (instance->window != nullptr) model().DisplayRegistered(*instance->window);
    return;
  }
  macro().RecordRangeEdit(range->start, range->end);
  services().history.NoteRange(range->start, range->end);
  instance->modified = 1;
  instance->saved = 0;
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
