#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "qal/host.h"
#include "qal/types.h"
#include "qal/window_service.h"

namespace coverage {

/// Names the object that registers something with the IDE. Keys handed out by the IDE are 32-bit; an object's
/// own identity (its address) is allowed in their place and never equals one of them.
using RegistrationKey = std::uintptr_t;

/// State in which the IDE hides a frame.
inline constexpr std::uint32_t kFrameHidden = 1;

/// Optional lists of a toolbar; an absent one is handed over as an empty variant.
struct ToolbarLists {
  std::optional<std::vector<std::uint32_t>> buttonIds;
  std::optional<std::vector<std::uint32_t>> secondIds;
  std::optional<std::vector<std::string>> texts;
  std::array<std::optional<std::vector<std::uint32_t>>, 4> further;
};

/// Registers the component's menus, toolbars, accelerators, windows and frames with the IDE's window service,
/// remembers what the IDE accepted under each key and withdraws it when the key's owner goes away. Operations
/// return the service's status, kFail when the version that has the operation is missing. Texts are copied.
/// UI thread only.
class CUiCustomizer {
 public:
  /// Looks up the four versions of the window service, the newest first; all are borrowed.
  explicit CUiCustomizer(qal::IQHost* host);
  CUiCustomizer(const CUiCustomizer&) = delete;
  CUiCustomizer& operator=(const CUiCustomizer&) = delete;

  /// The five lists become id lists of the service, empty ones absent lists.
  virtual qal::Status RegisterToolbarButtons(qal::WindowHandle parent, qal::ModuleHandle module,
                                             std::uint32_t bitmapId, std::uint32_t value, std::uint32_t key,
                                             const qal::Guid& classId,
                                             const std::array<std::span<const std::uint32_t>, 5>& ids);
  virtual qal::Status CustomizeToolbar(qal::WindowHandle frame);
  /// Non-zero while the frame's toolbar is displayed; 0 without the service.
  virtual qal::Status IsToolbarShown(qal::WindowHandle frame);
  virtual qal::Status ShowToolbar(qal::WindowHandle frame, bool shown);
  virtual qal::Status PassSlot50(std::uintptr_t argument);
  /// Frees the tables and withdraws nothing.
  virtual ~CUiCustomizer() = default;

  // Resources of `module`: 1 (toolbars: kFail) when there is no such resource; the IDE is then not called.
  qal::Status RegisterMenu(qal::ModuleHandle module, std::uint32_t menuId, std::uint32_t key,
                           const qal::Guid& classId);
  qal::Status RegisterWindowMenu(qal::WindowHandle window, qal::ModuleHandle module, std::uint32_t menuId,
                                 std::uint32_t key, const qal::Guid& classId);
  qal::Status RegisterAccelerators(qal::ModuleHandle module, std::uint32_t tableId, std::uint32_t key,
                                   const qal::Guid& classId);
  qal::Status RegisterToolbar(std::string_view identifier, std::string_view name, qal::ModuleHandle module,
                              std::uint32_t toolbarId, std::uint32_t alternateId, std::uint32_t key,
                              const qal::Guid& classId, const ToolbarLists& lists = {});

  qal::Status RegisterContextMenu(qal::WindowHandle parent, qal::WindowHandle window, std::uint32_t position,
                                  std::string_view name, std::uint32_t first, std::uint32_t value,
                                  std::uint32_t key, const qal::Guid& classId);
  qal::Status RegisterWindow(std::uint32_t key, const qal::Guid& classId, qal::WindowHandle window);
  qal::Status RegisterResourceModule(qal::ModuleHandle module, std::uint32_t key, const qal::Guid& classId);

  /// Withdraws what the IDE accepted under the key: context menus, window menus, menus, accelerators,
  /// toolbars, resource modules, windows.
  void UnregisterAll(RegistrationKey key);

  /// 0 when the IDE gives none.
  std::uint32_t NewKey();
  /// `frame` gets 0 when no frame comes back. A frame key that comes back replaces `*frameKey`.
  qal::Status CreateFrame(std::string_view key, std::string_view title, std::uint32_t style,
                          std::uint32_t position, qal::WindowHandle* frame, std::string* frameKey);
  qal::Status SetFrameTitle(qal::WindowHandle frame, std::string_view title);
  qal::Status SetFrameState(qal::WindowHandle frame, std::uint32_t state);
  qal::Status GetFrameState(qal::WindowHandle frame, std::uint32_t* state);
  qal::Status QueryFrameToolbar(qal::WindowHandle frame);

 private:
  struct ContextMenu {
    qal::WindowHandle parent, window;
    std::uint32_t value, key;
  };
  struct WindowMenu {
    qal::WindowHandle window;
    std::uint32_t menuId, key;
  };
  struct Menu {
    std::uint32_t menuId, key;
  };
  struct Accelerators {
    std::uint32_t tableId, key;
  };
  struct Toolbar {
    std::uint32_t toolbarId, alternateId, key;
  };
  struct ResourceModule {
    std::uint32_t key;
  };
  struct Window {
    std::uint32_t key;
  };

  /// Registrations of one kind: by key, then by what was registered, in the order of the first registration.
  template <class Record>
  struct Table {
    struct Entry {
      std::uintptr_t identifier;
      Record record;
    };
    std::map<RegistrationKey, std::vector<Entry>> keys;

    void Store(RegistrationKey key, std::uintptr_t identifier, Record record);
    /// The key's entries, taken out of the table.
    std::vector<Entry> Take(RegistrationKey key);
  };

  template <class Record>
  void WithdrawTable(Table<Record>& table, RegistrationKey key);
  void Withdraw(const ContextMenu& menu);
  void Withdraw(const WindowMenu& menu);
  void Withdraw(const Menu& menu);
  void Withdraw(const Accelerators& accelerators);
  void Withdraw(const Toolbar& toolbar);
  void Withdraw(const ResourceModule& module);
  void Withdraw(const Window& window);

  qal::IQWindowService1* window1 = nullptr;
  qal::IQWindowService2* window2 = nullptr;
  qal::IQWindowService3* window3 = nullptr;
  qal::IQWindowService4* window4 = nullptr;

  Table<ContextMenu> contextMenus_;
  Table<WindowMenu> windowMenus_;
  Table<Menu> menus_;
  Table<Accelerators> accelerators_;
  Table<Toolbar> toolbars_;
  Table<ResourceModule> resourceModules_;
  Table<Window> windows_;
};

}  // namespace coverage
