#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string_view>
#include <vector>

namespace coverage {

/// One of several things whose names need not differ, as the overloads and file-local functions of one source
/// file need not.
struct NamedPart {
  std::string_view name;
  std::uint64_t start;  ///< address, or kNoStart
};
inline constexpr std::uint64_t kNoStart = std::numeric_limits<std::uint64_t>::max();
inline constexpr std::size_t kNoPartner = std::numeric_limits<std::size_t>::max();

/// For each of `left` the index of its partner in `right`, or kNoPartner: of each name the one with the k-th
/// start belongs to the one with the k-th start on the other side; equal starts count as they come. Any
/// thread.
std::vector<std::size_t> PairByName(const std::vector<NamedPart>& left, const std::vector<NamedPart>& right);

}  // namespace coverage
