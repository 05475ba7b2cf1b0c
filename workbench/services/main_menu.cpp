#include "workbench/services/main_menu.h"

#include <memory>

#include "platform/desktop.h"
#include "platform/resources.h"

namespace workbench {
namespace {

void AppendItems(const platform::Menu& from, platform::Menu& to) {
  for (const platform::MenuItem& item : from.Items()) {
    if (item.kind == platform::MenuItemKind::kSeparator) {
      to.AppendSeparator();
    } else if (item.popup) {
      to.AppendPopup(item.popup, item.text);
    } else {
      to.Append(item.id, item.text, item.checked, item.enabled);
    }
  }
}

platform::Menu* PopupOf(const platform::Menu& menu, const std::string& title) {
  for (const platform::MenuItem& item : menu.Items()) {
    if (item.popup && platform::PlainText(item.text) == platform::PlainText(title)) return item.popup.get();
  }
  return nullptr;
}

/// Items of a pop-up that is there already go behind a separator.
void Merge(const platform::Menu& from, platform::Menu& bar) {
  for (const platform::MenuItem& item : from.Items()) {
    platform::Menu* const there = item.popup ? PopupOf(bar, item.text) : nullptr;
    if (there) {
      there->AppendSeparator();
      AppendItems(*item.popup, *there);
    } else if (item.popup) {
      bar.AppendPopup(item.popup, item.text);
    } else if (item.kind == platform::MenuItemKind::kCommand) {
      bar.Append(item.id, item.text, item.checked, item.enabled);
    }
  }
}

platform::Menu OwnMenus(bool programLoaded) {
  const auto file = std::make_shared<platform::Menu>();
  file->Append(own_command::kOpenProgram, "&Open program...");
  file->Append(own_command::kDownload, "&Download", false, programLoaded);
  file->AppendSeparator();
  file->Append(own_command::kExit, "E&xit");
  const auto debug = std::make_shared<platform::Menu>();
  debug->Append(own_command::kRun, "&Run", false, programLoaded);
  debug->Append(own_command::kReset, "R&eset", false, programLoaded);
  platform::Menu bar;
  bar.AppendPopup(file, "&File");
  bar.AppendPopup(debug, "&Debug");
  return bar;
}

}  // namespace

platform::Window* TargetOf(const WindowService& windows, const WindowService::MenuRegistration& menu) {
  if (menu.window == 0) return windows.WindowOf(menu.key);
  platform::Window* const window = platform::WindowFrom(menu.window);
  platform::Window* const focused = platform::FocusedWindow();
  return window && focused && focused->IsWithin(*window) ? window : nullptr;
}

platform::Menu MainMenu(const WindowService& windows, bool programLoaded) {
  platform::Menu bar = OwnMenus(programLoaded);
  for (const auto& registration : windows.Menus()) {
    platform::Window* const target = TargetOf(windows, registration);
    if (!target) continue;
    const platform::ResourceScope scope(registration.module);
    const auto menu = platform::Menu::Load(registration.menu);
    if (!menu) continue;
    menu->Update(*target);
    Merge(*menu, bar);
  }
  return bar;
}

}  // namespace workbench
