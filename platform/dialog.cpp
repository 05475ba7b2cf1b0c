#include "platform/dialog.h"

#include <array>
#include <string>

#include "platform/desktop.h"
#include "platform/modal.h"
#include "platform/resources.h"
#include "platform/text.h"

namespace platform {

namespace {

/// No file name may hold them.
constexpr char kNotInFileNames[] = "/;*?\"<>|";

Rect InPixels(const FontMetrics& cell, int x, int y, int width, int height) {
  return {x * cell.averageWidth / 4, y * cell.height / 8, (x + width) * cell.averageWidth / 4,
          (y + height) * cell.height / 8};
}

}  // namespace

bool TakesFocus(const Window& window) {
  const auto* control = dynamic_cast<const Control*>(&window);
  return control && control->CanBeUsed() && control->Kind() != ControlKind::kLabel &&
         control->Kind() != ControlKind::kGroup;
}

Dialog::~Dialog() { Destroy(); }

int Dialog::DoModal(Window* owner) {
  const DialogTemplate* resource = template_ ? template_ : LoadDialog(templateId_);
  if (!resource || Exists()) return -1;
  if (owner && !owner->Exists()) owner = nullptr;
  const Desktop::Busy busy;
  const ModalScope modal;
  ended_ = false;
  result_ = static_cast<int>(kIdCancel);

  /// Leaves everything as it was before, whatever way the dialog goes.
  struct Restore {
    Dialog& dialog;
    WindowRef focus;
    WindowRef disabled;
    ~Restore() {
      if (Window* window = disabled.Get()) window->Enable(true);
      dialog.Destroy();
      dialog.controls_.clear();
      if (Window* window = focus.Get()) window->SetFocus();
    }
  };
  Window* focus = FocusedWindow();
  Restore restore{*this, focus ? WindowRef(*focus) : WindowRef(), {}};

  const Rect bounds = InPixels(Measure(CurrentFont()), 0, 0, resource->width, resource->height);
  if (!Create(owner ? owner->Handle() : 0, 0, FromUtf8(resource->title ? resource->title : ""),
              window_style::kVisible, bounds)) {
    return -1;
  }
  BuildControls(*resource);
  Window* top = owner;
  while (top && (top->Style() & window_style::kChild) != 0 && top->Parent()) top = top->Parent();
  if (top && top->IsEnabled()) {
    restore.disabled = WindowRef(*top);
    top->Enable(false);
  }
  if (!ended_) OnInitDialog();
  const Window* now = FocusedWindow();
  if (!ended_ && !(now && now->IsWithin(*this))) FocusFirst();
  if (!ended_ && CurrentPresenter()) CurrentPresenter()->RunModal(*this);
  if (!ended_) Close();
  if (!ended_) EndDialog(static_cast<int>(kIdCancel));
  return result_;
}

void Dialog::FocusFirst() {
  for (Window* child : Children()) {
    const bool stop = (child->Style() & window_style::kTabStop) != 0;
    if (stop && TakesFocus(*child)) {
      if (auto* edit = dynamic_cast<Edit*>(child)) edit->Select(0, std::string::npos);
      if (auto* combo = dynamic_cast<ComboBox*>(child)) combo->Select(0, std::string::npos);
      child->SetFocus();
      return;
    }
  }
}

std::unique_ptr<Control> Dialog::MakeControl(const ControlTemplate& resource) {
  switch (resource.kind) {
    case ControlKind::kPushButton:
    case ControlKind::kDefaultButton:
    case ControlKind::kCheckBox:
      return std::make_unique<Button>(resource.kind);
    case ControlKind::kRadioButton: {
      auto radio = std::make_unique<Button>(resource.kind);
      radio->SetGroup(static_cast<int>(control_style::RadioGroup(resource.style)));
      return radio;
    }
    case ControlKind::kEdit: {
      auto edit = std::make_unique<Edit>();
      if ((resource.style & control_style::kFileName) != 0) edit->SetRefusedChars(kNotInFileNames);
      return edit;
    }
    case ControlKind::kComboBox:
    case ControlKind::kDropDownList:
      return std::make_unique<ComboBox>(resource.kind);
    case ControlKind::kList:
      return std::make_unique<ListView>();
    default:
      return std::make_unique<Label>(resource.kind);
  }
}

void Dialog::BuildControls(const DialogTemplate& resource) {
  const FontMetrics cell = Measure(CurrentFont());
  for (std::uint32_t i = 0; i < resource.controlCount; ++i) {
    const ControlTemplate& wanted = resource.controls[i];
    std::unique_ptr<Control> control = MakeControl(wanted);
    if (!control) continue;
    std::uint32_t style = window_style::kChild;
    if ((wanted.style & control_style::kHidden) == 0) style |= window_style::kVisible;
    if ((wanted.style & control_style::kDisabled) != 0) style |= window_style::kDisabled;
    if ((wanted.style & control_style::kNoTabStop) == 0) style |= window_style::kTabStop;
    if (wanted.kind == ControlKind::kList) {
      style |= list_style::kReport | list_style::kSingleSelection | list_style::kShowSelectionAlways;
    }
    // An edit or combo box starts empty, whatever the template calls it.
    const bool typed = wanted.kind == ControlKind::kEdit || wanted.kind == ControlKind::kComboBox ||
                       wanted.kind == ControlKind::kDropDownList;
    const std::string text = typed || !wanted.text ? std::string() : FromUtf8(wanted.text);
    if (control->Create(*this, wanted.id, text, style,
                        InPixels(cell, wanted.x, wanted.y, wanted.width, wanted.height))) {
      controls_.push_back(std::move(control));
    }
  }
}

void Dialog::EndDialog(int result) {
  if (ended_) return;
  ended_ = true;
  result_ = result;
  if (Desktop::Get().presenter) Desktop::Get().presenter->DialogEnded(*this);
}

void Dialog::OnDestroyed() { EndDialog(static_cast<int>(kIdCancel)); }

std::string Dialog::ItemText(std::uint32_t id) const {
  const Window* item = Child(id);
  return item ? item->Text() : std::string();
}

void Dialog::SetItemText(std::uint32_t id, std::string_view text) {
  if (Window* item = Child(id)) item->SetText(text);
}

bool Dialog::IsItemChecked(std::uint32_t id) const {
  const auto* button = Item<Button>(id);
  return button && button->IsChecked();
}

void Dialog::CheckItem(std::uint32_t id, bool checked) {
  if (auto* button = Item<Button>(id)) button->SetCheck(checked);
}

void Dialog::CheckRadio(std::initializer_list<std::uint32_t> ids, std::uint32_t checkedId) {
  for (const std::uint32_t id : ids) CheckItem(id, id == checkedId);
}

bool Dialog::IsItemEnabled(std::uint32_t id) const {
  const Window* item = Child(id);
  return item && item->IsEnabled();
}

void Dialog::EnableItem(std::uint32_t id, bool enabled) {
  if (Window* item = Child(id)) item->Enable(enabled);
}

void Dialog::EnableItems(std::initializer_list<std::uint32_t> ids, bool enabled) {
  for (const std::uint32_t id : ids) EnableItem(id, enabled);
}

void Dialog::ShowItem(std::uint32_t id, bool visible) {
  if (Window* item = Child(id)) item->Show(visible);
}

void Dialog::FocusItem(std::uint32_t id) {
  if (auto* edit = Item<Edit>(id)) edit->Select(0, std::string::npos);
  if (auto* combo = Item<ComboBox>(id)) combo->Select(0, std::string::npos);
  if (Window* item = Child(id)) item->SetFocus();
}

void Dialog::FocusNext(bool forward) {
  const std::vector<Window*>& all = Children();
  const std::size_t count = all.size();
  std::size_t now = forward ? count - 1 : 0;
  for (std::size_t i = 0; i < count; ++i) {
    if (all[i]->HasFocus()) now = i;
  }
  for (std::size_t step = 1; step <= count; ++step) {
    Window* next = all[(now + (forward ? step : count - step)) % count];
    if (TakesFocus(*next) && (next->Style() & window_style::kTabStop) != 0) {
      FocusItem(next->Id());
      return;
    }
  }
}

bool Dialog::Key(std::uint32_t virtualKey, std::uint8_t modifiers) {
  if (!CanBeUsed()) return false;
  const Desktop::Busy busy;
  Window* focus = FocusedWindow();
  if (focus && !focus->IsWithin(*this)) focus = nullptr;
  const WindowRef self(*this);
  // A focused control may want the key for itself, as a list wants Enter.
  if (focus && virtualKey == key::kReturn) {
    const WindowRef target(*focus);
    if (focus->PreTranslate({message::kKeyDown, virtualKey, modifiers}) || !self || !target) return true;
  }
  if (virtualKey == key::kEscape) {
    Close();
  } else if (virtualKey == key::kTab) {
    FocusNext((modifiers & key_modifier::kShift) == 0);
  } else if (virtualKey == key::kReturn) {
    Button* press = dynamic_cast<Button*>(focus);
    if (!press ||
        (press->Kind() != ControlKind::kPushButton && press->Kind() != ControlKind::kDefaultButton)) {
      press = DefaultButton();
    }
    if (press) press->Press();
  } else if (focus) {
    TypeKey(*focus, virtualKey, modifiers);
  }
  return true;
}

Button* Dialog::DefaultButton() const {
  for (Window* child : Children()) {
    auto* button = dynamic_cast<Button*>(child);
    if (button && button->Kind() == ControlKind::kDefaultButton) return button;
  }
  return nullptr;
}

void Dialog::Close() { Send(message::kCommand, kIdCancel); }

LResult Dialog::OnMessage(const Message& message) {
  if (message.id == message::kCommand && message.CommandId() == kIdOk) {
    OnOK();
    return 0;
  }
  if (message.id == message::kCommand && message.CommandId() == kIdCancel) {
    OnCancel();
    return 0;
  }
  if (message.id == message::kClose) {
    Close();
    return 0;
  }
  return Window::OnMessage(message);
}

}  // namespace platform
