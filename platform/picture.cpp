#include "platform/picture.h"

#include <algorithm>
#include <vector>

#include "platform/dialog.h"
#include "platform/list_view.h"
#include "platform/menu.h"
#include "platform/text.h"

namespace platform {

namespace {

std::size_t Characters(std::string_view text) {
  std::size_t count = 0;
  for (std::size_t at = 0; at < text.size(); at = NextChar(text, at)) ++count;
  return count;
}

/// Padded with blanks, as a column of one format.
std::string Padded(std::string_view text, std::size_t width, ColumnFormat format) {
  const std::size_t length = Characters(text);
  const std::size_t gap = width > length ? width - length : 0;
  const std::size_t before = format == ColumnFormat::kRight    ? gap
                             : format == ColumnFormat::kCentre ? gap / 2
                                                               : 0;
  return std::string(before, ' ') + std::string(text) + std::string(gap - before, ' ');
}

std::string WithoutEndBlanks(std::string line) {
  line.erase(line.find_last_not_of(' ') + 1);
  return line;
}

/// One line, whatever the text holds.
std::string OneLine(std::string_view text) {
  std::string line;
  for (const char c : text) {
    if (c == '\n') {
      line += "\\n";
    } else if (c == '\r') {
      line += "\\r";
    } else if (c == '\t') {
      line += "\\t";
    } else {
      line += c;
    }
  }
  return line;
}

std::string Quoted(std::string_view text) { return "\"" + OneLine(text) + "\""; }

std::string Indented(std::string_view text, std::size_t by) {
  std::string indented;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size() - 1);
    indented += std::string(by, ' ');
    indented += text.substr(0, end + 1);
    text.remove_prefix(end + 1);
  }
  return indented;
}

const char* NameOf(ControlKind kind) {
  switch (kind) {
    case ControlKind::kLabel:
      return "label";
    case ControlKind::kGroup:
      return "group";
    case ControlKind::kPushButton:
    case ControlKind::kDefaultButton:
      return "button";
    case ControlKind::kRadioButton:
      return "radio";
    case ControlKind::kCheckBox:
      return "check";
    case ControlKind::kEdit:
      return "edit";
    case ControlKind::kComboBox:
      return "combo";
    case ControlKind::kDropDownList:
      return "choice";
    case ControlKind::kList:
      return "list";
  }
  return "control";
}

/// What the control shows, and how it stands.
std::string Content(const Control& control) {
  if (const auto* button = dynamic_cast<const Button*>(&control)) {
    std::string mark;
    if (control.Kind() == ControlKind::kRadioButton) mark = button->IsChecked() ? "(*) " : "( ) ";
    if (control.Kind() == ControlKind::kCheckBox) mark = button->IsChecked() ? "[x] " : "[ ] ";
    return mark + Quoted(control.Text()) +
           (control.Kind() == ControlKind::kDefaultButton ? " (default)" : "");
  }
  if (const auto* combo = dynamic_cast<const ComboBox*>(&control)) {
    std::string text = "[" + OneLine(control.Text()) + "]";
    const char* separator = " items: ";
    for (const std::string& item : combo->Items()) {
      text += separator + OneLine(item);
      separator = ", ";
    }
    return text;
  }
  if (control.Kind() == ControlKind::kEdit) return "[" + OneLine(control.Text()) + "]";
  if (control.Kind() == ControlKind::kList) return {};
  return Quoted(control.Text());
}

std::string Line(const Control& control) {
  std::string line =
      Format("%s %6u %-6s ", control.HasFocus() ? ">" : " ", control.Id(), NameOf(control.Kind()));
  line += Content(control);
  if (!control.IsEnabled()) line += " (disabled)";
  if (!control.IsVisible()) line += " (hidden)";
  line = WithoutEndBlanks(line) + "\n";
  if (const auto* list = dynamic_cast<const ListView*>(&control)) line += Indented(Picture(*list), 8);
  return line;
}

}  // namespace

std::string Picture(const Dialog& dialog) {
  std::string text = Quoted(dialog.Text()) + "\n";
  for (const Window* child : dialog.Children()) {
    if (const auto* control = dynamic_cast<const Control*>(child)) text += Line(*control);
  }
  return text;
}

std::string Picture(const ListView& list) {
  constexpr int kMostRows = 200;
  const int page = list.RowsPerPage();
  const int first = page > 0 ? list.TopRow() : 0;
  const int end = std::min(list.RowCount(), first + (page > 0 ? page : kMostRows));
  std::vector<int> columns;
  for (const int column : list.Header().Order()) {
    if (list.ColumnWidth(column) > 0) columns.push_back(column);
  }
  std::vector<std::size_t> widths;
  for (const int column : columns) {
    std::size_t width = Characters(list.ColumnHeading(column));
    for (int row = first; row < end; ++row) {
      width = std::max(width, Characters(OneLine(list.ItemText(row, column))));
    }
    widths.push_back(width);
  }
  std::string text;
  const auto addLine = [&](std::string line, const auto& cell) {
    for (std::size_t i = 0; i < columns.size(); ++i) {
      line += i == 0 ? " " : " | ";
      line += Padded(cell(columns[i]), widths[i], list.FormatOf(columns[i]));
    }
    text += WithoutEndBlanks(line) + "\n";
  };
  addLine("  ", [&](int column) { return OneLine(list.ColumnHeading(column)); });
  for (int row = first; row < end; ++row) {
    const std::string marks = {row == list.FocusRow() ? '>' : ' ', row == list.SelectedRow() ? '*' : ' '};
    addLine(marks, [&](int column) { return OneLine(list.ItemText(row, column)); });
  }
  if (page == 0 && end < list.RowCount()) text += Format("   %d more rows\n", list.RowCount() - end);
  return text;
}

std::string Picture(const Menu& menu) {
  std::string text;
  for (const MenuItem& item : menu.Items()) {
    if (item.kind == MenuItemKind::kSeparator) {
      text += "        --\n";
      continue;
    }
    std::string line =
        item.popup ? std::string(8, ' ') : Format("%5u %s ", item.id, item.checked ? "x" : " ");
    line += OneLine(item.text);
    if (!item.enabled) line += " (disabled)";
    text += WithoutEndBlanks(line) + "\n";
    if (item.popup) text += Indented(Picture(*item.popup), 2);
  }
  return text;
}

std::string Picture(const Toolbar& toolbar) {
  std::string text;
  for (const ToolbarButton& button : toolbar.Buttons()) {
    if (!button.visible) continue;
    if (button.id == 0) {
      text += "        --\n";
      continue;
    }
    text += WithoutEndBlanks(Format("%5u %s ", button.id, button.checked ? "x" : " ") + OneLine(button.tip));
    text += button.enabled ? "\n" : " (disabled)\n";
  }
  return text;
}

std::string Picture(const Window& window) {
  if (const auto* dialog = dynamic_cast<const Dialog*>(&window)) return Picture(*dialog);
  if (const auto* list = dynamic_cast<const ListView*>(&window)) return Picture(*list);
  if (const auto* control = dynamic_cast<const Control*>(&window)) return Line(*control);
  std::string text = "window " + Quoted(window.Text());
  if (!window.IsEnabled()) text += " (disabled)";
  if (!window.IsVisible()) text += " (hidden)";
  text += "\n";
  for (const Window* child : window.Children()) {
    if (!dynamic_cast<const HeaderControl*>(child)) text += Indented(Picture(*child), 2);
  }
  return text;
}

std::string Picture(const MessageBoxRequest& box) {
  const std::string icon = box.icon == Icon::kNone ? "message" : platform::NameOf(box.icon);
  std::string text = "[" + icon + "] " + OneLine(box.text) + " (";
  const char* separator = "";
  for (const Answer answer : {Answer::kOk, Answer::kYes, Answer::kNo, Answer::kCancel}) {
    if (!Offers(box.buttons, answer)) continue;
    text += separator + std::string(platform::NameOf(answer));
    separator = ", ";
  }
  return text + ")\n";
}

std::string Picture(const FileDialogRequest& request) {
  std::string text = request.save ? "[save file] " : "[open file] ";
  text += "in \"" + request.directory + "\"";
  if (!request.fileName.empty()) text += " name \"" + request.fileName + "\"";
  const char* separator = ": ";
  for (const auto& [name, pattern] : FilterEntries(request.filter)) {
    text += separator;
    text += name;
    text += " ";
    text += pattern;
    separator = ", ";
  }
  return text + "\n";
}

}  // namespace platform
