#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "platform/colours.h"
#include "platform/list_view.h"
#include "qal/ide_services.h"

namespace coverage {

/// An owner-drawn report list with a text colour for each cell, a header whose menu hides and shows columns,
/// and column widths that are kept in the IDE's settings. UI thread only.
class CUiReportListCtrl : public platform::ListView {
 public:
  /// Style, place and identifier as the platform takes them; the last argument is not used by the panes.
  virtual bool CreateList(std::uint32_t style, const platform::Rect& bounds, platform::Window& parent,
                          std::uint32_t id, std::uint32_t autoWidthMask);

  virtual bool HasListFlag(std::uint32_t mask) const { return (listFlags_ & mask) != 0; }
  virtual std::uint32_t GetListFlags() const { return listFlags_; }
  /// The new flags when clearing, the mask when setting.
  virtual std::uint32_t SetListFlag(std::uint32_t mask, bool on);
  virtual void SetListFlags(std::uint32_t flags) { listFlags_ = flags; }

  /// Sets a cell's text and, when that succeeded, remembers the colour it is drawn in: in a selected row,
  /// too, and whatever the list's own colour is, unless it is the system's colour for text.
  bool SetItemTextColoured(int row, int column, std::string_view text, platform::Colour colour);
  /// The same in the system's colour for text.
  virtual bool SetItemTextDefault(int row, int column, std::string_view text);
  /// The whole text of a cell, however long.
  std::string GetItemTextAll(int row, int column) const;

  /// Colours in place of the system's, for texts in the system's colour and for the rows' background.
  void SetPaneColours(platform::Colour text, platform::Colour back);

  /// One number a column under "ColWidth" and its index: the width, or minus the width that a hidden column
  /// had. A list with a single column keeps none. The store may be null.
  void SaveColumnWidths(qal::IQSettings* store, std::string_view section) const;
  void LoadColumnWidths(qal::IQSettings* store, std::string_view section);

  void DrawItem(const platform::DrawItemInfo& item, platform::DrawContext& context) override;
  bool PreTranslate(const platform::Message& message) override;

 protected:
  platform::LResult OnMessage(const platform::Message& message) override;

 private:
  /// What a column gets that has no width and none remembered.
  static constexpr int kUsualWidth = 30;

  bool OnHeaderMenu(const platform::Message& message);
  void ToggleColumn(int column);
  int RememberedWidth(int column) const;
  void RememberWidth(int column, int width);
  platform::Colour CellColour(int row, int column, bool selected) const;

  std::vector<std::uint32_t> hiddenWidths_;
  std::deque<platform::Colour> cellColours_;  ///< by row times columns plus column; grows with the rows
  bool textColourSet_ = false;
  bool backColourSet_ = false;
  platform::Colour textColour_ = 0;
  platform::Colour backColour_ = 0;
  std::uint32_t listFlags_ = 0;
};

/// The list of a pane: tells the pane when it scrolls, by posting.
class CCoverageListCtrl final : public CUiReportListCtrl {
 protected:
  platform::LResult OnMessage(const platform::Message& message) override;
};

}  // namespace coverage
