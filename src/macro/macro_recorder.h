#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "qal/types.h"

namespace qal {
struct IQHost;
struct IQMacroRecorder;
}  // namespace qal

namespace coverage {

/// What the recorder needs of the object it is part of.
class MacroRecorderHost {
 public:
  /// Starts a timer on the object's window; its id, or 0 when none could be started.
  virtual std::uint32_t StartMacroTimer(std::uint32_t id, std::uint32_t milliseconds) = 0;
  virtual void StopMacroTimer(std::uint32_t id) = 0;
  /// Asks a question under the option of the recording's limitation; no answer counts as no.
  virtual bool AskMacroQuestion(const std::string& question) = 0;
  /// The file that the person chose to load last.
  virtual std::string LoadPath() const = 0;

 protected:
  ~MacroRecorderHost() = default;
};

/// Turns what a person does in coverage windows into command lines while the IDE records a macro. A macro
/// stands for one window at a time: opening one asks whether it is the one, and the commands on it are
/// recorded only after a yes. UI thread only; the questions are modal.
class MacroRecorder {
 public:
  static constexpr std::uint32_t kTimerId = 17231;
  static constexpr std::uint32_t kTimerInterval = 500;  ///< milliseconds
  /// In the place of an instance number: all of them.
  static constexpr std::uint32_t kAll = 0xFFFFFFFF;

  /// Both borrowed; `host` may be null: then nothing is ever recorded.
  MacroRecorder(qal::IQHost* host, MacroRecorderHost& owner) : host_(host), owner_(owner) {}
  MacroRecorder(const MacroRecorder&) = delete;
  MacroRecorder& operator=(const MacroRecorder&) = delete;

  /// The IDE is not called from then on. A question may be open then, and the recorder may even go while it
  /// is: its answer comes to nothing.
  void End() { host_ = nullptr; }

  // Windows: these ask.
  void RecordFileWindow(const std::string& typedPath, const std::string& fullPath);
  void RecordRangeWindow(std::uint32_t start, std::uint32_t end);
  /// Before the dialog that edits a range; RecordRangeEdit takes it back, and records unless `start` is kAll.
  void ArmRangeEdit();
  void RecordRangeEdit(std::uint32_t start, std::uint32_t end);

  // Commands on the current window: recorded when the last question was answered with yes.
  void RecordEnable(bool enable, std::uint32_t number);
  /// A clear may yet be cancelled: its line is prepared before, and recorded or dropped by FinishReset.
  void PrepareReset(std::uint32_t number);
  void FinishReset(bool commit);
  void RecordSave(const std::string& path);
  void NoteLoadStart();
  /// Records the path that was chosen last; `path` only says that there is one.
  void RecordLoad(const std::string& path);

  /// For every timer message of the window: ends the watch once the IDE records no more.
  void OnMacroTimer(std::uint32_t id);
  void ResetMacroState();

 private:
  /// The IDE's recorder while it records, else null.
  qal::IQMacroRecorder* Recording() const;
  void StartWatch();
  void AskAndRecord(const std::string& command, const std::string& question);
  void RecordFollowOn(qal::IQMacroRecorder& recorder, const std::string& command) const;
  /// As one word of a command line: collapsed into placeholders, backslashes doubled; in braces when it holds
  /// a blank, in quotes when it then holds a closing brace. An empty one stays empty.
  std::string PathForm(const std::string& path) const;

  qal::IQHost* host_;
  MacroRecorderHost& owner_;
  bool macroFollowOn_ = true;
  bool macroRangeArmed_ = false;
  bool macroResetPending_ = false;
  std::string macroPendingReset_;
  std::uint32_t macroTimer_ = 0;
  std::shared_ptr<const bool> life_ = std::make_shared<const bool>(true);  ///< ends with the recorder
};

}  // namespace coverage
