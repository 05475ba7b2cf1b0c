#pragma once

#include <map>
#include <string>

#include "doubles/double.h"
#include "qal/window_service.h"

namespace doubles {

using qal::ModuleHandle;
using qal::WindowHandle;

/// All four versions in one object: keys count from 1, frames from 0x100; module handles are not written
/// down.
struct StubWindowService : Service<qal::IQWindowService4, qal::iid::kWindowService4, "window"> {
  using Service::Service;

  std::map<WindowHandle, std::string> titles;
  std::map<WindowHandle, Number> states;
  Number contextMenusLeft = 0;
  bool toolbarShown = false;
  /// Makes the frame's window; replace it to give real ones.
  virtual WindowHandle NewFrame() { return ++lastFrame_; }

  Status RegisterAccelerators(ModuleHandle, Number table, Number key, const Guid* classId, const Variant* ids,
                              Number* outA, Number* outB) override {
    *outA = *outB = 0;
    return Log("RegisterAccelerators", table, key, classId, ids);
  }
  Status UnregisterAccelerators(Number table, Number key) override {
    return Log("UnregisterAccelerators", table, key);
  }
  Status RegisterWindowMenu(WindowHandle, ModuleHandle, Number menu, Number key, const Guid* classId,
                            const Variant* ids, Number* outA, Number* outB) override {
    *outA = *outB = 0;
    return Log("RegisterWindowMenu", menu, key, classId, ids);
  }
  Status UnregisterWindowMenu(WindowHandle, Number menu, Number key) override {
    return Log("UnregisterWindowMenu", menu, key);
  }
  Status SetFrameTitle(WindowHandle frame, WideText title) override {
    titles[frame] = platform::Narrow(title);
    return Log("SetFrameTitle", title);
  }
  Status SetFrameState(WindowHandle frame, Number state) override {
    states[frame] = state;
    return Log("SetFrameState", state);
  }
  Status GetFrameState(WindowHandle frame, Number* state) override {
    return Give(Log("GetFrameState"), state, states[frame]);
  }
  Status UnregisterContextParent(WindowHandle) override { return Log("UnregisterContextParent"); }
  Status RegisterContextMenu(WindowHandle, WindowHandle, Number position, WideText name, Number first,
                             Number value, Number key, const Guid* classId) override {
    return Log("RegisterContextMenu", Hex{position}, name, first, value, key, classId);
  }
  Status UnregisterContextMenu(WindowHandle, WindowHandle, Number value, Number key) override {
    return Log("UnregisterContextMenu", value, key);
  }
  Status UnregisterToolbar(Number toolbar, Number alternate, Number key) override {
    return Log("UnregisterToolbar", toolbar, alternate, key);
  }
  Status RegisterMenu(ModuleHandle, Number menu, Number key, const Guid* classId, const Variant* ids,
                      Number* outA, Number* outB, WideText first, WideText second, Number flag) override {
    *outA = *outB = 0;
    return Log("RegisterMenu", menu, key, classId, ids, platform::Narrow(first) + platform::Narrow(second),
               flag);
  }
  Status UnregisterMenu(Number menu, Number key) override { return Log("UnregisterMenu", menu, key); }
  Status RegisterWindow(Number key, const Guid* classId, WindowHandle) override {
    return Log("RegisterWindow", key, classId);
  }
  Status RegisterResourceModule(ModuleHandle, Number key, const Guid* classId) override {
    return Log("RegisterResourceModule", key, classId);
  }
  Status UnregisterResourceModule(Number key) override { return Log("UnregisterResourceModule", key); }
  Status UnregisterWindow(Number key) override { return Log("UnregisterWindow", key); }
  Status NewKey(Number* key) override { return Give(Log("NewKey"), key, ++lastKey_); }
  Status Reserved50(std::uintptr_t) override { return Log("Reserved50"); }
  Status CreateFrame(WideText key, WideText title, Number style, Number position, WindowHandle* frame,
                     char16_t** frameKey) override {
    const auto status =
        Log("CreateFrame", key, title, Hex{style}, Hex{position}, frameKey ? WideText{*frameKey} : nullptr);
    *frame = qal::Failed(status) ? 0 : NewFrame();
    if (!*frame) return status;
    titles[*frame] = platform::Narrow(title);
    if (frameKey && platform::Narrow(*frameKey).empty()) {
      qal::FreeText(*frameKey);
      *frameKey = platform::NewWide(platform::Format("frame-%d", ++frameKeys_));
    }
    return status;
  }
  Status RegisterToolbarButtons(WindowHandle, ModuleHandle, Number bitmap, Number value, Number key,
                                const Guid* classId, const Variant* first, const Variant* second,
                                const Variant* third, const Variant* fourth, const Variant* fifth) override {
    return Log("RegisterToolbarButtons", bitmap, value, key, classId, first, second, third, fourth, fifth);
  }
  Status CustomizeToolbar(WindowHandle) override { return Log("CustomizeToolbar"); }
  Status IsToolbarShown(WindowHandle) override { return toolbarShown ? 1 : 0; }
  Status ShowToolbar(WindowHandle, Flag shown) override {
    toolbarShown = shown != 0;
    return Log("ShowToolbar", shown);
  }
  Status RegisterToolbar(WideText identifier, WideText name, ModuleHandle, Number toolbar, Number alternate,
                         Number key, const Guid* classId, const Variant* buttonIds, const Variant* secondIds,
                         const Variant* texts, const Variant* third, const Variant* fourth,
                         const Variant* fifth, const Variant* sixth) override {
    return Log("RegisterToolbar", identifier, name, toolbar, alternate, key, classId, buttonIds, secondIds,
               texts, third, fourth, fifth, sixth);
  }
  Status QueryFrameToolbar(WindowHandle) override { return Log("QueryFrameToolbar"); }
  Status GetContextMenuCount(WindowHandle, Number* count) override {
    return Give(Log("GetContextMenuCount"), count, contextMenusLeft);
  }

  /// Offers all versions, or those up to `last`.
  template <class Host>
  void OfferTo(Host& host, int last = 4) {
    const Guid ids[] = {qal::iid::kWindowService1, qal::iid::kWindowService2, qal::iid::kWindowService3,
                        qal::iid::kWindowService4};
    for (int i = 0; i < last; ++i) host.Offer(ids[i], this);
  }

 private:
  WindowHandle lastFrame_ = 0xFF;
  Number lastKey_ = 0;
  int frameKeys_ = 0;
};

}  // namespace doubles
