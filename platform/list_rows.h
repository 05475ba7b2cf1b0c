#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/api.h"

namespace platform {

/// Storage of a list's rows. A row that nobody has written to is one null pointer; cells exist up to the last
/// one that was set. Rows outside the count read as empty.
class PLATFORM_API ListRows {
 public:
  /// More than any list shows; every row takes the room of a pointer.
  static constexpr int kMaxRows = 1 << 24;

  int Count() const { return count_; }
  void Insert(int row);
  void Erase(int row);
  /// Taking away rows that nobody has written to costs nothing.
  void Resize(int count);
  void Clear();
  /// Shifts the cells of every row behind a column that came or went.
  void InsertColumn(int column);
  void EraseColumn(int column);

  const std::string& Text(int row, int column) const;
  /// False when the text was the same before.
  bool SetText(int row, int column, std::string_view text);
  int Image(int row) const;
  void SetImage(int row, int image) { Touch(row).image = image; }
  std::uintptr_t Data(int row) const;
  void SetData(int row, std::uintptr_t data) { Touch(row).data = data; }

 private:
  struct Row {
    std::vector<std::string> cells;
    std::uintptr_t data = 0;
    int image = -1;
  };

  const Row* Find(int row) const {
    return row >= 0 && row < Count() ? rows_[static_cast<std::size_t>(row)].get() : nullptr;
  }
  Row& Touch(int row);

  std::deque<std::unique_ptr<Row>> rows_;  ///< with null ones beyond the count
  int count_ = 0;
  int writtenEnd_ = 0;  ///< from here on nobody has written to a row
};

}  // namespace platform
