#include <algorithm>

#include "platform/list_view.h"
#include "platform/picture.h"
#include "platform/queue.h"
#include "platform/script_presenter.h"
#include "platform/text.h"
#include "workbench/console/console.h"

namespace workbench {
namespace {

constexpr std::uint64_t kMostFrames = 1000;

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
  const auto frames = console.ide().Windows().FramesInUse();
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

/// Title of a window, and how its frame stands where that is not as usual.
std::string TitleOf(const FrameWindow& frame) {
  return frame.Text() + (frame.MayDock() ? "" : " (floating)") + (frame.IsVisible() ? "" : " (hidden)");
}

void OnWindows(Console& console, Words& words) {
  words.End();
  std::size_t number = 0;
  for (const FrameWindow* frame : console.ide().Windows().FramesInUse()) {
    console.Print(std::to_string(++number) + "  " + TitleOf(*frame));
  }
  if (number == 0) console.Print("no windows");
}

void OnShow(Console& console, Words& words) {
  std::vector<FrameWindow*> wanted = console.ide().Windows().FramesInUse();
  if (!words.Empty() && ParseNumber(words.Peek())) {
    wanted = {&TakeFrame(console, words)};
  } else {
    std::erase_if(wanted, [](const FrameWindow* frame) { return !frame->IsVisible(); });
  }
  const auto pane = TakePane(words);
  words.End();
  if (wanted.empty()) throw VerbError("no window is shown; windows lists the hidden ones, too");
  for (const FrameWindow* frame : wanted) {
    const Panes panes = PanesOf(*frame);
    console.Print(TitleOf(*frame));
    if (panes.statistics && pane.value_or(true)) console.Print(platform::Picture(*panes.statistics));
    if (panes.data && !pane.value_or(false)) console.Print(platform::Picture(*panes.data));
  }
}

void OnFocus(Console& console, Words& words) {
  FrameWindow& frame = TakeFrame(console, words);
  const Panes panes = PanesOf(frame);
  const auto pane = TakePane(words);
  if (!pane) throw VerbError("stat or data is missing");
  words.End();
  platform::ListView& list = Need(*pane ? panes.statistics : panes.data);
  if (!frame.IsVisible()) frame.RequestState(FrameWindow::kShow);
  if (!list.SetFocus()) throw VerbError("the pane cannot be used");
}

void OnClose(Console& console, Words& words) {
  FrameWindow& frame = TakeFrame(console, words);
  words.End();
  if (!console.ide().Windows().CloseFrame(frame)) console.Print("the window stays open");
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
constexpr char kDrag[] = "drag";
constexpr char kDeselect[] = "deselect";
constexpr char kWidth[] = "width";
constexpr char kScroll[] = "scroll";
constexpr char kTop[] = "top";
constexpr char kWheel[] = "wheel";
constexpr char kContext[] = "context";

/// A key goes to the component's accelerators first, as in any IDE.
void OnKey(Console& console, Words& words) {
  const std::string name = words.Take("the key");
  words.End();
  const auto pressed = platform::KeyOf(name);
  if (!pressed) throw VerbError("there is no key " + name);
  if (console.ide().Windows().RunAccelerator(pressed->virtualKey, pressed->modifiers)) return;
  if (const auto reason = platform::ActOnList(FocusedList(), "key " + name)) throw VerbError(*reason);
}

/// The pane grows with its list, as when a person drags the edge of the window.
void OnSize(Console&, Words& words) {
  platform::ListView& list = FocusedList();
  const int before = list.Bounds().Height();
  if (const auto reason = platform::ActOnList(list, "size " + words.Rest())) throw VerbError(*reason);
  platform::Window* const pane = list.Parent();
  if (!pane) return;
  platform::Rect place = pane->Bounds();
  place.bottom += list.Bounds().Height() - before;
  pane->Move(place);
}

void OnWait(Console&, Words& words) {
  const std::uint64_t time = words.TakeNumber("the number of milliseconds", 3'600'000);
  words.End();
  platform::PassTime(std::chrono::milliseconds(time));
}

constexpr Verb kVerbs[] = {
    {"windows", "", "Lists the coverage windows.", OnWindows},
    {"show", "[N] [stat|data]", "Prints coverage windows, or one pane, as tables.", OnShow},
    {"focus", "N stat|data", "Gives a pane the focus; a hidden window is shown again.", OnFocus},
    {"close", "N", "Closes a coverage window.", OnClose},
    {"row", "K", "Clicks a row of the focused pane; rows count from 0.", OnList<kRow>},
    {"double-click", "K", "Double-clicks a row.", OnList<kDoubleClick>},
    {"drag", "K", "Begins to drag a row.", OnList<kDrag>},
    {"deselect", "", "Clicks below the last row.", OnList<kDeselect>},
    {"header", "COLUMN", "Clicks a heading; columns count from 0.", OnList<kHeader>},
    {"key", "NAME",
     "Presses a key: one of the component's, for example shift+ctrl+o, or one for the focused pane.", OnKey},
    {"scroll", "ROWS", "Scrolls the focused pane.", OnList<kScroll>},
    {"top", "K", "Scrolls the focused pane so that it begins with a row.", OnList<kTop>},
    {"wheel", "NOTCHES", "Turns the mouse wheel.", OnList<kWheel>},
    {"width", "COLUMN PIXELS", "Drags the edge of a column.", OnList<kWidth>},
    {"size", "ROWS", "Gives the focused pane so many rows.", OnSize},
    {"context", "K|header", "Opens the pop-up menu of a row; menu ID or menu cancel answers it.",
     OnList<kContext>},
    {"wait", "MILLISECONDS", "Lets the time of timers pass.", OnWait},
};

}  // namespace

std::span<const Verb> WindowVerbs() { return kVerbs; }

}  // namespace workbench
