#include <algorithm>
#include <array>

#include "model/services.h"
#include "panes/data_pane.h"
#include "panes/pane_commands.h"
#include "panes/statistics_pane.h"
#include "platform/text.h"
#include "util/texts.h"

namespace coverage {

using DataPane = CJepCoverageInstanceCtrlCovData;

void DataPane::OnResized() {
  DataPane& displayed = Displayed();
  CoverageInstance& instance = *displayed.instance_;
  const int oldRows = rowsPerPage_;
  rowsPerPage_ = List().RowsPerPage();
  const bool locked = instance.refreshLocked != 0;
  if (!sizedOnce_) {
    if (List().ClientRect().Empty()) return;
    sizedOnce_ = true;
    if (!locked) displayed.RebuildRows(true, 0, -1, -1);
    return;
  }
  const int grown = rowsPerPage_ - oldRows;
  if (locked || grown <= 0) return;
  const int top = List().TopRow();
  if (nextAddress_ >= instance.end) {
    const std::uint32_t back = instance.averageInstructionSize * static_cast<std::uint32_t>(grown);
    const std::uint32_t address = displayed.Rows().AddressOfRow(top).value_or(instance.start);
    displayed.RebuildRows(true, address - instance.start > back ? address - back : instance.start, -1, -1);
  } else {
    displayed.RebuildRows(true, nextAddress_, top + oldRows + 1, grown - 1);
  }
}

void DataPane::OnScrolled() {
  DataPane& displayed = Displayed();
  displayed.RebuildRows(displayed.instance_->refreshLocked == 0, 0, -1, -1);
}

void DataPane::OnListClick(const platform::Notification& news) {
  if (news.row < 0 || news.row < List().TopRow() + rowsPerPage_ - 1) return;
  List().Scroll(1);
  Displayed().RebuildRows(Displayed().instance_->refreshLocked == 0, 0, -1, -1);
  List().Invalidate();
}

void DataPane::OnListDoubleClick(const platform::Notification& news) {
  if (news.row >= 0) OnViewSource();
}

platform::LResult DataPane::OnListKey(const platform::Notification& news) {
  if (news.key != platform::key::kReturn) return 1;
  OnViewSource();
  return 0;
}

void DataPane::OnViewSource() {
  const auto address = Displayed().SelectedAddress();
  auto* editor = FindService<qal::IQEditor>(host, qal::iid::kDataPaneEditor);
  platform::WideOut file;
  std::uint32_t line = 0;
  if (!address || !editor || !SourceOf(*address, file.put(), &line)) return;
  std::uint32_t unset = 0;
  char16_t* name = platform::NewWide(file.str());
  editor->ShowSourceLine(&unset, line, &name);
  qal::FreeText(name);
}

void DataPane::OnUpdateViewSource(platform::CommandUpdate& update) {
  const auto address = Displayed().SelectedAddress();
  platform::WideOut file;
  std::uint32_t line = 0;
  update.Enable(address && SourceOf(*address, file.put(), &line));
}

void DataPane::OnEnable() {
  DataPane& displayed = Displayed();
  const bool enabled = displayed.instance_->enableStatus == 0;
  if (!displayed.instance_->isFunction()) owner().Macro().RecordEnable(enabled, MacroRecorder::kAll);
  displayed.SetEnabled(enabled ? 1 : 0);
  owner().UpdateCoverageSwitch();
  displayed.ClearCounts(false);
  if (statistics_) statistics_->RefreshFromDebugger();
}

void DataPane::OnUpdateEnable(platform::CommandUpdate& update) {
  update.SetCheck(Displayed().instance_->enableStatus != 0);
}

void DataPane::OnClearData() {
  DataPane& displayed = Displayed();
  if (!displayed.instance_->isFunction()) owner().Macro().PrepareReset(MacroRecorder::kAll);
  displayed.ClearData();
  owner().Macro().FinishReset(false);
  displayed.RebuildRows(displayed.instance_->refreshLocked == 0, 0, -1, -1);
  if (statistics_) statistics_->RefreshFromDebugger();
}

void DataPane::OnRefresh() {
  Displayed().Refresh();
  Displayed().RebuildRows(true, 0, -1, -1);
}

void DataPane::OnEditRange() {
  owner().Macro().ArmRangeEdit();
  Displayed().EditRange();
  owner().Macro().RecordRangeEdit(MacroRecorder::kAll, MacroRecorder::kAll);
}

void DataPane::OnUpdateEditRange(platform::CommandUpdate& update) { update.Enable(CanEditRange()); }

void DataPane::OnGoToAddress() {
  DataPane& displayed = Displayed();
  CoverageInstance& instance = *displayed.instance_;
  CCoverageListCtrl& list = List();
  const int selected = list.SelectedRow();
  const std::string text = selected < 0 ? std::string() : list.ItemText(selected, kAddressColumn);
  const auto address = owner().AskAddress(displayed, text);
  if (!address || !list.Exists()) return;
  const std::uint32_t offset = *address - instance.start;
  const auto estimated =
      static_cast<int>(std::min<std::uint32_t>(offset / instance.averageInstructionSize, INT32_MAX));
  list.Scroll(std::min(estimated, std::max(0, list.RowCount() - rowsPerPage_)) - list.TopRow());
  list.SetFocus();
  if (instance.refreshLocked == 0) displayed.RebuildRows(true, *address, -1, -1);
  if (offset == 0) list.Scroll(-list.TopRow());
  const int pageEnd = list.TopRow() + rowsPerPage_;
  int row = list.TopRow();
  while (row < pageEnd && displayed.Rows().AddressOfRow(row) != *address) ++row;
  if (row == pageEnd) row = std::min(estimated, list.RowCount() - 1);
  if (row >= list.TopRow() && row < pageEnd) {
    list.SelectRow(row);
    list.SetFocusRow(row);
  } else {
    list.Scroll(1);
  }
}

void DataPane::OnSave() { owner().SavePane(Displayed()); }
void DataPane::OnLoad() { owner().LoadPane(Displayed()); }
void DataPane::OnAddRange() { owner().OpenCoverage(); }

void DataPane::OnLockRefresh() {
  CoverageInstance& instance = *Displayed().instance_;
  instance.refreshLocked = instance.refreshLocked == 0 ? 1 : 0;
  if (statistics_) statistics_->RefreshFromDebugger();
}

void DataPane::OnUpdateLockRefresh(platform::CommandUpdate& update) {
  update.SetCheck(Displayed().instance_->refreshLocked != 0);
}

void DataPane::OnForStatistics(std::uint32_t command) {
  if (statistics_) platform::RunCommand(*statistics_, command);
}

void DataPane::OnUpdateForStatistics(platform::CommandUpdate& update) {
  if (!statistics_) return update.Enable(false);
  const platform::CommandUpdate asked = platform::QueryCommand(*statistics_, update.Id());
  update.Enable(asked.Enabled());
  update.SetCheck(asked.Checked());
}

platform::LResult DataPane::OnMessage(const platform::Message& received) {
  using namespace pane_command;
  using platform::kAny;
  using platform::message::kCommand;
  using platform::message::kNotify;
  using platform::message::kUpdateCommand;
  static constexpr auto kRoutes = std::to_array<platform::Route<DataPane>>({
      {kCommand, kViewSource, &DataPane::OnViewSource},
      {kCommand, kViewSourceButton, &DataPane::OnViewSource},
      {kUpdateCommand, kViewSource, &DataPane::OnUpdateViewSource},
      {kUpdateCommand, kViewSourceButton, &DataPane::OnUpdateViewSource},
      {kCommand, kEnable, &DataPane::OnEnable},
      {kCommand, kEnableButton, &DataPane::OnEnable},
      {kUpdateCommand, kEnable, &DataPane::OnUpdateEnable},
      {kUpdateCommand, kEnableButton, &DataPane::OnUpdateEnable},
      {kCommand, kClearData, &DataPane::OnClearData},
      {kCommand, kClearDataButton, &DataPane::OnClearData},
      {kCommand, kRefresh, &DataPane::OnRefresh},
      {kCommand, kRefreshButton, &DataPane::OnRefresh},
      {kCommand, kEditRange, &DataPane::OnEditRange},
      {kCommand, kEditRangeButton, &DataPane::OnEditRange},
      {kUpdateCommand, kEditRange, &DataPane::OnUpdateEditRange},
      {kUpdateCommand, kEditRangeButton, &DataPane::OnUpdateEditRange},
      {kCommand, kGoToAddress, &DataPane::OnGoToAddress},
      {kCommand, kGoToAddressButton, &DataPane::OnGoToAddress},
      {kCommand, kSaveData, &DataPane::OnSave},
      {kCommand, kSaveDataButton, &DataPane::OnSave},
      {kCommand, kLoadData, &DataPane::OnLoad},
      {kCommand, kLoadDataButton, &DataPane::OnLoad},
      {kCommand, kLockRefresh, &DataPane::OnLockRefresh},
      {kCommand, kLockRefreshButton, &DataPane::OnLockRefresh},
      {kUpdateCommand, kLockRefresh, &DataPane::OnUpdateLockRefresh},
      {kUpdateCommand, kLockRefreshButton, &DataPane::OnUpdateLockRefresh},
      {kCommand, kAddRange, &DataPane::OnAddRange},
      {kCommand, kAddRangeButton, &DataPane::OnAddRange},
      {kCommand, kEnableAll, &DataPane::OnForStatistics},
      {kCommand, kEnableAllButton, &DataPane::OnForStatistics},
      {kCommand, kClearAll, &DataPane::OnForStatistics},
      {kCommand, kClearAllButton, &DataPane::OnForStatistics},
      {kCommand, kDeleteRange, &DataPane::OnForStatistics},
      {kCommand, kDeleteRangeButton, &DataPane::OnForStatistics},
      {kUpdateCommand, kEnableAll, &DataPane::OnUpdateForStatistics},
      {kUpdateCommand, kEnableAllButton, &DataPane::OnUpdateForStatistics},
      {kUpdateCommand, kClearAll, &DataPane::OnUpdateForStatistics},
      {kUpdateCommand, kClearAllButton, &DataPane::OnUpdateForStatistics},
      {kUpdateCommand, kDeleteRange, &DataPane::OnUpdateForStatistics},
      {kUpdateCommand, kDeleteRangeButton, &DataPane::OnUpdateForStatistics},
      {platform::message::kVScroll, kAny, &DataPane::OnScrolled},
      {platform::message::kMouseWheel, kAny, &DataPane::OnScrolled},
      {kNotify, platform::notify::kClick, &DataPane::OnListClick, kListId},
      {kNotify, platform::notify::kDoubleClick, &DataPane::OnListDoubleClick, kListId},
      {kNotify, platform::notify::kKeyDown, &DataPane::OnListKey, kListId},
  });
  const platform::ResourceScope scope(Resources());
  if (const auto answer = platform::Dispatch(*this, kRoutes, received)) return *answer;
  return CJepDebugInstanceDataCtrl::OnMessage(received);
}

}  // namespace coverage
