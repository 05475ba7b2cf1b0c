#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/api.h"
#include "platform/file_dialog.h"
#include "platform/menu.h"
#include "platform/message_box.h"
#include "platform/window.h"

namespace platform {

class Dialog;

/// What of a window changed.
enum class Change : std::uint8_t {
  kText,
  kVisible,
  kEnabled,
  kBounds,
  kCheck,      ///< of a button
  kItems,      ///< of a combo box
  kSelection,  ///< of an edit or combo box
  kContent,    ///< shown again; a list has ListView::TakeChanges
  kFont,
  kParent,
  kMenu,
  kToolbar,
};

/// Whoever shows the windows and brings the person's actions. It holds no rule: it reads the models, and acts
/// through the operations that each class has for the person. Calls come on the user-interface thread.
///
/// Notifications come in the middle of a change: an implementation notes them, or reads; it does not change
/// windows or run the queue in them.
class PLATFORM_API Presenter : public MessageBoxPresenter {
 public:
  virtual ~Presenter() = default;

  /// Lets the person act, pumping the queue between actions, until dialog.Ended(). Returning before means
  /// that the person will not go on.
  virtual void RunModal(Dialog& dialog) = 0;
  /// The chosen path as the person gave it, or nothing.
  virtual std::optional<std::string> AskFile(const FileDialogRequest& request) = 0;
  /// The chosen command, or nothing. Disabled items and separators cannot be chosen.
  virtual std::optional<std::uint32_t> ChooseFromMenu(const Menu& menu, Point at, Window& owner) = 0;

  virtual void WindowCreated(Window& /*window*/) {}
  /// The model is still there, without children; its class may be gone already.
  virtual void WindowDestroyed(Window& /*window*/) {}
  virtual void WindowChanged(Window& /*window*/, Change /*what*/) {}
  /// Null when no window has the focus.
  virtual void FocusMoved(Window* /*now*/) {}
  /// The dialog has got its result: whoever shows it can stop.
  virtual void DialogEnded(Dialog& /*dialog*/) {}
};

/// Installs the presenter of everything, message boxes included; null takes it away. It must outlive its use.
/// Gives the one before.
PLATFORM_API Presenter* InstallPresenter(Presenter* presenter);
PLATFORM_API Presenter* CurrentPresenter();

/// Where the person points, on the screen; the corner {0, 0} until somebody points anywhere. Whoever brings
/// the person's actions sets it before each action that is made with a pointer.
PLATFORM_API Point CursorPosition();
PLATFORM_API void SetCursorPosition(Point at);

/// Installs a presenter for a scope.
class PresenterScope {
 public:
  explicit PresenterScope(Presenter& presenter) : before_(InstallPresenter(&presenter)) {}
  ~PresenterScope() { InstallPresenter(before_); }
  PresenterScope(const PresenterScope&) = delete;
  PresenterScope& operator=(const PresenterScope&) = delete;

 private:
  Presenter* before_;
};

}  // namespace platform
