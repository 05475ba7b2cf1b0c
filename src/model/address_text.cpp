#include "model/address_text.h"

#include "model/services.h"
#include "platform/text.h"
#include "qal/program_services.h"

namespace coverage {

std::optional<std::string> AddressText(qal::IQHost* host, std::uint32_t address) {
  auto* service = FindService<qal::IQAddressText>(host, qal::iid::kAddressText);
  platform::WideOut text;
  if (!service || qal::Failed(service->AddressToText(address, 0, -1, 0, text.put()))) return std::nullopt;
  return text.str();
}

AddressLimits LimitsOfTarget(qal::IQHost* host) {
  AddressLimits limits;
  auto* service = FindService<qal::IQAddressLimits>(host, qal::iid::kAddressLimits);
  if (!service || qal::Failed(service->GetLimits(&limits.lowest, &limits.highest))) return AddressLimits{};
  return limits;
}

}  // namespace coverage
