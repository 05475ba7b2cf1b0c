#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/window.h"
#include "qal/window_service.h"
#include "workbench/services/frame_toolbar.h"
#include "workbench/services/frame_window.h"
#include "workbench/services/service.h"
#include "workbench/services/settings.h"

namespace workbench {

/// Frames, menus, toolbars, accelerators and windows that components register, under the key of whoever
/// registered them. All four versions are the one object. Main thread.
class WindowService final : public qal::IQWindowService4 {
 public:
  /// Sent to the window that registered the main menu, with a frame that the person closes.
  static constexpr std::uint32_t kCloseFrameMessage = platform::message::kUser + 1;

  struct MenuRegistration {
    qal::WindowHandle window;  ///< 0 for a menu of the main window
    qal::ModuleHandle module;
    std::uint32_t menu;
    std::uint32_t key;
    std::vector<std::uint32_t> commands;
  };
  struct AcceleratorRegistration {
    qal::ModuleHandle module;
    std::uint32_t table;
    std::uint32_t key;
    std::vector<std::uint32_t> commands;
  };
  struct ToolbarRegistration {
    std::string identifier;
    std::string name;
    qal::ModuleHandle module;
    std::uint32_t toolbar;
    std::uint32_t alternate;
    std::uint32_t key;
    std::vector<std::uint32_t> buttons;
  };
  struct ContextMenu {
    qal::WindowHandle parent;
    qal::WindowHandle window;
    std::uint32_t value;
    std::uint32_t key;
  };

  /// What the person chooses for toolbars is kept in the settings.
  explicit WindowService(SettingsFile& settings) : settings_(settings) {}
  ~WindowService();
  WindowService(const WindowService&) = delete;
  WindowService& operator=(const WindowService&) = delete;

  const std::vector<MenuRegistration>& Menus() const { return menus_; }
  const std::vector<AcceleratorRegistration>& Accelerators() const { return accelerators_; }
  const std::vector<ToolbarRegistration>& Toolbars() const { return toolbars_; }
  /// Toolbar of a frame, by the frame's window; null when it has none.
  FrameToolbar* ToolbarOf(qal::WindowHandle frame);
  /// Window registered under a key, or null.
  platform::Window* WindowOf(std::uint32_t key) const;
  qal::ModuleHandle ModuleOf(std::uint32_t key) const;
  /// Top-level frames that hold panes and that the person knows of, hidden ones among them, in the order of
  /// creation.
  std::vector<FrameWindow*> FramesInUse();
  /// Runs the command of a key that a component has registered. False when there is none, or when the command
  /// cannot be used now.
  bool RunAccelerator(std::uint32_t virtualKey, std::uint8_t modifiers);
  /// Has the component close the window of a frame. False when the window stays, because the person wants it
  /// to.
  bool CloseFrame(FrameWindow& frame);
  /// What is still registered, frames left out.
  std::size_t RegistrationCount() const;
  /// Forgets registrations and destroys frames, as when the component is gone.
  void Forget();

  // qal::IQUnknown
  qal::Status QueryInterface(const qal::Guid* iid, void** out) override;
  std::uint32_t AddRef() override { return 1; }
  std::uint32_t Release() override { return 1; }
  // qal::IQWindowService1
  qal::Status RegisterAccelerators(qal::ModuleHandle module, std::uint32_t table, std::uint32_t key,
                                   const qal::Guid* classId, const qal::Variant* ids, std::uint32_t* outA,
                                   std::uint32_t* outB) override;
  qal::Status UnregisterAccelerators(std::uint32_t table, std::uint32_t key) override;
  qal::Status RegisterWindowMenu(qal::WindowHandle window, qal::ModuleHandle module, std::uint32_t menu,
                                 std::uint32_t key, const qal::Guid* classId, const qal::Variant* ids,
                                 std::uint32_t* outA, std::uint32_t* outB) override;
  qal::Status UnregisterWindowMenu(qal::WindowHandle window, std::uint32_t menu, std::uint32_t key) override;
  qal::Status SetFrameTitle(qal::WindowHandle frame, qal::WideText title) override;
  qal::Status SetFrameState(qal::WindowHandle frame, std::uint32_t state) override;
  qal::Status GetFrameState(qal::WindowHandle frame, std::uint32_t* state) override;
  qal::Status UnregisterContextParent(qal::WindowHandle parent) override;
  qal::Status RegisterContextMenu(qal::WindowHandle parent, qal::WindowHandle window, std::uint32_t position,
                                  qal::WideText name, std::uint32_t first, std::uint32_t value,
                                  std::uint32_t key, const qal::Guid* classId) override;
  qal::Status UnregisterContextMenu(qal::WindowHandle parent, qal::WindowHandle window, std::uint32_t value,
                                    std::uint32_t key) override;
  qal::Status UnregisterToolbar(std::uint32_t toolbar, std::uint32_t alternate, std::uint32_t key) override;
  qal::Status RegisterMenu(qal::ModuleHandle module, std::uint32_t menu, std::uint32_t key,
                           const qal::Guid* classId, const qal::Variant* ids, std::uint32_t* outA,
                           std::uint32_t* outB, qal::WideText first, qal::WideText second,
                           std::uint32_t flag) override;
  qal::Status UnregisterMenu(std::uint32_t menu, std::uint32_t key) override;
  qal::Status RegisterWindow(std::uint32_t key, const qal::Guid* classId, qal::WindowHandle window) override;
  qal::Status RegisterResourceModule(qal::ModuleHandle module, std::uint32_t key,
                                     const qal::Guid* classId) override;
  qal::Status UnregisterResourceModule(std::uint32_t key) override;
  qal::Status UnregisterWindow(std::uint32_t key) override;
  qal::Status NewKey(std::uint32_t* key) override;
  qal::Status Reserved50(std::uintptr_t argument) override;
  qal::Status CreateFrame(qal::WideText key, qal::WideText title, std::uint32_t style, std::uint32_t position,
                          qal::WindowHandle* frame, char16_t** frameKey) override;
  // qal::IQWindowService2
  qal::Status RegisterToolbarButtons(qal::WindowHandle parent, qal::ModuleHandle module, std::uint32_t bitmap,
                                     std::uint32_t value, std::uint32_t key, const qal::Guid* classId,
                                     const qal::Variant* first, const qal::Variant* second,
                                     const qal::Variant* third, const qal::Variant* fourth,
                                     const qal::Variant* fifth) override;
  qal::Status CustomizeToolbar(qal::WindowHandle frame) override;
  qal::Status IsToolbarShown(qal::WindowHandle frame) override;
  qal::Status ShowToolbar(qal::WindowHandle frame, qal::Flag shown) override;
  qal::Status RegisterToolbar(qal::WideText identifier, qal::WideText name, qal::ModuleHandle module,
                              std::uint32_t toolbar, std::uint32_t alternate, std::uint32_t key,
                              const qal::Guid* classId, const qal::Variant* buttonIds,
                              const qal::Variant* secondIds, const qal::Variant* texts,
                              const qal::Variant* third, const qal::Variant* fourth,
                              const qal::Variant* fifth, const qal::Variant* sixth) override;
  qal::Status QueryFrameToolbar(qal::WindowHandle frame) override;
  // qal::IQWindowService4
  qal::Status GetContextMenuCount(qal::WindowHandle parent, std::uint32_t* count) override;

 private:
  FrameWindow* FrameOf(qal::WindowHandle window) const;
  /// Opens the menu that was registered for the pane around a window.
  void OpenMenuOf(platform::Window& window, platform::Point at) const;
  /// Drops the frames of windows that are closed.
  void TidyFrames();

  SettingsFile& settings_;
  std::uint32_t nextKey_ = 1;
  std::uint32_t nextFrame_ = 1;
  std::vector<std::unique_ptr<FrameWindow>> frames_;
  std::vector<MenuRegistration> menus_;
  std::vector<AcceleratorRegistration> accelerators_;
  std::vector<ToolbarRegistration> toolbars_;
  std::vector<ContextMenu> contextMenus_;
  std::map<std::uint32_t, std::vector<qal::WindowHandle>> windows_;
  std::map<std::uint32_t, qal::ModuleHandle> modules_;
  std::map<qal::WindowHandle, FrameToolbar> frameToolbars_;
};

}  // namespace workbench
