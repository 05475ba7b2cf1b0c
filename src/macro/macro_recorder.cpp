#include "macro/macro_recorder.h"

#include "model/services.h"
#include "platform/text.h"
#include "qal/ide_services.h"
#include "string_ids.h"
#include "util/placeholder_resolver.h"
#include "util/texts.h"

namespace coverage {
namespace {

std::string RangeCommand(std::uint32_t start, std::uint32_t end) {
  return platform::Format("cvr 0x%x 0x%x", start, end);
}

std::string RangeQuestion(std::uint32_t start, std::uint32_t end) {
  return platform::ReplaceAll(Text(strings::kMacroRangePrompt), "---",
                              platform::Format("0x%X - 0x%X", start, end));
}

std::string FileQuestion(const std::string& fullPath) {
  const std::size_t backslash = platform::FindLastBackslash(fullPath);
  const std::string name = backslash == std::string::npos ? fullPath : fullPath.substr(backslash + 1);
  return platform::ReplaceAll(Text(strings::kMacroFilePrompt), "---", name);
}

/// As the command line takes it for one word: in braces, or in quotes when a brace inside would end it.
std::string AsOneWord(const std::string& path) {
  if (path.find(' ') == std::string::npos && !path.starts_with('{')) return path;
  const bool braced = platform::FindChar(path, '}') == std::string::npos;
  return (braced ? "{" : "\"") + path + (braced ? "}" : "\"");
}

/// "cv " with the number of the instance, unless all are meant.
std::string CoverageCommand(std::uint32_t number, const char* state) {
  if (number == MacroRecorder::kAll) return std::string("cv ") + state;
  return platform::Format("cv %d %s", static_cast<int>(number), state);
}

}  // namespace

qal::IQMacroRecorder* MacroRecorder::Recording() const {
  auto* recorder = FindService<qal::IQMacroRecorder>(host_, qal::iid::kMacroRecorder);
  return recorder && recorder->IsRecording() == 0 ? recorder : nullptr;
}

void MacroRecorder::StartWatch() {
  if (macroTimer_ == 0) macroTimer_ = owner_.StartMacroTimer(kTimerId, kTimerInterval);
}

std::string MacroRecorder::PathForm(const std::string& path) const {
  return AsOneWord(platform::ReplaceAll(PlaceholderResolver(host_).CollapsePlaceholders(path), "\\", "\\\\"));
}

void MacroRecorder::AskAndRecord(const std::string& command, const std::string& question) {
  StartWatch();
  const std::weak_ptr<const bool> life = life_;
  const bool yes = owner_.AskMacroQuestion(question);
  if (life.expired()) return;
  macroFollowOn_ = yes;
  auto* recorder = FindService<qal::IQMacroRecorder>(host_, qal::iid::kMacroRecorder);
  if (macroFollowOn_ && recorder) recorder->RecordLine(platform::Wide(command).get());
}

void MacroRecorder::RecordFollowOn(qal::IQMacroRecorder& recorder, const std::string& command) const {
  if (macroFollowOn_) recorder.RecordLine(platform::Wide(command).get());
}

void MacroRecorder::RecordFileWindow(const std::string& typedPath, const std::string& fullPath) {
  if (!Recording()) return;
  const std::string typed = PathForm(typedPath);
  AskAndRecord("cvr " + (typed.empty() ? PathForm(fullPath) : typed), FileQuestion(fullPath));
}

void MacroRecorder::RecordRangeWindow(std::uint32_t start, std::uint32_t end) {
  if (Recording()) AskAndRecord(RangeCommand(start, end), RangeQuestion(start, end));
}

void MacroRecorder::ArmRangeEdit() {
  if (!Recording()) return;
  StartWatch();
  macroRangeArmed_ = true;
}

void MacroRecorder::RecordRangeEdit(std::uint32_t start, std::uint32_t end) {
  if (!macroRangeArmed_) return;
  macroRangeArmed_ = false;
  if (start != kAll) RecordRangeWindow(start, end);
}

void MacroRecorder::RecordEnable(bool enable, std::uint32_t number) {
  if (auto* recorder = Recording())
    RecordFollowOn(*recorder, CoverageCommand(number, enable ? "enable" : "disable"));
}

void MacroRecorder::PrepareReset(std::uint32_t number) {
  if (!Recording()) return;
  macroResetPending_ = true;
  macroPendingReset_ = CoverageCommand(number, "reset");
}

void MacroRecorder::FinishReset(bool commit) {
  if (!macroResetPending_) return;
  macroResetPending_ = false;
  if (!commit) return;
  if (auto* recorder = Recording()) RecordFollowOn(*recorder, macroPendingReset_);
}

void MacroRecorder::RecordSave(const std::string& path) {
  if (path.empty()) return;
  if (auto* recorder = Recording()) RecordFollowOn(*recorder, "cvs " + PathForm(path));
}

void MacroRecorder::NoteLoadStart() {
  if (Recording()) StartWatch();
}

void MacroRecorder::RecordLoad(const std::string& path) {
  if (path.empty()) return;
  if (auto* recorder = Recording()) RecordFollowOn(*recorder, "cvl " + PathForm(owner_.LoadPath()));
}

void MacroRecorder::OnMacroTimer(std::uint32_t id) {
  if (id != kTimerId || Recording()) return;
  owner_.StopMacroTimer(macroTimer_);
  ResetMacroState();
}

void MacroRecorder::ResetMacroState() {
  macroRangeArmed_ = false;
  macroResetPending_ = false;
  macroPendingReset_.clear();
  macroTimer_ = 0;
}

}  // namespace coverage
