#pragma once

#include <functional>
#include <string_view>

#include "platform/api.h"
#include "platform/presenter.h"

namespace platform {

/// Shows in text: what opens is printed, boxes get their cautious answer, dialogs, file dialogs and menus are
/// cancelled. With a log of changes on, every notification is a line, too. For programs without a person.
class PLATFORM_API TextPresenter : public Presenter {
 public:
  using Output = std::function<void(std::string_view)>;

  explicit TextPresenter(Output output, bool logChanges = false)
      : output_(std::move(output)), log_(logChanges) {}

  void RunModal(Dialog& dialog) override;
  Answer ShowMessageBox(const MessageBoxRequest& request) override;
  std::optional<std::string> AskFile(const FileDialogRequest& request) override;
  std::optional<std::uint32_t> ChooseFromMenu(const Menu& menu, Point at, Window& owner) override;

  void WindowCreated(Window& window) override;
  void WindowDestroyed(Window& window) override;
  void WindowChanged(Window& window, Change what) override;
  void FocusMoved(Window* now) override;
  void DialogEnded(Dialog& dialog) override;

 private:
  void Print(std::string_view text);

  Output output_;
  bool log_;
};

}  // namespace platform
