#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "qal/ide_services.h"
#include "qal/types.h"

namespace coverage {

/// Questions of the component that the user can switch off.
enum class MessageOption : std::size_t {
  kClearData,
  kClearDataAtClosing,
  kSaveAtSessionSaving,
  kSaveAgain,
  kMacroLimitation,
};
inline constexpr std::size_t kMessageOptionCount = 5;

/// The component's options in the IDE's message-option service. Without the service nothing is registered and
/// nothing asks. UI thread only.
class MessageOptions {
 public:
  MessageOptions() = default;
  MessageOptions(const MessageOptions&) = delete;
  MessageOptions& operator=(const MessageOptions&) = delete;

  /// Registers every option, in order. The service is borrowed and may be null.
  void Register(qal::IQMessageOptions* service);
  /// Withdraws every option that was registered.
  void Withdraw();

  /// Whether the option was registered, so that it can be asked.
  bool CanAsk(MessageOption option) const { return Find(option) != nullptr; }
  /// Whether the option is set to ask; false when it cannot be read.
  bool Asks(MessageOption option) const;
  /// Asks the text as a yes/no question under the option, in a dialog of the IDE; false for no and when it
  /// cannot be asked.
  bool Ask(MessageOption option, std::string_view text) const;

  /// The message that goes with the option.
  static std::string Question(MessageOption option);

 private:
  struct Registered {
    bool known = false;
    qal::Guid identifier;
  };
  const Registered* Find(MessageOption option) const;

  qal::IQMessageOptions* service_ = nullptr;
  std::array<Registered, kMessageOptionCount> options_;
};

}  // namespace coverage
