#pragma once

#include <functional>
#include <sstream>
#include <string>

#include "platform/message_box.h"
#include "platform/presenter.h"
#include "platform/queue.h"
#include "platform/script_presenter.h"

namespace doubles {

/// A person whose lines, separated by ";", act on whatever dialog or menu opens while an action runs. What is
/// open after the last one is cancelled. Message boxes open here too, unless `boxes` takes them.
class Script {
 public:
  explicit Script(const std::string& lines, platform::MessageBoxPresenter* boxes = nullptr)
      : lines_(lines), boxes_(boxes) {}

  Script& Run(const std::function<void()>& action) {
    platform::ScriptPresenter person(
        [this]() -> std::optional<std::string> {
          std::string line;
          if (!std::getline(lines_, line, ';')) return std::nullopt;
          if (line != "meanwhile") return line;
          meanwhile();
          return "wait 1";
        },
        [this](std::string_view line) {
          if (line.starts_with("[") || line.starts_with("error")) shown += std::string(line) + '\n';
        });
    person.SetAnnounceDialogs(false);
    {
      const platform::PresenterScope scope(person);
      if (boxes_ != nullptr) platform::InstallMessageBoxPresenter(boxes_);
      action();
      platform::PumpPosted();
    }
    if (boxes_ != nullptr) platform::InstallMessageBoxPresenter(boxes_);
    std::getline(lines_, left, '\0');
    return *this;
  }

  std::function<void()> meanwhile;  ///< what the line "meanwhile" does
  std::string shown;                ///< boxes and errors
  std::string left;                 ///< lines that were not reached

 private:
  std::istringstream lines_;
  platform::MessageBoxPresenter* boxes_;
};

}  // namespace doubles
