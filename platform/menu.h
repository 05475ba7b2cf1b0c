#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/api.h"
#include "platform/geometry.h"
#include "platform/resource_table.h"

/// Menus, accelerator keys and toolbars as models. User-interface thread.
namespace platform {

class Menu;
class Window;

struct MenuItem {
  MenuItemKind kind = MenuItemKind::kCommand;
  std::uint32_t id = 0;
  std::string text;
  bool enabled = true;
  bool checked = false;
  std::shared_ptr<Menu> popup;  ///< of a kPopup item
};

class PLATFORM_API Menu {
 public:
  Menu() = default;
  explicit Menu(const MenuTemplate& resource);
  /// The menu resource of the current context; null when there is none.
  static std::shared_ptr<Menu> Load(std::uint32_t id);

  void Append(std::uint32_t id, std::string_view text, bool checked = false, bool enabled = true);
  void AppendSeparator();
  void AppendPopup(std::shared_ptr<Menu> popup, std::string_view text);
  void RemoveAt(std::size_t position);
  void Clear() { items_.clear(); }

  const std::vector<MenuItem>& Items() const { return items_; }
  /// Empty beyond the last item and for separators.
  std::string TextAt(std::size_t position) const;
  /// Command with this identifier, here or in a pop-up; null when there is none.
  MenuItem* Find(std::uint32_t id);
  const MenuItem* Find(std::uint32_t id) const;
  bool Enable(std::uint32_t id, bool enabled);
  bool Check(std::uint32_t id, bool checked);

  /// Takes over how every command stands with `target`.
  void Update(Window& target);

 private:
  std::vector<MenuItem> items_;
};

/// Opens a pop-up menu at a point of the screen: the presenter lets the person choose, then the command (its
/// identifier may be 0) is sent to the owner. Nothing when nothing was chosen.
PLATFORM_API std::optional<std::uint32_t> TrackPopupMenu(const Menu& menu, Point at, Window& owner);

/// A text as people read it: without "&" marks ("&&" is one) and without the key behind a tab.
PLATFORM_API std::string PlainText(std::string_view menuText);

/// Command of a key in an accelerator table; modifiers are key_modifier bits.
PLATFORM_API std::optional<std::uint32_t> Translate(const AcceleratorTable& table, std::uint32_t virtualKey,
                                                    std::uint8_t modifiers);

struct ToolbarButton {
  std::uint32_t id = 0;  ///< 0 is a separator
  int image = -1;        ///< position in the bitmap, separators not counted
  bool enabled = true;
  bool checked = false;
  bool visible = true;
  std::string tip;
};

class PLATFORM_API Toolbar {
 public:
  Toolbar() = default;
  /// Reads the bytes of a toolbar resource; empty for a version other than 1 or bytes that end too soon. Tips
  /// are what stands behind the line break of the string with the button's identifier.
  static std::shared_ptr<Toolbar> FromBytes(std::span<const std::uint8_t> bytes);
  static std::shared_ptr<Toolbar> Load(std::uint32_t id);

  std::vector<ToolbarButton>& Buttons() { return buttons_; }
  const std::vector<ToolbarButton>& Buttons() const { return buttons_; }
  int buttonWidth = 16;
  int buttonHeight = 15;

  void Update(Window& target);

 private:
  std::vector<ToolbarButton> buttons_;
};

}  // namespace platform
