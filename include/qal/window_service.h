#pragma once

#include "qal/reserve.h"

/// The IDE's docking frames, menus, toolbars, accelerators and window registrations, in four versions, each
/// extending the one before. User-interface thread only. `key` names the object that registers and withdraws;
/// `classId` its component. Lists of ids are variants by pointer, tagged kVariantU32Array; an absent list is
/// an empty variant, never null. `outA` and `outB` may point to one variable.
namespace qal {

struct WindowServiceTo6 : Reserve<IQUnknown, 3, 4> {
  virtual Status RegisterAccelerators(ModuleHandle module, std::uint32_t table, std::uint32_t key,
                                      const Guid* classId, const Variant* ids, std::uint32_t* outA,
                                      std::uint32_t* outB) = 0;                       // slot 5
  virtual Status UnregisterAccelerators(std::uint32_t table, std::uint32_t key) = 0;  // slot 6
};
struct WindowServiceTo14 : Reserve<WindowServiceTo6, 7, 11> {
  virtual Status RegisterWindowMenu(WindowHandle window, ModuleHandle module, std::uint32_t menu,
                                    std::uint32_t key, const Guid* classId, const Variant* ids,
                                    std::uint32_t* outA,
                                    std::uint32_t* outB) = 0;  // slot 12
  virtual Status UnregisterWindowMenu(WindowHandle window, std::uint32_t menu,
                                      std::uint32_t key) = 0;            // slot 13
  virtual Status SetFrameTitle(WindowHandle frame, WideText title) = 0;  // slot 14
};
struct WindowServiceTo17 : Reserve<WindowServiceTo14, 15, 15> {
  virtual Status SetFrameState(WindowHandle frame, std::uint32_t state) = 0;   // slot 16
  virtual Status GetFrameState(WindowHandle frame, std::uint32_t* state) = 0;  // slot 17
};
struct WindowServiceTo19 : Reserve<WindowServiceTo17, 18, 18> {
  virtual Status UnregisterContextParent(WindowHandle parent) = 0;  // slot 19
};
struct WindowServiceTo22 : Reserve<WindowServiceTo19, 20, 20> {
  virtual Status RegisterContextMenu(WindowHandle parent, WindowHandle window, std::uint32_t position,
                                     WideText name, std::uint32_t first, std::uint32_t value,
                                     std::uint32_t key,
                                     const Guid* classId) = 0;  // slot 21
  virtual Status UnregisterContextMenu(WindowHandle parent, WindowHandle window, std::uint32_t value,
                                       std::uint32_t key) = 0;  // slot 22
};
struct WindowServiceTo29 : Reserve<WindowServiceTo22, 23, 27> {
  virtual Status UnregisterToolbar(std::uint32_t toolbar, std::uint32_t alternate,
                                   std::uint32_t key) = 0;  // slot 28
  virtual Status RegisterMenu(ModuleHandle module, std::uint32_t menu, std::uint32_t key, const Guid* classId,
                              const Variant* ids, std::uint32_t* outA, std::uint32_t* outB, WideText first,
                              WideText second, std::uint32_t flag) = 0;  // slot 29
};
struct WindowServiceTo37 : Reserve<WindowServiceTo29, 30, 32> {
  virtual Status UnregisterMenu(std::uint32_t menu, std::uint32_t key) = 0;                        // slot 33
  virtual Status RegisterWindow(std::uint32_t key, const Guid* classId, WindowHandle window) = 0;  // slot 34
  virtual Status RegisterResourceModule(ModuleHandle module, std::uint32_t key,
                                        const Guid* classId) = 0;  // slot 35
  virtual Status UnregisterResourceModule(std::uint32_t key) = 0;  // slot 36
  virtual Status UnregisterWindow(std::uint32_t key) = 0;          // slot 37
};
struct WindowServiceTo44 : Reserve<WindowServiceTo37, 38, 43> {
  virtual Status NewKey(std::uint32_t* key) = 0;  // slot 44
};
struct WindowServiceTo51 : Reserve<WindowServiceTo44, 45, 49> {
  virtual Status Reserved50(std::uintptr_t argument) = 0;  // slot 50: the coverage views do not use it
  /// Gives the new frame's window. `frameKey` may be null; else its text goes in, and when another comes back
  /// the service has freed the one given and the caller frees the new one.
  virtual Status CreateFrame(WideText key, WideText title, std::uint32_t style, std::uint32_t position,
                             WindowHandle* frame, char16_t** frameKey) = 0;  // slot 51
};

/// Slots 3 to 57.
struct IQWindowService1 : Reserve<WindowServiceTo51, 52, 57> {};

struct WindowServiceTo64 : Reserve<IQWindowService1, 58, 60> {
  virtual Status RegisterToolbarButtons(WindowHandle parent, ModuleHandle module, std::uint32_t bitmap,
                                        std::uint32_t value, std::uint32_t key, const Guid* classId,
                                        const Variant* first, const Variant* second, const Variant* third,
                                        const Variant* fourth, const Variant* fifth) = 0;  // slot 61
  /// Runs the IDE's dialog for the frame's toolbar.
  virtual Status CustomizeToolbar(WindowHandle frame) = 0;  // slot 62
  /// Non-zero while the frame's toolbar is displayed.
  virtual Status IsToolbarShown(WindowHandle frame) = 0;           // slot 63
  virtual Status ShowToolbar(WindowHandle frame, Flag shown) = 0;  // slot 64
};
struct WindowServiceTo69 : Reserve<WindowServiceTo64, 65, 68> {
  virtual Status RegisterToolbar(WideText identifier, WideText name, ModuleHandle module,
                                 std::uint32_t toolbar, std::uint32_t alternate, std::uint32_t key,
                                 const Guid* classId, const Variant* buttonIds, const Variant* secondIds,
                                 const Variant* texts, const Variant* third, const Variant* fourth,
                                 const Variant* fifth,
                                 const Variant* sixth) = 0;  // slot 69
};
struct WindowServiceTo79 : Reserve<WindowServiceTo69, 70, 78> {
  virtual Status QueryFrameToolbar(WindowHandle frame) = 0;  // slot 79
};

/// Slots 3 to 80.
struct IQWindowService2 : Reserve<WindowServiceTo79, 80, 80> {};

/// Slots 3 to 82.
struct IQWindowService3 : Reserve<IQWindowService2, 81, 82> {};

struct WindowServiceTo87 : Reserve<IQWindowService3, 83, 86> {
  /// Context menus that are left on the parent window.
  virtual Status GetContextMenuCount(WindowHandle parent, std::uint32_t* count) = 0;  // slot 87
};

/// Slots 3 to 89.
struct IQWindowService4 : Reserve<WindowServiceTo87, 88, 89> {};

}  // namespace qal
