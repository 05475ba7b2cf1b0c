#pragma once

#include <deque>
#include <string>
#include <utility>
#include <vector>

#include "platform/message_box.h"

namespace doubles {

/// While it lives, message boxes are written down instead of shown. Each takes the next answer, or the
/// cautious one.
class RecordingBoxes final : public platform::MessageBoxPresenter {
 public:
  RecordingBoxes() : before_(platform::InstallMessageBoxPresenter(this)) {}
  ~RecordingBoxes() { platform::InstallMessageBoxPresenter(before_); }
  RecordingBoxes(const RecordingBoxes&) = delete;
  RecordingBoxes& operator=(const RecordingBoxes&) = delete;

  std::deque<platform::Answer> answers;
  /// The text of every box since the beginning.
  std::vector<std::string> texts;

  /// The boxes so far, each "icon buttons: text" and a line feed; forgets them.
  std::string Take() { return std::exchange(boxes_, {}); }

  platform::Answer ShowMessageBox(const platform::MessageBoxRequest& request) override {
    boxes_ += std::string(platform::NameOf(request.icon)) + ' ' + platform::NameOf(request.buttons) + ": " +
              request.text + '\n';
    texts.push_back(request.text);
    if (answers.empty()) return platform::CautiousAnswer(request.buttons);
    const auto answer = answers.front();
    answers.pop_front();
    return answer;
  }

 private:
  platform::MessageBoxPresenter* before_;
  std::string boxes_;
};

}  // namespace doubles
