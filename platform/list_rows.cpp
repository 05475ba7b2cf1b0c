#include "platform/list_rows.h"

#include <algorithm>

namespace platform {

namespace {

const std::string kNoText;

}  // namespace

void ListRows::Insert(int row) {
  rows_.emplace(rows_.begin() + row);
  ++count_;
  if (row < writtenEnd_) ++writtenEnd_;
}

void ListRows::Erase(int row) {
  rows_.erase(rows_.begin() + row);
  --count_;
  if (row < writtenEnd_) --writtenEnd_;
}

void ListRows::Resize(int count) {
  for (; writtenEnd_ > count; --writtenEnd_) rows_[static_cast<std::size_t>(writtenEnd_ - 1)].reset();
  const auto rows = static_cast<std::size_t>(count);
  if (rows > rows_.size()) rows_.resize(rows);
  count_ = count;
}

void ListRows::Clear() {
  rows_.clear();
  count_ = writtenEnd_ = 0;
}

ListRows::Row& ListRows::Touch(int row) {
  writtenEnd_ = std::max(writtenEnd_, row + 1);
  auto& place = rows_[static_cast<std::size_t>(row)];
  if (!place) place = std::make_unique<Row>();
  return *place;
}

void ListRows::InsertColumn(int column) {
  for (const auto& row : rows_) {
    if (row && row->cells.size() > static_cast<std::size_t>(column))
      row->cells.emplace(row->cells.begin() + column);
  }
}

void ListRows::EraseColumn(int column) {
  for (const auto& row : rows_) {
    if (row && row->cells.size() > static_cast<std::size_t>(column))
      row->cells.erase(row->cells.begin() + column);
  }
}

const std::string& ListRows::Text(int row, int column) const {
  const Row* found = Find(row);
  return found && column >= 0 && static_cast<std::size_t>(column) < found->cells.size()
             ? found->cells[static_cast<std::size_t>(column)]
             : kNoText;
}

bool ListRows::SetText(int row, int column, std::string_view text) {
  if (Text(row, column) == text) return false;
  auto& cells = Touch(row).cells;
  const auto place = static_cast<std::size_t>(column);
  if (cells.size() <= place) cells.resize(place + 1);
  cells[place] = text;
  return true;
}

int ListRows::Image(int row) const {
  const Row* found = Find(row);
  return found ? found->image : -1;
}

std::uintptr_t ListRows::Data(int row) const {
  const Row* found = Find(row);
  return found ? found->data : 0;
}

}  // namespace platform
