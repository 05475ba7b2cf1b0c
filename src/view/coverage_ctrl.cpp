#include "view/coverage_ctrl.h"

#include <array>
#include <chrono>
#include <utility>

#include "formatview/interface_call.h"
#include "model/coverage_switch.h"

namespace coverage {

// Messages of the control's window.

platform::LResult CJepCoverageCtrl::OnMessage(const platform::Message& message) {
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

void CJepCoverageCtrl::OnOpenCoverage() { windows->OpenCoverage(); }

void CJepCoverageCtrl::OnChangeSourceFile() { windows->ChangeSourceFile(); }

void CJepCoverageCtrl::OnUpdateOpenCoverage(platform::CommandUpdate& update) {
  update.Enable(windows->OpenCommandEnabled());
}

platform::LResult CJepCoverageCtrl::OnTimer(const platform::Message& message) {
  macro.OnMacroTimer(static_cast<std::uint32_t>(message.w));
  return CUiDebugCommandSink::OnMessage(message);
}

platform::LResult CJepCoverageCtrl::CloseChild(qal::WindowHandle window, platform::LParam second) {
  if (windows->CloseByHandle(window)) return 1;
  // The frame of a pane that belongs to no window: its range was refused.
  for (const auto& child : children) {
    if (window == 0 || child->ParentHandle() != window) continue;
    RemoveChild(*child);
    return 1;
  }
  return CUiDebugCommandSink::CloseChild(window, second);
}

// What the commands and the macro recorder ask.

void CJepCoverageCtrl::BringUpToDate() {
  windows->RefreshAllStatistics();
  Marks().DropLineMarks();
}

void CJepCoverageCtrl::UpdateCoverageSwitch() {
  const std::vector<CoverageInstance*> instances = windows->AllInstances();
  coverage::UpdateCoverageSwitch(host, CoverageWanted(*model, instances));
}

std::uint32_t CJepCoverageCtrl::StartMacroTimer(std::uint32_t id, std::uint32_t milliseconds) {
  return SetTimer(id, std::chrono::milliseconds(milliseconds));
}

void CJepCoverageCtrl::StopMacroTimer(std::uint32_t id) { KillTimer(id); }

bool CJepCoverageCtrl::AskMacroQuestion(const std::string& question) {
  return options->Ask(MessageOption::kMacroLimitation, question);
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
  return InterfaceCall([&] { return automation.SetRange(start, end); });
}
qal::Status CJepCoverageCtrl::GetRange(std::uint32_t* start, std::uint32_t* end) {
  return InterfaceCall([&] { return automation.GetRange(start, end); });
}
qal::Status CJepCoverageCtrl::Disable() {
  return InterfaceCall([&] { return automation.Disable(); });
}
qal::Status CJepCoverageCtrl::Enable() {
  return InterfaceCall([&] { return automation.Enable(); });
}
qal::Status CJepCoverageCtrl::Clear() {
  return InterfaceCall([&] { return automation.Clear(); });
}
qal::Status CJepCoverageCtrl::IsEnabled(qal::Flag* enabled) {
  return InterfaceCall([&] { return automation.IsEnabled(enabled); });
}
qal::Status CJepCoverageCtrl::Load(qal::WideText path) {
  return InterfaceCall([&] { return automation.Load(path); });
}
qal::Status CJepCoverageCtrl::Save(qal::WideText path) {
  return InterfaceCall([&] { return automation.Save(path); });
}

}  // namespace coverage
