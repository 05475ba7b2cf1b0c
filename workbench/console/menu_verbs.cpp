#include <algorithm>

#include "platform/menu.h"
#include "platform/picture.h"
#include "platform/resources.h"
#include "workbench/console/console.h"

// The menus and toolbars that components have given the IDE.

namespace workbench {
namespace {

constexpr std::uint64_t kHighestCommand = 0xFFFF;

/// Target of a menu's commands: the window that registered it, else the pane with the focus when it offers
/// it.
platform::Window* TargetOf(Console& console, const WindowService::MenuRegistration& menu) {
  if (menu.window == 0) return console.ide().Windows().WindowOf(menu.key);
  platform::Window* const window = platform::WindowFrom(menu.window);
  platform::Window* const focused = platform::FocusedWindow();
  return window && focused && focused->IsWithin(*window) ? window : nullptr;
}

std::uint32_t TakeCommand(Words& words) {
  const auto command = static_cast<std::uint32_t>(words.TakeNumber("the command", kHighestCommand));
  words.End();
  return command;
}

bool Holds(const std::vector<std::uint32_t>& commands, std::uint32_t command) {
  return std::find(commands.begin(), commands.end(), command) != commands.end();
}

void Run(platform::Window& target, std::uint32_t command) {
  if (!platform::RunCommand(target, command)) throw VerbError("the command is disabled");
}

void OnMenu(Console& console, Words& words) {
  const auto& menus = console.ide().Windows().Menus();
  if (words.Empty()) {
    for (const auto& registration : menus) {
      platform::Window* const target = TargetOf(console, registration);
      if (!target) continue;
      const platform::ResourceScope scope(registration.module);
      const auto menu = platform::Menu::Load(registration.menu);
      if (!menu) throw VerbError("the component's library has no menu " + std::to_string(registration.menu));
      menu->Update(*target);
      console.Print(platform::Picture(*menu));
    }
    return;
  }
  const std::uint32_t command = TakeCommand(words);
  for (const auto& registration : menus) {
    platform::Window* const target = TargetOf(console, registration);
    if (target && Holds(registration.commands, command)) return Run(*target, command);
  }
  throw VerbError("no menu has the command " + std::to_string(command) + "; menu lists them");
}

/// The pane with the focus, its frame, and the toolbar that the frame wears.
struct FocusedToolbar {
  platform::Window* pane = nullptr;
  platform::Window* frame = nullptr;
  FrameToolbar* toolbar = nullptr;
};

FocusedToolbar ToolbarOfFocus(Console& console) {
  for (platform::Window* pane = platform::FocusedWindow(); pane && pane->Parent(); pane = pane->Parent()) {
    FrameToolbar* const toolbar = console.ide().Windows().ToolbarOf(pane->ParentHandle());
    if (toolbar) return {pane, pane->Parent(), toolbar};
  }
  return {};
}

void OnToolbar(Console& console, Words& words) {
  const auto& toolbars = console.ide().Windows().Toolbars();
  const FocusedToolbar focused = ToolbarOfFocus(console);
  if (words.Empty()) {
    for (const auto& registration : toolbars) {
      platform::Window* const target = console.ide().Windows().WindowOf(registration.key);
      const platform::ResourceScope scope(registration.module);
      const auto toolbar =
          platform::Toolbar::Load(registration.toolbar ? registration.toolbar : registration.alternate);
      if (!target || !toolbar) continue;
      toolbar->Update(*target);
      console.Print(registration.name);
      console.Print(platform::Picture(*toolbar));
    }
    if (!focused.toolbar) return;
    console.Print(focused.frame->Text() + (focused.toolbar->Shown() ? "" : " (no toolbar)"));
    focused.toolbar->Update(*focused.pane);
    if (focused.toolbar->Shown()) console.Print(platform::Picture(focused.toolbar->Buttons()));
    return;
  }
  const std::uint32_t command = TakeCommand(words);
  for (const auto& registration : toolbars) {
    platform::Window* const target = console.ide().Windows().WindowOf(registration.key);
    if (target && Holds(registration.buttons, command)) return Run(*target, command);
  }
  if (focused.toolbar && focused.toolbar->Offers(command)) return Run(*focused.pane, command);
  throw VerbError("no toolbar has the button " + std::to_string(command) + "; toolbar lists them");
}

/// Some commands of a pane stand in no menu and on no toolbar.
void OnSend(Console&, Words& words) {
  const std::uint32_t command = TakeCommand(words);
  platform::Window* const focused = platform::FocusedWindow();
  if (!focused || !focused->Parent())
    throw VerbError("no pane has the focus; focus N stat|data gives it to one");
  Run(*focused->Parent(), command);
}

constexpr Verb kVerbs[] = {
    {"menu", "\nID", "Lists the registered menu commands, or chooses one.", OnMenu},
    {"toolbar", "\nID", "Lists the toolbars of the IDE and of the focused window, or presses a button.",
     OnToolbar},
    {"send", "ID", "Sends a command to the focused pane, also one that stands in no menu.", OnSend},
};

}  // namespace

std::span<const Verb> MenuVerbs() { return kVerbs; }

}  // namespace workbench
