#include <algorithm>

#include "platform/list_view.h"
#include "platform/menu.h"
#include "platform/picture.h"
#include "platform/queue.h"
#include "platform/resources.h"
#include "platform/script_presenter.h"
#include "platform/text.h"
#include "workbench/console/console.h"

namespace workbench {
namespace {

constexpr std::uint64_t kMostFrames = 1000;
constexpr std::uint64_t kHighestCommand = 0xFFFF;

struct Panes {
  platform::ListView* statistics = nullptr;
  platform::ListView* data = nullptr;
};

Panes PanesOf(const FrameWindow& frame) {
  Panes panes;
  for (platform::ListView* list : frame.Lists()) {
    (FrameWindow::IsSummary(*list) ? panes.statistics : panes.data) = list;
  }
  return panes;
}

/// The frame that a person means with a number from 1.
FrameWindow& TakeFrame(Console& console, Words& words) {
  const auto frames = console.ide().Windows().ShownFrames();
  const std::uint64_t number = words.TakeNumber("the window", kMostFrames);
  if (number == 0 || number > frames.size()) {
    throw VerbError("there is no window " + std::to_string(number) + "; windows lists them");
  }
  return *frames[number - 1];
}

/// "stat", "data" or nothing; false for the data pane.
std::optional<bool> TakePane(Words& words) {
  if (words.TakeIf("stat")) return true;
  if (words.TakeIf("data")) return false;
  return std::nullopt;
}

platform::ListView& Need(platform::ListView* list) {
  if (!list) throw VerbError("the window has no such pane");
  return *list;
}

platform::ListView& FocusedList() {
  auto* list = dynamic_cast<platform::ListView*>(platform::FocusedWindow());
  if (!list) throw VerbError("no pane has the focus; focus N stat|data gives it to one");
  return *list;
}

void OnWindows(Console& console, Words& words) {
  words.End();
  std::size_t number = 0;
  for (const FrameWindow* frame : console.ide().Windows().ShownFrames()) {
    console.Print(std::to_string(++number) + "  " + frame->Text());
  }
  if (number == 0) console.Print("no windows");
}

void OnShow(Console& console, Words& words) {
  const auto frames = console.ide().Windows().ShownFrames();
  std::vector<FrameWindow*> wanted = frames;
  if (!words.Empty() && ParseNumber(words.Peek())) wanted = {&TakeFrame(console, words)};
  const auto pane = TakePane(words);
  words.End();
  if (wanted.empty()) throw VerbError("there are no windows");
  for (const FrameWindow* frame : wanted) {
    const Panes panes = PanesOf(*frame);
    console.Print(frame->Text());
    if (panes.statistics && pane.value_or(true)) console.Print(platform::Picture(*panes.statistics));
    if (panes.data && !pane.value_or(false)) console.Print(platform::Picture(*panes.data));
  }
}

void OnFocus(Console& console, Words& words) {
  const Panes panes = PanesOf(TakeFrame(console, words));
  const auto pane = TakePane(words);
  if (!pane) throw VerbError("stat or data is missing");
  words.End();
  if (!Need(*pane ? panes.statistics : panes.data).SetFocus()) throw VerbError("the pane cannot be used");
}

void OnClose(Console& console, Words& words) {
  FrameWindow& frame = TakeFrame(console, words);
  words.End();
  if (!console.ide().Windows().CloseFrame(frame)) console.Print("the window stays open");
}

/// Target of a command: the window that registered it, else the pane with the focus when it offers it.
platform::Window* TargetOf(Console& console, const WindowService::MenuRegistration& menu) {
  if (menu.window == 0) return console.ide().Windows().WindowOf(menu.key);
  platform::Window* const window = platform::WindowFrom(menu.window);
  platform::Window* const focused = platform::FocusedWindow();
  return window && focused && focused->IsWithin(*window) ? window : nullptr;
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
  const auto command = static_cast<std::uint32_t>(words.TakeNumber("the command", kHighestCommand));
  words.End();
  for (const auto& registration : menus) {
    platform::Window* const target = TargetOf(console, registration);
    const auto& ids = registration.commands;
    if (!target || std::find(ids.begin(), ids.end(), command) == ids.end()) continue;
    if (!platform::RunCommand(*target, command)) throw VerbError("the command is disabled");
    return;
  }
  throw VerbError("no menu has the command " + std::to_string(command) + "; menu lists them");
}

/// One line for the focused list: the verb and what stands behind it.
template <const char* Word>
void OnList(Console&, Words& words) {
  const std::string rest = words.Rest();
  const auto reason = platform::ActOnList(FocusedList(), Word + (rest.empty() ? "" : " " + rest));
  if (reason) throw VerbError(*reason);
}

constexpr char kRow[] = "row";
constexpr char kDoubleClick[] = "double-click";
constexpr char kHeader[] = "header";
constexpr char kKey[] = "key";
constexpr char kScroll[] = "scroll";
constexpr char kSize[] = "size";
constexpr char kContext[] = "context";

void OnWait(Console&, Words& words) {
  const std::uint64_t time = words.TakeNumber("the number of milliseconds", 3'600'000);
  words.End();
  platform::PassTime(std::chrono::milliseconds(time));
}

constexpr Verb kVerbs[] = {
    {"windows", "", "Lists the coverage windows.", OnWindows},
    {"show", "[N] [stat|data]", "Prints coverage windows, or one pane, as tables.", OnShow},
    {"focus", "N stat|data", "Gives a pane the focus.", OnFocus},
    {"close", "N", "Closes a coverage window.", OnClose},
    {"menu", "\nID", "Lists the registered menu commands, or chooses one.", OnMenu},
    {"row", "K", "Clicks a row of the focused pane; rows count from 0.", OnList<kRow>},
    {"double-click", "K", "Double-clicks a row.", OnList<kDoubleClick>},
    {"header", "COLUMN", "Clicks a heading; columns count from 0.", OnList<kHeader>},
    {"key", "NAME", "Presses a key in the focused pane, for example down or ctrl+g.", OnList<kKey>},
    {"scroll", "ROWS", "Scrolls the focused pane.", OnList<kScroll>},
    {"size", "ROWS", "Gives the focused pane so many rows.", OnList<kSize>},
    {"context", "K|header", "Opens the pop-up menu of a row; menu ID or menu cancel answers it.",
     OnList<kContext>},
    {"wait", "MILLISECONDS", "Lets the time of timers pass.", OnWait},
};

}  // namespace

std::span<const Verb> WindowVerbs() { return kVerbs; }

}  // namespace workbench
