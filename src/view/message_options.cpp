#include "view/message_options.h"

#include <cstdint>

#include "platform/modal.h"
#include "platform/text.h"
#include "qal/ids.h"
#include "util/texts.h"

namespace coverage {
namespace {

struct OptionTexts {
  std::uint32_t question;
  std::uint32_t label;
};

/// In registration order, as in MessageOption.
constexpr std::array<OptionTexts, kMessageOptionCount> kTexts = {{
    {strings::kClearDataQuestion, strings::kClearDataOption},
    {strings::kClearAtClosingOption, strings::kClearAtClosingOption},
    {strings::kSaveAtSessionSavingOption, strings::kSaveAtSessionSavingOption},
    {strings::kSaveAgainQuestion, strings::kSaveAgainOption},
    {strings::kMacroLimitationQuestion, strings::kMacroLimitationOption},
}};

constexpr qal::Flag kAskByDefault = qal::kTrue;

}  // namespace

void MessageOptions::Register(qal::IQMessageOptions* service) {
  service_ = service;
  if (service_ == nullptr) return;
  for (std::size_t i = 0; i < kTexts.size(); ++i) {
    options_[i].known = qal::Succeeded(service_->RegisterOption(&qal::id::kMessageCategory,
                                                                platform::Wide(Text(kTexts[i].label)).get(),
                                                                kAskByDefault, &options_[i].identifier));
  }
}

void MessageOptions::Withdraw() {
  for (Registered& option : options_) {
    if (option.known) service_->WithdrawOption(&option.identifier);
    option = {};
  }
}

const MessageOptions::Registered* MessageOptions::Find(MessageOption option) const {
  const Registered& found = options_[static_cast<std::size_t>(option)];
  return found.known ? &found : nullptr;
}

bool MessageOptions::Asks(MessageOption option) const {
  const Registered* const found = Find(option);
  qal::Flag on = qal::kFalse;
  return found != nullptr && qal::Succeeded(service_->GetOptionState(found->identifier, &on)) &&
         on != qal::kFalse;
}

bool MessageOptions::Ask(MessageOption option, std::string_view text) const {
  const Registered* const found = Find(option);
  qal::Flag yes = qal::kFalse;
  const platform::ModalScope waits;
  return found != nullptr &&
         qal::Succeeded(service_->AskOption(found->identifier, platform::Wide(text).get(), &yes)) &&
         yes != qal::kFalse;
}

std::string MessageOptions::Question(MessageOption option) {
  return Text(kTexts[static_cast<std::size_t>(option)].question);
}

}  // namespace coverage
