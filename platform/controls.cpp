#include "platform/controls.h"

#include "platform/desktop.h"

namespace platform {

bool Control::Create(Window& parent, std::uint32_t id, std::string_view text, std::uint32_t style,
                     const Rect& bounds) {
  return parent.Exists() && Window::Create(parent.Handle(), id, text, style, bounds);
}

LResult Control::Notify(Notification news) {
  Window* parent = Parent();
  if (!parent) return 0;
  news.from = Handle();
  news.id = Id();
  return parent->Send(message::kNotify, Id(), reinterpret_cast<LParam>(&news));
}

void Control::SendCommand() {
  if (Window* parent = Parent()) parent->Send(message::kCommand, Id(), static_cast<LParam>(Handle()));
}

void Button::SetCheck(bool checked) {
  if (checked_ == checked) return;
  checked_ = checked;
  Desktop::Get().Tell(*this, Change::kCheck);
}

bool Button::Press() {
  if (!CanBeUsed() || Kind() == ControlKind::kGroup) return false;
  const Desktop::Busy busy;
  const WindowRef self(*this);
  SetFocus();
  if (!self) return true;
  if (Kind() == ControlKind::kCheckBox) {
    SetCheck(!checked_);
  } else if (Kind() == ControlKind::kRadioButton) {
    for (Window* sibling : Parent() ? Parent()->Children() : std::vector<Window*>()) {
      auto* other = dynamic_cast<Button*>(sibling);
      if (other && other != this && other->Kind() == ControlKind::kRadioButton && group_ != 0 &&
          other->group_ == group_) {
        other->SetCheck(false);
      }
    }
    SetCheck(true);
  }
  OnPressed();
  return true;
}

LResult Button::OnMessage(const Message& message) {
  if (message.id == message::kKeyDown && message.w == key::kSpace) {
    Press();
    return 0;
  }
  return Control::OnMessage(message);
}

}  // namespace platform
