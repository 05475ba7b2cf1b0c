#pragma once

#include <deque>
#include <functional>
#include <sstream>
#include <string>

#include "platform/message.h"
#include "platform/script_presenter.h"
#include "platform/window.h"

namespace platform {

constexpr std::uint32_t kShownChild = window_style::kChild | window_style::kVisible;

/// Writes down, in one line each, the messages that it gets, and runs `react` for each.
class LogWindow : public Window {
 public:
  explicit LogWindow(std::string name = {}, std::string* log = nullptr) : name_(std::move(name)), log_(log) {}
  ~LogWindow() override { Destroy(); }

  /// A top-level window that can be used.
  bool Open() { return Create(0, 0, name_, window_style::kVisible, {0, 0, 400, 300}); }

  std::function<LResult(const Message&)> react;
  std::string own;

 protected:
  LResult OnMessage(const Message& message) override {
    Write(message);
    if (react) {
      const auto run = react;  // the window may go while it runs
      if (const LResult answer = run(message); answer != 0) return answer;
    }
    return Window::OnMessage(message);
  }

 private:
  void Write(const Message& message) {
    std::ostringstream line;
    if (!name_.empty()) line << name_ << ' ';
    switch (message.id) {
      case message::kCreate:
        line << "create";
        break;
      case message::kDestroy:
        line << "destroy";
        break;
      case message::kFinalDestroy:
        line << "final";
        break;
      case message::kCommand:
        line << "command " << message.CommandId();
        break;
      case message::kNotify: {
        const Notification& news = message.AsNotification();
        line << "notify " << news.id << " code " << news.code;
        if (news.row >= 0) line << " row " << news.row;
        if (news.column >= 0) line << " column " << news.column;
        if (news.key != 0) line << " key " << news.key;
        break;
      }
      case message::kTimer:
        line << "timer " << message.w;
        break;
      case message::kSetFocus:
        line << "focus";
        break;
      case message::kKillFocus:
        line << "no focus";
        break;
      default:
        if (message.id < message::kUser || message.id > 0x7FFF) return;
        line << "user " << message.id - message::kUser << ' ' << message.w << ' ' << message.l;
    }
    std::string& log = log_ ? *log_ : own;
    log += line.str() + "\n";
  }

  std::string name_;
  std::string* log_;
};

/// A person who reads these lines; what is shown is in `shown`.
class Script {
 public:
  explicit Script(std::initializer_list<const char*> lines) : lines_(lines.begin(), lines.end()) {
    before_ = InstallPresenter(&presenter);
    presenter.SetAnnounce(false);
  }
  ~Script() { InstallPresenter(before_); }

  std::size_t LinesLeft() const { return lines_.size(); }

  std::string shown;
  ScriptPresenter presenter{[this]() -> std::optional<std::string> {
                              if (lines_.empty()) return std::nullopt;
                              std::string line = lines_.front();
                              lines_.pop_front();
                              return line;
                            },
                            [this](std::string_view line) { shown += std::string(line) + "\n"; }};

 private:
  std::deque<std::string> lines_;
  Presenter* before_ = nullptr;
};

}  // namespace platform
