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
  model().UpdateCoverageSwitch();
  above().DropLineMarks();
  model().MarkRows();
}

void StatisticsPane::OnEnableAll() {
  const bool enabled = !allEnabled_;
  macro().RecordEnable(enabled, MacroRecorder::kAll);
  for (const auto& [number, instance] : record_->instances) {
    if (instance->rangeSet == 1) model().Enable(*instance, enabled);
  }
  ListInstances(true, -1, -1);
  // Also where an instance without a range stays as it is, so that the next time does the opposite.
  allEnabled_ = enabled;
  AfterEnabling();
}

void StatisticsPane::OnUpdateEnableAll(platform::CommandUpdate& update) { update.SetCheck(allEnabled_); }

void StatisticsPane::OnEnable() {
  const auto instance = Selected();
  const int row = List().SelectedRow();
  if (!instance || static_cast<std::size_t>(row) >= record_->stats.size()) return;
  const bool enabled = record_->stats[static_cast<std::size_t>(row)].enableStatus == 0;
  macro().RecordEnable(enabled, IsFileWindow() ? MacroNumber(*instance, row) : MacroRecorder::kAll);
  if (instance->rangeSet == 1) model().Enable(*instance, enabled);
  AfterEnabling();
}

void StatisticsPane::OnUpdateEnable(platform::CommandUpdate& update) {
  const auto instance = Selected();
  update.Enable(instance != nullptr);
  update.SetCheck(instance && instance->enableStatus != 0);
}

void StatisticsPane::OnClearAll() {
  if (record_->instances.empty()) return;
  // The question is about the first instance that is not saved; without one it asks nothing.
  const auto unsaved =
      std::find_if(record_->instances.begin(), record_->instances.end(),
                   [](const auto& each) { return each.second->modified == 1 && each.second->saved == 0; });
  const auto asked =
      unsaved != record_->instances.end() ? unsaved->second : record_->instances.begin()->second;
  const auto window = record_;
  macro().PrepareReset(MacroRecorder::kAll);
  if (above().MayLose(DataLoss::kClearAll, *asked)) {
    for (const auto& [number, instance] : window->instances) {
      if (instance->rangeSet != 1) continue;
      instance->modified = 0;
      model().Clear(*instance);
    }
  }
  macro().FinishReset(false);
}

void StatisticsPane::OnClearData() {
  const auto instance = Selected();
  DataPane* pane = PaneOf(instance.get());
  if (!pane) return;
  macro().PrepareReset(IsFileWindow() ? MacroNumber(*instance, List().SelectedRow()) : MacroRecorder::kAll);
  pane->ClearData();
  macro().FinishReset(false);
}

void StatisticsPane::OnUpdateNeedsSelection(platform::CommandUpdate& update) {
  update.Enable(Selected() != nullptr);
}

void StatisticsPane::OnViewSource() {
  const auto instance = Selected();
  auto* source = FindService<qal::IQSource>(host, qal::iid::kSource);
  auto* editor = FindService<qal::IQEditor>(host, qal::iid::kEditor);
  if (!instance || !source || !editor || !FindService<qal::IQExpression>(host, qal::iid::kExpression)) return;
  platform::WideOut file;
  std::uint32_t line = 0;
  if (qal::Failed(source->AddressToLine(instance->start, file.put(), &line))) {
    editor->ShowAddress(instance->start, 1);
    return;
  }
  std::uint32_t unset = 0;
  char16_t* name = platform::NewWide(file.str());
  editor->ShowSourceLine(&unset, line, &name);
  qal::FreeText(name);
}

void StatisticsPane::OnEditRange() {
  DataPane* pane = PaneOf(Selected().get());
  if (!pane) pane = Pane(1);
  if (!pane) return;
  macro().ArmRangeEdit();
  pane->EditRange();
  macro().RecordRangeEdit(MacroRecorder::kAll, MacroRecorder::kAll);
}

void StatisticsPane::OnUpdateEditRange(platform::CommandUpdate& update) {
  const DataPane* first = Pane(1);
  update.Enable(first && first->CanEditRange());
}

void StatisticsPane::OnSave() {
  if (const auto first = record_->Instance(1)) above().SaveData(*first);
}

void StatisticsPane::OnLoad() {
  if (const auto first = record_->Instance(1)) above().LoadData(*first);
}

void StatisticsPane::OnRefresh() {
  model().Instructions().Drop();
  for (const auto& [number, instance] : record_->instances) model().ComputePercentage(*instance);
  model().MarkRows();
}

void StatisticsPane::KeepView(CoverageInstance& leaving) {
  DataPane* const pane = PaneOf(&leaving);
  if (pane == nullptr || pane != view_) return;
  const std::uint32_t number = record_->NumberOf(leaving);
  const auto next = record_->Instance(record_->Instance(number + 1) ? number + 1 : number - 1);
  DataPane* const hidden = PaneOf(next.get());
  if (hidden == nullptr) return;
  pane->instance_.swap(hidden->instance_);
  panes_[&pane->Instance()] = pane;
  panes_[&hidden->Instance()] = hidden;
}

void StatisticsPane::OnDeleteRange() {
  const auto instance = Selected();
  if (!instance || IsFileWindow() || record_->instances.size() < 2) return;
  if (!above().MayLose(DataLoss::kDeleteRange, *instance)) return;
  // While the question was open, other ranges may have gone.
  if (record_->instances.size() < 2) return;
  KeepView(*instance);
  DataPane* const leaving = PaneOf(instance.get());
  model().Remove(*instance);
  model().DisplayRegistered(*record_);
  if (leaving != nullptr) above().Retire(*leaving);
  List().SelectRow(-1);
}

void StatisticsPane::OnUpdateDeleteRange(platform::CommandUpdate& update) {
  update.Enable(!IsFileWindow() && record_->instances.size() > 1 && Selected() != nullptr);
}

void StatisticsPane::OnAddRange() { above().OpenCoverage(); }

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

platform::LResult StatisticsPane::OnEntered(const platform::Message& received) {
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
  if (const auto answer = platform::Dispatch(*this, kRoutes, received)) return *answer;
  return CJepDebugInstanceDataCtrl::OnEntered(received);
}

}  // namespace coverage
