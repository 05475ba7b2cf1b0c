#include "commands/address_words.h"

#include "model/services.h"
#include "platform/text.h"
#include "qal/ids.h"

namespace coverage {

AddressWords::AddressWords(qal::IQHost* host)
    : service_(FindService<qal::IQAddressText>(host, qal::iid::kAddressText)) {}

std::optional<std::string> AddressWords::Asked(std::uint32_t address) const {
  platform::WideOut text;
  if (service_ == nullptr || qal::Failed(service_->AddressToText(address, 0, -1, 0, text.put()))) {
    return std::nullopt;
  }
  return text.str();
}

std::string AddressWords::Of(std::uint32_t address, bool* worded) const {
  std::optional<std::string> asked = Asked(address);
  if (worded != nullptr && (!asked || asked->empty())) *worded = false;
  return asked ? *std::move(asked) : platform::Format("%08x", address);
}

std::string AddressWords::NameOf(const std::string& functionName, std::uint32_t start,
                                 std::uint32_t end) const {
  return functionName.empty() ? Of(start) + "-" + Of(end) : functionName;
}

}  // namespace coverage
