#pragma once

#include <memory>
#include <string>
#include <vector>

#include "qal/command.h"
#include "workbench/services/host.h"
#include "workbench/services/output_queue.h"
#include "workbench/services/service.h"

namespace workbench {

/// Names of the IDE's command line and the clients that carry them out. Main thread.
class CommandRegistry final : public Service<qal::IQCommandRegistry, qal::iid::kCommandRegistry> {
 public:
  struct Command {
    std::string name;
    std::string syntax;
    bool shortForm;
  };

  /// Clients are those that registered with `host` as command clients.
  explicit CommandRegistry(Host& host) : host_(host) {}

  /// The client of a registered name (case ignored), or null.
  qal::IQCmdClient2* Find(const std::string& name) const;
  const std::vector<Command>& Commands() const { return commands_; }
  void Forget() { commands_.clear(); }

  qal::Status AddCommand(qal::WideText name, qal::WideText syntax, std::uint32_t shortForm) override;
  qal::Status RemoveCommand(qal::WideText name, qal::WideText syntax) override;

 private:
  Host& host_;
  std::vector<Command> commands_;
};

/// The output service as the component looks it up; it has no operation of its own that anybody calls.
class CommandOutputService final : public Service<qal::IQUnknown, qal::iid::kCommandOutputService> {};

/// One execution of a command: runs in the constructor, on the main thread. Output may go on afterwards, from
/// another thread; the object must then live until its end, or be abandoned after the component has ended.
class CommandRun {
 public:
  CommandRun(qal::IQCmdClient& client, const std::string& line);
  /// Stops the command when it is still running, and waits for its end.
  ~CommandRun();
  CommandRun(const CommandRun&) = delete;
  CommandRun& operator=(const CommandRun&) = delete;

  OutputQueue& Output() { return sink_.queue; }
  bool Failed() const { return qal::Failed(status_); }
  qal::Status StatusOf() const { return status_; }
  const std::string& ResultText() const { return result_; }
  const std::string& Prompt() const { return prompt_; }
  bool WantsMore() const { return wantsMore_; }
  bool InBackground() const { return background_; }

 private:
  class Sink final : public qal::IQCommandOutput {
   public:
    qal::Status QueryInterface(const qal::Guid* iid, void** out) override;
    std::uint32_t AddRef() override { return 1; }
    std::uint32_t Release() override { return 1; }
    qal::Status WriteLine(qal::WideText line, qal::WideText second) override;
    qal::Status EndOutput(qal::WideText text) override;
    OutputQueue queue;
  };

  qal::IQCmdClient& client_;
  Sink sink_;
  qal::Status status_ = qal::kFail;
  std::string result_;
  std::string prompt_;
  bool wantsMore_ = false;
  bool background_ = false;
};

}  // namespace workbench
