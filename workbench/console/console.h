#pragma once

#include <cstddef>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "platform/script_presenter.h"
#include "workbench/console/line_source.h"
#include "workbench/console/verb.h"
#include "workbench/services/ide.h"

namespace workbench {

/// Reads lines and carries them out: commands of the IDE go to their client as they stand, everything else is
/// a verb. While a message box or a dialog is open the next lines act on it. Main thread.
class Console final : public IdeUser {
 public:
  struct Options {
    bool keepGoing = false;  ///< a script goes on after a line that failed
  };
  static constexpr std::size_t kEveryLine = static_cast<std::size_t>(-1);

  /// `lines` and `out` must outlive the console. Its presenter is installed for its lifetime.
  Console(LineSource& lines, std::ostream& out, Options options);
  Console(const Console&) = delete;
  Console& operator=(const Console&) = delete;

  /// The IDE that the lines act on; set before Run.
  void Attach(Ide& ide) { ide_ = &ide; }
  Ide& ide() { return *ide_; }

  /// Carries out lines until their end or `quit`. 0, or 1 when a script's line failed, whether it ended the
  /// run or not.
  int Run();
  /// Carries out one line. False when it failed; the reason has been printed.
  bool Execute(const std::string& line);

  /// A reply, as many lines as it has.
  void Print(std::string_view text);
  void Quit() { quit_ = true; }
  /// Whether dialogs are printed when they open, or only on `dialog`.
  void AnnounceDialogs(bool on) { presenter_.SetAnnounceDialogs(on); }
  bool Interactive() const { return lines_.Interactive(); }
  /// Lines that were refused so far.
  int Failures() const { return failures_; }

  /// Runs a line of a registered command: prints its output and result, waits for the end of background
  /// output. At most `limit` lines of output are shown, the rest is counted. False when the command failed.
  bool RunCommand(const std::string& line, std::size_t limit = kEveryLine);

  /// Carries out the lines of a macro, up to one that is refused. VerbError when a macro is playing.
  void Play(const std::vector<std::string>& lines);

  /// Value of an address expression; numbers are hexadecimal. VerbError when it has none.
  std::uint32_t AddressOf(const std::string& expression);

  /// A file as replies name it: seen from the project, or its name alone when it lies elsewhere.
  std::string ShownFile(const std::string& file) const;

  // IdeUser
  void Notice(const std::string& text) override { Print(text); }
  bool StopAsked() override;
  void ShowSource(const std::string& file, std::uint32_t line) override;
  void ShowAddress(std::uint32_t address) override;

 private:
  std::optional<std::string> ReadLine(const std::string& prompt);
  std::optional<std::string> ReadAnswer();
  void Fail(const std::string& reason);
  /// A line failed; its reason has been printed.
  void CountFailure();
  /// Counts what open boxes and dialogs refused since the last call.
  void CountRefusals();
  void Settle();
  /// What is open, as text; the project's directory is a placeholder there, so that machines agree.
  void PrintPicture(std::string_view text);
  /// A line for which an open box or dialog has no use. False when it cannot be carried out now.
  bool ExecuteMeanwhile(const std::string& line);

  LineSource& lines_;
  std::ostream& out_;
  Options options_;
  Ide* ide_ = nullptr;
  platform::ScriptPresenter presenter_;
  platform::PresenterScope presenterScope_;
  qal::IQCmdClient2* pending_ = nullptr;  // a command that asked for another line
  std::string pendingPrompt_;
  bool playing_ = false;
  bool quit_ = false;
  bool failed_ = false;
  int failures_ = 0;
  int presenterErrors_ = 0;
};

/// Catches Ctrl-C for its lifetime; `Taken` says once that it was pressed. One at a time, main thread.
class InterruptScope {
 public:
  InterruptScope();
  ~InterruptScope();
  InterruptScope(const InterruptScope&) = delete;
  InterruptScope& operator=(const InterruptScope&) = delete;
  static bool Taken();
};

}  // namespace workbench
