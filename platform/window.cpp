#include "platform/window.h"

#include <algorithm>

#include "platform/desktop.h"

namespace platform {

Window::~Window() {
  Destroy();
  if (handle_ == 0) return;
  // The object goes in the middle of its own destruction: the rest of it finds no window any more.
  for (Window* child : std::vector<Window*>(children_)) child->Destroy();
  for (Window* child : children_) child->parent_ = nullptr;
  Unlink();
}

void Window::Unlink() {
  Desktop& desktop = Desktop::Get();
  if (desktop.presenter) desktop.presenter->WindowDestroyed(*this);
  if (parent_) std::erase(parent_->children_, this);
  parent_ = nullptr;
  children_.clear();
  const WindowHandle handle = handle_;
  handle_ = 0;
  destroying_ = false;
  desktop.Forget(handle);
}

bool Window::Create(WindowHandle parent, std::uint32_t id, std::string_view text, std::uint32_t style,
                    const Rect& bounds) {
  Desktop& desktop = Desktop::Get();
  if (handle_ != 0 || !desktop.OnOwnThread(true)) return false;
  const Desktop::Busy busy;
  Window* above = desktop.Find(parent);
  if (parent != 0 && (!above || above->destroying_)) return false;
  parent_ = above;
  id_ = id;
  text_ = text;
  style_ = style & ~(window_style::kVisible | window_style::kDisabled);
  visible_ = (style & window_style::kVisible) != 0;
  enabled_ = (style & window_style::kDisabled) == 0;
  bounds_ = bounds;
  if (parent_) {
    parent_->children_.push_back(this);
    if (IsChild()) font_ = parent_->font_;
  }
  const WindowHandle handle = handle_ = desktop.Register(*this);
  if (desktop.presenter) desktop.presenter->WindowCreated(*this);
  const bool refused = Send(message::kCreate) == -1;
  if (!desktop.Find(handle)) return false;
  if (refused) {
    Destroy();
    return false;
  }
  if (!bounds.Empty()) Send(message::kSize, 0, static_cast<LParam>(Pack(bounds.Width(), bounds.Height())));
  return desktop.Find(handle) != nullptr;
}

void Window::Destroy() {
  Desktop& desktop = Desktop::Get();
  if (handle_ == 0 || destroying_ || !desktop.OnOwnThread()) return;
  const Desktop::Busy busy;
  const WindowRef self(*this);
  destroying_ = true;
  Window* focus = FocusedWindow();
  if (focus && focus->IsWithin(*this)) desktop.SetFocus(nullptr);
  if (!self) return;
  Send(message::kDestroy);
  if (!self) return;
  while (!children_.empty()) {
    Window* child = children_.front();
    child->Destroy();
    if (!self) return;
    // A child whose own destruction is under way further out lets go of this window here.
    if (!children_.empty() && children_.front() == child) {
      child->parent_ = nullptr;
      children_.erase(children_.begin());
    }
  }
  Send(message::kFinalDestroy);
  if (!self) return;
  Unlink();
  OnDestroyed();
}

Window* Window::Child(std::uint32_t id) const {
  for (Window* child : children_) {
    if (child->id_ == id && child->IsChild()) return child;
  }
  return nullptr;
}

bool Window::IsWithin(const Window& ancestor) const {
  for (const Window* window = this; window; window = window->parent_) {
    if (window == &ancestor) return true;
  }
  return false;
}

void Window::SetParent(Window* parent) {
  if (parent == parent_ || (parent && (!parent->Exists() || parent->IsWithin(*this)))) return;
  if (parent_) std::erase(parent_->children_, this);
  parent_ = parent;
  if (parent_) parent_->children_.push_back(this);
  Desktop::Get().Tell(*this, Change::kParent);
}

void Window::ModifyStyle(std::uint32_t remove, std::uint32_t add) {
  style_ = ((style_ & ~remove) | add) & ~(window_style::kVisible | window_style::kDisabled);
  Invalidate();
}

void Window::SetText(std::string_view text) {
  if (text_ == text) return;
  text_ = text;
  Desktop::Get().Tell(*this, Change::kText);
}

bool Window::IsShown() const {
  for (const Window* window = this; window; window = window->parent_) {
    if (!window->visible_) return false;
    if (!window->IsChild()) return true;
  }
  return true;
}

bool Window::CanBeUsed() const {
  if (handle_ == 0 || !IsShown()) return false;
  return IsEnabledThroughout();
}

bool Window::IsEnabledThroughout() const {
  for (const Window* window = this; window; window = window->parent_) {
    if (!window->enabled_) return false;
    if (!window->IsChild()) return true;
  }
  return true;
}

void Window::LoseFocus() {
  Window* focus = FocusedWindow();
  if (focus && focus->IsWithin(*this) && !focus->CanBeUsed()) Desktop::Get().SetFocus(nullptr);
}

void Window::Show(bool visible) {
  if (visible_ == visible) return;
  visible_ = visible;
  const WindowRef self(*this);
  Desktop::Get().Tell(*this, Change::kVisible);
  Send(message::kShow, visible ? 1 : 0);
  if (self && !visible) LoseFocus();
}

void Window::Enable(bool enabled) {
  if (enabled_ == enabled) return;
  enabled_ = enabled;
  const WindowRef self(*this);
  Desktop::Get().Tell(*this, Change::kEnabled);
  Send(message::kEnable, enabled ? 1 : 0);
  if (self && !enabled) LoseFocus();
}

Rect Window::ScreenRect() const {
  Rect rect = bounds_;
  for (const Window* window = this; window->IsChild() && window->parent_; window = window->parent_) {
    const Rect& outer = window->parent_->bounds_;
    rect = {rect.left + outer.left, rect.top + outer.top, rect.right + outer.left, rect.bottom + outer.top};
  }
  return rect;
}

void Window::Move(const Rect& bounds) {
  if (bounds_ == bounds) return;
  const bool sized = bounds_.Width() != bounds.Width() || bounds_.Height() != bounds.Height();
  const bool moved = bounds_.left != bounds.left || bounds_.top != bounds.top;
  bounds_ = bounds;
  const WindowRef self(*this);
  Desktop::Get().Tell(*this, Change::kBounds);
  if (moved) Send(message::kMove, 0, static_cast<LParam>(Pack(bounds.left, bounds.top)));
  if (self && sized) Send(message::kSize, 0, static_cast<LParam>(Pack(bounds.Width(), bounds.Height())));
}

bool Window::HasFocus() const { return handle_ != 0 && Desktop::Get().Focus() == handle_; }

bool Window::SetFocus() {
  if (handle_ == 0 || destroying_ || !IsEnabledThroughout()) return false;
  const WindowRef self(*this);
  Desktop::Get().SetFocus(this);
  return self && HasFocus();
}

void Window::SetFont(const Font& font) {
  if (font_ == font) return;
  font_ = font;
  Desktop::Get().Tell(*this, Change::kFont);
}

void Window::Invalidate() { Desktop::Get().Tell(*this, Change::kContent); }

void Window::SetMenu(std::shared_ptr<Menu> menu) {
  menu_ = std::move(menu);
  Desktop::Get().Tell(*this, Change::kMenu);
}

void Window::SetToolbar(std::shared_ptr<Toolbar> toolbar) {
  toolbar_ = std::move(toolbar);
  Desktop::Get().Tell(*this, Change::kToolbar);
}

LResult Window::Send(std::uint32_t message, WParam w, LParam l) {
  return handle_ ? Desktop::Get().Deliver(*this, {message, w, l}) : 0;
}

bool Window::Post(std::uint32_t message, WParam w, LParam l) {
  return Desktop::Get().Post(handle_, {message, w, l});
}

std::uint32_t Window::SetTimer(std::uint32_t id, std::chrono::milliseconds period) {
  return Desktop::Get().SetTimer(handle_, id, period);
}

bool Window::KillTimer(std::uint32_t id) { return Desktop::Get().KillTimer(handle_, id); }

bool Window::PreTranslate(const Message& /*message*/) { return false; }

LResult Window::OnMessage(const Message& message) {
  switch (message.id) {
    case message::kContextMenu:
    case message::kMouseWheel:
      return IsChild() && parent_ ? parent_->Send(message.id, message.w, message.l) : 0;
    case message::kClose:
      Destroy();
      return 0;
    default:
      return 0;
  }
}

Window* WindowRef::Get() const { return WindowFrom(handle_); }

Window* WindowFrom(WindowHandle handle) { return Desktop::Get().Find(handle); }

WindowHandle ParentOf(WindowHandle handle) {
  const Window* window = WindowFrom(handle);
  return window ? window->ParentHandle() : 0;
}

LResult SendTo(WindowHandle handle, std::uint32_t message, WParam w, LParam l) {
  Window* window = WindowFrom(handle);
  return window ? window->Send(message, w, l) : 0;
}

bool PostTo(WindowHandle handle, std::uint32_t message, WParam w, LParam l) {
  return Desktop::Get().Post(handle, {message, w, l});
}

void DestroyWindow(WindowHandle handle) {
  if (Window* window = WindowFrom(handle)) window->Destroy();
}

Window* FocusedWindow() { return WindowFrom(Desktop::Get().Focus()); }

std::vector<Window*> TopLevelWindows() { return Desktop::Get().TopLevel(); }

void DeleteLater(std::unique_ptr<Window> window) { Desktop::Get().DeleteLater(std::move(window)); }

bool TypeKey(Window& window, std::uint32_t virtualKey, std::uint8_t modifiers) {
  if (!window.CanBeUsed()) return false;
  const Desktop::Busy busy;
  const WindowRef target(window);
  const Message down{message::kKeyDown, virtualKey, modifiers};
  WindowRef next = target;
  while (Window* asked = next.Get()) {
    const WindowRef parent = asked->Parent() ? WindowRef(*asked->Parent()) : WindowRef();
    if (asked->PreTranslate(down) || !target) return true;
    next = parent;
  }
  window.Send(down.id, down.w, down.l);
  if (target) window.Send(message::kKeyUp, down.w, down.l);
  return true;
}

CommandUpdate QueryCommand(Window& window, std::uint32_t command) {
  CommandUpdate update(command);
  window.Send(message::kUpdateCommand, command, reinterpret_cast<LParam>(&update));
  return update;
}

bool RunCommand(Window& window, std::uint32_t command) {
  const WindowRef target(window);
  if (!QueryCommand(window, command).Enabled() || !target) return false;
  window.Send(message::kCommand, command);
  return true;
}

}  // namespace platform
