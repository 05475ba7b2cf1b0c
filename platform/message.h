#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "platform/geometry.h"
#include "qal/types.h"

/// Messages, and maps from messages to handlers. Plain data; messages travel on the user-interface thread
/// only.
namespace platform {

using qal::WindowHandle;
using WParam = std::uintptr_t;
using LParam = std::intptr_t;
using LResult = std::intptr_t;

namespace message {
inline constexpr std::uint32_t kCreate = 0x1;   ///< answer -1 to refuse creation
inline constexpr std::uint32_t kDestroy = 0x2;  ///< children still exist
inline constexpr std::uint32_t kMove = 0x3;
inline constexpr std::uint32_t kSize = 0x5;       ///< l: Pack(width, height) of the client area
inline constexpr std::uint32_t kSetFocus = 0x7;   ///< w: window that had the focus
inline constexpr std::uint32_t kKillFocus = 0x8;  ///< w: window that gets the focus
inline constexpr std::uint32_t kEnable = 0xA;     ///< w: enabled
inline constexpr std::uint32_t kClose = 0x10;     ///< the person closes the window; default: it is destroyed
inline constexpr std::uint32_t kShow = 0x18;      ///< w: shown
inline constexpr std::uint32_t kNotify = 0x4E;    ///< w: control identifier, l: Notification*
inline constexpr std::uint32_t kContextMenu =
    0x7B;  ///< w: window under the point, l: Pack(x, y) on the screen
inline constexpr std::uint32_t kFinalDestroy = 0x82;  ///< children are gone; the window's last message
inline constexpr std::uint32_t kKeyDown = 0x100;      ///< w: virtual key, l: key_modifier bits
inline constexpr std::uint32_t kKeyUp = 0x101;
inline constexpr std::uint32_t kCommand =
    0x111;  ///< w: command or control identifier, l: control's window or 0
inline constexpr std::uint32_t kTimer = 0x113;  ///< w: timer identifier
inline constexpr std::uint32_t kHScroll = 0x114;
inline constexpr std::uint32_t kVScroll = 0x115;  ///< w: code low, position high; l: scroll bar's window
inline constexpr std::uint32_t kMouseWheel =
    0x20A;                                     ///< w: keys low, distance high (120 a notch, up positive)
inline constexpr std::uint32_t kUser = 0x400;  ///< first message of a window's own; 0x400 to 0x7FFF
inline constexpr std::uint32_t kUpdateCommand = 0x8001;  ///< w: command, l: CommandUpdate*
}  // namespace message

namespace scroll_code {
inline constexpr std::uint16_t kLineUp = 0, kLineDown = 1, kPageUp = 2, kPageDown = 3, kThumbPosition = 4,
                               kThumbTrack = 5, kTop = 6, kBottom = 7, kEnd = 8;
}  // namespace scroll_code

/// Virtual keys; letters and digits are their upper-case characters.
namespace key {
inline constexpr std::uint32_t kBack = 8, kTab = 9, kReturn = 13, kEscape = 27, kSpace = 32, kPageUp = 33,
                               kPageDown = 34, kEnd = 35, kHome = 36, kLeft = 37, kUp = 38, kRight = 39,
                               kDown = 40, kDelete = 46, kF1 = 112;
}  // namespace key

/// Codes of Notification.
namespace notify {
inline constexpr int kClick = -2;
inline constexpr int kDoubleClick = -3;
inline constexpr int kReturn = -4;         ///< Enter reached the list
inline constexpr int kItemChanged = -101;  ///< selection or focus of a row changed
inline constexpr int kColumnClick = -108;
inline constexpr int kBeginDrag = -109;
inline constexpr int kKeyDown = -155;
inline constexpr int kKeyUp = -156;
inline constexpr int kSelectionChanged = 1;  ///< another entry of a combo box was chosen
inline constexpr int kChanged = 0x300;       ///< the text of an edit or of a combo box's edit part changed
}  // namespace notify

/// A control's news for its parent. Only the fields that go with the code are set.
struct Notification {
  WindowHandle from = 0;
  std::uint32_t id = 0;  ///< of the control
  int code = 0;
  int row = -1;     ///< row of a list; -1 outside the rows
  int column = -1;  ///< column of a list
  std::uint32_t key = 0;
  Point at;
};

/// Asks a window how a command stands; filled by its update handler. A command with a handler but no update
/// handler is enabled, one with neither is not.
class CommandUpdate {
 public:
  explicit CommandUpdate(std::uint32_t commandId) : id_(commandId) {}
  std::uint32_t Id() const { return id_; }

  void Enable(bool enabled) { enabled_ = enabled, handled_ = true; }
  void SetCheck(bool checked) { checked_ = checked, handled_ = true; }
  void SetText(std::string text) { text_ = std::move(text), handled_ = true; }

  /// Whether some window knows the command.
  bool Handled() const { return handled_; }
  void TakeUp() { handled_ = true; }
  bool Enabled() const { return handled_ && enabled_; }
  bool Checked() const { return checked_; }
  const std::optional<std::string>& Text() const { return text_; }

 private:
  std::uint32_t id_;
  bool handled_ = false;
  bool enabled_ = true;
  bool checked_ = false;
  std::optional<std::string> text_;
};

constexpr std::uint16_t LowWord(std::uintptr_t value) { return static_cast<std::uint16_t>(value); }
constexpr std::uint16_t HighWord(std::uintptr_t value) { return static_cast<std::uint16_t>(value >> 16); }
constexpr std::uintptr_t Pack(int low, int high) {
  return static_cast<std::uint16_t>(low) | (std::uintptr_t{static_cast<std::uint16_t>(high)} << 16);
}
/// The point of a context menu message.
constexpr Point UnpackPoint(LParam l) {
  const auto bits = static_cast<std::uintptr_t>(l);
  return {static_cast<std::int16_t>(LowWord(bits)), static_cast<std::int16_t>(HighWord(bits))};
}

struct Message {
  std::uint32_t id = 0;
  WParam w = 0;
  LParam l = 0;

  /// Of kCommand and kUpdateCommand.
  std::uint32_t CommandId() const { return static_cast<std::uint32_t>(w); }
  const Notification& AsNotification() const { return *reinterpret_cast<const Notification*>(l); }
  CommandUpdate& AsUpdate() const { return *reinterpret_cast<CommandUpdate*>(l); }
  std::uint16_t ScrollCode() const { return LowWord(w); }
  int WheelDistance() const { return static_cast<std::int16_t>(HighWord(w)); }
};

/// Any code in a route.
inline constexpr std::int64_t kAny = INT64_MIN;

/// What a route leads to: an operation of the window that takes what the message carries: nothing or the
/// identifier (commands, timers), CommandUpdate& (updates), const Notification& (notifications), const
/// Message& (all). One without a result answers 0. Operations of base classes do, too.
template <class T>
class Handler {
 public:
  constexpr Handler(void (T::*plain)()) : kind_(Kind::kPlain), plain_(plain) {}
  constexpr Handler(void (T::*id)(std::uint32_t)) : kind_(Kind::kId), id_(id) {}
  constexpr Handler(void (T::*update)(CommandUpdate&)) : kind_(Kind::kUpdate), update_(update) {}
  constexpr Handler(void (T::*news)(const Notification&)) : kind_(Kind::kNews), news_(news) {}
  constexpr Handler(LResult (T::*answer)(const Notification&)) : kind_(Kind::kAnswer), answer_(answer) {}
  constexpr Handler(LResult (T::*whole)(const Message&)) : kind_(Kind::kWhole), whole_(whole) {}

  /// A handler of another kind than the message is not run.
  LResult Run(T& window, const Message& message) const {
    switch (kind_) {
      case Kind::kPlain:
        (window.*plain_)();
        return 0;
      case Kind::kId:
        (window.*id_)(static_cast<std::uint32_t>(message.w));
        return 0;
      case Kind::kUpdate:
        if (message.id != message::kUpdateCommand) return 0;
        message.AsUpdate().TakeUp();
        (window.*update_)(message.AsUpdate());
        return 0;
      case Kind::kNews:
        if (message.id == message::kNotify) (window.*news_)(message.AsNotification());
        return 0;
      case Kind::kAnswer:
        return message.id == message::kNotify ? (window.*answer_)(message.AsNotification()) : 0;
      case Kind::kWhole:
        return (window.*whole_)(message);
    }
    return 0;
  }

 private:
  enum class Kind : std::uint8_t { kPlain, kId, kUpdate, kNews, kAnswer, kWhole };

  Kind kind_;
  union {
    void (T::*plain_)();
    void (T::*id_)(std::uint32_t);
    void (T::*update_)(CommandUpdate&);
    void (T::*news_)(const Notification&);
    LResult (T::*answer_)(const Notification&);
    LResult (T::*whole_)(const Message&);
  };
};

/// One line of a window's message map. `code` is the command (kCommand, kUpdateCommand), the notification's
/// code (kNotify) or the timer (kTimer); other messages have kAny. `control` narrows a kNotify route to one
/// control.
template <class T>
struct Route {
  std::uint32_t message;
  std::int64_t code;
  Handler<T> handler;
  std::int64_t control = kAny;

  bool Matches(const Message& sent) const {
    if (message != sent.id) return false;
    switch (sent.id) {
      case message::kNotify:
        return (code == kAny || code == sent.AsNotification().code) &&
               (control == kAny || control == std::int64_t{sent.AsNotification().id});
      case message::kCommand:
      case message::kUpdateCommand:
      case message::kTimer:
        return code == kAny || code == static_cast<std::int64_t>(sent.w);
      default:
        return true;
    }
  }
};

/// Hands a message to the first route that matches and gives the handler's answer; nothing when no route
/// does. The window may be gone afterwards: return at once. For use in OnMessage:
///   if (auto answer = Dispatch(*this, kRoutes, message)) return *answer;
///   return Base::OnMessage(message);
template <class T, class Routes>
std::optional<LResult> Dispatch(T& window, const Routes& routes, const Message& message) {
  bool hasCommand = false;
  for (const Route<T>& route : routes) {
    if (route.Matches(message)) return route.handler.Run(window, message);
    hasCommand = hasCommand || (message.id == message::kUpdateCommand && route.message == message::kCommand &&
                                route.code == static_cast<std::int64_t>(message.w));
  }
  if (!hasCommand) return std::nullopt;
  message.AsUpdate().TakeUp();
  return 0;
}

}  // namespace platform
