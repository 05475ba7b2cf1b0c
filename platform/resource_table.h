#pragma once

#include <cstdint>

/// Resources as the resource compiler lays them out: constant data, no code. Texts are UTF-8. Each list is
/// sorted by identifier. A resource module exports one ResourceTable under the name `QalResourceTable`.
namespace platform {

enum class ControlKind : std::uint8_t {
  kLabel,
  kGroup,
  kPushButton,
  kDefaultButton,
  kRadioButton,
  kCheckBox,
  kEdit,
  kComboBox,      ///< editable, with a drop-down list
  kDropDownList,  ///< choice from the list only
  kList,          ///< report list
};

/// Bits of ControlTemplate::style.
namespace control_style {
inline constexpr std::uint32_t kDisabled = 1;
inline constexpr std::uint32_t kHidden = 2;
inline constexpr std::uint32_t kNoTabStop = 4;
inline constexpr std::uint32_t kPlaceholderArrow = 8;  ///< offers placeholders; the text names its picture
inline constexpr std::uint32_t kFileName = 16;  ///< edit that refuses the characters no file name may hold
/// Radio buttons of one dialog with the same number, 1 to 15, exclude each other.
inline constexpr std::uint32_t kRadioGroupShift = 8;
constexpr std::uint32_t RadioGroup(std::uint32_t style) { return (style >> kRadioGroupShift) & 15; }
}  // namespace control_style

/// Places and sizes are in dialog units: a quarter of a character's width, an eighth of its height.
struct ControlTemplate {
  ControlKind kind;
  std::uint32_t id;
  const char* text;
  std::int16_t x, y, width, height;
  std::uint32_t style;
};

/// A dialog; its controls are in tab order.
struct DialogTemplate {
  std::uint32_t id;
  const char* title;
  std::int16_t width, height;
  const ControlTemplate* controls;
  std::uint32_t controlCount;
};

enum class MenuItemKind : std::uint8_t { kCommand, kSeparator, kPopup };

/// One line of a menu. The items of a pop-up follow it, one level deeper.
struct MenuItemTemplate {
  MenuItemKind kind;
  std::uint8_t level;
  std::uint32_t id;  ///< 0 for separators and pop-ups
  const char* text;
};

struct MenuTemplate {
  std::uint32_t id;
  const MenuItemTemplate* items;
  std::uint32_t itemCount;
};

/// Bits of Accelerator::modifiers.
namespace key_modifier {
inline constexpr std::uint8_t kShift = 1;
inline constexpr std::uint8_t kControl = 2;
inline constexpr std::uint8_t kAlt = 4;
}  // namespace key_modifier

struct Accelerator {
  std::uint8_t modifiers;
  std::uint16_t key;  ///< upper-case character, or a virtual key
  std::uint32_t command;
};

struct AcceleratorTable {
  std::uint32_t id;
  const Accelerator* entries;
  std::uint32_t count;
};

/// Bytes of a toolbar: 16-bit version, button width, button height and item count, then one 16-bit command
/// per item, 0 for a separator; little-endian.
struct ToolbarResource {
  std::uint32_t id;
  const std::uint8_t* bytes;
  std::uint32_t size;
};

/// A picture of 32 bits a pixel, 0x00RRGGBB, rows from the top.
struct BitmapResource {
  std::uint32_t id;
  std::uint16_t width, height;
  const std::uint32_t* pixels;
};

struct StringResource {
  std::uint32_t id;
  const char* text;
};

struct ResourceTable {
  std::uint32_t version;  ///< kResourceTableVersion
  std::uint32_t stringCount, dialogCount, menuCount, acceleratorCount, toolbarCount, bitmapCount;
  const StringResource* strings;
  const DialogTemplate* dialogs;
  const MenuTemplate* menus;
  const AcceleratorTable* accelerators;
  const ToolbarResource* toolbars;
  const BitmapResource* bitmaps;
};

inline constexpr std::uint32_t kResourceTableVersion = 1;
inline constexpr char kResourceTableSymbol[] = "QalResourceTable";

}  // namespace platform
