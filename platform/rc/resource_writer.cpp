#include <cstdio>

#include "platform/rc/resource_source.h"

namespace rc {
namespace {

constexpr char kNotice[] = "// Made by qal-rc from the text files of the resources.\n#pragma once\n\n";

/// A literal of the text's bytes, whatever they are.
std::string Quoted(const std::string& text) {
  std::string literal = "\"";
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == '"' || c == '\\') {
      literal += '\\';
      literal += c;
    } else if (byte >= 0x20 && byte < 0x7F && c != '?') {
      literal += c;
    } else {
      char octal[8];
      std::snprintf(octal, sizeof(octal), "\\%03o", static_cast<unsigned>(byte));
      literal += octal;
    }
  }
  return literal + "\"";
}

template <class... Values>
std::string Numbers(Values... numbers) {
  std::string text;
  ((text += std::to_string(numbers) + ", "), ...);
  return text;
}

std::string Suffixed(const char* name, std::uint32_t id) { return name + std::to_string(id); }

/// A list of entries, or the note that there is none: an array needs at least one element.
std::string List(const std::string& type, const std::string& name, const std::string& entries) {
  if (entries.empty()) return "inline constexpr const " + type + "* " + name + " = nullptr;\n";
  return "inline constexpr " + type + " " + name + "[] = {\n" + entries + "};\n";
}

template <class Value>
std::string Values(const std::vector<Value>& values) {
  std::string text;
  std::size_t column = 0;
  for (const Value value : values) {
    text += std::to_string(value) + ",";
    text += ++column % 16 == 0 ? "\n" : " ";
  }
  if (!text.empty() && text.back() == ' ') text.back() = '\n';
  return text;
}

}  // namespace

std::string WriteIds(const Resources& resources, const std::string& name) {
  std::string text = kNotice + std::string("#include <cstdint>\n\nnamespace ") + name + " {\n\n";
  for (const String& string : resources.strings) {
    text += "inline constexpr std::uint32_t " + string.name + " = " + std::to_string(string.id) + ";\n";
  }
  return text + "\n}  // namespace " + name + "\n";
}

std::string WriteData(const Resources& resources, const std::string& name) {
  std::string text =
      kNotice + std::string("#include \"platform/resource_table.h\"\n\nnamespace ") + name + " {\n\n";

  std::string entries;
  for (const String& string : resources.strings) {
    entries += "    {" + Numbers(string.id) + Quoted(string.text) + "},\n";
  }
  text += List("platform::StringResource", "kStrings", entries);

  entries.clear();
  for (const Dialog& dialog : resources.dialogs) {
    const std::string controls = Suffixed("kControls", dialog.id);
    std::string lines;
    for (const Control& control : dialog.controls) {
      lines += "    {platform::ControlKind{" + std::to_string(static_cast<int>(control.kind)) + "}, " +
               Numbers(control.id) + Quoted(control.text) + ", " +
               Numbers(control.x, control.y, control.width, control.height, control.style) + "},\n";
    }
    text += List("platform::ControlTemplate", controls, lines);
    entries += "    {" + Numbers(dialog.id) + Quoted(dialog.title) + ", " +
               Numbers(dialog.width, dialog.height) + controls + ", " + Numbers(dialog.controls.size()) +
               "},\n";
  }
  text += List("platform::DialogTemplate", "kDialogs", entries);

  entries.clear();
  for (const Menu& menu : resources.menus) {
    const std::string items = Suffixed("kItems", menu.id);
    std::string lines;
    for (const MenuItem& item : menu.items) {
      lines += "    {platform::MenuItemKind{" + std::to_string(static_cast<int>(item.kind)) + "}, " +
               Numbers(item.level, item.id) + Quoted(item.text) + "},\n";
    }
    text += List("platform::MenuItemTemplate", items, lines);
    entries += "    {" + Numbers(menu.id) + items + ", " + Numbers(menu.items.size()) + "},\n";
  }
  text += List("platform::MenuTemplate", "kMenus", entries);

  entries.clear();
  for (const AcceleratorList& table : resources.accelerators) {
    const std::string keys = Suffixed("kKeys", table.id);
    std::string lines;
    for (const platform::Accelerator& entry : table.entries) {
      lines += "    {" + Numbers(entry.modifiers, entry.key, entry.command) + "},\n";
    }
    text += List("platform::Accelerator", keys, lines);
    entries += "    {" + Numbers(table.id) + keys + ", " + Numbers(table.entries.size()) + "},\n";
  }
  text += List("platform::AcceleratorTable", "kAccelerators", entries);

  entries.clear();
  for (const Toolbar& toolbar : resources.toolbars) {
    const std::string bytes = Suffixed("kToolbar", toolbar.id);
    text += List("std::uint8_t", bytes, Values(toolbar.bytes));
    entries += "    {" + Numbers(toolbar.id) + bytes + ", " + Numbers(toolbar.bytes.size()) + "},\n";
  }
  text += List("platform::ToolbarResource", "kToolbars", entries);

  entries.clear();
  for (const Bitmap& bitmap : resources.bitmaps) {
    const std::string pixels = Suffixed("kPixels", bitmap.id);
    text += List("std::uint32_t", pixels, Values(bitmap.pixels));
    entries += "    {" + Numbers(bitmap.id, bitmap.width, bitmap.height) + pixels + "},\n";
  }
  text += List("platform::BitmapResource", "kBitmaps", entries);

  text +=
      "\ninline constexpr platform::ResourceTable kTable = {\n    platform::kResourceTableVersion,\n    " +
      Numbers(resources.strings.size(), resources.dialogs.size(), resources.menus.size(),
              resources.accelerators.size(), resources.toolbars.size(), resources.bitmaps.size()) +
      "\n    kStrings, kDialogs, kMenus, kAccelerators, kToolbars, kBitmaps};\n";
  return text + "\n}  // namespace " + name + "\n";
}

}  // namespace rc
