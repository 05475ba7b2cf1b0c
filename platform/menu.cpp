#include "platform/menu.h"

#include "platform/desktop.h"
#include "platform/modal.h"
#include "platform/resources.h"
#include "platform/text.h"

namespace platform {

namespace {

/// Items of one level from `next` on, and of the pop-ups below it.
void Read(const MenuTemplate& resource, std::uint32_t& next, std::uint8_t level, Menu& menu) {
  while (next < resource.itemCount && resource.items[next].level >= level) {
    const MenuItemTemplate& item = resource.items[next++];
    const std::string text = FromUtf8(item.text ? item.text : "");
    if (item.kind == MenuItemKind::kSeparator) {
      menu.AppendSeparator();
    } else if (item.kind == MenuItemKind::kCommand) {
      menu.Append(item.id, text);
    } else {
      auto popup = std::make_shared<Menu>();
      if (level < UINT8_MAX) Read(resource, next, static_cast<std::uint8_t>(level + 1), *popup);
      menu.AppendPopup(std::move(popup), text);
    }
  }
}

std::uint16_t Word(std::span<const std::uint8_t> bytes, std::size_t index) {
  return static_cast<std::uint16_t>(bytes[index * 2] | (bytes[index * 2 + 1] << 8));
}

}  // namespace

Menu::Menu(const MenuTemplate& resource) {
  std::uint32_t next = 0;
  Read(resource, next, 0, *this);
}

std::shared_ptr<Menu> Menu::Load(std::uint32_t id) {
  const MenuTemplate* resource = LoadMenu(id);
  return resource ? std::make_shared<Menu>(*resource) : nullptr;
}

void Menu::Append(std::uint32_t id, std::string_view text, bool checked, bool enabled) {
  items_.push_back({MenuItemKind::kCommand, id, std::string(text), enabled, checked, nullptr});
}

void Menu::AppendSeparator() { items_.push_back({MenuItemKind::kSeparator, 0, {}, true, false, nullptr}); }

void Menu::AppendPopup(std::shared_ptr<Menu> popup, std::string_view text) {
  items_.push_back({MenuItemKind::kPopup, 0, std::string(text), true, false, std::move(popup)});
}

void Menu::RemoveAt(std::size_t position) {
  if (position < items_.size()) items_.erase(items_.begin() + static_cast<std::ptrdiff_t>(position));
}

std::string Menu::TextAt(std::size_t position) const {
  return position < items_.size() ? items_[position].text : std::string();
}

MenuItem* Menu::Find(std::uint32_t id) {
  for (MenuItem& item : items_) {
    if (item.kind == MenuItemKind::kCommand && item.id == id) return &item;
    if (!item.popup) continue;
    if (MenuItem* found = item.popup->Find(id)) return found;
  }
  return nullptr;
}

const MenuItem* Menu::Find(std::uint32_t id) const { return const_cast<Menu*>(this)->Find(id); }

bool Menu::Enable(std::uint32_t id, bool enabled) {
  MenuItem* item = Find(id);
  if (item) item->enabled = enabled;
  return item != nullptr;
}

bool Menu::Check(std::uint32_t id, bool checked) {
  MenuItem* item = Find(id);
  if (item) item->checked = checked;
  return item != nullptr;
}

void Menu::Update(Window& target) {
  const WindowRef ref(target);
  for (MenuItem& item : items_) {
    if (!ref) return;
    if (item.popup) item.popup->Update(target);
    if (item.kind != MenuItemKind::kCommand) continue;
    const CommandUpdate update = QueryCommand(target, item.id);
    item.enabled = update.Enabled();
    item.checked = update.Checked();
    if (update.Text()) item.text = *update.Text();
  }
}

std::optional<std::uint32_t> TrackPopupMenu(const Menu& menu, Point at, Window& owner) {
  Presenter* presenter = CurrentPresenter();
  if (!presenter || !owner.Exists()) return std::nullopt;
  const Desktop::Busy busy;
  const WindowRef ref(owner);
  const auto chosen = [&] {
    const ModalScope modal;
    return presenter->ChooseFromMenu(menu, at, owner);
  }();
  const MenuItem* item = chosen ? menu.Find(*chosen) : nullptr;
  if (!item || !item->enabled || !ref) return std::nullopt;
  owner.Send(message::kCommand, *chosen);
  return chosen;
}

std::string PlainText(std::string_view menuText) {
  std::string plain;
  for (std::size_t at = 0; at < menuText.size() && menuText[at] != '\t';) {
    const std::size_t next = NextChar(menuText, at);
    if (menuText[at] != '&') {
      plain += menuText.substr(at, next - at);
    } else if (next < menuText.size() && menuText[next] == '&') {
      plain += '&';
      at = next + 1;
      continue;
    }
    at = next;
  }
  return plain;
}

std::optional<std::uint32_t> Translate(const AcceleratorTable& table, std::uint32_t virtualKey,
                                       std::uint8_t modifiers) {
  for (std::uint32_t i = 0; i < table.count; ++i) {
    const Accelerator& entry = table.entries[i];
    if (entry.key == virtualKey && entry.modifiers == modifiers) return entry.command;
  }
  return std::nullopt;
}

std::shared_ptr<Toolbar> Toolbar::FromBytes(std::span<const std::uint8_t> bytes) {
  constexpr std::size_t kHeaderWords = 4;
  auto toolbar = std::make_shared<Toolbar>();
  if (bytes.size() < kHeaderWords * 2 || Word(bytes, 0) != 1) return toolbar;
  const std::size_t count = Word(bytes, 3);
  if (bytes.size() < (kHeaderWords + count) * 2) return toolbar;
  toolbar->buttonWidth = Word(bytes, 1);
  toolbar->buttonHeight = Word(bytes, 2);
  int image = 0;
  for (std::size_t i = 0; i < count; ++i) {
    ToolbarButton button;
    button.id = Word(bytes, kHeaderWords + i);
    if (button.id != 0) {
      button.image = image++;
      const std::string text = LoadText(button.id).value_or("");
      const std::size_t lineBreak = text.find('\n');
      if (lineBreak != std::string::npos) button.tip = text.substr(lineBreak + 1);
    }
    toolbar->buttons_.push_back(std::move(button));
  }
  return toolbar;
}

std::shared_ptr<Toolbar> Toolbar::Load(std::uint32_t id) {
  const auto bytes = LoadToolbar(id);
  return bytes.empty() ? nullptr : FromBytes(bytes);
}

void Toolbar::Update(Window& target) {
  const WindowRef ref(target);
  for (ToolbarButton& button : buttons_) {
    if (button.id == 0) continue;
    if (!ref) return;
    const CommandUpdate update = QueryCommand(target, button.id);
    button.enabled = update.Enabled();
    button.checked = update.Checked();
  }
}

}  // namespace platform
