#include "workbench/services/window_service.h"

#include <algorithm>

#include "platform/menu.h"
#include "platform/resources.h"
#include "platform/text.h"
#include "platform/variant.h"

namespace workbench {
namespace {

constexpr std::size_t kMostRegistrations = 10'000;
constexpr std::size_t kMostFrames = 1000;
constexpr platform::Rect kFramePlace{0, 0, 800, 400};

std::vector<std::uint32_t> IdsOf(const qal::Variant* ids) {
  return platform::IdListOf(ids).value_or(std::vector<std::uint32_t>());
}

void Clear(std::uint32_t* outA, std::uint32_t* outB) {
  if (outA) *outA = 0;
  if (outB) *outB = 0;
}

std::shared_ptr<platform::Menu> LoadedMenu(qal::ModuleHandle module, std::uint32_t menu) {
  const platform::ResourceScope scope(module);
  return platform::Menu::Load(menu);
}

const platform::AcceleratorTable* LoadedKeys(qal::ModuleHandle module, std::uint32_t table) {
  const platform::ResourceScope scope(module);
  return platform::LoadAccelerators(table);
}

template <class List, class Condition>
qal::Status EraseIf(List& list, Condition condition) {
  return std::erase_if(list, condition) > 0 ? qal::kOk : qal::kFail;
}

template <class List, class Record>
qal::Status Keep(List& list, Record record) {
  return Guarded([&]() -> qal::Status {
    if (list.size() >= kMostRegistrations) return qal::kFail;
    list.push_back(std::move(record));
    return qal::kOk;
  });
}

}  // namespace

WindowService::~WindowService() { Forget(); }

void WindowService::Forget() {
  menus_.clear();
  accelerators_.clear();
  toolbars_.clear();
  contextMenus_.clear();
  windows_.clear();
  modules_.clear();
  frameToolbars_.clear();
  auto frames = std::move(frames_);
  frames_.clear();
  for (auto it = frames.rbegin(); it != frames.rend(); ++it) (*it)->Destroy();
}

FrameToolbar* WindowService::ToolbarOf(qal::WindowHandle frame) {
  const auto found = frameToolbars_.find(frame);
  return found == frameToolbars_.end() ? nullptr : &found->second;
}

platform::Window* WindowService::WindowOf(std::uint32_t key) const {
  const auto found = windows_.find(key);
  if (found == windows_.end()) return nullptr;
  for (const qal::WindowHandle handle : found->second) {
    if (auto* window = platform::WindowFrom(handle)) return window;
  }
  return nullptr;
}

qal::ModuleHandle WindowService::ModuleOf(std::uint32_t key) const {
  const auto found = modules_.find(key);
  return found == modules_.end() ? 0 : found->second;
}

std::vector<FrameWindow*> WindowService::FramesInUse() {
  TidyFrames();
  std::vector<FrameWindow*> frames;
  for (const auto& frame : frames_) {
    if (frame->Exists() && !frame->Parent() && frame->InUse()) frames.push_back(frame.get());
  }
  return frames;
}

bool WindowService::RunAccelerator(std::uint32_t virtualKey, std::uint8_t modifiers) {
  for (const AcceleratorRegistration& registered : accelerators_) {
    platform::Window* const target = WindowOf(registered.key);
    const auto* table = LoadedKeys(registered.module, registered.table);
    const auto command = table ? platform::Translate(*table, virtualKey, modifiers) : std::nullopt;
    if (target && command) return platform::RunCommand(*target, *command);
  }
  return false;
}

void WindowService::OpenMenuOf(platform::Window& window, platform::Point at) const {
  for (const ContextMenu& registered : contextMenus_) {
    platform::Window* const pane = platform::WindowFrom(registered.window);
    if (!pane || !window.IsWithin(*pane)) continue;
    for (const MenuRegistration& menu : menus_) {
      if (menu.window != registered.window) continue;
      const auto bar = LoadedMenu(menu.module, menu.menu);
      if (!bar || bar->Items().empty() || !bar->Items().front().popup) return;
      const auto popup = bar->Items().front().popup;
      popup->Update(*pane);
      platform::TrackPopupMenu(*popup, at, *pane);
      return;
    }
  }
}

void WindowService::TidyFrames() {
  for (const auto& frame : frames_) {
    if (frame->Exists() && frame->Closed()) frame->Destroy();
  }
  std::erase_if(frameToolbars_, [](const auto& entry) { return !platform::IsWindow(entry.first); });
  std::erase_if(frames_, [](const auto& frame) { return !frame->Exists(); });
}

bool WindowService::CloseFrame(FrameWindow& frame) {
  const platform::WindowRef there(frame);
  const qal::WindowHandle handle = frame.Handle();
  for (const MenuRegistration& menu : menus_) {
    if (menu.window != 0) continue;
    if (auto* sink = WindowOf(menu.key)) sink->Send(kCloseFrameMessage, handle);
    break;
  }
  if (there && !frame.Lists().empty()) {
    frame.RequestState(FrameWindow::kShow);
    return false;
  }
  TidyFrames();
  return true;
}

std::size_t WindowService::RegistrationCount() const {
  return menus_.size() + accelerators_.size() + toolbars_.size() + contextMenus_.size() + windows_.size() +
         modules_.size();
}

FrameWindow* WindowService::FrameOf(qal::WindowHandle window) const {
  for (const auto& frame : frames_) {
    if (frame->Exists() && frame->Handle() == window) return frame.get();
  }
  return nullptr;
}

qal::Status WindowService::QueryInterface(const qal::Guid* iid, void** out) {
  if (!out) return qal::kFail;
  *out = nullptr;
  if (!iid) return qal::kNoInterface;
  for (const qal::Guid& known : {qal::iid::kUnknown, qal::iid::kWindowService1, qal::iid::kWindowService2,
                                 qal::iid::kWindowService3, qal::iid::kWindowService4}) {
    if (*iid == known) *out = static_cast<qal::IQWindowService4*>(this);
  }
  return *out ? qal::kOk : qal::kNoInterface;
}

qal::Status WindowService::RegisterAccelerators(qal::ModuleHandle module, std::uint32_t table,
                                                std::uint32_t key, const qal::Guid*, const qal::Variant* ids,
                                                std::uint32_t* outA, std::uint32_t* outB) {
  Clear(outA, outB);
  return Keep(accelerators_, AcceleratorRegistration{module, table, key, IdsOf(ids)});
}

qal::Status WindowService::UnregisterAccelerators(std::uint32_t table, std::uint32_t key) {
  return EraseIf(accelerators_, [&](const auto& entry) { return entry.table == table && entry.key == key; });
}

qal::Status WindowService::RegisterWindowMenu(qal::WindowHandle window, qal::ModuleHandle module,
                                              std::uint32_t menu, std::uint32_t key, const qal::Guid*,
                                              const qal::Variant* ids, std::uint32_t* outA,
                                              std::uint32_t* outB) {
  Clear(outA, outB);
  return Keep(menus_, MenuRegistration{window, module, menu, key, IdsOf(ids)});
}

qal::Status WindowService::UnregisterWindowMenu(qal::WindowHandle window, std::uint32_t menu,
                                                std::uint32_t key) {
  return EraseIf(menus_, [&](const MenuRegistration& entry) {
    return entry.window == window && entry.menu == menu && entry.key == key;
  });
}

qal::Status WindowService::SetFrameTitle(qal::WindowHandle frame, qal::WideText title) {
  return Guarded([&]() -> qal::Status {
    FrameWindow* found = FrameOf(frame);
    if (!found) return qal::kFail;
    found->SetText(platform::Narrow(title));
    return qal::kOk;
  });
}

qal::Status WindowService::SetFrameState(qal::WindowHandle frame, std::uint32_t state) {
  return Guarded([&]() -> qal::Status {
    FrameWindow* found = FrameOf(frame);
    if (!found) return qal::kFail;
    found->RequestState(state);
    return qal::kOk;
  });
}

qal::Status WindowService::GetFrameState(qal::WindowHandle frame, std::uint32_t* state) {
  const FrameWindow* found = FrameOf(frame);
  if (!found || !state) return qal::kFail;
  *state = found->State();
  return qal::kOk;
}

qal::Status WindowService::UnregisterContextParent(qal::WindowHandle parent) {
  return EraseIf(contextMenus_, [&](const ContextMenu& menu) { return menu.parent == parent; });
}

qal::Status WindowService::RegisterContextMenu(qal::WindowHandle parent, qal::WindowHandle window,
                                               std::uint32_t, qal::WideText, std::uint32_t,
                                               std::uint32_t value, std::uint32_t key, const qal::Guid*) {
  if (FrameWindow* frame = FrameOf(parent)) frame->LayOut();
  return Keep(contextMenus_, ContextMenu{parent, window, value, key});
}

qal::Status WindowService::UnregisterContextMenu(qal::WindowHandle parent, qal::WindowHandle window,
                                                 std::uint32_t value, std::uint32_t key) {
  return EraseIf(contextMenus_, [&](const ContextMenu& menu) {
    return menu.parent == parent && menu.window == window && menu.value == value && menu.key == key;
  });
}

qal::Status WindowService::GetContextMenuCount(qal::WindowHandle parent, std::uint32_t* count) {
  if (!count) return qal::kFail;
  *count = static_cast<std::uint32_t>(
      std::count_if(contextMenus_.begin(), contextMenus_.end(),
                    [&](const ContextMenu& menu) { return menu.parent == parent; }));
  return qal::kOk;
}

qal::Status WindowService::UnregisterToolbar(std::uint32_t toolbar, std::uint32_t alternate,
                                             std::uint32_t key) {
  return EraseIf(toolbars_, [&](const ToolbarRegistration& entry) {
    return entry.toolbar == toolbar && entry.alternate == alternate && entry.key == key;
  });
}

qal::Status WindowService::RegisterMenu(qal::ModuleHandle module, std::uint32_t menu, std::uint32_t key,
                                        const qal::Guid*, const qal::Variant* ids, std::uint32_t* outA,
                                        std::uint32_t* outB, qal::WideText, qal::WideText, std::uint32_t) {
  Clear(outA, outB);
  return Keep(menus_, MenuRegistration{0, module, menu, key, IdsOf(ids)});
}

qal::Status WindowService::UnregisterMenu(std::uint32_t menu, std::uint32_t key) {
  return EraseIf(menus_, [&](const MenuRegistration& entry) {
    return entry.window == 0 && entry.menu == menu && entry.key == key;
  });
}

qal::Status WindowService::RegisterWindow(std::uint32_t key, const qal::Guid*, qal::WindowHandle window) {
  return Guarded([&] { return Keep(windows_[key], window); });
}

qal::Status WindowService::UnregisterWindow(std::uint32_t key) {
  return windows_.erase(key) ? qal::kOk : qal::kFail;
}

qal::Status WindowService::RegisterResourceModule(qal::ModuleHandle module, std::uint32_t key,
                                                  const qal::Guid*) {
  return Guarded([&] {
    modules_[key] = module;
    return qal::kOk;
  });
}

qal::Status WindowService::UnregisterResourceModule(std::uint32_t key) {
  return modules_.erase(key) ? qal::kOk : qal::kFail;
}

qal::Status WindowService::NewKey(std::uint32_t* key) {
  if (!key) return qal::kFail;
  *key = nextKey_++;
  return qal::kOk;
}

qal::Status WindowService::Reserved50(std::uintptr_t) { return qal::kFail; }

qal::Status WindowService::CreateFrame(qal::WideText key, qal::WideText title, std::uint32_t style,
                                       std::uint32_t position, qal::WindowHandle* frame,
                                       char16_t** frameKey) {
  if (!frame) return qal::kFail;
  *frame = 0;
  return Guarded([&]() -> qal::Status {
    TidyFrames();
    if (frames_.size() >= kMostFrames) return qal::kFail;
    const std::string keyText = platform::Narrow(key);
    FrameWindow* outer = nullptr;
    for (const auto& known : frames_) {
      if (known->Key() == keyText) outer = known.get();
    }
    std::string newKey = keyText;
    if (frameKey) {
      newKey = platform::Narrow(*frameKey);
      const auto taken = [&] {
        return std::any_of(frames_.begin(), frames_.end(),
                           [&](const auto& known) { return known->Key() == newKey; });
      };
      while (newKey.empty() || taken()) newKey = keyText + "#" + std::to_string(nextFrame_++);
    } else if (outer) {
      newKey += "/view";
    }
    auto made = std::make_unique<FrameWindow>(newKey, keyText, style, position);
    const std::uint32_t bits = outer ? platform::window_style::kVisible | platform::window_style::kChild : 0;
    if (!made->Create(outer ? outer->Handle() : 0, 0, platform::Narrow(title), bits, kFramePlace))
      return qal::kFail;
    made->SetMenuAsked([this](platform::Window& window, platform::Point at) { OpenMenuOf(window, at); });
    *frame = made->Handle();
    frames_.push_back(std::move(made));
    if (frameKey) {
      qal::FreeText(*frameKey);
      *frameKey = platform::NewWide(newKey);
    }
    return qal::kOk;
  });
}

qal::Status WindowService::RegisterToolbarButtons(qal::WindowHandle parent, qal::ModuleHandle module,
                                                  std::uint32_t bitmap, std::uint32_t, std::uint32_t,
                                                  const qal::Guid*, const qal::Variant*, const qal::Variant*,
                                                  const qal::Variant*, const qal::Variant*,
                                                  const qal::Variant* fifth) {
  return Guarded([&]() -> qal::Status {
    const FrameWindow* frame = FrameOf(parent);
    if (!frame) return qal::kFail;
    frameToolbars_.try_emplace(parent, settings_, frame->Kind(), module, bitmap, IdsOf(fifth));
    return qal::kOk;
  });
}

qal::Status WindowService::CustomizeToolbar(qal::WindowHandle frame) {
  return Guarded([&]() -> qal::Status {
    FrameWindow* const found = FrameOf(frame);
    FrameToolbar* const toolbar = ToolbarOf(frame);
    if (!found || !toolbar) return qal::kFail;
    toolbar->Customize(*found);
    return qal::kOk;
  });
}

qal::Status WindowService::IsToolbarShown(qal::WindowHandle frame) {
  const FrameToolbar* toolbar = ToolbarOf(frame);
  return toolbar && toolbar->Shown() ? 1 : 0;
}

qal::Status WindowService::ShowToolbar(qal::WindowHandle frame, qal::Flag shown) {
  return Guarded([&]() -> qal::Status {
    FrameToolbar* const toolbar = ToolbarOf(frame);
    if (!toolbar) return qal::kFail;
    toolbar->SetShown(shown != qal::kFalse);
    return qal::kOk;
  });
}

qal::Status WindowService::RegisterToolbar(qal::WideText identifier, qal::WideText name,
                                           qal::ModuleHandle module, std::uint32_t toolbar,
                                           std::uint32_t alternate, std::uint32_t key, const qal::Guid*,
                                           const qal::Variant* buttonIds, const qal::Variant*,
                                           const qal::Variant*, const qal::Variant*, const qal::Variant*,
                                           const qal::Variant*, const qal::Variant*) {
  return Guarded([&] {
    return Keep(toolbars_, ToolbarRegistration{platform::Narrow(identifier), platform::Narrow(name), module,
                                               toolbar, alternate, key, IdsOf(buttonIds)});
  });
}

qal::Status WindowService::QueryFrameToolbar(qal::WindowHandle frame) {
  return frameToolbars_.contains(frame) ? qal::kOk : qal::kFail;
}

}  // namespace workbench
