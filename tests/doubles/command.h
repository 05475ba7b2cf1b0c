#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <vector>

#include "doubles/double.h"
#include "qal/command.h"

namespace doubles {

/// Gathers what a command writes. Any thread; WaitForEnd waits for the end of output.
class StubCommandOutput : public Double<qal::IQCommandOutput> {
 public:
  using Double::Double;

  Status WriteLine(WideText line, WideText second) override {
    const std::lock_guard lock(mutex_);
    text_ += platform::Narrow(line) + platform::Narrow(second);
    return Log("output.WriteLine", line, second);
  }
  Status EndOutput(WideText text) override {
    const std::lock_guard lock(mutex_);
    ended_ = true;
    changed_.notify_all();
    return Log("output.EndOutput", text);
  }

  std::string Text() const {
    const std::lock_guard lock(mutex_);
    return text_;
  }
  /// All lines, once the output has ended; "(no end)" behind them when it does not within ten seconds.
  std::string WaitForEnd() {
    std::unique_lock lock(mutex_);
    const bool ended = changed_.wait_for(lock, std::chrono::seconds(10), [this] { return ended_; });
    return ended ? text_ : text_ + "(no end)";
  }

 private:
  mutable std::mutex mutex_;
  std::condition_variable changed_;
  std::string text_;
  bool ended_ = false;
};

struct StubCommandRegistry : Service<qal::IQCommandRegistry, qal::iid::kCommandRegistry, "registry"> {
  using Service::Service;
  Status AddCommand(WideText name, WideText syntax, Number shortForm) override {
    return Log("AddCommand", name, syntax, shortForm);
  }
  Status RemoveCommand(WideText name, WideText syntax) override { return Log("RemoveCommand", name, syntax); }
};

/// The names that a command answers to, the long one first.
inline std::vector<std::string> NamesOf(qal::IQCmdClient& command) {
  qal::VariantArray* list = nullptr;
  command.GetCommandNames(&list);
  std::vector<std::string> names = platform::TextsOf(list);
  qal::FreeVariantArray(list);
  return names;
}

/// What a command gives back for a line.
struct Executed {
  Executed(qal::IQCmdClient& command, const std::string& line, qal::IQCommandOutput& output) {
    platform::WideOut text;
    platform::WideOut prompt;
    Flag more = qal::kTrue;
    status =
        command.ExecuteCommand(platform::Wide(line).get(), text.put(), prompt.put(), &more, &word, &output);
    result = text.str();
    wantsMore = more != qal::kFalse || !prompt.str().empty();
  }
  Status status;
  std::string result;
  bool wantsMore;
  std::uint16_t word = 1;
};

}  // namespace doubles
