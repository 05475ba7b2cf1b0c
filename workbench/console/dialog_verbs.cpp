#include "workbench/console/console.h"

// What a person does in an open dialog or box. While one is open, it takes these lines itself: here they come
// only when there is none.

namespace workbench {
namespace {

void OnNothingOpen(Console&, Words&) { throw VerbError("no dialog or box is open"); }

void OnDialogs(Console& console, Words& words) {
  console.AnnounceDialogs(words.TakeSwitch("the printing of dialogs"));
  words.End();
}

constexpr Verb kVerbs[] = {
    {"dialogs", "on|off", "Prints dialogs when they open, or only when asked with dialog.", OnDialogs},
    {"dialog", "", "Prints what is open again: identifier, kind and state of each control.", OnNothingOpen},
    {"type", "ID TEXT", "Types over the text of a field.", OnNothingOpen},
    {"choose", "ID TEXT", "Chooses from a list of a field, or a radio button.", OnNothingOpen},
    {"check", "ID on|off", "Checks or clears a check box.", OnNothingOpen},
    {"click", "ID", "Presses a button. focus ID, key NAME and close are for dialogs, too.", OnNothingOpen},
    {"list", "ID row|key|… …", "Acts on a list in the dialog with the verbs for panes.", OnNothingOpen},
    {"answer", "ok|cancel|yes|no", "Answers a message box.", OnNothingOpen},
    {"file", "PATH\ncancel", "Answers a file dialog.", OnNothingOpen},
};

}  // namespace

std::span<const Verb> DialogVerbs() { return kVerbs; }

}  // namespace workbench
