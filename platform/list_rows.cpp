#include "platform/list_rows.h"

namespace platform {

namespace {

const std::string kNoText;

}  // namespace

ListRows::Row& ListRows::Touch(int row) {
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
