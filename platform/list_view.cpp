#include "platform/list_view.h"

#include <algorithm>
#include <cstring>
#include <numeric>

#include "platform/desktop.h"

namespace platform {

namespace {

const std::string kNoText;

/// Where a row's number goes when a row before it comes or goes.
int Shifted(int row, int at, int by) { return row >= at ? row + by : row; }

}  // namespace

ListView::ListView() : Control(ControlKind::kList) {}

ListView::~ListView() { Destroy(); }

// Changes.

void ListView::MarkDirty() {
  if (dirty_) return;
  dirty_ = true;
  Desktop::Get().Tell(*this, Change::kContent);
}

void ListView::Touch(bool ListChanges::*what) {
  changes_.*what = true;
  MarkDirty();
}

void ListView::TouchRows(int first, int last, bool count) {
  if (changes_.Rows()) {
    first = std::min(first, changes_.firstRow);
    last = std::max(last, changes_.lastRow);
  }
  changes_.firstRow = first;
  changes_.lastRow = last;
  changes_.rowCount = changes_.rowCount || count;
  MarkDirty();
}

ListChanges ListView::TakeChanges() {
  dirty_ = false;
  ListChanges taken = changes_;
  taken.lastRow = std::min(taken.lastRow, RowCount() - 1);
  changes_ = {};
  return taken;
}

// Columns.

int ListView::InsertColumn(int index, std::string_view heading, ColumnFormat format, int width, int subItem) {
  if (index < 0) return -1;
  index = std::min(index, ColumnCount());
  if (index < ColumnCount()) rows_.InsertColumn(index);
  for (int& place : header_.order_) place = Shifted(place, index, 1);
  const auto at = static_cast<std::ptrdiff_t>(index);
  header_.columns_.insert(header_.columns_.begin() + at,
                          {std::string(heading), format, std::max(width, 0), subItem < 0 ? index : subItem});
  header_.order_.insert(header_.order_.begin() + at, index);
  LayOutHeader();
  return index;
}

bool ListView::DeleteColumn(int index) {
  if (index < 0 || index >= ColumnCount()) return false;
  rows_.EraseColumn(index);
  std::erase(header_.order_, index);
  for (int& place : header_.order_) place = Shifted(place, index, -1);
  header_.columns_.erase(header_.columns_.begin() + index);
  LayOutHeader();
  return true;
}

const Column* ListView::ColumnOf(int index) const {
  return index >= 0 && index < ColumnCount() ? &header_.columns_[static_cast<std::size_t>(index)] : nullptr;
}

int ListView::ColumnWidth(int index) const {
  const Column* column = ColumnOf(index);
  return column ? column->width : 0;
}

bool ListView::SetColumnWidth(int index, int width) {
  if (!ColumnOf(index)) return false;
  int& current = header_.columns_[static_cast<std::size_t>(index)].width;
  if (current == std::max(width, 0)) return true;
  current = std::max(width, 0);
  LayOutHeader();
  return true;
}

std::string ListView::ColumnHeading(int index) const {
  const Column* column = ColumnOf(index);
  return column ? column->heading : std::string();
}

bool ListView::SetColumnHeading(int index, std::string_view heading) {
  if (!ColumnOf(index)) return false;
  header_.columns_[static_cast<std::size_t>(index)].heading = heading;
  Touch(&ListChanges::columns);
  return true;
}

ColumnFormat ListView::FormatOf(int index) const {
  const Column* column = ColumnOf(index);
  return column ? column->format : ColumnFormat::kLeft;
}

bool ListView::SetColumnOrder(const std::vector<int>& order) {
  std::vector<int> sorted = order;
  std::sort(sorted.begin(), sorted.end());
  std::vector<int> expected(static_cast<std::size_t>(ColumnCount()));
  std::iota(expected.begin(), expected.end(), 0);
  if (sorted != expected) return false;
  header_.order_ = order;
  Touch(&ListChanges::columns);
  return true;
}

void ListView::FitColumns() {
  const Rect client = ClientRect();
  std::vector<int> visible = header_.order_;
  std::erase_if(visible, [this](int column) { return ColumnWidth(column) == 0; });
  if (client.Empty() || visible.empty()) return;
  const int margin = Measure(CurrentFont()).averageWidth * 3 / 2;
  const int end = EndOfVisibleRows();
  int left = client.Width();
  for (const int index : visible) {
    Column& column = header_.columns_[static_cast<std::size_t>(index)];
    int width = TextWidth(CurrentFont(), column.heading);
    if (index == visible.back()) {
      column.width = std::max(width + margin, left);
      break;
    }
    for (int row = top_; row < end; ++row) {
      width = std::max(width, TextWidth(CurrentFont(), rows_.Text(row, index)));
    }
    column.width = width + margin;
    left -= column.width;
  }
  LayOutHeader();
}

void ListView::LayOutHeader() {
  int width = 0;
  for (const Column& column : header_.columns_) width += column.width;
  // Never empty: a header whose columns are all hidden still has its menu.
  if (header_.Exists()) header_.Move({0, 0, std::max({width, ClientRect().Width(), 1}), HeaderHeight()});
  Touch(&ListChanges::columns);
}

// Rows.

int ListView::InsertRow(int row, std::string_view firstCell, int image) {
  if (row < 0 || RowCount() >= ListRows::kMaxRows) return -1;
  row = std::min(row, RowCount());
  rows_.Insert(row);
  if (!firstCell.empty()) rows_.SetText(row, 0, firstCell);
  if (image >= 0) rows_.SetImage(row, image);
  selected_ = Shifted(selected_, row, 1);
  focusRow_ = Shifted(focusRow_, row, 1);
  mark_ = Shifted(mark_, row, 1);
  TouchRows(row, RowCount() - 1, true);
  return row;
}

void ListView::SetRowCount(int count) {
  count = std::clamp(count, 0, ListRows::kMaxRows);
  const int before = RowCount();
  if (count == before) return;
  rows_.Resize(count);
  RowsGone();
  TouchRows(std::min(before, count), std::max(before, count) - 1, true);
}

bool ListView::DeleteRow(int row) {
  if (row < 0 || row >= RowCount()) return false;
  rows_.Erase(row);
  selected_ = selected_ == row ? -1 : Shifted(selected_, row, -1);
  mark_ = mark_ == row ? -1 : Shifted(mark_, row, -1);
  // The focus stays in its place, on the row that moves up into it.
  if (focusRow_ > row) --focusRow_;
  RowsGone();
  TouchRows(row, std::max(row, RowCount() - 1), true);
  return true;
}

void ListView::DeleteAllRows() {
  const int before = RowCount();
  if (before == 0) return;
  rows_.Clear();
  RowsGone();
  TouchRows(0, before - 1, true);
}

void ListView::RowsGone() {
  const int last = RowCount() - 1;
  if (selected_ > last) selected_ = -1;
  if (mark_ > last) mark_ = -1;
  focusRow_ = std::min(focusRow_, last);
  SetTop(top_);
}

bool ListView::SetItemText(int row, int column, std::string_view text) {
  if (row < 0 || row >= RowCount() || !ColumnOf(column)) return false;
  if (rows_.SetText(row, column, text)) TouchRows(row, row, false);
  return true;
}

const std::string& ListView::ItemText(int row, int column) const {
  return ColumnOf(column) ? rows_.Text(row, column) : kNoText;
}

int ListView::GetItemText(int row, int column, char* buffer, int size) const {
  if (!buffer || size <= 0) return 0;
  const std::string& text = ItemText(row, column);
  const std::size_t copied = std::min(text.size(), static_cast<std::size_t>(size) - 1);
  std::memcpy(buffer, text.data(), copied);
  buffer[copied] = '\0';
  return static_cast<int>(copied);
}

bool ListView::SetItemImage(int row, int image) {
  if (row < 0 || row >= RowCount()) return false;
  rows_.SetImage(row, image);
  TouchRows(row, row, false);
  return true;
}

bool ListView::SetItemData(int row, std::uintptr_t data) {
  if (row < 0 || row >= RowCount()) return false;
  rows_.SetData(row, data);
  return true;
}

// Selection and focus.

void ListView::TellItemChanged(int row) {
  Touch(&ListChanges::selection);
  Notification news;
  news.code = notify::kItemChanged;
  news.row = row;
  Notify(news);
}

void ListView::SelectRow(int row) {
  if (row < 0 || row >= RowCount()) row = -1;
  if (row == selected_) return;
  const int before = selected_;
  selected_ = row;
  if (row >= 0) mark_ = row;
  TellItemChanged(row >= 0 ? row : before);
}

void ListView::SetFocusRow(int row) {
  if (row < 0 || row >= RowCount()) row = -1;
  if (row == focusRow_) return;
  const int before = focusRow_;
  focusRow_ = row;
  TellItemChanged(row >= 0 ? row : before);
}

// Places and scrolling.

int ListView::RowHeight() const { return Measure(CurrentFont()).height + 1; }

int ListView::HeaderHeight() const { return Measure(CurrentFont()).height + 4; }

int ListView::RowsPerPage() const {
  return std::max(0, (ClientRect().Height() - HeaderHeight()) / RowHeight());
}

int ListView::MaxTop() const {
  const int page = RowsPerPage();
  return page == 0 ? 0 : std::max(0, RowCount() - page);
}

bool ListView::SetTop(int row) {
  row = std::clamp(row, 0, MaxTop());
  if (row == top_) return false;
  top_ = row;
  Touch(&ListChanges::scrolled);
  return true;
}

bool ListView::Scroll(int lines) {
  lines = std::clamp(lines, -ListRows::kMaxRows, ListRows::kMaxRows - 1);
  return SetTop(top_ + lines);
}

bool ListView::EnsureVisible(int row) {
  if (row < 0 || row >= RowCount()) return false;
  const int page = std::max(1, RowsPerPage());
  if (row < top_) {
    SetTop(row);
  } else if (row >= top_ + page) {
    SetTop(row - page + 1);
  }
  return true;
}

int ListView::EndOfVisibleRows() const {
  const int room = std::max(0, ClientRect().Height() - HeaderHeight());
  return std::min(RowCount(), top_ + (room + RowHeight() - 1) / RowHeight());
}

Rect ListView::RowRect(int row) const {
  int width = 0;
  for (const Column& column : header_.columns_) width += column.width;
  const int top = HeaderHeight() + (row - top_) * RowHeight();
  return {0, top, width, top + RowHeight()};
}

int ListView::RowAt(Point at) const {
  if (at.y < HeaderHeight() || at.x < 0) return -1;
  const int row = top_ + (at.y - HeaderHeight()) / RowHeight();
  return row < RowCount() ? row : -1;
}

int ListView::ColumnAt(int x) const {
  int left = 0;
  for (const int index : header_.order_) {
    const int width = ColumnWidth(index);
    if (x >= left && x < left + width) return index;
    left += width;
  }
  return -1;
}

void ListView::SetFont(const Font& font) {
  Control::SetFont(font);
  header_.SetFont(font);
  LayOutHeader();
  SetTop(top_);
}

// Drawing.

void ListView::Draw(DrawContext& context) {
  const int end = EndOfVisibleRows();
  const bool focused = HasFocus();
  const bool showsSelection = focused || (Style() & list_style::kShowSelectionAlways) != 0;
  context.SetFont(CurrentFont());
  for (int row = top_; row < end; ++row) {
    DrawItemInfo item;
    item.row = row;
    if (row == selected_ && showsSelection) item.state |= DrawItemInfo::kSelected;
    if (row == focusRow_) item.state |= DrawItemInfo::kFocused;
    item.rect = RowRect(row);
    DrawItem(item, context);
  }
}

void ListView::DrawItem(const DrawItemInfo& item, DrawContext& context) {
  const bool selected = (item.state & DrawItemInfo::kSelected) != 0;
  context.SetTextColour(ColourOf(selected ? SystemColour::kHighlightText : SystemColour::kWindowText));
  context.SetBackColour(ColourOf(selected ? SystemColour::kHighlight : SystemColour::kWindow));
  context.FillRect(item.rect, context.BackColour());
  Rect cell = item.rect;
  for (const int index : header_.order_) {
    cell.right = cell.left + ColumnWidth(index);
    if (!cell.Empty()) context.DrawText(ItemText(item.row, index), cell);
    cell.left = cell.right;
  }
  if ((item.state & DrawItemInfo::kFocused) != 0 && HasFocus()) context.DrawFocusRect(item.rect);
}

}  // namespace platform
