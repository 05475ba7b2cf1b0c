#include "macro/name_pairing.h"

#include <algorithm>
#include <numeric>
#include <tuple>

namespace coverage {
namespace {

/// Indices of the parts by name, then by start.
std::vector<std::size_t> InOrder(const std::vector<NamedPart>& parts) {
  std::vector<std::size_t> order(parts.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::stable_sort(order.begin(), order.end(), [&parts](std::size_t a, std::size_t b) {
    return std::tie(parts[a].name, parts[a].start) < std::tie(parts[b].name, parts[b].start);
  });
  return order;
}

}  // namespace

std::vector<std::size_t> PairByName(const std::vector<NamedPart>& left, const std::vector<NamedPart>& right) {
  std::vector<std::size_t> partners(left.size(), kNoPartner);
  const std::vector<std::size_t> others = InOrder(right);
  auto other = others.begin();
  for (const std::size_t index : InOrder(left)) {
    while (other != others.end() && right[*other].name < left[index].name) ++other;
    if (other != others.end() && right[*other].name == left[index].name) partners[index] = *other++;
  }
  return partners;
}

}  // namespace coverage
