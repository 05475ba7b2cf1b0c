#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "platform/list_view.h"
#include "platform/window.h"
#include "qal/basic.h"

namespace workbench {

/// A docking frame: a top-level window, or a window inside the frame whose key it was created with. A
/// top-level frame is hidden until its component asks for it. User-interface thread.
class FrameWindow final : public platform::Window {
 public:
  /// What a component can ask of a frame with a state. 1 hides it. 2 closes it as soon as it holds no panes
  /// any more, so that a window whose closing the person calls off stays where it is. 0x20 allows docking
  /// when it was not allowed, and the other way round. Every other state shows the frame, but for 0x2000,
  /// which only says that it wears its toolbar.
  static constexpr std::uint32_t kHide = 1;
  static constexpr std::uint32_t kClose = 2;
  static constexpr std::uint32_t kSwitchDocking = 0x20;
  static constexpr std::uint32_t kWearToolbar = 0x2000;
  static constexpr std::uint32_t kShow = 18;
  /// Bits of the state that a frame reports.
  static constexpr std::uint32_t kHiddenBit = 1;
  static constexpr std::uint32_t kFloatingBit = 8;
  static constexpr std::uint32_t kDockingBit = 0x10;

  /// `kind` is the key that the component made the frame with; frames of one kind are alike.
  FrameWindow(std::string key, std::string kind, std::uint32_t style, std::uint32_t dockPosition)
      : key_(std::move(key)), kind_(std::move(kind)), frameStyle_(style), dockPosition_(dockPosition) {}

  /// Called when the person asks for the menu of a window in the frame.
  using MenuAsked = std::function<void(platform::Window& window, platform::Point at)>;
  void SetMenuAsked(MenuAsked menuAsked) { menuAsked_ = std::move(menuAsked); }

  const std::string& Key() const { return key_; }
  const std::string& Kind() const { return kind_; }
  std::uint32_t FrameStyle() const { return frameStyle_; }
  std::uint32_t DockPosition() const { return dockPosition_; }

  void RequestState(std::uint32_t state);
  std::uint32_t State() const;
  bool MayDock() const { return mayDock_; }
  /// Whether the frame is to go, and nothing holds it any more.
  bool Closed() const { return closing_ && Lists().empty(); }
  /// Whether the frame has been on the screen with panes in it: the person knows of it.
  bool InUse() const { return hasBeenShown_ && !Lists().empty(); }

  /// The lists in the panes that the frame holds and shows, in the order in which they came.
  std::vector<platform::ListView*> Lists() const;
  /// Whether a list is the summary of its window (few columns) and not the detail.
  static bool IsSummary(const platform::ListView& list);
  /// Puts the panes to their places: the summary above, the others in turn below.
  void LayOut();

 protected:
  platform::LResult OnMessage(const platform::Message& message) override;

 private:
  std::string key_;
  std::string kind_;
  std::uint32_t frameStyle_;
  std::uint32_t dockPosition_;
  MenuAsked menuAsked_;
  bool mayDock_ = true;
  bool closing_ = false;
  bool hasBeenShown_ = false;
};

}  // namespace workbench
