#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace qal {
struct IQHost;
}  // namespace qal

namespace coverage {

/// Text that the debugger shows for an address; nothing when the address-text service is missing or fails.
/// Any thread on which the service may be called.
std::optional<std::string> AddressText(qal::IQHost* host, std::uint32_t address);

struct AddressLimits {
  std::uint32_t lowest = 0;
  std::uint32_t highest = 0xFFFFFFFF;
};
/// What the debugger says of valid addresses; all 32 bits when it says nothing.
AddressLimits LimitsOfTarget(qal::IQHost* host);

}  // namespace coverage
