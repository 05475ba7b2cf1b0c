// How the commands word addresses and the names of ranges.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "qal/host.h"
#include "qal/program_services.h"

namespace coverage {

/// Made on the UI thread, where the service is looked up; its operations are for any thread on which the
/// service may be called.
class AddressWords {
 public:
  explicit AddressWords(qal::IQHost* host);

  /// What the address-text service says; nothing when it is missing or fails.
  std::optional<std::string> Asked(std::uint32_t address) const;
  /// The same, else 8 lower-case hexadecimal digits. `worded`, when given, becomes false unless the service
  /// gave a text, and one that is not empty.
  std::string Of(std::uint32_t address, bool* worded = nullptr) const;
  /// The function's name, or "start-end" for a range, which has none.
  std::string NameOf(const std::string& functionName, std::uint32_t start, std::uint32_t end) const;

 private:
  qal::IQAddressText* service_;
};

}  // namespace coverage
