#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "platform/resource_table.h"

/// Resources as they are written down by hand, and their reading. The forms are described at the head of each
/// text file.
namespace rc {

/// What is wrong and where: "strings.txt:12: …".
struct SourceError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

struct String {
  std::uint32_t id;
  std::string name;
  std::string text;
};

struct Control {
  platform::ControlKind kind;
  std::uint32_t id;
  std::string text;
  std::int16_t x, y, width, height;
  std::uint32_t style;
};

struct Dialog {
  std::uint32_t id;
  std::string title;
  std::int16_t width, height;
  std::vector<Control> controls;
};

struct MenuItem {
  platform::MenuItemKind kind;
  std::uint8_t level;
  std::uint32_t id;
  std::string text;
};

struct Menu {
  std::uint32_t id;
  std::vector<MenuItem> items;
};

struct AcceleratorList {
  std::uint32_t id;
  std::vector<platform::Accelerator> entries;
};

struct Toolbar {
  std::uint32_t id;
  std::vector<std::uint8_t> bytes;
};

struct Bitmap {
  std::uint32_t id;
  std::uint16_t width, height;
  std::vector<std::uint32_t> pixels;
};

/// Everything of one module, each list sorted by identifier.
struct Resources {
  std::vector<String> strings;
  std::vector<Dialog> dialogs;
  std::vector<Menu> menus;
  std::vector<AcceleratorList> accelerators;
  std::vector<Toolbar> toolbars;
  std::vector<Bitmap> bitmaps;
};

// Each adds the content of one file; `file` names it in errors. Throws SourceError.
void ReadStrings(std::string_view text, const std::string& file, Resources* out);
void ReadDialogs(std::string_view text, const std::string& file, Resources* out);
void ReadMenus(std::string_view text, const std::string& file, Resources* out);
void ReadAccelerators(std::string_view text, const std::string& file, Resources* out);
void ReadToolbars(std::string_view text, const std::string& file, Resources* out);
void ReadBitmaps(std::string_view text, const std::string& file, Resources* out);

/// Sorts the lists and refuses identifiers, or names of strings, that stand twice.
void Finish(Resources* resources);

/// The header with one constant per string: `name` is the namespace, as in "coverage::strings".
std::string WriteIds(const Resources& resources, const std::string& name);
/// The header with the data and `inline constexpr platform::ResourceTable kTable` in the namespace `name`.
std::string WriteData(const Resources& resources, const std::string& name);

}  // namespace rc
