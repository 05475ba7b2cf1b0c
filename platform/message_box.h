#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/api.h"

/// Message boxes. The box is data; the installed presenter shows it and brings the answer. User-interface
/// thread.
namespace platform {

enum class Icon : std::uint8_t { kNone, kInformation, kExclamation, kQuestion, kStop };
enum class Buttons : std::uint8_t { kOk, kOkCancel, kYesNo, kYesNoCancel };
enum class Answer : std::uint8_t { kOk, kCancel, kYes, kNo };

struct MessageBoxRequest {
  std::string text;
  std::string caption;
  Icon icon = Icon::kNone;
  Buttons buttons = Buttons::kOk;
};

class PLATFORM_API MessageBoxPresenter {
 public:
  /// Shows the box and gives the answer. Returns only when there is one.
  virtual Answer ShowMessageBox(const MessageBoxRequest& request) = 0;

 protected:
  ~MessageBoxPresenter() = default;
};

/// Installs the presenter of message boxes, which must outlive its use; null takes it away. Gives the one
/// before.
PLATFORM_API MessageBoxPresenter* InstallMessageBoxPresenter(MessageBoxPresenter* presenter);

/// Text above every box, at start empty.
PLATFORM_API void SetMessageBoxCaption(std::string_view caption);

/// Whether a box with these buttons can be answered like this, and the cautious answer to it: the one that
/// changes least (Ok for Ok, Cancel where there is one, else No).
PLATFORM_API bool Offers(Buttons buttons, Answer answer);
PLATFORM_API Answer CautiousAnswer(Buttons buttons);

/// Shows a box. Without a presenter, or when it answers with a button that the box has not, the cautious
/// answer.
PLATFORM_API Answer ShowMessageBox(std::string_view text, Icon icon = Icon::kNone,
                                   Buttons buttons = Buttons::kOk);

/// Names as scripts and pictures of boxes show them: "information", "ok-cancel", "yes".
PLATFORM_API const char* NameOf(Icon icon);
PLATFORM_API const char* NameOf(Buttons buttons);
PLATFORM_API const char* NameOf(Answer answer);

}  // namespace platform
