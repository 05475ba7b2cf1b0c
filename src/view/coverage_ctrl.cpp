#include "view/coverage_ctrl.h"

#include <algorithm>
#include <array>
#include <utility>

#include "formatview/interface_call.h"
#include "model/coverage_switch.h"
#include "platform/text.h"
#include "view/active_session.h"

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
  });
  if (const auto answer = platform::Dispatch(*this, kRoutes, message)) return *answer;
  return CUiDebugCommandSink::OnMessage(message);
}

void CJepCoverageCtrl::OnUpdateOpenCoverage(platform::CommandUpdate& update) {
  const bool onlyFiles = std::all_of(windows.begin(), windows.end(), [](const OpenWindow& window) {
    return window.record->kind == WindowKind::kFile;
  });
  update.Enable(windows.size() < kMostWindows || !onlyFiles);
}

// What the windows hold.

std::vector<const CoverageWindow*> CJepCoverageCtrl::OpenWindows() {
  std::vector<const CoverageWindow*> records;
  for (const OpenWindow& window : windows) records.push_back(window.record);
  return records;
}

std::vector<CoverageInstance*> CJepCoverageCtrl::AllInstances() {
  std::vector<CoverageInstance*> instances;
  for (const OpenWindow& window : windows) {
    for (const auto& [number, instance] : window.record->instances) instances.push_back(instance);
  }
  return instances;
}

void CJepCoverageCtrl::CollectCoverage() {
  const std::vector<CoverageInstance*> instances = AllInstances();
  if (!collector.Collect(instances, model.get()) || !ExecutionHalted()) return;
  ForEachChild([](CUiChildWindow& child) { child.RefreshFromDebugger(); });
}

void CJepCoverageCtrl::RefreshAllStatistics() {
  for (CoverageInstance* instance : AllInstances()) instance->ComputePercentage(false, instructions);
  ForEachChild([](CUiChildWindow& child) { child.RefreshFromDebugger(); });
}

void CJepCoverageCtrl::RedrawPanes() {
  ForEachChild([](CUiChildWindow& child) { child.Invalidate(); });
}

void CJepCoverageCtrl::DropCaches() { instructions.Drop(); }

void CJepCoverageCtrl::BringUpToDate() {
  RefreshAllStatistics();
  marks->DropLineMarks();
  RedrawPanes();
}

void CJepCoverageCtrl::UpdateCoverageSwitch() {
  const std::vector<CoverageInstance*> instances = AllInstances();
  coverage::UpdateCoverageSwitch(host, CoverageWanted(*model, instances));
}

// Interfaces.

qal::Status CJepCoverageCtrl::QueryInterface(const qal::Guid* iid, void** out) {
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
