#include "panes/statistics_pane.h"

#include <algorithm>
#include <array>
#include <utility>

#include "formatview/colour_table.h"
#include "model/address_text.h"
#include "panes/data_pane.h"
#include "platform/text.h"
#include "util/texts.h"

namespace coverage {
namespace {

constexpr char kClassName[] = "CJepCoverageInstanceCtrlStatData";

constexpr PaneColumn kRangeColumns[] = {
    {strings::kColumnRange, 14}, {strings::kColumnStatistic, 7}, {strings::kColumnStatus, 26}};
constexpr PaneColumn kFileColumns[] = {
    {strings::kColumnFunctions, 14}, {strings::kColumnStatistic, 7}, {strings::kColumnStatus, 26}};

enum StatisticsColumn : int { kNameColumn, kStatisticColumn, kStatusColumn };

constexpr platform::Colour kRefused = platform::Rgb(0x80, 0x80, 0x80);

/// Sizes of "Courier New" whose cells are measured one unit too low.
constexpr std::array<std::int32_t, 3> kLowSizes = {8, 14, 28};
constexpr int kPixelsPerInch = 96;
constexpr int kPointsPerInch = 72;

std::string StatisticText(const FunctionStat& stat) {
  if (stat.refreshLocked != 0) return " -";
  return platform::Format(" %u%%", stat.percentage);
}

}  // namespace

using DataPane = CJepCoverageInstanceCtrlCovData;
using StatisticsPane = CJepCoverageInstanceCtrlStatData;

StatisticsPane::CJepCoverageInstanceCtrlStatData(const PaneServices& services,
                                                 std::shared_ptr<CoverageWindow> record)
    : CJepDebugInstanceDataCtrl(services, kClassName), record_(std::move(record)) {}

StatisticsPane::~CJepCoverageInstanceCtrlStatData() {
  for (const auto& [instance, pane] : panes_) pane->statistics_ = nullptr;
}

void StatisticsPane::AddPane(DataPane& pane) {
  panes_[&pane.Instance()] = &pane;
  pane.statistics_ = this;
  if (pane.Exists()) view_ = &pane;
}

void StatisticsPane::Forget(DataPane& pane) {
  const auto found = panes_.find(&pane.Instance());
  if (found != panes_.end() && found->second == &pane) panes_.erase(found);
  if (view_ == &pane) view_ = nullptr;
  pane.statistics_ = nullptr;
}

std::vector<DataPane*> StatisticsPane::Panes() const {
  std::vector<DataPane*> panes;
  panes.reserve(panes_.size());
  for (const auto& [instance, pane] : panes_) panes.push_back(pane);
  return panes;
}

DataPane* StatisticsPane::PaneOf(const CoverageInstance* instance) const {
  const auto found = panes_.find(instance);
  return found == panes_.end() ? nullptr : found->second;
}

DataPane* StatisticsPane::Pane(std::uint32_t number) const { return PaneOf(record_->Instance(number).get()); }

DataPane* StatisticsPane::DisplayedPane() const { return PaneOf(record_->Displayed()); }

DataPane* StatisticsPane::ViewPane() const { return view_ != nullptr && view_->Exists() ? view_ : nullptr; }

std::uint32_t StatisticsPane::MacroNumber(const CoverageInstance& instance, int row) const {
  // Of the instances with this name, so many begin below this one.
  std::ptrdiff_t before =
      std::count_if(record_->instances.begin(), record_->instances.end(), [&](const auto& each) {
        return each.second->functionName == instance.functionName && each.second->start < instance.start;
      });
  const auto& names = record_->functionNames;
  const auto name = std::find_if(names.begin(), names.end(), [&](const std::string& each) {
    return each == instance.functionName && before-- == 0;
  });
  const auto place = name == names.end() ? row : static_cast<int>(name - names.begin());
  return static_cast<std::uint32_t>(place + 1);
}

std::span<const PaneColumn> StatisticsPane::Columns() const {
  return IsFileWindow() ? std::span<const PaneColumn>(kFileColumns)
                        : std::span<const PaneColumn>(kRangeColumns);
}

void StatisticsPane::OnPaneCreated() { ResetList(); }

void StatisticsPane::OnPaneDestroyed() {
  // A frame that the IDE destroys takes its coverage window along.
  if (record_->open) model().Close(*record_);
}

void StatisticsPane::OnResized() {
  if (!record_->instances.empty()) ListInstances(true, -1, -1);
}

void StatisticsPane::ResetList() {
  List().DeleteAllRows();
  List().InsertRow(0);
  ListInstances(true, -1, -1);
}

void StatisticsPane::RefreshFromDebugger() { ListInstances(true, -1, -1); }

void StatisticsPane::ListStale() {
  if (record_->stale.lists) RefreshFromDebugger();
}

void StatisticsPane::RowsStale() {
  StaleWindow& stale = record_->stale;
  DataPane* const displayed = DisplayedPane();
  if (displayed == nullptr) {
    // No range is registered: there are no rows.
    if (stale.rows != StaleRows::kNone && view_ != nullptr) view_->List().DeleteAllRows();
    stale.title = false;
    stale.rows = StaleRows::kNone;
    return;
  }
  const bool titled = stale.title;
  const bool locked = displayed->Instance().refreshLocked != 0;
  const StaleRows level = std::exchange(stale.rows, StaleRows::kNone);
  if (level == StaleRows::kReset) {
    displayed->ResetRows();
  } else if (level == StaleRows::kWrite || (level == StaleRows::kRedraw && !locked)) {
    displayed->RebuildRows(!locked, 0, -1, -1);
  }
  if (titled) displayed->Retitle();
}

void StatisticsPane::Redraw() {
  Invalidate();
  if (DataPane* const view = ViewPane()) view->Invalidate();
}

std::string StatisticsPane::RangeText(const FunctionStat& stat) const {
  if (!stat.name.empty()) return " " + stat.name;
  return platform::Format(" %s- %s", AddressText(host, stat.start).value_or("").c_str(),
                          AddressText(host, stat.end).value_or("").c_str());
}

void StatisticsPane::WriteRow(int row, const FunctionStat& stat) {
  const bool refused = IsFileWindow() && stat.rangeSet != 1;
  const platform::Colour colour = refused ? kRefused : ColourOf(platform::SystemColour::kWindowText);
  List().SetItemTextColoured(row, kNameColumn, IsFileWindow() ? " -" + stat.name : RangeText(stat), colour);
  List().SetItemTextColoured(row, kStatisticColumn, StatisticText(stat), colour);
  List().SetItemTextColoured(
      row, kStatusColumn, " " + coverage::Text(stat.enableStatus == 1 ? strings::kEnable : strings::kDisable),
      colour);
}

void StatisticsPane::ListInstances(bool takeSnapshot, int firstRow, int rowCount) {
  if (!List().Exists()) return;
  CCoverageListCtrl& list = List();
  if (!IsFileWindow()) takeSnapshot = true;
  if (takeSnapshot && firstRow < 0) record_->stale.lists = false;
  if (takeSnapshot) {
    record_->TakeStats();
    UpdateAllEnabled();
  }
  const int count = static_cast<int>(record_->stats.size());
  if (!IsFileWindow()) {
    list.SetRowCount(count);
    for (int row = 0; row < count; ++row) WriteRow(row, record_->stats[static_cast<std::size_t>(row)]);
    return;
  }
  const int page = list.RowsPerPage();
  if (firstRow < 0) firstRow = list.TopRow();
  if (rowCount < 0) rowCount = page;
  if (list.ItemText(firstRow, kNameColumn).empty() && firstRow > page) {
    firstRow -= page;
    rowCount += page;
  }
  const int behind = std::min(count, firstRow + rowCount + 1);
  if (list.RowCount() < behind) list.SetRowCount(behind);
  for (int row = firstRow; row < behind; ++row) WriteRow(row, record_->stats[static_cast<std::size_t>(row)]);
  if (takeSnapshot) list.SetRowCount(count);
}

void StatisticsPane::UpdateAllEnabled() {
  const auto enabled = std::count_if(record_->stats.begin(), record_->stats.end(),
                                     [](const FunctionStat& stat) { return stat.enableStatus == 1; });
  allEnabled_ = enabled == static_cast<std::ptrdiff_t>(record_->stats.size());
}

CoverageModel::InstancePtr StatisticsPane::Selected() const {
  const int row = List().SelectedRow();
  return row < 0 ? nullptr : record_->Instance(static_cast<std::uint32_t>(row + 1));
}

void StatisticsPane::SelectRow() {
  const auto instance = Selected();
  if (!instance) return;
  if (instance->rangeSet != 1) {
    List().SelectRow(-1);
    List().SetFocusRow(-1);
    return;
  }
  if (instance->shown == 0) model().Display(*instance);
}

void StatisticsPane::ApplyFont(std::string_view face, std::int32_t size) {
  CCoverageListCtrl& list = List();
  if (!list.Exists()) return;
  const int top = list.TopRow();
  list.Scroll(-top);
  platform::Font font;
  font.face = face;
  font.height =
      -static_cast<int>((std::int64_t{size} * kPixelsPerInch + kPointsPerInch / 2) / kPointsPerInch);
  list.SetFont(font);
  font.height = platform::Measure(font).height;
  if (face == "Courier New" && std::find(kLowSizes.begin(), kLowSizes.end(), size) != kLowSizes.end()) {
    ++font.height;
  }
  list.SetFont(font);
  list.Invalidate();
  const platform::Rect bounds = Bounds();
  platform::Rect wider = bounds;
  ++wider.right;
  Move(wider);
  Move(bounds);
  list.Scroll(top);
}

void StatisticsPane::ApplyColours(std::string_view category, std::int32_t foreground,
                                  std::int32_t background) {
  if (category != kTextCategory) return;
  List().SetPaneColours(ForegroundOf(foreground), BackgroundOf(background));
}

void StatisticsPane::Sort(int column) {
  const bool ascending = services().history.NextSortAscending(column);
  std::vector<CoverageModel::InstancePtr> order;
  for (const auto& [number, instance] : record_->instances) order.push_back(instance);
  const auto compare = [column](const auto& a, const auto& b) {
    if (column == kNameColumn) return a->functionName < b->functionName;
    if (column == kStatisticColumn) return a->percentage < b->percentage;
    return a->enableStatus < b->enableStatus;
  };
  if (ascending) {
    std::stable_sort(order.begin(), order.end(), compare);
  } else {
    std::stable_sort(order.begin(), order.end(),
                     [&](const auto& left, const auto& right) { return compare(right, left); });
  }
  model().Renumber(*record_, order);
  SelectRow();
}

}  // namespace coverage
