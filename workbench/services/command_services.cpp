#include "workbench/services/command_services.h"

#include <algorithm>

#include "platform/text.h"
#include "platform/variant.h"

namespace workbench {
namespace {

constexpr std::uint16_t kGoesOn = 0xFFFF;
constexpr std::size_t kMostCommands = 10'000;

bool Answers(qal::IQCmdClient2& client, const std::string& name) {
  qal::VariantArray* names = nullptr;
  if (qal::Failed(client.GetCommandNames(&names)) || !names) return false;
  const auto texts = platform::TextsOf(names);
  qal::FreeVariantArray(names);
  return std::any_of(texts.begin(), texts.end(),
                     [&](const std::string& text) { return platform::EqualNoCase(text, name); });
}

}  // namespace

qal::IQCmdClient2* CommandRegistry::Find(const std::string& name) const {
  const bool registered = std::any_of(commands_.begin(), commands_.end(), [&](const Command& command) {
    return platform::EqualNoCase(command.name, name);
  });
  if (!registered) return nullptr;
  for (auto* client : host_.SinksAs<qal::IQCmdClient2>(qal::iid::kCmdClient2)) {
    if (Answers(*client, name)) return client;
  }
  return nullptr;
}

qal::Status CommandRegistry::AddCommand(qal::WideText name, qal::WideText syntax, std::uint32_t shortForm) {
  return Guarded([&]() -> qal::Status {
    const std::string text = platform::Narrow(name);
    if (text.empty() || commands_.size() >= kMostCommands) return qal::kFail;
    commands_.push_back({text, platform::Narrow(syntax), shortForm != 0});
    return qal::kOk;
  });
}

qal::Status CommandRegistry::RemoveCommand(qal::WideText name, qal::WideText) {
  return Guarded([&]() -> qal::Status {
    const std::string text = platform::Narrow(name);
    const auto found = std::find_if(commands_.begin(), commands_.end(),
                                    [&](const Command& command) { return command.name == text; });
    if (found == commands_.end()) return qal::kFail;
    commands_.erase(found);
    return qal::kOk;
  });
}

qal::Status CommandRun::Sink::QueryInterface(const qal::Guid* iid, void** out) {
  if (!out) return qal::kFail;
  *out = nullptr;
  if (!iid || !(*iid == qal::iid::kUnknown)) return qal::kNoInterface;
  *out = static_cast<qal::IQCommandOutput*>(this);
  return qal::kOk;
}

qal::Status CommandRun::Sink::WriteLine(qal::WideText line, qal::WideText) {
  return Guarded([&] {
    queue.Write(platform::Narrow(line));
    return qal::kOk;
  });
}

qal::Status CommandRun::Sink::EndOutput(qal::WideText text) {
  return Guarded([&] {
    if (qal::TextLength(text) > 0) queue.Write(platform::Narrow(text));
    queue.End();
    return qal::kOk;
  });
}

CommandRun::CommandRun(qal::IQCmdClient& client, const std::string& line) : client_(client) {
  platform::WideOut result;
  platform::WideOut prompt;
  qal::Flag wantsMore = qal::kFalse;
  std::uint16_t word = 0;
  status_ = client_.ExecuteCommand(platform::Wide(line).get(), result.put(), prompt.put(), &wantsMore, &word,
                                   &sink_);
  result_ = result.str();
  prompt_ = prompt.str();
  wantsMore_ = wantsMore != qal::kFalse;
  background_ = word == kGoesOn;
}

CommandRun::~CommandRun() {
  if (!background_ || sink_.queue.Ended()) return;
  client_.CancelCommand();
  std::string dropped;
  while (sink_.queue.Read(dropped, std::chrono::milliseconds(1000)) == OutputQueue::Result::kLine) {
  }
}

}  // namespace workbench
