#include "model/failed_addresses.h"

namespace coverage {

void FailedAddresses::Note(std::uint32_t address) {
  if ((address & 1u) != 0) {
    odd_.insert(address);
    return;
  }
  const std::uint32_t bit = Bit(address);
  pages_[address >> kPageBits][bit / kWordBits] |= std::uint64_t{1} << bit % kWordBits;
}

bool FailedAddresses::Holds(std::uint32_t address) const {
  if ((address & 1u) != 0) return odd_.contains(address);
  const Page* const page = FindPage(address);
  const std::uint32_t bit = Bit(address);
  return page != nullptr && ((*page)[bit / kWordBits] >> bit % kWordBits & 1u) != 0;
}

std::uint64_t FailedAddresses::After(std::uint32_t address, std::uint32_t step) const {
  std::uint64_t next = std::uint64_t{address} + step;
  if (((address | step) & 1u) == 0) return AfterEven(next, step);
  while (next <= UINT32_MAX && Holds(static_cast<std::uint32_t>(next))) next += step;
  return next;
}

std::uint64_t FailedAddresses::AfterEven(std::uint64_t next, std::uint32_t step) const {
  // The bits of a word that a walk from its first one visits.
  std::uint64_t visited = 0;
  for (std::uint64_t bit = 0; bit < kWordBits; bit += step / 2) visited |= std::uint64_t{1} << bit;

  while (next <= UINT32_MAX) {
    const Page* const page = FindPage(static_cast<std::uint32_t>(next));
    if (page == nullptr) return next;
    for (const std::uint64_t number = next >> kPageBits; next >> kPageBits == number;) {
      const std::uint32_t bit = Bit(next);
      const std::uint64_t wanted = visited << bit % kWordBits;
      const std::uint64_t word = (*page)[bit / kWordBits];
      if ((word & wanted) == wanted) {
        next += std::uint64_t{step} * ((kWordBits - 1 - bit % kWordBits) / (step / 2) + 1);
        continue;
      }
      while ((word >> Bit(next) % kWordBits & 1u) != 0) next += step;
      return next;
    }
  }
  return next;
}

void FailedAddresses::Clear() {
  pages_.clear();
  odd_.clear();
}

}  // namespace coverage
