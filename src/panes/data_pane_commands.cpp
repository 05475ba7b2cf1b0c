#include <algorithm>
#include <array>
#include <vector>

#include "dialogs/small_dialogs.h"
#include "model/instruction_walk.h"
#include "model/services.h"
#include "panes/data_pane.h"
#include "panes/pane_commands.h"
#include "panes/statistics_pane.h"
#include "platform/text.h"
#include "util/texts.h"

namespace coverage {
namespace {

constexpr std::uint32_t kLongestInstruction = 4;
/// Instructions after which decoding has surely fallen into step.
constexpr std::uint32_t kStepInstructions = 16;

}  // namespace

using DataPane = CJepCoverageInstanceCtrlCovData;

template <class Act>
void DataPane::WithDisplayed(Act act) {
  if (DataPane* displayed = Displayed()) act(*displayed);
}

/// Where the last page of the range begins: the instruction from which on a whole page of them is left.
std::uint32_t DataPane::FirstOfLastPage() {
  const CoverageInstance& instance = *instance_;
  InstructionReader reader(host);
  CachedInstructions source(model().Instructions(), reader);
  // Decoding falls into step after a few instructions, wherever it begins.
  const auto page = static_cast<std::uint32_t>(View().rowsPerPage_);
  const std::uint32_t reach = (page + kStepInstructions) * kLongestInstruction;
  const std::uint32_t from =
      instance.end - instance.start > reach ? (instance.end - reach) & ~1u : instance.start;
  InstructionWalk walk(from, instance.end, reader.Alignment(), source);
  std::vector<std::uint32_t> starts;
  ForEachRecorded(walk, reach, [&](std::uint32_t address, const Instruction&) { starts.push_back(address); });
  return starts.size() > page ? starts[starts.size() - page] : from;
}

void DataPane::OnResized() {
  const int oldRows = rowsPerPage_;
  rowsPerPage_ = List().RowsPerPage();
  WithDisplayed([&](DataPane& displayed) {
    const CoverageInstance& instance = *displayed.instance_;
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
    if (top > 0 && nextAddress_ >= instance.end) {
      displayed.RebuildRows(true, displayed.FirstOfLastPage(), -1, -1);
    } else if (top != builtTop_) {
      displayed.RebuildRows(true, 0, -1, -1);
    } else {
      displayed.RebuildRows(true, nextAddress_, top + oldRows + 1, grown - 1);
    }
  });
}

void DataPane::OnScrolled() {
  WithDisplayed(
      [](DataPane& displayed) { displayed.RebuildRows(displayed.instance_->refreshLocked == 0, 0, -1, -1); });
}

void DataPane::OnListClick(const platform::Notification& news) {
  if (news.row < 0 || news.row < List().TopRow() + rowsPerPage_ - 1) return;
  List().Scroll(1);
  OnScrolled();
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
  DataPane* displayed = Displayed();
  const auto address = displayed ? displayed->SelectedAddress() : std::nullopt;
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
  DataPane* displayed = Displayed();
  const auto address = displayed ? displayed->SelectedAddress() : std::nullopt;
  platform::WideOut file;
  std::uint32_t line = 0;
  update.Enable(address && SourceOf(*address, file.put(), &line));
}

void DataPane::OnEnable() {
  WithDisplayed([this](DataPane& displayed) {
    CoverageInstance& instance = *displayed.instance_;
    const bool enabled = instance.enableStatus == 0;
    if (!instance.isFunction()) macro().RecordEnable(enabled, MacroRecorder::kAll);
    model().Enable(instance, enabled);
    model().UpdateCoverageSwitch();
    displayed.ClearCounts(false);
  });
}

void DataPane::OnUpdateEnable(platform::CommandUpdate& update) {
  const DataPane* displayed = Displayed();
  update.SetCheck(displayed && displayed->instance_->enableStatus != 0);
}

void DataPane::OnClearData() {
  WithDisplayed([this](DataPane& displayed) {
    if (!displayed.instance_->isFunction()) macro().PrepareReset(MacroRecorder::kAll);
    displayed.ClearData();
    macro().FinishReset(false);
  });
}

void DataPane::OnRefresh() {
  WithDisplayed([this](DataPane& displayed) {
    model().Instructions().Drop();
    model().ComputePercentage(*displayed.instance_);
    model().MarkRows();
  });
}

void DataPane::OnEditRange() {
  WithDisplayed([this](DataPane& displayed) {
    macro().ArmRangeEdit();
    displayed.EditRange();
    macro().RecordRangeEdit(MacroRecorder::kAll, MacroRecorder::kAll);
  });
}

void DataPane::OnUpdateEditRange(platform::CommandUpdate& update) { update.Enable(CanEditRange()); }

void DataPane::OnGoToAddress() {
  DataPane* shown = Displayed();
  if (!shown) return;
  DataPane& displayed = *shown;
  const auto kept = displayed.instance_;
  CoverageInstance& instance = *kept;
  CCoverageListCtrl& list = List();
  const int selected = list.SelectedRow();
  const std::string text = selected < 0 ? std::string() : list.ItemText(selected, kAddressColumn);
  const auto address =
      GoToAddressDialog(host, instance.start, instance.end, text, services().history.addresses)
          .Ask(&services().sink);
  // While the dialog was open, the window may have gone or may show another range.
  if (!address || !list.Exists() || displayed.instance_ != kept || instance.shown == 0 ||
      *address < instance.start || *address > instance.end) {
    return;
  }
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

void DataPane::OnSave() {
  WithDisplayed(
      [this](DataPane& displayed) { above().SaveData(*CoverageModel::InstancePtr(displayed.instance_)); });
}

void DataPane::OnLoad() {
  WithDisplayed(
      [this](DataPane& displayed) { above().LoadData(*CoverageModel::InstancePtr(displayed.instance_)); });
}

void DataPane::OnAddRange() { above().OpenCoverage(); }

void DataPane::OnLockRefresh() {
  WithDisplayed([this](DataPane& displayed) {
    model().Lock(*displayed.instance_, displayed.instance_->refreshLocked == 0);
  });
}

void DataPane::OnUpdateLockRefresh(platform::CommandUpdate& update) {
  const DataPane* displayed = Displayed();
  update.SetCheck(displayed && displayed->instance_->refreshLocked != 0);
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

platform::LResult DataPane::OnEntered(const platform::Message& received) {
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
  if (const auto answer = platform::Dispatch(*this, kRoutes, received)) return *answer;
  return CJepDebugInstanceDataCtrl::OnEntered(received);
}

}  // namespace coverage
