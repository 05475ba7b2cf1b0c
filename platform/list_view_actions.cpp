#include <algorithm>
#include <cstdlib>

#include "platform/desktop.h"
#include "platform/list_view.h"

/// What a person does with a list, and the messages that come of it.
namespace platform {

namespace {

Notification News(int code, int row, int column = -1) {
  Notification news;
  news.code = code;
  news.row = row;
  news.column = column;
  return news;
}

}  // namespace

bool ListView::MoveSelection(int row) {
  const WindowRef self(*this);
  SetFocusRow(row);
  if (self) SelectRow(row);
  return static_cast<bool>(self);
}

bool ListView::PressOn(int row) {
  const WindowRef self(*this);
  SetFocus();
  if (!self) return false;
  if (row >= 0 && row < RowCount()) return MoveSelection(row);
  SelectRow(-1);
  return static_cast<bool>(self);
}

bool ListView::Click(int row) {
  if (!CanBeUsed()) return false;
  const Desktop::Busy busy;
  if (row >= RowCount()) row = -1;
  if (PressOn(row)) Notify(News(notify::kClick, row));
  return true;
}

bool ListView::DoubleClick(int row) {
  if (!CanBeUsed()) return false;
  const Desktop::Busy busy;
  const WindowRef self(*this);
  Click(row);
  if (self) Notify(News(notify::kDoubleClick, row < RowCount() ? row : -1));
  return true;
}

bool ListView::BeginDrag(int row) {
  if (!CanBeUsed() || row < 0 || row >= RowCount()) return false;
  const Desktop::Busy busy;
  if (PressOn(row)) Notify(News(notify::kBeginDrag, row));
  return true;
}

bool ListView::ClickHeader(int column) {
  if (!CanBeUsed() || ColumnWidth(column) == 0) return false;
  const Desktop::Busy busy;
  Notify(News(notify::kColumnClick, -1, column));
  return true;
}

bool ListView::DragColumnWidth(int column, int width) { return CanBeUsed() && SetColumnWidth(column, width); }

bool ListView::DragColumnOrder(int column, int position) {
  if (!CanBeUsed() || !ColumnOf(column) || position < 0 || position >= ColumnCount()) return false;
  std::vector<int> order = header_.Order();
  std::erase(order, column);
  order.insert(order.begin() + position, column);
  return SetColumnOrder(order);
}

bool ListView::Key(std::uint32_t virtualKey, std::uint8_t modifiers) {
  if (!CanBeUsed()) return false;
  const Desktop::Busy busy;
  const WindowRef self(*this);
  SetFocus();
  if (self) TypeKey(*this, virtualKey, modifiers);
  return true;
}

void ListView::MoveBy(std::uint32_t virtualKey) {
  const int count = RowCount();
  if (count == 0) return;
  const int page = std::max(1, RowsPerPage());
  const int now = focusRow_;
  const int bottom = top_ + page - 1;
  int next;
  switch (virtualKey) {
    case key::kUp:
      next = now - 1;
      break;
    case key::kDown:
      next = now + 1;
      break;
    case key::kPageUp:
      next = now > top_ ? top_ : now - (page - 1);
      break;
    case key::kPageDown:
      next = now < bottom ? bottom : now + (page - 1);
      break;
    case key::kHome:
      next = 0;
      break;
    case key::kEnd:
      next = count - 1;
      break;
    default:
      return;
  }
  next = std::clamp(next, 0, count - 1);
  if (MoveSelection(next)) EnsureVisible(next);
}

void ListView::OnKeyDown(std::uint32_t virtualKey) {
  const WindowRef self(*this);
  Notification news = News(notify::kKeyDown, focusRow_);
  news.key = virtualKey;
  Notify(news);
  if (!self) return;
  if (virtualKey == key::kReturn) {
    Notify(News(notify::kReturn, focusRow_));
  } else if (virtualKey == key::kSpace) {
    if (focusRow_ >= 0) SelectRow(focusRow_);
  } else {
    MoveBy(virtualKey);
  }
}

bool ListView::ScrollLines(int lines) {
  if (!CanBeUsed()) return false;
  const int page = std::max(1, RowsPerPage());
  std::uint16_t code;
  if (std::abs(lines) == 1) {
    code = lines < 0 ? scroll_code::kLineUp : scroll_code::kLineDown;
  } else if (std::abs(lines) == page) {
    code = lines < 0 ? scroll_code::kPageUp : scroll_code::kPageDown;
  } else {
    lines = std::clamp(lines, -ListRows::kMaxRows, ListRows::kMaxRows - 1);
    return ScrollTo(top_ + lines);
  }
  Send(message::kVScroll, Pack(code, 0));
  return true;
}

bool ListView::ScrollTo(int topRow) {
  if (!CanBeUsed()) return false;
  const Desktop::Busy busy;
  const WindowRef self(*this);
  track_ = std::clamp(topRow, 0, MaxTop());
  Send(message::kVScroll, Pack(scroll_code::kThumbPosition, track_));
  if (self) track_ = -1;
  return true;
}

void ListView::ScrollByCode(const Message& message) {
  const int page = std::max(1, RowsPerPage());
  switch (message.ScrollCode()) {
    case scroll_code::kLineUp:
      Scroll(-1);
      break;
    case scroll_code::kLineDown:
      Scroll(1);
      break;
    case scroll_code::kPageUp:
      Scroll(-page);
      break;
    case scroll_code::kPageDown:
      Scroll(page);
      break;
    case scroll_code::kThumbPosition:
    case scroll_code::kThumbTrack:
      // The message has room for 16 bits only.
      SetTop(track_ >= 0 ? track_ : HighWord(message.w));
      break;
    case scroll_code::kTop:
      SetTop(0);
      break;
    case scroll_code::kBottom:
      SetTop(MaxTop());
      break;
    default:
      break;
  }
}

bool ListView::Wheel(int notches) {
  if (!CanBeUsed()) return false;
  constexpr int kMost = 270;  // the distance is a signed 16-bit number
  Send(message::kMouseWheel, Pack(0, std::clamp(notches, -kMost, kMost) * 120));
  return true;
}

bool ListView::ContextMenu(Point at) {
  if (!CanBeUsed()) return false;
  const Desktop::Busy busy;
  const WindowRef self(*this);
  const bool onHeader = header_.Bounds().Contains(at);
  const int row = onHeader ? -1 : RowAt(at);
  if (row >= 0 && !PressOn(row)) return true;
  if (!self) return true;
  const Rect screen = ScreenRect();
  Send(message::kContextMenu, onHeader ? header_.Handle() : Handle(),
       static_cast<LParam>(Pack(screen.left + at.x, screen.top + at.y)));
  return true;
}

bool ListView::ContextMenuOnRow(int row) {
  if (!CanBeUsed() || !EnsureVisible(row)) return false;
  const Rect rect = RowRect(row);
  return ContextMenu({rect.left, rect.top + rect.Height() / 2});
}

bool ListView::ContextMenuOnHeader(int column) {
  if (!CanBeUsed() || !ColumnOf(column)) return false;
  int left = 0;
  for (const int index : header_.Order()) {
    if (index == column) break;
    left += ColumnWidth(index);
  }
  return ContextMenu({left, HeaderHeight() / 2});
}

void ListView::Resize(int rows) {
  Rect bounds = Bounds();
  bounds.bottom = bounds.top + HeaderHeight() + std::clamp(rows, 0, 100000) * RowHeight();
  if (bounds.Width() <= 0) bounds.right = bounds.left + std::max(1, RowRect(0).Width());
  Move(bounds);
}

LResult ListView::OnMessage(const Message& message) {
  switch (message.id) {
    case message::kCreate:
      header_.Create(Handle(), 0, {}, window_style::kChild | window_style::kVisible);
      LayOutHeader();
      return 0;
    case message::kSize:
      LayOutHeader();
      SetTop(top_);
      return 0;
    case message::kKeyDown:
      OnKeyDown(static_cast<std::uint32_t>(message.w));
      return 0;
    case message::kKeyUp: {
      Notification news = News(notify::kKeyUp, focusRow_);
      news.key = static_cast<std::uint32_t>(message.w);
      Notify(news);
      return 0;
    }
    case message::kVScroll:
      ScrollByCode(message);
      return 0;
    case message::kMouseWheel:
      Scroll(-3 * (message.WheelDistance() / 120));
      return 0;
    case message::kSetFocus:
    case message::kKillFocus:
      Touch(&ListChanges::selection);
      return 0;
    default:
      return Control::OnMessage(message);
  }
}

}  // namespace platform
