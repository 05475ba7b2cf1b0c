#include "workbench/services/frame_window.h"

namespace workbench {
namespace {

constexpr int kSummaryColumns = 3;

}  // namespace

void FrameWindow::RequestState(std::uint32_t state) {
  switch (state) {
    case kSwitchDocking:
      mayDock_ = !mayDock_;
      return;
    case kWearToolbar:
      return;
    case kHide:
      return Show(false);
    case kClose:
      closing_ = true;
      if (Closed()) Show(false);
      return;
    default:
      closing_ = false;
      hasBeenShown_ = true;
      Show(true);
  }
}

std::uint32_t FrameWindow::State() const {
  return (mayDock_ ? kDockingBit : kFloatingBit) | (IsVisible() ? 0 : kHiddenBit);
}

std::vector<platform::ListView*> FrameWindow::Lists() const {
  std::vector<platform::ListView*> lists;
  for (const platform::Window* pane : Children()) {
    if (!pane->IsVisible()) continue;
    for (platform::Window* child : pane->Children()) {
      if (auto* list = dynamic_cast<platform::ListView*>(child)) lists.push_back(list);
    }
  }
  return lists;
}

bool FrameWindow::IsSummary(const platform::ListView& list) { return list.ColumnCount() <= kSummaryColumns; }

void FrameWindow::LayOut() {
  const platform::Rect whole = ClientRect();
  const int middle = whole.top + whole.Height() / 3;
  for (const platform::ListView* list : Lists()) {
    platform::Rect place = whole;
    if (IsSummary(*list)) {
      place.bottom = middle;
    } else {
      place.top = middle;
    }
    list->Parent()->Move(place);
  }
}

platform::LResult FrameWindow::OnMessage(const platform::Message& message) {
  if (message.id == platform::message::kSize) LayOut();
  if (message.id == platform::message::kContextMenu && menuAsked_) {
    platform::Window* const window = platform::WindowFrom(static_cast<qal::WindowHandle>(message.w));
    if (window) menuAsked_(*window, platform::UnpackPoint(message.l));
    return 0;
  }
  return Window::OnMessage(message);
}

}  // namespace workbench
