#include "platform/rc/resource_source.h"

#include <algorithm>
#include <map>
#include <set>

#include "platform/rc/source_lines.h"

namespace rc {
namespace {

using platform::ControlKind;
using platform::MenuItemKind;

const std::map<std::string, ControlKind> kControlKinds = {
    {"label", ControlKind::kLabel},
    {"group", ControlKind::kGroup},
    {"button", ControlKind::kPushButton},
    {"default", ControlKind::kDefaultButton},
    {"radio", ControlKind::kRadioButton},
    {"check", ControlKind::kCheckBox},
    {"edit", ControlKind::kEdit},
    {"combo", ControlKind::kComboBox},
    {"droplist", ControlKind::kDropDownList},
    {"list", ControlKind::kList},
};

const std::map<std::string, std::uint32_t> kControlFlags = {
    {"disabled", platform::control_style::kDisabled}, {"hidden", platform::control_style::kHidden},
    {"notab", platform::control_style::kNoTabStop},   {"arrow", platform::control_style::kPlaceholderArrow},
    {"filename", platform::control_style::kFileName},
};

std::uint32_t TakeStyle(Line* line) {
  std::uint32_t style = 0;
  while (!line->AtEnd()) {
    const std::string flag = line->TakeWord("a flag");
    std::uint32_t group = 0;
    if (const auto known = kControlFlags.find(flag); known != kControlFlags.end()) {
      style |= known->second;
    } else if (flag.starts_with("radios=") && ParseNumber(flag.substr(7), &group) && group >= 1 &&
               group <= 15) {
      style |= group << platform::control_style::kRadioGroupShift;
    } else {
      line->Fail("unknown flag " + flag);
    }
  }
  return style;
}

Control TakeControl(Line* line) {
  const std::string word = line->TakeWord("the kind of control");
  const auto kind = kControlKinds.find(word);
  if (kind == kControlKinds.end()) line->Fail("unknown kind of control " + word);
  Control control{};
  control.kind = kind->second;
  control.id = line->TakeNumber("the identifier", 0xFFFF);
  control.x = line->TakePlace("x");
  control.y = line->TakePlace("y");
  control.width = line->TakePlace("the width");
  control.height = line->TakePlace("the height");
  control.text = line->TakeText("the text");
  control.style = TakeStyle(line);
  return control;
}

MenuItem TakeMenuItem(Line* line, std::size_t level) {
  if (level > 15) line->Fail("the menu is nested too deeply");
  MenuItem item{MenuItemKind::kSeparator, static_cast<std::uint8_t>(level), 0, {}};
  const std::string kind = line->TakeWord("the kind of item");
  if (kind == "command") {
    item.kind = MenuItemKind::kCommand;
    item.id = line->TakeNumber("the command", 0xFFFF);
    item.text = line->TakeText("the text");
  } else if (kind == "popup") {
    item.kind = MenuItemKind::kPopup;
    item.text = line->TakeText("the text");
  } else if (kind != "separator") {
    line->Fail("unknown kind of item " + kind);
  }
  line->ExpectEnd();
  return item;
}

platform::Accelerator TakeAccelerator(Line* line) {
  platform::Accelerator entry{};
  std::string key = line->TakeWord("the key");
  const std::pair<const char*, std::uint8_t> modifiers[] = {{"Shift+", platform::key_modifier::kShift},
                                                            {"Ctrl+", platform::key_modifier::kControl},
                                                            {"Alt+", platform::key_modifier::kAlt}};
  for (bool again = true; again;) {
    again = false;
    for (const auto& [name, bit] : modifiers) {
      if (!key.starts_with(name)) continue;
      if (entry.modifiers & bit) line->Fail("a modifier stands twice");
      entry.modifiers |= bit;
      key.erase(0, std::string_view(name).size());
      again = true;
    }
  }
  std::uint32_t number = 0;
  constexpr std::uint16_t kVirtualF1 = 0x70;
  if (key.size() == 1 && ((key[0] >= 'A' && key[0] <= 'Z') || (key[0] >= '0' && key[0] <= '9'))) {
    entry.key = static_cast<unsigned char>(key[0]);
  } else if (key.starts_with("F") && ParseNumber(key.substr(1), &number) && number >= 1 && number <= 12) {
    entry.key = static_cast<std::uint16_t>(kVirtualF1 + number - 1);
  } else {
    line->Fail("unknown key " + key + "; known are A to Z, 0 to 9 and F1 to F12");
  }
  entry.command = line->TakeNumber("the command", 0xFFFF);
  line->ExpectEnd();
  return entry;
}

/// A picture while it is being read, and how a colour is written in it.
struct Image {
  std::uint16_t width = 0, height = 0;
  std::vector<std::uint32_t> pixels;
};
using Colours = std::map<char, std::uint32_t>;

void AddRow(const Line& line, const Colours& colours, Image* image) {
  if (image->width == 0) line.Fail("a row of pixels without an image");
  if (line.bare().size() != image->width) {
    line.Fail("the row has " + std::to_string(line.bare().size()) + " pixels, not " +
              std::to_string(image->width));
  }
  for (const char pixel : line.bare()) {
    const auto colour = colours.find(pixel);
    if (colour == colours.end()) line.Fail(std::string("no colour is named ") + pixel);
    image->pixels.push_back(colour->second);
  }
  if (image->pixels.size() > std::size_t{image->width} * image->height) line.Fail("too many rows");
}

Bitmap Compose(Line* line, const std::map<std::string, Image>& images) {
  Bitmap bitmap{};
  bitmap.id = line->TakeNumber("the identifier", 0xFFFF);
  std::vector<const Image*> row;
  do {
    const std::string name = line->TakeWord("the name of an image");
    const auto image = images.find(name);
    if (image == images.end()) line->Fail("no image is named " + name);
    if (image->second.pixels.size() != std::size_t{image->second.width} * image->second.height) {
      line->Fail("the image " + name + " has too few rows");
    }
    if (!row.empty() && row[0]->height != image->second.height) line->Fail("the images differ in height");
    row.push_back(&image->second);
    bitmap.width = static_cast<std::uint16_t>(bitmap.width + image->second.width);
  } while (!line->AtEnd());
  bitmap.height = row[0]->height;
  for (std::size_t y = 0; y < bitmap.height; ++y) {
    for (const Image* image : row) {
      const auto first = image->pixels.begin() + static_cast<std::ptrdiff_t>(y * image->width);
      bitmap.pixels.insert(bitmap.pixels.end(), first, first + image->width);
    }
  }
  return bitmap;
}

template <class List>
void SortById(List* list, const char* what) {
  std::sort(list->begin(), list->end(), [](const auto& a, const auto& b) { return a.id < b.id; });
  for (std::size_t i = 1; i < list->size(); ++i) {
    if ((*list)[i].id == (*list)[i - 1].id) {
      throw SourceError(std::string(what) + " " + std::to_string((*list)[i].id) + " stands twice");
    }
  }
}

}  // namespace

void ReadStrings(std::string_view text, const std::string& file, Resources* out) {
  for (Line& line : LinesOf(text, file)) {
    line.Split();
    String string;
    string.id = line.TakeNumber("the identifier", 0xFFFF);
    string.name = line.TakeWord("the name");
    string.text = line.TakeText("the text");
    line.ExpectEnd();
    if (string.name.find_first_not_of("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_") !=
            std::string::npos ||
        string.name[0] != 'k') {
      line.Fail("a name is a \"k\" and letters and digits: " + string.name);
    }
    out->strings.push_back(std::move(string));
  }
}

void ReadDialogs(std::string_view text, const std::string& file, Resources* out) {
  for (Line& line : LinesOf(text, file)) {
    line.Split();
    if (line.indent() > 0) {
      if (out->dialogs.empty()) line.Fail("a control without a dialog");
      out->dialogs.back().controls.push_back(TakeControl(&line));
      continue;
    }
    line.Expect("dialog");
    Dialog dialog{};
    dialog.id = line.TakeNumber("the identifier", 0xFFFF);
    dialog.width = line.TakePlace("the width");
    dialog.height = line.TakePlace("the height");
    dialog.title = line.TakeText("the title");
    line.ExpectEnd();
    out->dialogs.push_back(std::move(dialog));
  }
}

void ReadMenus(std::string_view text, const std::string& file, Resources* out) {
  for (Line& line : LinesOf(text, file)) {
    line.Split();
    if (line.indent() == 0) {
      line.Expect("menu");
      out->menus.push_back({line.TakeNumber("the identifier", 0xFFFF), {}});
      line.ExpectEnd();
      continue;
    }
    if (out->menus.empty()) line.Fail("an item without a menu");
    std::vector<MenuItem>& items = out->menus.back().items;
    const std::size_t level = line.indent() / 2 - 1;
    const bool afterPopup = !items.empty() && items.back().kind == MenuItemKind::kPopup;
    const std::size_t deepest = items.empty() ? 0 : items.back().level + (afterPopup ? 1u : 0u);
    if (line.indent() % 2 != 0 || level > deepest) line.Fail("the indent fits no item above");
    items.push_back(TakeMenuItem(&line, level));
  }
}

void ReadAccelerators(std::string_view text, const std::string& file, Resources* out) {
  for (Line& line : LinesOf(text, file)) {
    line.Split();
    if (line.indent() > 0) {
      if (out->accelerators.empty()) line.Fail("a key without a table");
      out->accelerators.back().entries.push_back(TakeAccelerator(&line));
      continue;
    }
    line.Expect("accelerators");
    out->accelerators.push_back({line.TakeNumber("the identifier", 0xFFFF), {}});
    line.ExpectEnd();
  }
}

void ReadToolbars(std::string_view text, const std::string& file, Resources* out) {
  const auto put16 = [](std::vector<std::uint8_t>* bytes, std::uint32_t value) {
    bytes->push_back(static_cast<std::uint8_t>(value));
    bytes->push_back(static_cast<std::uint8_t>(value >> 8));
  };
  constexpr std::size_t kCountOffset = 6;
  for (Line& line : LinesOf(text, file)) {
    line.Split();
    if (line.indent() > 0) {
      if (out->toolbars.empty()) line.Fail("buttons without a toolbar");
      std::vector<std::uint8_t>& bytes = out->toolbars.back().bytes;
      while (!line.AtEnd()) {
        const std::string word = line.TakeWord("a command");
        std::uint32_t command = 0;
        if (word != "-" && (!ParseNumber(word, &command) || command == 0 || command > 0xFFFF)) {
          line.Fail("neither a command nor \"-\": " + word);
        }
        put16(&bytes, command);
        const std::size_t count = (bytes.size() - kCountOffset - 2) / 2;
        bytes[kCountOffset] = static_cast<std::uint8_t>(count);
        bytes[kCountOffset + 1] = static_cast<std::uint8_t>(count >> 8);
      }
      continue;
    }
    line.Expect("toolbar");
    Toolbar toolbar{line.TakeNumber("the identifier", 0xFFFF), {}};
    for (const char* field : {"version", "width", "height"}) {
      line.Expect(field);
      put16(&toolbar.bytes, line.TakeNumber(field, 0xFFFF));
    }
    put16(&toolbar.bytes, 0);
    line.ExpectEnd();
    out->toolbars.push_back(std::move(toolbar));
  }
}

void ReadBitmaps(std::string_view text, const std::string& file, Resources* out) {
  Colours colours;
  std::map<std::string, Image> images;
  Image* current = nullptr;
  for (Line& line : LinesOf(text, file)) {
    if (line.indent() > 0) {
      Image none;
      AddRow(line, colours, current ? current : &none);
      continue;
    }
    line.Split();
    const std::string kind = line.TakeWord("the kind of line");
    if (kind == "colour") {
      const std::string name = line.TakeWord("the character");
      if (name.size() != 1 || name == "#") line.Fail("a colour is named by one character other than #");
      colours[name[0]] = line.TakeNumber("the colour", 0xFFFFFF);
    } else if (kind == "image") {
      const std::string name = line.TakeWord("the name");
      if (images.contains(name)) line.Fail("the image " + name + " stands twice");
      current = &images[name];
      current->width = static_cast<std::uint16_t>(line.TakeNumber("the width", 256));
      current->height = static_cast<std::uint16_t>(line.TakeNumber("the height", 256));
      if (current->width == 0 || current->height == 0) line.Fail("an image has at least one pixel");
    } else if (kind == "bitmap") {
      out->bitmaps.push_back(Compose(&line, images));
    } else {
      line.Fail("unknown kind of line " + kind);
    }
    line.ExpectEnd();
  }
}

void Finish(Resources* resources) {
  SortById(&resources->strings, "string");
  SortById(&resources->dialogs, "dialog");
  SortById(&resources->menus, "menu");
  SortById(&resources->accelerators, "accelerator table");
  SortById(&resources->toolbars, "toolbar");
  SortById(&resources->bitmaps, "bitmap");
  std::set<std::string> names;
  for (const String& string : resources->strings) {
    if (!names.insert(string.name).second) throw SourceError("the name " + string.name + " stands twice");
  }
  for (const Dialog& dialog : resources->dialogs) {
    std::set<std::uint32_t> ids;
    for (const Control& control : dialog.controls) {
      if (!ids.insert(control.id).second) {
        throw SourceError("dialog " + std::to_string(dialog.id) + " has the control " +
                          std::to_string(control.id) + " twice");
      }
    }
  }
}

}  // namespace rc
