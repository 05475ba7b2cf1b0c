#include <algorithm>
#include <array>

#include "model/services.h"
#include "panes/data_pane.h"
#include "panes/pane_commands.h"
#include "panes/statistics_pane.h"
#include "platform/text.h"
#include "qal/program_services.h"
#include "util/texts.h"

namespace coverage {

using DataPane = CJepCoverageInstanceCtrlCovData;
using StatisticsPane = CJepCoverageInstanceCtrlStatData;

void StatisticsPane::AfterEnabling() {
  owner().UpdateCoverageSwitch();
  owner().DropLineMarks();
  ListInstances(true, -1, -1);
  owner().RedrawPanes();
}

void StatisticsPane::OnEnableAll() {
  const bool enabled = !allEnabled_;
  owner().Macro().RecordEnable(enabled, MacroRecorder::kAll);
  for (const auto& [number, pane] : panes_) {
    if (pane->Instance().rangeSet == 1) pane->SetEnabled(enabled ? 1 : 0);
  }
  AfterEnabling();
  // Also where an instance without a range stays as it is, so that the next time does the opposite.
  allEnabled_ = enabled;
}

void StatisticsPane::OnUpdateEnableAll(platform::CommandUpdate& update) { update.SetCheck(allEnabled_); }

void StatisticsPane::OnEnable() {
  const int row = List().SelectedRow();
  DataPane* pane = SelectedPane();
  if (!pane || static_cast<std::size_t>(row) >= record_.stats.size()) return;
  const FunctionStat& stat = record_.stats[static_cast<std::size_t>(row)];
  const bool enabled = stat.enableStatus == 0;
  owner().Macro().RecordEnable(enabled, IsFileWindow() ? MacroNumber(stat.name, row) : MacroRecorder::kAll);
  if (pane->Instance().rangeSet == 1) pane->SetEnabled(enabled ? 1 : 0);
  AfterEnabling();
}

void StatisticsPane::OnUpdateEnable(platform::CommandUpdate& update) {
  const DataPane* pane = SelectedPane();
  update.Enable(pane != nullptr);
  update.SetCheck(pane && pane->Instance().enableStatus != 0);
}

void StatisticsPane::OnClearAll() {
  const auto first = std::find_if(panes_.begin(), panes_.end(), [](const auto& each) {
    return each.second->Instance().modified == 1 && each.second->Instance().saved == 0;
  });
  const bool unsaved = first != panes_.end();
  const bool asks = unsaved && owner().ClearAsks();
  owner().Macro().PrepareReset(MacroRecorder::kAll);
  if (!asks || owner().MayClearFunction(*first->second)) {
    if (unsaved) owner().Macro().FinishReset(true);
    for (const auto& [number, pane] : panes_) {
      CoverageInstance& instance = pane->Instance();
      if (instance.rangeSet != 1) continue;
      instance.modified = 0;
      if (!asks) instance.saved = 0;
      instance.counts->Clear();
      instance.ComputePercentage(false, owner().Instructions());
    }
    owner().DropLineMarks();
    ListInstances(true, -1, -1);
    if (DataPane* displayed = DisplayedPane()) {
      displayed->RebuildRows(displayed->Instance().refreshLocked == 0, 0, -1, -1);
    }
  }
  owner().Macro().FinishReset(false);
}

void StatisticsPane::OnClearData() {
  DataPane* pane = SelectedPane();
  if (!pane) return;
  const std::uint32_t number =
      IsFileWindow() ? MacroNumber(pane->Instance().functionName, List().SelectedRow()) : MacroRecorder::kAll;
  owner().Macro().PrepareReset(number);
  pane->ClearData();
  owner().Macro().FinishReset(false);
  pane->RebuildRows(pane->Instance().refreshLocked == 0, 0, -1, -1);
  ListInstances(true, -1, -1);
}

void StatisticsPane::OnUpdateNeedsSelection(platform::CommandUpdate& update) {
  update.Enable(SelectedPane() != nullptr);
}

void StatisticsPane::OnViewSource() {
  const DataPane* pane = SelectedPane();
  auto* source = FindService<qal::IQSource>(host, qal::iid::kSource);
  auto* editor = FindService<qal::IQEditor>(host, qal::iid::kEditor);
  if (!pane || !source || !editor || !FindService<qal::IQExpression>(host, qal::iid::kExpression)) return;
  const std::uint32_t start = pane->Instance().start;
  platform::WideOut file;
  std::uint32_t line = 0;
  if (qal::Failed(source->AddressToLine(start, file.put(), &line))) {
    editor->ShowAddress(start, 1);
    return;
  }
  std::uint32_t unset = 0;
  char16_t* name = platform::NewWide(file.str());
  editor->ShowSourceLine(&unset, line, &name);
  qal::FreeText(name);
}

void StatisticsPane::OnEditRange() {
  DataPane* pane = SelectedPane();
  if (!pane) pane = Pane(1);
  if (!pane) return;
  owner().Macro().ArmRangeEdit();
  pane->EditRange();
  owner().Macro().RecordRangeEdit(MacroRecorder::kAll, MacroRecorder::kAll);
}

void StatisticsPane::OnUpdateEditRange(platform::CommandUpdate& update) {
  const DataPane* first = Pane(1);
  update.Enable(first && first->CanEditRange());
}

void StatisticsPane::OnSave() {
  if (DataPane* first = Pane(1)) owner().SavePane(*first);
}

void StatisticsPane::OnLoad() {
  if (DataPane* first = Pane(1)) owner().LoadPane(*first);
}

void StatisticsPane::OnRefresh() {
  for (const auto& [number, pane] : PaneMap(panes_)) pane->Refresh();
  if (DataPane* displayed = DisplayedPane()) displayed->RebuildRows(true, 0, -1, -1);
}

void StatisticsPane::OnDeleteRange() {
  DataPane* pane = SelectedPane();
  if (!pane || IsFileWindow() || panes_.size() < 2) return;
  CoverageInstance& instance = pane->Instance();
  if (instance.modified != 0 && instance.enableStatus != 0 && owner().ClosingAsks()) {
    const auto confirmation = owner().ConfirmClear();
    if (confirmation == PaneHost::Confirmation::kCancelled) return;
    if (confirmation == PaneHost::Confirmation::kSaveFirst) {
      owner().SavePane(*pane);
    } else {
      instance.modified = 0;
    }
  }
  const bool displayed = instance.shown != 0;
  DataPane* leaving = pane;
  if (pane->Exists()) {
    // The pane with the window stays and takes over the next instance, or the one before the last.
    const auto number = static_cast<std::uint32_t>(List().SelectedRow() + 1);
    leaving = Pane(number + 1) ? Pane(number + 1) : Pane(number - 1);
    pane->SwapInstance(*leaving);
  }
  RemovePane(*leaving);
  leaving->RemoveFromDebugger();
  owner().DeletePane(*leaving);
  if (displayed && Pane(1)) Display(*Pane(1));
  List().SelectRow(-1);
  owner().UpdateCoverageSwitch();
  owner().DropLineMarks();
  ListInstances(true, -1, -1);
}

void StatisticsPane::OnUpdateDeleteRange(platform::CommandUpdate& update) {
  update.Enable(!IsFileWindow() && panes_.size() > 1 && SelectedPane() != nullptr);
}

void StatisticsPane::OnAddRange() { owner().OpenCoverage(); }

platform::LResult StatisticsPane::OnScrolled(const platform::Message& message) {
  ListInstances(message.id != platform::message::kMouseWheel, -1, -1);
  return 0;
}

platform::LResult StatisticsPane::OnListKey(const platform::Notification& news) {
  if (news.code == platform::notify::kKeyDown && news.key != platform::key::kReturn) return 1;
  SelectRow();
  return 0;
}

void StatisticsPane::OnListClick() { SelectRow(); }

void StatisticsPane::OnListDoubleClick() {
  SelectRow();
  OnViewSource();
}

void StatisticsPane::OnColumnClick(const platform::Notification& news) {
  if (IsFileWindow()) {
    Sort(news.column);
  } else {
    SelectRow();
  }
}

platform::LResult StatisticsPane::OnMessage(const platform::Message& received) {
  using namespace pane_command;
  using platform::kAny;
  using platform::message::kCommand;
  using platform::message::kNotify;
  using platform::message::kUpdateCommand;
  using Pane = StatisticsPane;
  static constexpr auto kRoutes = std::to_array<platform::Route<Pane>>({
      {kCommand, kEnableAll, &Pane::OnEnableAll},
      {kCommand, kEnableAllButton, &Pane::OnEnableAll},
      {kUpdateCommand, kEnableAll, &Pane::OnUpdateEnableAll},
      {kUpdateCommand, kEnableAllButton, &Pane::OnUpdateEnableAll},
      {kCommand, kClearAll, &Pane::OnClearAll},
      {kCommand, kClearAllButton, &Pane::OnClearAll},
      {kCommand, kEnable, &Pane::OnEnable},
      {kCommand, kEnableButton, &Pane::OnEnable},
      {kCommand, kEnableFunction, &Pane::OnEnable},
      {kUpdateCommand, kEnable, &Pane::OnUpdateEnable},
      {kUpdateCommand, kEnableButton, &Pane::OnUpdateEnable},
      {kUpdateCommand, kEnableFunction, &Pane::OnUpdateEnable},
      {kCommand, kClearData, &Pane::OnClearData},
      {kCommand, kClearDataButton, &Pane::OnClearData},
      {kUpdateCommand, kClearData, &Pane::OnUpdateNeedsSelection},
      {kUpdateCommand, kClearDataButton, &Pane::OnUpdateNeedsSelection},
      {kCommand, kViewSource, &Pane::OnViewSource},
      {kCommand, kViewSourceButton, &Pane::OnViewSource},
      {kUpdateCommand, kViewSource, &Pane::OnUpdateNeedsSelection},
      {kUpdateCommand, kViewSourceButton, &Pane::OnUpdateNeedsSelection},
      {kCommand, kEditRange, &Pane::OnEditRange},
      {kCommand, kEditRangeButton, &Pane::OnEditRange},
      {kUpdateCommand, kEditRange, &Pane::OnUpdateEditRange},
      {kUpdateCommand, kEditRangeButton, &Pane::OnUpdateEditRange},
      {kCommand, kSaveData, &Pane::OnSave},
      {kCommand, kSaveDataButton, &Pane::OnSave},
      {kCommand, kLoadData, &Pane::OnLoad},
      {kCommand, kLoadDataButton, &Pane::OnLoad},
      {kCommand, kRefresh, &Pane::OnRefresh},
      {kCommand, kRefreshButton, &Pane::OnRefresh},
      {kCommand, kDeleteRange, &Pane::OnDeleteRange},
      {kCommand, kDeleteRangeButton, &Pane::OnDeleteRange},
      {kUpdateCommand, kDeleteRange, &Pane::OnUpdateDeleteRange},
      {kUpdateCommand, kDeleteRangeButton, &Pane::OnUpdateDeleteRange},
      {kCommand, kAddRange, &Pane::OnAddRange},
      {kCommand, kAddRangeButton, &Pane::OnAddRange},
      {platform::message::kVScroll, kAny, &Pane::OnScrolled},
      {platform::message::kMouseWheel, kAny, &Pane::OnScrolled},
      {kNotify, platform::notify::kKeyDown, &Pane::OnListKey, kListId},
      {kNotify, platform::notify::kKeyUp, &Pane::OnListKey, kListId},
      {kNotify, platform::notify::kClick, &Pane::OnListClick, kListId},
      {kNotify, platform::notify::kBeginDrag, &Pane::OnListClick, kListId},
      {kNotify, platform::notify::kDoubleClick, &Pane::OnListDoubleClick, kListId},
      {kNotify, platform::notify::kColumnClick, &Pane::OnColumnClick, kListId},
  });
  const platform::ResourceScope scope(Resources());
  if (const auto answer = platform::Dispatch(*this, kRoutes, received)) return *answer;
  return CJepDebugInstanceDataCtrl::OnMessage(received);
}

}  // namespace coverage
