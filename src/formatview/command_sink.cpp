#include "formatview/command_sink.h"

#include <algorithm>
#include <array>
#include <utility>

#include "model/services.h"
#include "qal/ids.h"

namespace coverage {
namespace {

constexpr std::uint32_t kSinkControlId = 1;

}  // namespace

CUiCommandSink::CUiCommandSink(qal::IQHost* hostObject, CUiCustomizer* customizerObject)
    : host(hostObject), customizer(customizerObject) {
  if (host != nullptr) {
    expressionService = FindService<qal::IQExpression>(host, qal::iid::kExpression);
    keptService = FindService<qal::IQUnknown>(host, qal::iid::kHostAux2);
    workspaceService = FindService<qal::IQWorkspace>(host, qal::iid::kWorkspace);
    settings = FindService<qal::IQSettings>(host, qal::iid::kSettings);
    frameService = FindService<qal::IQFrame>(host, qal::iid::kFrame);
    messageOptionService = FindService<qal::IQMessageOptions>(host, qal::iid::kMessageOptions);
  }
  if (customizer != nullptr) {
    commandKey = customizer->NewKey();
    auxKey = customizer->NewKey();
  }
}

CUiCommandSink::~CUiCommandSink() {
  // The window may still stand when the object goes without DestroySinkWindow.
  for (auto& child : children) child->OnRemove();
  children.clear();
  Destroy();
}

bool CUiCommandSink::CreateSinkWindow() {
  const auto windows = platform::TopLevelWindows();
  const qal::WindowHandle mainWindow = windows.empty() ? 0 : windows.front()->Handle();
  return Create(mainWindow, kSinkControlId, "", platform::window_style::kChild);
}

void CUiCommandSink::DestroySinkWindow() {
  DestroyChildren();
  Destroy();
}

void CUiCommandSink::DestroyChildren() {
  while (!children.empty()) {
    const std::unique_ptr<CUiChildWindow> child = std::move(children.front());
    children.erase(children.begin());
    child->OnRemove();
    child->Destroy();
  }
}

void CUiCommandSink::ForEachChild(const std::function<void(CUiChildWindow&)>& action) {
  // A hook may open or close windows.
  std::vector<CUiChildWindow*> visited;
  for (const auto& child : children) visited.push_back(child.get());
  for (CUiChildWindow* child : visited) {
    const bool there = std::any_of(children.begin(), children.end(),
                                   [&](const auto& owned) { return owned.get() == child; });
    if (there) action(*child);
  }
}

void CUiCommandSink::NotifyChildren() {
  ForEachChild([](CUiChildWindow& child) { child.OnNotify(); });
}

CUiChildWindow* CUiCommandSink::FindChild(qal::WindowHandle window) const {
  if (window == 0) return nullptr;
  for (const auto& child : children) {
    if (child->Handle() == window) return child.get();
  }
  return nullptr;
}

void CUiCommandSink::RemoveChild(CUiChildWindow& removed) {
  const auto owned = std::find_if(children.begin(), children.end(),
                                  [&](const auto& child) { return child.get() == &removed; });
  if (owned == children.end()) return;
  std::unique_ptr<CUiChildWindow> child = std::move(*owned);
  children.erase(owned);
  child->OnRemove();
  platform::DeleteLater(std::move(child));
}

platform::LResult CUiCommandSink::CloseChild(qal::WindowHandle window, platform::LParam) {
  if (CUiChildWindow* const child = FindChild(window)) RemoveChild(*child);
  return 1;
}

platform::LResult CUiCommandSink::HideChild(qal::WindowHandle window, platform::LParam) {
  if (platform::IsWindow(window) && customizer != nullptr) {
    customizer->SetFrameState(platform::ParentOf(window), kFrameHidden);
  }
  return 1;
}

void CUiCommandSink::AddChild(std::unique_ptr<CUiChildWindow> child) { children.push_back(std::move(child)); }

platform::LResult CUiCommandSink::OnCloseChild(const platform::Message& message) {
  return CloseChild(message.w, message.l);
}

platform::LResult CUiCommandSink::OnHideChild(const platform::Message& message) {
  return HideChild(message.w, message.l);
}

platform::LResult CUiCommandSink::OnNotifyChild(const platform::Message& message) {
  if (CUiChildWindow* const child = FindChild(message.w)) child->OnNotify();
  return 1;
}

void CUiCommandSink::WithdrawRegistrations() {
  if (customizer == nullptr) return;
  customizer->UnregisterAll(reinterpret_cast<RegistrationKey>(this));
  customizer->UnregisterAll(commandKey);
  customizer->UnregisterAll(auxKey);
}

platform::LResult CUiCommandSink::OnMessage(const platform::Message& message) {
  static constexpr auto kRoutes = std::to_array<platform::Route<CUiCommandSink>>({
      {sink_message::kCloseChild, platform::kAny, &CUiCommandSink::OnCloseChild},
      {sink_message::kHideChild, platform::kAny, &CUiCommandSink::OnHideChild},
      {sink_message::kNotifyChild, platform::kAny, &CUiCommandSink::OnNotifyChild},
  });
  if (const auto answer = platform::Dispatch(*this, kRoutes, message)) return *answer;
  const platform::LResult answer = Window::OnMessage(message);
  if (message.id == platform::message::kDestroy) WithdrawRegistrations();
  return answer;
}

}  // namespace coverage
