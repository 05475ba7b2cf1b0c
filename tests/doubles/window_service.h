#pragma once

#include <map>
#include <string>

#include "doubles/double.h"
#include "qal/window_service.h"

namespace doubles {

/// All four versions in one object: keys count from 1, frames from 0x100; module handles are not written
/// down.
class StubWindowService : public Double<qal::IQWindowService4> {
 public:
  using Double::Double;

  std::map<qal::WindowHandle, std::string> titles;
  std::map<qal::WindowHandle, std::uint32_t> states;
  std::uint32_t contextMenusLeft = 0;
  bool toolbarShown = false;
  /// Makes the frame's window; replace it to give real ones.
  virtual qal::WindowHandle NewFrame() { return ++lastFrame_; }

  qal::Status RegisterAccelerators(qal::ModuleHandle, std::uint32_t table, std::uint32_t key,
                                   const qal::Guid* classId, const qal::Variant* ids, std::uint32_t* outA,
                                   std::uint32_t* outB) override {
    *outA = *outB = 0;
    return Log("window.RegisterAccelerators", table, key, classId, ids);
  }
  qal::Status UnregisterAccelerators(std::uint32_t table, std::uint32_t key) override {
    return Log("window.UnregisterAccelerators", table, key);
  }
  qal::Status RegisterWindowMenu(qal::WindowHandle, qal::ModuleHandle, std::uint32_t menu, std::uint32_t key,
                                 const qal::Guid* classId, const qal::Variant* ids, std::uint32_t* outA,
                                 std::uint32_t* outB) override {
    *outA = *outB = 0;
    return Log("window.RegisterWindowMenu", menu, key, classId, ids);
  }
  qal::Status UnregisterWindowMenu(qal::WindowHandle, std::uint32_t menu, std::uint32_t key) override {
    return Log("window.UnregisterWindowMenu", menu, key);
  }
  qal::Status SetFrameTitle(qal::WindowHandle frame, qal::WideText title) override {
    titles[frame] = platform::Narrow(title);
    return Log("window.SetFrameTitle", title);
  }
  qal::Status SetFrameState(qal::WindowHandle frame, std::uint32_t state) override {
    states[frame] = state;
    return Log("window.SetFrameState", state);
  }
  qal::Status GetFrameState(qal::WindowHandle frame, std::uint32_t* state) override {
    return Give(Log("window.GetFrameState"), state, states[frame]);
  }
  qal::Status UnregisterContextParent(qal::WindowHandle) override {
    return Log("window.UnregisterContextParent");
  }
  qal::Status RegisterContextMenu(qal::WindowHandle, qal::WindowHandle, std::uint32_t position,
                                  qal::WideText name, std::uint32_t first, std::uint32_t value,
                                  std::uint32_t key, const qal::Guid* classId) override {
    return Log("window.RegisterContextMenu", Hex{position}, name, first, value, key, classId);
  }
  qal::Status UnregisterContextMenu(qal::WindowHandle, qal::WindowHandle, std::uint32_t value,
                                    std::uint32_t key) override {
    return Log("window.UnregisterContextMenu", value, key);
  }
  qal::Status UnregisterToolbar(std::uint32_t toolbar, std::uint32_t alternate, std::uint32_t key) override {
    return Log("window.UnregisterToolbar", toolbar, alternate, key);
  }
  qal::Status RegisterMenu(qal::ModuleHandle, std::uint32_t menu, std::uint32_t key, const qal::Guid* classId,
                           const qal::Variant* ids, std::uint32_t* outA, std::uint32_t* outB,
                           qal::WideText first, qal::WideText second, std::uint32_t flag) override {
    *outA = *outB = 0;
    return Log("window.RegisterMenu", menu, key, classId, ids,
               platform::Narrow(first) + platform::Narrow(second), flag);
  }
  qal::Status UnregisterMenu(std::uint32_t menu, std::uint32_t key) override {
    return Log("window.UnregisterMenu", menu, key);
  }
  qal::Status RegisterWindow(std::uint32_t key, const qal::Guid* classId, qal::WindowHandle) override {
    return Log("window.RegisterWindow", key, classId);
  }
  qal::Status RegisterResourceModule(qal::ModuleHandle, std::uint32_t key,
                                     const qal::Guid* classId) override {
    return Log("window.RegisterResourceModule", key, classId);
  }
  qal::Status UnregisterResourceModule(std::uint32_t key) override {
    return Log("window.UnregisterResourceModule", key);
  }
  qal::Status UnregisterWindow(std::uint32_t key) override { return Log("window.UnregisterWindow", key); }
  qal::Status NewKey(std::uint32_t* key) override { return Give(Log("window.NewKey"), key, ++lastKey_); }
  qal::Status Reserved50(std::uintptr_t) override { return Log("window.Reserved50"); }
  qal::Status CreateFrame(qal::WideText key, qal::WideText title, std::uint32_t style, std::uint32_t position,
                          qal::WindowHandle* frame, char16_t** frameKey) override {
    const auto status = Log("window.CreateFrame", key, title, Hex{style}, Hex{position},
                            frameKey ? qal::WideText{*frameKey} : nullptr);
    *frame = qal::Failed(status) ? 0 : NewFrame();
    if (!*frame) return status;
    titles[*frame] = platform::Narrow(title);
    if (frameKey && platform::Narrow(*frameKey).empty()) {
      qal::FreeText(*frameKey);
      *frameKey = platform::NewWide(platform::Format("frame-%d", ++frameKeys_));
    }
    return status;
  }
  qal::Status RegisterToolbarButtons(qal::WindowHandle, qal::ModuleHandle, std::uint32_t bitmap,
                                     std::uint32_t value, std::uint32_t key, const qal::Guid* classId,
                                     const qal::Variant* first, const qal::Variant* second,
                                     const qal::Variant* third, const qal::Variant* fourth,
                                     const qal::Variant* fifth) override {
    return Log("window.RegisterToolbarButtons", bitmap, value, key, classId, first, second, third, fourth,
               fifth);
  }
  qal::Status CustomizeToolbar(qal::WindowHandle) override { return Log("window.CustomizeToolbar"); }
  qal::Status IsToolbarShown(qal::WindowHandle) override { return toolbarShown ? 1 : 0; }
  qal::Status ShowToolbar(qal::WindowHandle, qal::Flag shown) override {
    toolbarShown = shown != 0;
    return Log("window.ShowToolbar", shown);
  }
  qal::Status RegisterToolbar(qal::WideText identifier, qal::WideText name, qal::ModuleHandle,
                              std::uint32_t toolbar, std::uint32_t alternate, std::uint32_t key,
                              const qal::Guid* classId, const qal::Variant* buttonIds,
                              const qal::Variant* secondIds, const qal::Variant* texts,
                              const qal::Variant* third, const qal::Variant* fourth,
                              const qal::Variant* fifth, const qal::Variant* sixth) override {
    return Log("window.RegisterToolbar", identifier, name, toolbar, alternate, key, classId, buttonIds,
               secondIds, texts, third, fourth, fifth, sixth);
  }
  qal::Status QueryFrameToolbar(qal::WindowHandle) override { return Log("window.QueryFrameToolbar"); }
  qal::Status GetContextMenuCount(qal::WindowHandle, std::uint32_t* count) override {
    return Give(Log("window.GetContextMenuCount"), count, contextMenusLeft);
  }

  /// Offers all versions, or those up to `last`.
  template <class Host>
  void OfferTo(Host& host, int last = 4) {
    const qal::Guid ids[] = {qal::iid::kWindowService1, qal::iid::kWindowService2, qal::iid::kWindowService3,
                             qal::iid::kWindowService4};
    for (int i = 0; i < last; ++i) host.Offer(ids[i], this);
  }

 private:
  qal::WindowHandle lastFrame_ = 0xFF;
  std::uint32_t lastKey_ = 0;
  int frameKeys_ = 0;
};

}  // namespace doubles
