#include <algorithm>
#include <array>
#include <charconv>

#include "platform/dialog.h"
#include "platform/list_view.h"
#include "platform/picture.h"
#include "platform/script_presenter.h"
#include "platform/text.h"

/// The words with which a script acts on lists and dialogs.
namespace platform {

namespace {

using Result = std::optional<std::string>;

/// Takes the next word off a line.
std::string_view TakeWord(std::string_view& line) {
  line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
  const std::size_t end = std::min(line.find_first_of(" \t"), line.size());
  const std::string_view word = line.substr(0, end);
  line.remove_prefix(std::min(end + 1, line.size()));
  return word;
}

std::optional<int> NumberOf(std::string_view word) {
  int number = 0;
  const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
  if (error != std::errc() || end != word.data() + word.size()) return std::nullopt;
  return number;
}

std::string Quote(std::string_view text) { return "'" + std::string(text) + "'"; }

Result RowError(const ListView& list, std::string_view word) {
  return Format("no row %.*s: the list has %d", static_cast<int>(word.size()), word.data(), list.RowCount());
}

struct ListWord {
  std::string_view word;
  Result (*act)(ListView& list, std::string_view rest);
};

/// Acts with one number that `check` has accepted.
template <class Check, class Act>
Result WithNumber(std::string_view rest, const char* what, Check check, Act act) {
  const std::string_view word = TakeWord(rest);
  const auto number = NumberOf(word);
  if (!number) return std::string(what) + " expected, not " + Quote(word);
  if (auto error = check(*number)) return error;
  if (!act(*number)) return std::string("the list cannot be used now");
  return std::nullopt;
}

Result AnyNumber(int) { return std::nullopt; }

void PointAt(const Rect& place) {
  SetCursorPosition({place.left + place.Width() / 2, place.top + place.Height() / 2});
}

template <class Act>
Result OnRow(ListView& list, std::string_view rest, Act act) {
  const auto check = [&](int row) -> Result {
    if (row < 0 || row >= list.RowCount()) return RowError(list, std::to_string(row));
    const Rect screen = list.ScreenRect();
    Rect place = list.RowRect(row);
    place = {screen.left + place.left, screen.top + place.top, screen.left + place.right,
             screen.top + place.bottom};
    PointAt(place);
    return std::nullopt;
  };
  return WithNumber(rest, "a row", check, act);
}

template <class Act>
Result OnColumn(ListView& list, std::string_view rest, Act act) {
  const auto check = [&](int column) -> Result {
    if (column < 0 || column >= list.ColumnCount()) {
      return Format("no column %d: the list has %d", column, list.ColumnCount());
    }
    return std::nullopt;
  };
  return WithNumber(rest, "a column", check, act);
}

Result PressKey(ListView& list, std::string_view rest) {
  const std::string_view word = TakeWord(rest);
  const auto pressed = KeyOf(word);
  if (!pressed) return "no key " + Quote(word);
  if (!list.Key(pressed->virtualKey, pressed->modifiers)) return "the list cannot be used now";
  return std::nullopt;
}

Result ChangeWidth(ListView& list, std::string_view rest) {
  const std::string_view column = TakeWord(rest);
  return OnColumn(list, column, [&](int index) {
    const auto width = NumberOf(TakeWord(rest));
    return width && *width >= 0 && list.DragColumnWidth(index, *width);
  });
}

Result OpenContextMenu(ListView& list, std::string_view rest) {
  const std::string_view place = TakeWord(rest);
  if (place != "header") return OnRow(list, place, [&](int row) { return list.ContextMenuOnRow(row); });
  const std::string_view column = rest.empty() ? "0" : rest;
  return OnColumn(list, column, [&](int index) { return list.ContextMenuOnHeader(index); });
}

constexpr auto kListWords = std::to_array<ListWord>({
    {"row",
     [](ListView& l, std::string_view r) { return OnRow(l, r, [&](int row) { return l.Click(row); }); }},
    {"double-click",
     [](ListView& l, std::string_view r) {
       return OnRow(l, r, [&](int row) { return l.DoubleClick(row); });
     }},
    {"drag",
     [](ListView& l, std::string_view r) { return OnRow(l, r, [&](int row) { return l.BeginDrag(row); }); }},
    {"deselect",
     [](ListView& l, std::string_view) -> Result {
       if (l.Click(-1)) return std::nullopt;
       return "the list cannot be used now";
     }},
    {"header",
     [](ListView& l, std::string_view r) { return OnColumn(l, r, [&](int c) { return l.ClickHeader(c); }); }},
    {"width", ChangeWidth},
    {"key", PressKey},
    {"scroll",
     [](ListView& l, std::string_view r) {
       return WithNumber(r, "a number of rows", AnyNumber, [&](int n) { return l.ScrollLines(n); });
     }},
    {"top",
     [](ListView& l, std::string_view r) { return OnRow(l, r, [&](int row) { return l.ScrollTo(row); }); }},
    {"wheel",
     [](ListView& l, std::string_view r) {
       return WithNumber(r, "a number of notches", AnyNumber, [&](int n) { return l.Wheel(n); });
     }},
    {"size",
     [](ListView& l, std::string_view r) {
       const auto check = [](int n) -> Result {
         if (n >= 0 && n <= 100000) return std::nullopt;
         return "from 0 to 100000 rows can be shown";
       };
       return WithNumber(r, "a number of rows", check, [&](int n) { return l.Resize(n), true; });
     }},
    {"context", OpenContextMenu},
});

/// The control that a word names: by identifier, or by its text without marks.
Control* FindControl(const Dialog& dialog, std::string_view name) {
  const auto id = NumberOf(name);
  for (Window* child : dialog.Children()) {
    auto* control = dynamic_cast<Control*>(child);
    if (!control) continue;
    if (id ? control->Id() == static_cast<std::uint32_t>(*id)
           : EqualNoCase(PlainText(control->Text()), name)) {
      return control;
    }
  }
  return nullptr;
}

Result TypeInto(Control& control, std::string_view text) {
  if (auto* edit = dynamic_cast<Edit*>(&control)) return edit->TypeOver(text), std::nullopt;
  auto* combo = dynamic_cast<ComboBox*>(&control);
  if (!combo || !combo->IsEditable()) return Format("nothing can be typed into control %u", control.Id());
  combo->TypeOver(text);
  return std::nullopt;
}

Result ChooseIn(Control& control, std::string_view text) {
  if (auto* combo = dynamic_cast<ComboBox*>(&control)) {
    if (combo->Choose(text)) return std::nullopt;
    return Format("control %u does not offer ", control.Id()) + Quote(text);
  }
  auto* button = dynamic_cast<Button*>(&control);
  if (!button || button->Kind() != ControlKind::kRadioButton) {
    return Format("control %u offers no choice", control.Id());
  }
  button->Press();
  return std::nullopt;
}

Result CheckOne(Control& control, std::string_view word) {
  auto* button = dynamic_cast<Button*>(&control);
  const bool radio = button && button->Kind() == ControlKind::kRadioButton;
  if (!button || (!radio && button->Kind() != ControlKind::kCheckBox)) {
    return Format("control %u cannot be checked", control.Id());
  }
  if (word != "on" && word != "off") return "on or off expected, not " + Quote(word);
  if (radio && word == "off") return Format("choose another button to clear %u", control.Id());
  if (button->IsChecked() != (word == "on")) button->Press();
  return std::nullopt;
}

Result ClickOn(Control& control, std::string_view) {
  if (auto* button = dynamic_cast<Button*>(&control)) {
    button->Press();
  } else if (!TakesFocus(control) || !control.SetFocus()) {
    return Format("control %u cannot be clicked", control.Id());
  }
  return std::nullopt;
}

Result ActOnControlList(Control& control, std::string_view rest) {
  auto* list = dynamic_cast<ListView*>(&control);
  if (!list) return Format("control %u is no list", control.Id());
  return ActOnList(*list, rest);
}

struct ControlWord {
  std::string_view word;
  Result (*act)(Control& control, std::string_view rest);
};

constexpr auto kControlWords = std::to_array<ControlWord>({
    {"type", TypeInto},
    {"choose", ChooseIn},
    {"check", [](Control& control, std::string_view rest) { return CheckOne(control, TakeWord(rest)); }},
    {"click", ClickOn},
    {"focus", ClickOn},
    {"list", ActOnControlList},
});

/// The list that a word without an identifier means.
ListView* ListOf(const Dialog& dialog) {
  if (auto* focused = dynamic_cast<ListView*>(FocusedWindow()); focused && focused->IsWithin(dialog))
    return focused;
  ListView* only = nullptr;
  for (Window* child : dialog.Children()) {
    auto* list = dynamic_cast<ListView*>(child);
    if (list && only) return nullptr;
    if (list) only = list;
  }
  return only;
}

}  // namespace

bool IsListWord(std::string_view word) {
  return std::any_of(kListWords.begin(), kListWords.end(),
                     [&](const ListWord& known) { return known.word == word; });
}

bool IsDialogWord(std::string_view word) {
  static constexpr auto kOthers =
      std::to_array<std::string_view>({"close", "answer", "file", "menu", "dialog", "wait"});
  return IsListWord(word) || std::find(kOthers.begin(), kOthers.end(), word) != kOthers.end() ||
         std::any_of(kControlWords.begin(), kControlWords.end(),
                     [&](const ControlWord& known) { return known.word == word; });
}

std::optional<std::string> ActOnList(ListView& list, std::string_view line) {
  const std::string_view word = TakeWord(line);
  for (const ListWord& known : kListWords) {
    if (known.word == word) return known.act(list, line);
  }
  return "no word " + Quote(word) + " for a list";
}

std::optional<std::string> ActOnDialog(Dialog& dialog, std::string_view line) {
  const std::string_view whole = line;
  const std::string_view word = TakeWord(line);
  if (word == "close") {
    if (!Trim(line).empty()) return "a dialog is open; close alone closes it";
    dialog.Close();
    return std::nullopt;
  }
  if (word == "key") {
    const std::string_view name = TakeWord(line);
    const auto pressed = KeyOf(name);
    if (!pressed) return "no key " + Quote(name);
    dialog.Key(pressed->virtualKey, pressed->modifiers);
    return std::nullopt;
  }
  if (IsListWord(word)) {
    ListView* list = ListOf(dialog);
    if (!list) return "which list? say: list ID " + std::string(whole);
    return ActOnList(*list, whole);
  }
  for (const ControlWord& known : kControlWords) {
    if (known.word != word) continue;
    const std::string_view name = TakeWord(line);
    if (name.empty()) return "which control? say: " + std::string(word) + " ID";
    Control* control = FindControl(dialog, name);
    if (!control) return "the dialog has no control " + Quote(name);
    if (!control->CanBeUsed()) {
      return Format("control %u is %s", control->Id(), control->IsVisible() ? "disabled" : "hidden");
    }
    PointAt(control->ScreenRect());
    return known.act(*control, line);
  }
  const std::string open = "the dialog " + Quote(dialog.Text()) + " is open, ";
  if (word == "answer") return open + "no message box";
  if (word == "file") return open + "no file dialog";
  if (word == "menu") return open + "no menu";
  return "no word " + Quote(word) + " for a dialog";
}

std::optional<NamedKey> KeyOf(std::string_view name) {
  struct Name {
    std::string_view name;
    std::uint32_t key;
  };
  static constexpr auto kModifiers = std::to_array<Name>(
      {{"ctrl+", key_modifier::kControl}, {"shift+", key_modifier::kShift}, {"alt+", key_modifier::kAlt}});
  static constexpr auto kKeys = std::to_array<Name>({
      {"enter", key::kReturn},
      {"return", key::kReturn},
      {"escape", key::kEscape},
      {"tab", key::kTab},
      {"space", key::kSpace},
      {"backspace", key::kBack},
      {"delete", key::kDelete},
      {"up", key::kUp},
      {"down", key::kDown},
      {"left", key::kLeft},
      {"right", key::kRight},
      {"page-up", key::kPageUp},
      {"page-down", key::kPageDown},
      {"home", key::kHome},
      {"end", key::kEnd},
  });
  const std::string lower = ToLower(name);
  std::string_view rest = lower;
  NamedKey found{0, 0};
  for (bool again = true; again;) {
    again = false;
    for (const Name& modifier : kModifiers) {
      if (!rest.starts_with(modifier.name)) continue;
      found.modifiers = static_cast<std::uint8_t>(found.modifiers | modifier.key);
      rest.remove_prefix(modifier.name.size());
      again = true;
    }
  }
  for (const Name& known : kKeys) {
    if (known.name == rest) return NamedKey{known.key, found.modifiers};
  }
  if (rest.size() == 1 && ((rest[0] >= 'a' && rest[0] <= 'z') || (rest[0] >= '0' && rest[0] <= '9'))) {
    const bool letter = rest[0] >= 'a';
    return NamedKey{static_cast<std::uint32_t>(letter ? rest[0] - 'a' + 'A' : rest[0]), found.modifiers};
  }
  if (rest.size() > 1 && rest[0] == 'f') {
    const auto number = NumberOf(rest.substr(1));
    if (number && *number >= 1 && *number <= 12) {
      return NamedKey{key::kF1 + static_cast<std::uint32_t>(*number) - 1, found.modifiers};
    }
  }
  return std::nullopt;
}

}  // namespace platform
