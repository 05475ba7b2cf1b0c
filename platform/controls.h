#pragma once

#include <cstdint>
#include <string_view>

#include "platform/api.h"
#include "platform/resource_table.h"
#include "platform/window.h"

/// Simple controls. What a program does and what a person does are different operations: a person's return
/// whether the control could be used, and tell the parent. User-interface thread.
namespace platform {

class PLATFORM_API Control : public Window {
 public:
  explicit Control(ControlKind kind) : kind_(kind) {}
  ControlKind Kind() const { return kind_; }

  bool Create(Window& parent, std::uint32_t id, std::string_view text = {},
              std::uint32_t style = window_style::kChild | window_style::kVisible, const Rect& bounds = {});

 protected:
  /// Sends kNotify to the parent and gives its answer; `news` gets window and identifier. Afterwards the
  /// control may be gone.
  LResult Notify(Notification news);
  /// Sends kCommand with the control's identifier to the parent.
  void SendCommand();

 private:
  ControlKind kind_;
};

/// A text or a group box; never has the focus.
class PLATFORM_API Label : public Control {
 public:
  explicit Label(ControlKind kind = ControlKind::kLabel) : Control(kind) {}
};

/// Push button, check box or radio button.
class PLATFORM_API Button : public Control {
 public:
  explicit Button(ControlKind kind = ControlKind::kPushButton) : Control(kind) {}

  bool IsChecked() const { return checked_; }
  /// Changes this button only, and tells nobody but the presenter.
  void SetCheck(bool checked);

  /// Radio buttons of one parent with the same group, other than 0, exclude each other when pressed.
  int Group() const { return group_; }
  void SetGroup(int group) { group_ = group; }

  /// The person presses it: takes the focus, toggles a check box, checks a radio button and clears its group,
  /// then OnPressed.
  bool Press();

 protected:
  /// Sends the button's command to the parent.
  virtual void OnPressed() { SendCommand(); }
  LResult OnMessage(const Message& message) override;

 private:
  bool checked_ = false;
  int group_ = 0;
};

}  // namespace platform
