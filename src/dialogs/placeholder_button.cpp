#include "dialogs/placeholder_button.h"

#include <memory>

#include "platform/presenter.h"
#include "util/placeholder_resolver.h"
#include "util/texts.h"

namespace coverage {

const platform::Menu& CUiPlaceholderButtonEB::BuildMenu() {
  menu_.Clear();
  commands_.clear();
  std::uint32_t command = kFirstCommand;
  for (const int index : indexes_) {
    if (command > kLastCommand) return menu_;
    if (index == kPlaceholderSeparator) {
      menu_.AppendSeparator();
    } else {
      menu_.Append(command, PlaceholderResolver::PlaceholderDescription(index));
      commands_[command] = PlaceholderResolver::PlaceholderName(index, false);
    }
    ++command;
  }
  AppendCustomPlaceholders(command);
  return menu_;
}

void CUiPlaceholderButtonEB::AppendCustomPlaceholders(std::uint32_t firstCommand) {
  const std::vector<CustomPlaceholder> definitions = PlaceholderResolver(host_).ListCustomPlaceholders();
  if (definitions.empty()) return;
  auto custom = std::make_shared<platform::Menu>();
  std::uint32_t command = firstCommand;
  for (const CustomPlaceholder& definition : definitions) {
    if (command > kLastCommand) break;
    custom->Append(command, definition.description);
    commands_[command++] = definition.name;
  }
  menu_.AppendSeparator();
  menu_.AppendPopup(std::move(custom), coverage::Text(strings::kCustomPlaceholders));
}

void CUiPlaceholderButtonEB::OnPressed() {
  BuildMenu();
  platform::TrackPopupMenu(menu_, platform::CursorPosition(), *this);
}

platform::LResult CUiPlaceholderButtonEB::OnMessage(const platform::Message& message) {
  if (message.id == platform::message::kCommand) {
    const auto chosen = commands_.find(message.CommandId());
    if (chosen != commands_.end()) {
      Insert(chosen->second);
      return 0;
    }
  }
  return Button::OnMessage(message);
}

void CUiPlaceholderButtonEB::Insert(const std::string& name) {
  if (targetEdit_) {
    InsertInto(*targetEdit_, name);
  } else if (targetCombo_) {
    InsertInto(*targetCombo_, name);
  }
}

template <class Field>
void CUiPlaceholderButtonEB::InsertInto(Field& field, const std::string& name) {
  const std::string text = field.Text();
  const std::string before = text.substr(0, field.SelectionStart());
  const std::string after = text.substr(field.SelectionEnd());
  const std::string inserted = before + "$(" + name + ")";
  field.SetText(before + field.Accepted(inserted.substr(before.size())) + after);
  const std::size_t caret = field.Text() == inserted + after ? inserted.size() : before.size();
  field.Select(caret, caret);
  field.SetFocus();
}

}  // namespace coverage
