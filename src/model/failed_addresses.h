#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <unordered_set>

namespace coverage {

/// Addresses at which nothing could be disassembled: a bit for each even address, in pages of 4 KiB of
/// addresses. UI thread only.
class FailedAddresses {
 public:
  void Note(std::uint32_t address);
  bool Holds(std::uint32_t address) const;
  /// The first address that is not held, `step` > 0 bytes or a multiple of that after `address`; may lie
  /// beyond the address space. Looks at 64 even addresses at a time.
  std::uint64_t After(std::uint32_t address, std::uint32_t step) const;
  void Clear();

 private:
  static constexpr std::uint32_t kPageBits = 12;
  static constexpr std::uint32_t kWordBits = 64;
  using Page = std::array<std::uint64_t, (std::size_t{1} << (kPageBits - 1)) / kWordBits>;

  /// Number of an even address in its page.
  static std::uint32_t Bit(std::uint64_t address) {
    return static_cast<std::uint32_t>(address >> 1) & ((1u << (kPageBits - 1)) - 1);
  }
  const Page* FindPage(std::uint32_t address) const {
    const auto found = pages_.find(address >> kPageBits);
    return found == pages_.end() ? nullptr : &found->second;
  }
  std::uint64_t AfterEven(std::uint64_t next, std::uint32_t step) const;

  std::unordered_map<std::uint32_t, Page> pages_;
  std::unordered_set<std::uint32_t> odd_;
};

}  // namespace coverage
