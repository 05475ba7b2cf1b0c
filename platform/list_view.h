#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/api.h"
#include "platform/controls.h"
#include "platform/draw_context.h"
#include "platform/list_rows.h"

/// Lists in report style: rows of cells under a header, single selection. User-interface thread.
namespace platform {

namespace list_style {
inline constexpr std::uint32_t kReport = 0x1;
inline constexpr std::uint32_t kSingleSelection = 0x4;
inline constexpr std::uint32_t kShowSelectionAlways = 0x8;
inline constexpr std::uint32_t kOwnerDrawFixed = 0x400;
}  // namespace list_style

enum class ColumnFormat : std::uint8_t { kLeft, kRight, kCentre };

struct Column {
  std::string heading;
  ColumnFormat format = ColumnFormat::kLeft;
  int width = 0;  ///< 0 hides the column
  int subItem = 0;
};

/// What DrawItem is to draw.
struct DrawItemInfo {
  static constexpr std::uint32_t kEntire = 1, kSelectionChange = 2, kFocusChange = 4;  // action
  static constexpr std::uint32_t kSelected = 1, kFocused = 16;                         // state

  int row = 0;
  std::uint32_t action = kEntire;
  std::uint32_t state = 0;
  Rect rect;  ///< of the row, in the list's client area
};

/// What changed since the list was last shown. Rows outside [firstRow, lastRow] are as they were.
struct ListChanges {
  int firstRow = 0;
  int lastRow = -1;
  bool rowCount = false;   ///< rows came or went: everything below firstRow may have moved
  bool columns = false;    ///< headings, widths, order, number
  bool scrolled = false;   ///< another top row
  bool selection = false;  ///< selected or focused row

  bool Rows() const { return firstRow <= lastRow; }
};

/// The heading line, a window of its own inside the list.
class PLATFORM_API HeaderControl : public Window {
 public:
  /// Number of columns.
  int ItemCount() const { return static_cast<int>(columns_.size()); }
  /// Positions of the columns from left to right.
  const std::vector<int>& Order() const { return order_; }

 private:
  friend class ListView;
  std::vector<Column> columns_;
  std::vector<int> order_;
};

class PLATFORM_API ListView : public Control {
 public:
  ListView();
  ~ListView() override;

  const HeaderControl& Header() const { return header_; }
  HeaderControl& Header() { return header_; }

  // Columns. An index outside the columns changes nothing and gives -1, 0 or an empty text.

  /// Index of the new column, -1 for a negative one. The cells behind it move with their columns.
  int InsertColumn(int index, std::string_view heading, ColumnFormat format, int width, int subItem = -1);
  bool DeleteColumn(int index);
  int ColumnCount() const { return header_.ItemCount(); }
  int ColumnWidth(int index) const;
  bool SetColumnWidth(int index, int width);
  std::string ColumnHeading(int index) const;
  bool SetColumnHeading(int index, std::string_view heading);
  ColumnFormat FormatOf(int index) const;
  bool SetColumnOrder(const std::vector<int>& order);
  /// Makes each visible column as wide as its heading or the widest text that can be seen in it, with a
  /// margin of one and a half characters. The last of them takes the width that is left, but never less than
  /// its heading needs. Hidden columns stay hidden; a list without a size keeps its widths.
  void FitColumns();

  // Rows. A million empty rows cost eight megabytes, until all rows are deleted; texts are kept for cells
  // that have been set.

  int RowCount() const { return rows_.Count(); }
  /// Inserts before `row` (at the end when it is beyond); gives its index, -1 for a negative one or beyond
  /// 2^30 rows.
  int InsertRow(int row, std::string_view firstCell = {}, int image = -1);
  /// Adds or removes rows at the end.
  void SetRowCount(int count);
  bool DeleteRow(int row);
  void DeleteAllRows();

  /// False outside rows and columns.
  bool SetItemText(int row, int column, std::string_view text);
  /// The whole text; empty outside rows and columns.
  const std::string& ItemText(int row, int column) const;
  /// Copies at most size - 1 bytes and a zero behind them; gives the number of bytes copied.
  int GetItemText(int row, int column, char* buffer, int size) const;
  int ItemImage(int row) const { return rows_.Image(row); }
  bool SetItemImage(int row, int image);
  /// A number of the program's, 0 at start.
  std::uintptr_t ItemData(int row) const { return rows_.Data(row); }
  bool SetItemData(int row, std::uintptr_t data);
  /// Small pictures for SetItemImage: a bitmap of square images side by side.
  void SetImageBitmap(std::uint32_t bitmapId) { imageBitmap_ = bitmapId; }
  std::uint32_t ImageBitmap() const { return imageBitmap_; }

  // Selection and focus; -1 is none. A change is told to the parent (notify::kItemChanged).

  int SelectedRow() const { return selected_; }
  int FocusRow() const { return focusRow_; }
  /// Row that was selected last, even when it is not selected any more.
  int SelectionMark() const { return mark_; }
  void SelectRow(int row);
  void SetFocusRow(int row);

  // Scrolling by the program: no scroll messages.

  int TopRow() const { return top_; }
  int RowsPerPage() const;
  int RowHeight() const;
  int HeaderHeight() const;
  /// Moves the top row by so many lines, as far as it goes. False when it did not move.
  bool Scroll(int lines);
  /// Scrolls as little as needed to show the whole row.
  bool EnsureVisible(int row);
  /// Row that the scroll bar is dragged to while a thumb message is handled, else -1.
  int TrackPosition() const { return track_; }

  // Places, in the list's client area. The horizontal offset is always 0.

  Rect RowRect(int row) const;
  /// Row at a point, -1 outside the rows.
  int RowAt(Point at) const;
  /// Column of the header at a horizontal place, -1 behind the last.
  int ColumnAt(int x) const;

  /// Draws the rows that are visible now through DrawItem.
  void Draw(DrawContext& context);
  /// Draws one row. The plain drawing uses the system colours and leaves no padding.
  virtual void DrawItem(const DrawItemInfo& item, DrawContext& context);

  // The person's actions; false when the list cannot be used. Each does what the desktop's own list does,
  // with the messages and notifications of it; afterwards the list may be gone.

  /// Outside the rows (-1) it takes the selection away.
  bool Click(int row);
  bool DoubleClick(int row);
  bool BeginDrag(int row);
  bool ClickHeader(int column);
  bool DragColumnWidth(int column, int width);
  bool DragColumnOrder(int column, int position);
  bool Key(std::uint32_t virtualKey, std::uint8_t modifiers = 0);
  /// By the scroll bar: one line or page as such, other distances by dragging.
  bool ScrollLines(int lines);
  bool ScrollTo(int topRow);
  /// Notches, up positive, three lines each.
  bool Wheel(int notches);
  /// Right button at a point of the client area; on the header when it lies there.
  bool ContextMenu(Point at);
  bool ContextMenuOnRow(int row);
  bool ContextMenuOnHeader(int column);
  /// Makes room for so many whole rows.
  void Resize(int rows);

  void SetFont(const Font& font) override;

  /// What changed since the last call, for whoever shows the list. The presenter is told (Change::kContent)
  /// when the first change after it comes.
  ListChanges TakeChanges();

 protected:
  LResult OnMessage(const Message& message) override;
  bool OwnerDrawn() const { return (Style() & list_style::kOwnerDrawFixed) != 0; }

 private:
  const Column* ColumnOf(int index) const;
  /// The row after the last one of which something can be seen.
  int EndOfVisibleRows() const;
  void LayOutHeader();
  /// Brings selection, focus and top row back inside the rows.
  void RowsGone();
  void TellItemChanged(int row);
  int MaxTop() const;
  bool SetTop(int row);
  void ScrollByCode(const Message& message);
  void OnKeyDown(std::uint32_t virtualKey);
  void MoveBy(std::uint32_t virtualKey);
  /// Focus to the list, selection and focus row to the row; false when the list is gone afterwards.
  bool PressOn(int row);
  bool MoveSelection(int row);

  void TouchRows(int first, int last, bool count);
  void Touch(bool ListChanges::*what);
  void MarkDirty();

  HeaderControl header_;
  ListRows rows_;
  int selected_ = -1;
  int focusRow_ = -1;
  int mark_ = -1;
  int top_ = 0;
  int track_ = -1;
  std::uint32_t imageBitmap_ = 0;
  ListChanges changes_;
  bool dirty_ = false;
};

}  // namespace platform
