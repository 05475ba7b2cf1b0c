#include "util/range_index.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

namespace coverage {
namespace {

std::vector<int> Holding(const RangeIndex<int>& index, std::uint32_t address) {
  std::vector<int> found;
  index.VisitHolding(address, [&](int payload) { found.push_back(payload); });
  return found;
}

TEST(RangeIndex, FindsTheSameRangesAsALookAtEachOfThem) {
  std::mt19937 random(7);
  for (int round = 0; round < 200; ++round) {
    struct Range {
      std::uint32_t start, end;
    };
    std::vector<Range> ranges(random() % 40);
    RangeIndex<int> index;
    for (std::size_t i = 0; i < ranges.size(); ++i) {
      const std::uint32_t base = round % 2 == 0 ? 0 : 0xFFFFFF00u;
      const std::uint32_t start = base + static_cast<std::uint32_t>(random() % 200);
      const std::uint32_t span = std::min<std::uint32_t>(static_cast<std::uint32_t>(random() % 60), ~start);
      ranges[i] = {start, start + span};
      index.Add(ranges[i].start, ranges[i].end, static_cast<int>(i));
    }
    index.Build();
    for (std::uint32_t probe = 0; probe < 280; ++probe) {
      const std::uint32_t address = (round % 2 == 0 ? 0 : 0xFFFFFF00u) + probe;
      std::vector<int> expected;
      for (std::size_t i = 0; i < ranges.size(); ++i) {
        if (ranges[i].start <= address && address <= ranges[i].end) expected.push_back(static_cast<int>(i));
      }
      ASSERT_EQ(Holding(index, address), expected) << "round " << round << " address " << address;
    }
  }
}

}  // namespace
}  // namespace coverage
