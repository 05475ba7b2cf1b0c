#include "formatview/report_list.h"

#include <string>

#include "platform/menu.h"
#include "platform/text.h"

namespace coverage {
namespace {

/// No colour was recorded for a cell. Colours have 24 bits.
constexpr platform::Colour kNoColour = 0xFFFFFFFF;
constexpr int kFirstBuffer = 3000;
constexpr std::size_t kHeadingBytes = 126;
/// Stored for a column that the platform could not measure.
constexpr int kUnknownWidth = -1;

std::string WidthKey(int column) { return "ColWidth" + std::to_string(column); }

}  // namespace

bool CUiReportListCtrl::CreateList(std::uint32_t style, const platform::Rect& bounds,
                                   platform::Window& parent, std::uint32_t id,
                                   std::uint32_t /*autoWidthMask*/) {
  return Create(parent, id, {}, style, bounds);
}

std::uint32_t CUiReportListCtrl::SetListFlag(std::uint32_t mask, bool on) {
  if (on) {
    listFlags_ |= mask;
    return mask;
  }
  return listFlags_ &= ~mask;
}

bool CUiReportListCtrl::SetItemTextColoured(int row, int column, std::string_view text,
                                            platform::Colour colour) {
  if (!SetItemText(row, column, text)) return false;
  const std::size_t cell = static_cast<std::size_t>(row) * static_cast<std::size_t>(ColumnCount()) +
                           static_cast<std::size_t>(column);
  if (cell >= cellColours_.size()) cellColours_.resize(cell + 1, kNoColour);
  cellColours_[cell] = colour;
  return true;
}

bool CUiReportListCtrl::SetItemTextDefault(int row, int column, std::string_view text) {
  return SetItemTextColoured(row, column, text, ColourOf(platform::SystemColour::kWindowText));
}

std::string CUiReportListCtrl::GetItemTextAll(int row, int column) const {
  std::string text;
  for (int size = kFirstBuffer;; size *= 2) {
    text.resize(static_cast<std::size_t>(size));
    const int length = GetItemText(row, column, text.data(), size);
    if (length < size - 1) {
      text.resize(static_cast<std::size_t>(length));
      return text;
    }
  }
}

void CUiReportListCtrl::SetPaneColours(platform::Colour text, platform::Colour back) {
  textColour_ = text;
  backColour_ = back;
  textColourSet_ = backColourSet_ = true;
  Invalidate();
}

int CUiReportListCtrl::RememberedWidth(int column) const {
  const auto index = static_cast<std::size_t>(column);
  return index < hiddenWidths_.size() ? static_cast<int>(hiddenWidths_[index]) : 0;
}

void CUiReportListCtrl::RememberWidth(int column, int width) {
  const auto index = static_cast<std::size_t>(column);
  if (index >= hiddenWidths_.size()) hiddenWidths_.resize(index + 1);
  hiddenWidths_[index] = static_cast<std::uint32_t>(width);
}

void CUiReportListCtrl::SaveColumnWidths(qal::IQSettings* store, std::string_view section) const {
  if (!store || ColumnCount() <= 1) return;
  const platform::Wide wideSection(section);
  for (int column = 0; column < ColumnCount(); ++column) {
    int width = ColumnWidth(column);
    if (width == 0) width = -RememberedWidth(column);
    if (width == kUnknownWidth) width = kUsualWidth;
    store->WriteInt(wideSection.get(), platform::Wide(WidthKey(column)).get(), width);
  }
}

void CUiReportListCtrl::LoadColumnWidths(qal::IQSettings* store, std::string_view section) {
  if (!store || ColumnCount() <= 1) return;
  const platform::Wide wideSection(section);
  for (int column = 0; column < ColumnCount(); ++column) {
    std::int32_t width = ColumnWidth(column);
    store->ReadInt(wideSection.get(), platform::Wide(WidthKey(column)).get(), &width);
    if (width == kUnknownWidth) width = kUsualWidth;
    // The smallest number has no positive counterpart; whoever wrote it meant no width.
    if (width == INT32_MIN) width = 0;
    SetColumnWidth(column, width < 1 ? 0 : width);
    RememberWidth(column, width < 1 ? -width : width);
  }
}

platform::Colour CUiReportListCtrl::CellColour(int row, int column, bool selected) const {
  const platform::Colour usual = ColourOf(platform::SystemColour::kWindowText);
  const platform::Colour highlight = ColourOf(platform::SystemColour::kHighlightText);
  const std::size_t cell = static_cast<std::size_t>(row) * static_cast<std::size_t>(ColumnCount()) +
                           static_cast<std::size_t>(column);
  const platform::Colour own = cell < cellColours_.size() ? cellColours_[cell] : kNoColour;
  if (own == kNoColour) return selected ? highlight : usual;
  if (own != usual) return own;
  if (selected) return highlight;
  return textColourSet_ ? textColour_ : usual;
}

void CUiReportListCtrl::DrawItem(const platform::DrawItemInfo& item, platform::DrawContext& context) {
  using platform::DrawItemInfo;
  const bool selected = (item.state & DrawItemInfo::kSelected) != 0;
  if ((item.action & (DrawItemInfo::kEntire | DrawItemInfo::kSelectionChange)) != 0) {
    const platform::Colour usualText =
        textColourSet_ ? textColour_ : ColourOf(platform::SystemColour::kWindowText);
    const platform::Colour usualBack =
        backColourSet_ ? backColour_ : ColourOf(platform::SystemColour::kWindow);
    const platform::Colour back = selected ? ColourOf(platform::SystemColour::kHighlight) : usualBack;
    context.SetTextColour(selected ? ColourOf(platform::SystemColour::kHighlightText) : usualText);
    context.SetBackColour(back);
    context.FillRect(item.rect, back);
    platform::Rect cell = item.rect;
    for (const int column : Header().Order()) {
      cell.right = cell.left + ColumnWidth(column);
      context.SetTextColour(CellColour(item.row, column, selected));
      if (!cell.Empty()) context.DrawText(GetItemTextAll(item.row, column), cell);
      cell.left = cell.right;
    }
  }
  if ((item.state & DrawItemInfo::kFocused) != 0 && HasFocus()) context.DrawFocusRect(item.rect);
}

bool CUiReportListCtrl::OnHeaderMenu(const platform::Message& message) {
  const platform::Point at = platform::UnpackPoint(message.l);
  if (!Header().ScreenRect().Contains(at)) return false;
  platform::Menu menu;
  for (int column = 0; column < ColumnCount(); ++column) {
    menu.Append(static_cast<std::uint32_t>(column),
                platform::CutToBytes(ColumnHeading(column), kHeadingBytes), ColumnWidth(column) != 0);
  }
  platform::TrackPopupMenu(menu, at, *this);
  return true;
}

void CUiReportListCtrl::ToggleColumn(int column) {
  if (const int width = ColumnWidth(column); width != 0) {
    RememberWidth(column, width);
    SetColumnWidth(column, 0);
  } else {
    const int remembered = RememberedWidth(column);
    SetColumnWidth(column, remembered != 0 ? remembered : kUsualWidth);
  }
  Invalidate();
}

bool CUiReportListCtrl::PreTranslate(const platform::Message& message) {
  if (message.id == platform::message::kKeyDown && message.w == platform::key::kReturn) {
    platform::Notification news;
    news.code = platform::notify::kKeyDown;
    news.key = platform::key::kReturn;
    if (Notify(news) == 0) return true;
  }
  return ListView::PreTranslate(message);
}

platform::LResult CUiReportListCtrl::OnMessage(const platform::Message& message) {
  if (message.id == platform::message::kContextMenu && OnHeaderMenu(message)) return 0;
  if (message.id == platform::message::kCommand) {
    const int column = platform::LowWord(message.w);
    if (column < ColumnCount()) return ToggleColumn(column), 1;
  }
  return ListView::OnMessage(message);
}

platform::LResult CCoverageListCtrl::OnMessage(const platform::Message& message) {
  namespace key = platform::key;
  const qal::WindowHandle pane = ParentHandle();
  switch (message.id) {
    case platform::message::kVScroll:
    case platform::message::kMouseWheel:
      platform::PostTo(pane, message.id, message.w, message.l);
      return CUiReportListCtrl::OnMessage(message);
    case platform::message::kKeyDown: {
      const platform::LResult answer = CUiReportListCtrl::OnMessage(message);
      switch (message.w) {
        case key::kUp:
        case key::kDown:
        case key::kPageUp:
        case key::kPageDown:
        case key::kEnd:
        case key::kHome:
          platform::PostTo(pane, platform::message::kVScroll, 0, 0);
          break;
        default:
          break;
      }
      return answer;
    }
    default:
      return CUiReportListCtrl::OnMessage(message);
  }
}

}  // namespace coverage
