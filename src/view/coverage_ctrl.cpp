#include "view/coverage_ctrl.h"

#include <array>
#include <chrono>
#include <utility>

namespace coverage {

// Messages of the control's window.

platform::LResult CJepCoverageCtrl::OnMessage(const platform::Message& message) {
  const platform::LResult failure = message.id == platform::message::kCreate ? -1 : 0;
  return Enter(
      delivery.get(), [&] { return OnEntered(message); }, failure);
}

platform::LResult CJepCoverageCtrl::OnEntered(const platform::Message& message) {
  using platform::message::kCommand;
  using platform::message::kCreate;
  using platform::message::kUpdateCommand;
  static constexpr auto kRoutes = std::to_array<platform::Route<CJepCoverageCtrl>>({
      {kCreate, platform::kAny, &CJepCoverageCtrl::OnCreate},
      {kCommand, control_command::kOpenCoverage, &CJepCoverageCtrl::OnOpenCoverage},
      {kCommand, control_command::kChangeSourceFile, &CJepCoverageCtrl::OnChangeSourceFile},
      {kUpdateCommand, control_command::kOpenCoverage, &CJepCoverageCtrl::OnUpdateOpenCoverage},
      {platform::message::kTimer, platform::kAny, &CJepCoverageCtrl::OnTimer},
  });
  if (const auto answer = platform::Dispatch(*this, kRoutes, message)) return *answer;
  return CUiDebugCommandSink::OnMessage(message);
}

void CJepCoverageCtrl::OnUpdateOpenCoverage(platform::CommandUpdate& update) {
  update.Enable(opener->CommandEnabled());
}

platform::LResult CJepCoverageCtrl::OnTimer(const platform::Message& message) {
  macro.OnMacroTimer(static_cast<std::uint32_t>(message.w));
  return CUiDebugCommandSink::OnMessage(message);
}

platform::LResult CJepCoverageCtrl::CloseChild(qal::WindowHandle window, platform::LParam second) {
  if (table->CloseByHandle(window)) return 1;
  return CUiDebugCommandSink::CloseChild(window, second);
}

// What the commands, the images and the macro recorder ask.

void CJepCoverageCtrl::BringUpToDate() {
  RefreshAllStatistics();
  records.MarkLineMarks();
}

std::vector<const CoverageWindow*> CJepCoverageCtrl::OpenWindows() {
  std::vector<const CoverageWindow*> windows;
  for (const auto& window : records.Windows()) windows.push_back(window.get());
  return windows;
}

std::uint32_t CJepCoverageCtrl::StartMacroTimer(std::uint32_t id, std::uint32_t milliseconds) {
  return SetTimer(id, std::chrono::milliseconds(milliseconds));
}

void CJepCoverageCtrl::StopMacroTimer(std::uint32_t id) { KillTimer(id); }

bool CJepCoverageCtrl::AskMacroQuestion(const std::string& question) {
  return options.Ask(MessageOption::kMacroLimitation, question);
}

// Interfaces.

qal::Status CJepCoverageCtrl::QueryInterface(const qal::Guid* iid, void** out) {
  if (out == nullptr) return qal::kFail;
  *out = nullptr;
  if (iid == nullptr || !(*iid == qal::iid::kUnknown || *iid == qal::iid::kWorkSpaceClient ||
                          *iid == qal::iid::kWorkSpaceClient2)) {
    return qal::kNoInterface;
  }
  *out = static_cast<qal::IQWorkSpaceClient2*>(this);
  return qal::kOk;
}

qal::Status CJepCoverageCtrl::GetSessionValue(std::uintptr_t, std::uintptr_t, std::uintptr_t,
                                              std::uint32_t* value) {
  if (value == nullptr) return qal::kFail;
  *value = sessionValue;
  return qal::kOk;
}

qal::Status CJepCoverageCtrl::SetRange(std::uint32_t start, std::uint32_t end) {
  return Enter(
      delivery.get(), [&] { return automation.SetRange(start, end); }, qal::kFail);
}
qal::Status CJepCoverageCtrl::GetRange(std::uint32_t* start, std::uint32_t* end) {
  return Enter(
      delivery.get(), [&] { return automation.GetRange(start, end); }, qal::kFail);
}
qal::Status CJepCoverageCtrl::Disable() {
  return Enter(
      delivery.get(), [&] { return automation.Disable(); }, qal::kFail);
}
qal::Status CJepCoverageCtrl::Enable() {
  return Enter(
      delivery.get(), [&] { return automation.Enable(); }, qal::kFail);
}
qal::Status CJepCoverageCtrl::Clear() {
  return Enter(
      delivery.get(), [&] { return automation.Clear(); }, qal::kFail);
}
qal::Status CJepCoverageCtrl::IsEnabled(qal::Flag* enabled) {
  return Enter(
      delivery.get(), [&] { return automation.IsEnabled(enabled); }, qal::kFail);
}
qal::Status CJepCoverageCtrl::Load(qal::WideText path) {
  return Enter(
      delivery.get(), [&] { return automation.Load(path); }, qal::kFail);
}
qal::Status CJepCoverageCtrl::Save(qal::WideText path) {
  return Enter(
      delivery.get(), [&] { return automation.Save(path); }, qal::kFail);
}

}  // namespace coverage
