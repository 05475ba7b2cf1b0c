#include "panes/statistics_pane.h"

#include <algorithm>
#include <array>

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

StatisticsPane::CJepCoverageInstanceCtrlStatData(qal::IQHost* hostObject, CUiCustomizer* customizerObject,
                                                 PaneHost& owner, WindowKind kind, std::uint32_t start,
                                                 std::uint32_t end)
    : CJepDebugInstanceDataCtrl(hostObject, customizerObject, owner, kClassName) {
  record_.kind = kind;
  record_.start = start;
  record_.end = end;
}

StatisticsPane::~CJepCoverageInstanceCtrlStatData() { RemoveAllPanes(); }

std::uint32_t StatisticsPane::AddPane(DataPane& pane) {
  const auto number = static_cast<std::uint32_t>(panes_.size() + 1);
  panes_[number] = &pane;
  record_.instances[number] = &pane.Instance();
  pane.SetStatistics(this);
  return number;
}

void StatisticsPane::Renumber(const std::vector<DataPane*>& order) {
  panes_.clear();
  record_.instances.clear();
  for (DataPane* pane : order) AddPane(*pane);
}

void StatisticsPane::RemovePane(DataPane& pane) {
  std::vector<DataPane*> rest;
  for (const auto& [number, each] : panes_) {
    if (each != &pane) rest.push_back(each);
  }
  pane.SetStatistics(nullptr);
  Renumber(rest);
}

void StatisticsPane::RemoveAllPanes() {
  for (const auto& [number, pane] : panes_) pane->SetStatistics(nullptr);
  panes_.clear();
  record_.instances.clear();
}

DataPane* StatisticsPane::Pane(std::uint32_t number) const {
  const auto found = panes_.find(number);
  return found == panes_.end() ? nullptr : found->second;
}

DataPane* StatisticsPane::DisplayedPane() const {
  for (const auto& [number, pane] : panes_) {
    if (pane->Instance().shown != 0) return pane;
  }
  return Pane(1);
}

DataPane* StatisticsPane::ViewPane() const {
  for (const auto& [number, pane] : panes_) {
    if (pane->Exists()) return pane;
  }
  return nullptr;
}

void StatisticsPane::Display(DataPane& pane) {
  for (const auto& [number, each] : panes_) each->Instance().shown = each == &pane ? 1 : 0;
  pane.Retitle();
  pane.ResetRows();
}

void StatisticsPane::DisplayRegistered() {
  const DataPane* displayed = DisplayedPane();
  if (!displayed || displayed->Instance().rangeSet != 0) return;
  for (const auto& [number, pane] : panes_) {
    if (pane->Instance().rangeSet != 0) return Display(*pane);
  }
}

std::uint32_t StatisticsPane::MacroNumber(const std::string& functionName, int row) const {
  const auto name = std::find(functionNames_.begin(), functionNames_.end(), functionName);
  const auto place = name == functionNames_.end() ? row : static_cast<int>(name - functionNames_.begin());
  return static_cast<std::uint32_t>(place + 1);
}

std::span<const PaneColumn> StatisticsPane::Columns() const {
  return IsFileWindow() ? std::span<const PaneColumn>(kFileColumns)
                        : std::span<const PaneColumn>(kRangeColumns);
}

void StatisticsPane::OnPaneCreated() { ResetList(); }

void StatisticsPane::OnResized() {
  if (Pane(1)) ListInstances(true, -1, -1);
}

void StatisticsPane::ResetList() {
  List().DeleteAllRows();
  List().InsertRow(0);
  ListInstances(true, -1, -1);
}

void StatisticsPane::RefreshFromDebugger() { ListInstances(true, -1, -1); }

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
  if (takeSnapshot) {
    record_.TakeStats();
    UpdateAllEnabled();
  }
  const int count = static_cast<int>(record_.stats.size());
  if (!IsFileWindow()) {
    list.SetRowCount(count);
    for (int row = 0; row < count; ++row) WriteRow(row, record_.stats[static_cast<std::size_t>(row)]);
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
  for (int row = firstRow; row < behind; ++row) WriteRow(row, record_.stats[static_cast<std::size_t>(row)]);
  if (takeSnapshot) list.SetRowCount(count);
}

void StatisticsPane::UpdateAllEnabled() {
  const auto enabled = std::count_if(record_.stats.begin(), record_.stats.end(),
                                     [](const FunctionStat& stat) { return stat.enableStatus == 1; });
  allEnabled_ = enabled == static_cast<std::ptrdiff_t>(record_.stats.size());
}

DataPane* StatisticsPane::SelectedPane() const {
  const int row = List().SelectedRow();
  return row < 0 ? nullptr : Pane(static_cast<std::uint32_t>(row + 1));
}

void StatisticsPane::SelectRow() {
  DataPane* pane = SelectedPane();
  if (!pane) return;
  if (pane->Instance().rangeSet != 1) {
    List().SelectRow(-1);
    List().SetFocusRow(-1);
    return;
  }
  if (pane->Instance().shown == 0) Display(*pane);
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
  const bool ascending = owner().NextSortAscending(column);
  std::vector<DataPane*> order;
  for (const auto& [number, pane] : panes_) order.push_back(pane);
  const auto compare = [column](const DataPane* left, const DataPane* right) {
    const CoverageInstance& a = left->Instance();
    const CoverageInstance& b = right->Instance();
    if (column == kNameColumn) return a.functionName < b.functionName;
    if (column == kStatisticColumn) return a.percentage < b.percentage;
    return a.enableStatus < b.enableStatus;
  };
  if (ascending) {
    std::stable_sort(order.begin(), order.end(), compare);
  } else {
    std::stable_sort(order.begin(), order.end(),
                     [&](const DataPane* left, const DataPane* right) { return compare(right, left); });
  }
  Renumber(order);
  ListInstances(true, -1, -1);
  SelectRow();
}

}  // namespace coverage
