#include "platform/combo_box.h"

#include <algorithm>

#include "platform/desktop.h"

namespace platform {

void ComboBox::SetItems(std::vector<std::string> items) {
  items_ = std::move(items);
  selected_ = -1;
  Desktop::Get().Tell(*this, Change::kItems);
  if (!IsEditable()) ShowItem(-1);
}

void ComboBox::AddItem(std::string_view text) {
  items_.emplace_back(text);
  Desktop::Get().Tell(*this, Change::kItems);
}

void ComboBox::ClearItems() { SetItems({}); }

void ComboBox::AddToHistory(std::string_view text, std::size_t limit) {
  const std::string entry(text);
  std::erase(items_, entry);
  items_.insert(items_.begin(), entry);
  if (items_.size() > limit) items_.resize(limit);
  const auto chosen = std::find(items_.begin(), items_.end(), Text());
  selected_ = selected_ < 0 || chosen == items_.end() ? -1 : static_cast<int>(chosen - items_.begin());
  Desktop::Get().Tell(*this, Change::kItems);
}

void ComboBox::ShowItem(int index) {
  selected_ = index;
  line_.SetText(index < 0 ? std::string() : items_[static_cast<std::size_t>(index)]);
  if (index >= 0 && IsEditable()) line_.Select(0, std::string::npos);
  Control::SetText(line_.Text());
  Desktop::Get().Tell(*this, Change::kSelection);
}

void ComboBox::SelectItem(int index) {
  ShowItem(index >= 0 && index < static_cast<int>(items_.size()) ? index : -1);
}

void ComboBox::SetText(std::string_view text) {
  const auto found = std::find(items_.begin(), items_.end(), text);
  if (!IsEditable()) {
    SelectItem(found == items_.end() ? -1 : static_cast<int>(found - items_.begin()));
    return;
  }
  selected_ = -1;
  line_.SetText(text);
  Control::SetText(text);
}

void ComboBox::Select(std::size_t start, std::size_t end) {
  line_.Select(start, end);
  Desktop::Get().Tell(*this, Change::kSelection);
}

bool ComboBox::Choose(int index) {
  if (!CanBeUsed() || index < 0 || index >= static_cast<int>(items_.size())) return false;
  const Desktop::Busy busy;
  const WindowRef self(*this);
  SetFocus();
  if (!self || index >= static_cast<int>(items_.size())) return true;
  ShowItem(index);
  Notification news;
  news.code = notify::kSelectionChanged;
  news.row = index;
  Notify(news);
  return true;
}

bool ComboBox::Choose(std::string_view text) {
  const auto found = std::find(items_.begin(), items_.end(), text);
  return found != items_.end() && Choose(static_cast<int>(found - items_.begin()));
}

bool ComboBox::Type(std::string_view typed) {
  if (!CanBeUsed() || !IsEditable()) return false;
  const Desktop::Busy busy;
  const WindowRef self(*this);
  SetFocus();
  if (self && line_.Type(typed)) Changed();
  return true;
}

void ComboBox::Changed() {
  const WindowRef self(*this);
  selected_ = -1;
  Control::SetText(line_.Text());
  if (!self) return;
  Notification news;
  news.code = notify::kChanged;
  Notify(news);
}

bool ComboBox::TypeOver(std::string_view typed) {
  if (!CanBeUsed() || !IsEditable()) return false;
  Select(0, std::string::npos);
  return Type(typed);
}

LResult ComboBox::OnMessage(const Message& message) {
  if (message.id == message::kCreate) SetText(std::string(Text()));
  if (message.id != message::kKeyDown) return Control::OnMessage(message);
  const auto pressed = static_cast<std::uint32_t>(message.w);
  const int count = static_cast<int>(items_.size());
  if (pressed == key::kDown || pressed == key::kUp) {
    const int next = pressed == key::kDown ? selected_ + 1 : selected_ - 1;
    if (next >= 0 && next < count) Choose(next);
  } else if (IsEditable()) {
    if (line_.Key(pressed)) {
      Changed();
    } else {
      Desktop::Get().Tell(*this, Change::kSelection);
    }
  }
  return 0;
}

}  // namespace platform
