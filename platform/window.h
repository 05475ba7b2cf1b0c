#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/api.h"
#include "platform/font.h"
#include "platform/geometry.h"
#include "platform/message.h"

/// Windows: models that keep their whole state and need no screen. All of it belongs to one thread, the first
/// that creates a window while there is none; any other is refused (debug builds stop).
///
/// Lifetime. A window has two halves: the C++ object, which its owner makes and deletes, and the handle,
/// which lives from Create to Destroy (or to the end of the object, or of its parent's handle). Destroying
/// never deletes objects. A handler may destroy any window, its own included, and delete any object whose
/// members are not running; an object that may be running is given to DeleteLater. Whoever calls a window and
/// goes on using it afterwards checks with a WindowRef. Handles are never used twice.
namespace platform {

class Menu;
class Toolbar;

namespace window_style {
inline constexpr std::uint32_t kChild = 0x40000000;
inline constexpr std::uint32_t kVisible = 0x10000000;
inline constexpr std::uint32_t kDisabled = 0x08000000;
inline constexpr std::uint32_t kTabStop = 0x00010000;
}  // namespace window_style

class PLATFORM_API Window {
 public:
  Window() = default;
  virtual ~Window();
  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;

  /// Gives the object a handle and sends kCreate. False when the parent is no window, there is a handle
  /// already, or kCreate was answered with -1. A window without a parent is a top-level one.
  bool Create(WindowHandle parent, std::uint32_t id, std::string_view text, std::uint32_t style,
              const Rect& bounds = {});
  /// kDestroy, then the children, then kFinalDestroy. Posted messages and timers of the window are dropped.
  void Destroy();

  WindowHandle Handle() const { return handle_; }
  bool Exists() const { return handle_ != 0; }

  Window* Parent() const { return parent_; }
  WindowHandle ParentHandle() const { return parent_ ? parent_->handle_ : 0; }
  const std::vector<Window*>& Children() const { return children_; }
  /// First direct child with this identifier, or null.
  Window* Child(std::uint32_t id) const;
  bool IsWithin(const Window& ancestor) const;
  void SetParent(Window* parent);

  std::uint32_t Id() const { return id_; }
  std::uint32_t Style() const { return style_; }
  /// The style bits of a control's class; kVisible and kDisabled are changed with Show and Enable.
  void ModifyStyle(std::uint32_t remove, std::uint32_t add);

  const std::string& Text() const { return text_; }
  virtual void SetText(std::string_view text);

  /// The window's own flag; IsShown says whether its parents are visible, too. A window without kChild only
  /// belongs to its parent (dialogs do): whether that is visible or enabled does not matter to it.
  bool IsVisible() const { return visible_; }
  bool IsShown() const;
  void Show(bool visible);
  /// The window's own flag; a child of a disabled window cannot be used either (CanBeUsed).
  bool IsEnabled() const { return enabled_; }
  bool CanBeUsed() const;
  void Enable(bool enabled);

  /// In the parent's client area.
  const Rect& Bounds() const { return bounds_; }
  Rect ClientRect() const { return {0, 0, bounds_.Width(), bounds_.Height()}; }
  Rect ScreenRect() const;
  /// Sends kMove and kSize when place or size change.
  void Move(const Rect& bounds);

  bool HasFocus() const;
  /// Takes the input focus; an invisible or disabled window does not get it.
  bool SetFocus();

  const Font& CurrentFont() const { return font_; }
  virtual void SetFont(const Font& font);
  /// Asks whoever shows the window to show it again.
  void Invalidate();

  /// Menu and toolbar that the window wears; they may be none.
  const std::shared_ptr<Menu>& CurrentMenu() const { return menu_; }
  void SetMenu(std::shared_ptr<Menu> menu);
  const std::shared_ptr<Toolbar>& CurrentToolbar() const { return toolbar_; }
  void SetToolbar(std::shared_ptr<Toolbar> toolbar);

  /// Runs the handler and gives its answer; 0 without a handle.
  LResult Send(std::uint32_t message, WParam w = 0, LParam l = 0);
  /// Puts the message into the queue; false without a handle.
  bool Post(std::uint32_t message, WParam w = 0, LParam l = 0);

  /// Sends kTimer every `period` until KillTimer; an identifier that runs already starts anew. Gives the
  /// identifier, 0 without a handle.
  std::uint32_t SetTimer(std::uint32_t id, std::chrono::milliseconds period);
  bool KillTimer(std::uint32_t id);

  /// Sees a key before the window it goes to (in the window itself, then in its parents); true takes it away.
  virtual bool PreTranslate(const Message& message);

 protected:
  /// Answers a message. Overrides hand on what they do not handle. The platform's own: context menu and wheel
  /// go to the parent, kClose destroys the window.
  virtual LResult OnMessage(const Message& message);
  /// After the handle is gone; the object may be deleted here by its owner.
  virtual void OnDestroyed() {}

 private:
  friend class Desktop;

  bool IsChild() const { return (style_ & window_style::kChild) != 0; }
  bool IsEnabledThroughout() const;
  void LoseFocus();
  void Unlink();

  WindowHandle handle_ = 0;
  Window* parent_ = nullptr;
  std::vector<Window*> children_;
  std::uint32_t id_ = 0;
  std::uint32_t style_ = 0;
  std::string text_;
  Rect bounds_;
  Font font_;
  std::shared_ptr<Menu> menu_;
  std::shared_ptr<Toolbar> toolbar_;
  bool visible_ = false;
  bool enabled_ = true;
  bool destroying_ = false;
};

/// Knows whether a window is still there.
class WindowRef {
 public:
  WindowRef() = default;
  explicit WindowRef(const Window& window) : handle_(window.Handle()) {}
  PLATFORM_API Window* Get() const;
  explicit operator bool() const { return Get() != nullptr; }

 private:
  WindowHandle handle_ = 0;
};

/// The window of a handle; null when there is none (any more).
PLATFORM_API Window* WindowFrom(WindowHandle handle);
inline bool IsWindow(WindowHandle handle) { return WindowFrom(handle) != nullptr; }
PLATFORM_API WindowHandle ParentOf(WindowHandle handle);
PLATFORM_API LResult SendTo(WindowHandle handle, std::uint32_t message, WParam w = 0, LParam l = 0);
PLATFORM_API bool PostTo(WindowHandle handle, std::uint32_t message, WParam w = 0, LParam l = 0);
PLATFORM_API void DestroyWindow(WindowHandle handle);
/// The window with the input focus, or null.
PLATFORM_API Window* FocusedWindow();
/// Every window without a parent, in the order of creation.
PLATFORM_API std::vector<Window*> TopLevelWindows();

/// Destroys the handle now and deletes the object when no handler of any window runs any more.
PLATFORM_API void DeleteLater(std::unique_ptr<Window> window);

/// A key of the person: PreTranslate, then kKeyDown and kKeyUp. False when the window cannot be used.
PLATFORM_API bool TypeKey(Window& window, std::uint32_t virtualKey, std::uint8_t modifiers = 0);

/// How a command stands with a window.
PLATFORM_API CommandUpdate QueryCommand(Window& window, std::uint32_t command);
/// Sends the command unless QueryCommand says that it is not enabled.
PLATFORM_API bool RunCommand(Window& window, std::uint32_t command);

}  // namespace platform
