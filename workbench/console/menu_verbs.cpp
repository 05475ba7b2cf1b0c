#include <algorithm>

#include "platform/file_dialog.h"
#include "platform/menu.h"
#include "platform/picture.h"
#include "platform/resources.h"
#include "workbench/console/console.h"
#include "workbench/services/main_menu.h"

// The menu bar and the toolbars: the IDE's own and what components have given it.

namespace workbench {
namespace {

constexpr std::uint64_t kHighestCommand = 0xFFFF;

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

/// A command of the IDE's own menus does what a verb does.
void RunOwn(Console& console, std::uint32_t command) {
  switch (command) {
    case own_command::kOpenProgram: {
      platform::FileDialogRequest request;
      request.filter = "Programs (*.elf)|*.elf|All files (*.*)|*.*||";
      if (const auto file = platform::AskForFile(request)) console.Execute("program load " + *file);
      return;
    }
    case own_command::kDownload:
      console.Execute("download");
      return;
    case own_command::kRun:
      console.Execute("run");
      return;
    case own_command::kReset:
      console.Execute("reset");
      return;
    default:
      console.Quit();
  }
}

void OnMenu(Console& console, Words& words) {
  const WindowService& windows = console.ide().Windows();
  const platform::Menu bar = MainMenu(windows, console.ide().Debugger().Current() != nullptr);
  if (words.Empty()) return console.Print(platform::Picture(bar));
  const std::uint32_t command = TakeCommand(words);
  for (const auto& registration : windows.Menus()) {
    platform::Window* const target = TargetOf(windows, registration);
    if (target && Holds(registration.commands, command)) return Run(*target, command);
  }
  const platform::MenuItem* const own = bar.Find(command);
  if (!own) throw VerbError("no menu has the command " + std::to_string(command) + "; menu lists them");
  if (!own->enabled) throw VerbError("the command is disabled");
  RunOwn(console, command);
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
    {"menu", "\nID", "Shows the menu bar, or chooses a command of it.", OnMenu},
    {"toolbar", "\nID", "Lists the toolbars of the IDE and of the focused window, or presses a button.",
     OnToolbar},
    {"send", "ID", "Sends a command to the focused pane, also one that stands in no menu.", OnSend},
};

}  // namespace

std::span<const Verb> MenuVerbs() { return kVerbs; }

}  // namespace workbench
