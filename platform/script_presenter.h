#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "platform/api.h"
#include "platform/presenter.h"

namespace platform {

class Dialog;
class ListView;

/// One action of a person, as a word and what follows it. Nothing when it was carried out, else why it could
/// not be. The person points at the middle of the row or control that is named. What it posts is left to the
/// next PumpPosted. The words for lists: row K, double-click K, drag K, header COLUMN, key NAME, scroll ROWS,
/// top ROW, wheel NOTCHES, size ROWS, width COLUMN PIXELS, context K|header [COLUMN], deselect. Rows and
/// columns count from 0.
PLATFORM_API std::optional<std::string> ActOnList(ListView& list, std::string_view line);
/// The words for dialogs: type ID TEXT, choose ID TEXT, check ID on|off, click ID, focus ID, key NAME, close;
/// and those for lists, which act on the focused list, or with `list ID` in front on that one.
PLATFORM_API std::optional<std::string> ActOnDialog(Dialog& dialog, std::string_view line);
/// Whether ActOnList knows the word; whether it means something while anything is open.
PLATFORM_API bool IsListWord(std::string_view word);
PLATFORM_API bool IsDialogWord(std::string_view word);
/// A key by name: enter, escape, tab, up, down, page-up, page-down, home, end, left, right, delete,
/// backspace, space, f1 to f12, or one letter or digit; "ctrl+", "shift+" and "alt+" may stand in front.
struct NamedKey {
  std::uint32_t virtualKey;
  std::uint8_t modifiers;
};
PLATFORM_API std::optional<NamedKey> KeyOf(std::string_view name);

/// A person who reads lines: while a dialog, message box, file dialog or pop-up menu is open, the next lines
/// act on it. Beside the words for dialogs: `dialog` prints what is open, `answer BUTTON`, `file
/// PATH|cancel`, `menu ID|cancel`, `wait MILLISECONDS`. What cannot be done is reported as a line "error: …"
/// and the next line is read; when there are no more lines, whatever is open is cancelled.
class PLATFORM_API ScriptPresenter : public Presenter {
 public:
  /// Gives the next line, nothing at the end.
  using LineSource = std::function<std::optional<std::string>()>;
  /// Takes one line, without line end.
  using Output = std::function<void(std::string_view)>;

  ScriptPresenter(LineSource next, Output output) : next_(std::move(next)), output_(std::move(output)) {}

  /// Gets the lines that begin with no word for dialogs, before they are an error; true when it took one.
  void SetFallback(std::function<bool(std::string_view)> fallback) { fallback_ = std::move(fallback); }
  /// Prints what opens, when it opens. At start on.
  void SetAnnounce(bool on) { announce_ = on; }
  /// Prints dialogs, too, when they open; boxes and menus are still printed without. At start on.
  void SetAnnounceDialogs(bool on) { announceDialogs_ = on; }
  /// Time of timers that passes before each line in a dialog: a person is slower than a dialog's timers. At
  /// start 250 ms.
  void SetPace(std::chrono::milliseconds pace) { pace_ = pace; }
  /// Lines that were reported as errors.
  int Errors() const { return errors_; }

  void RunModal(Dialog& dialog) override;
  Answer ShowMessageBox(const MessageBoxRequest& request) override;
  std::optional<std::string> AskFile(const FileDialogRequest& request) override;
  std::optional<std::uint32_t> ChooseFromMenu(const Menu& menu, Point at, Window& owner) override;

 private:
  /// Next line for what is open; prints `picture` for "dialog" and offers the line to the fallback. Empty
  /// after a wait.
  std::optional<std::string> NextLine(const std::function<std::string()>& picture);
  void Print(std::string_view text);
  void Fail(std::string_view reason);

  LineSource next_;
  Output output_;
  std::function<bool(std::string_view)> fallback_;
  std::chrono::milliseconds pace_{250};
  int errors_ = 0;
  bool announce_ = true;
  bool announceDialogs_ = true;
};

}  // namespace platform
