#include "platform/message_box.h"

#include "platform/modal.h"

namespace platform {
namespace {

MessageBoxPresenter* installed = nullptr;

std::string& Caption() {
  static std::string caption;
  return caption;
}

}  // namespace

MessageBoxPresenter* InstallMessageBoxPresenter(MessageBoxPresenter* presenter) {
  MessageBoxPresenter* before = installed;
  installed = presenter;
  return before;
}

void SetMessageBoxCaption(std::string_view caption) { Caption() = caption; }

bool Offers(Buttons buttons, Answer answer) {
  switch (answer) {
    case Answer::kOk:
      return buttons == Buttons::kOk || buttons == Buttons::kOkCancel;
    case Answer::kCancel:
      return buttons == Buttons::kOkCancel || buttons == Buttons::kYesNoCancel;
    default:
      return buttons == Buttons::kYesNo || buttons == Buttons::kYesNoCancel;
  }
}

Answer CautiousAnswer(Buttons buttons) {
  if (Offers(buttons, Answer::kCancel)) return Answer::kCancel;
  return buttons == Buttons::kOk ? Answer::kOk : Answer::kNo;
}

Answer ShowMessageBox(std::string_view text, Icon icon, Buttons buttons) {
  if (!installed) return CautiousAnswer(buttons);
  const ModalScope modal;
  const Answer answer = installed->ShowMessageBox({std::string(text), Caption(), icon, buttons});
  return Offers(buttons, answer) ? answer : CautiousAnswer(buttons);
}

const char* NameOf(Icon icon) {
  constexpr const char* kNames[] = {"none", "information", "exclamation", "question", "stop"};
  return kNames[static_cast<int>(icon)];
}

const char* NameOf(Buttons buttons) {
  constexpr const char* kNames[] = {"ok", "ok-cancel", "yes-no", "yes-no-cancel"};
  return kNames[static_cast<int>(buttons)];
}

const char* NameOf(Answer answer) {
  constexpr const char* kNames[] = {"ok", "cancel", "yes", "no"};
  return kNames[static_cast<int>(answer)];
}

}  // namespace platform
