#include <gtest/gtest.h>

#include <memory>
#include <random>

#include "literal_records.h"
#include "model/coverage_cell_table.h"
#include "model/path_grid.h"

namespace coverage {
namespace {

using Random = std::mt19937;

std::uint32_t Pick(Random& random, std::uint32_t low, std::uint32_t high) {
  return std::uniform_int_distribution<std::uint32_t>(low, high)(random);
}

/// A place where ranges and reports of one test meet: some near it, some beyond both of its ends.
struct Neighbourhood {
  std::uint32_t low;
  std::uint32_t high;
  std::uint32_t Address(Random& random, unsigned oddPercent) const {
    const std::uint32_t address = Pick(random, low, high);
    return Pick(random, 1, 100) <= oddPercent ? address | 1u : address & ~1u;
  }
};

constexpr Neighbourhood kPlaces[] = {
    {0x1000, 0x1400}, {0, 0x300}, {0xFFFFFC00, 0xFFFFFFFF}, {0xFE00, 0x10200}, {0x1FFC0, 0x40080}};

std::vector<qal::PathPair> Report(Random& random, const Neighbourhood& place, unsigned oddPercent) {
  std::vector<qal::PathPair> pairs(Pick(random, 0, 12));
  std::uint32_t current = place.Address(random, oddPercent);
  for (auto& pair : pairs) {
    // Mostly short runs forward, sometimes anything.
    const std::uint32_t length = Pick(random, 0, 60);
    pair.branch = Pick(random, 0, 4) != 0 && length <= place.high - std::min(current, place.high)
                      ? current + (oddPercent != 0 ? length : length & ~1u)
                      : place.Address(random, oddPercent);
    pair.target = current = place.Address(random, oddPercent);
  }
  return pairs;
}

TEST(CellTable, TimesAreASumOf64Bits) {
  CoverageCellTable table;
  table.Layout(0, 1);
  table.AddOne(0, 0xFFFFFFFFFFFFFFFF, 0);
  EXPECT_EQ(table.ExecutedBits()[0], 1u);
  table.AddOne(0, 1, 0);
  EXPECT_EQ(table.CellAt(0)->times, 0u);
  EXPECT_EQ(table.ExecutedBits()[0], 0u);
}

TEST(CellTable, WalksAPath) {
  struct Case {
    const char* what;
    std::uint32_t start, end, from;
    std::vector<qal::PathPair> pairs;
    const char* picture;
  };
  const Case cases[] = {
      {"a run and its branch", 16, 31, 18, {{22, 0}}, "18:1/0 20:1/0 22:1/1 "},
      {"a branch below the walk counts nothing and moves on", 16, 31, 20, {{18, 24}, {24, 0}}, "24:1/1 "},
      {"clipped below", 16, 31, 2, {{18, 0}}, "16:1/0 18:1/1 "},
      {"clipped above, branch outside", 16, 31, 28, {{40, 0}}, "28:1/0 30:1/0 "},
      {"through the whole range", 16, 19, 0, {{100, 0}}, "16:1/0 18:1/0 "},
      {"an odd walk counts in the cells below it", 16, 31, 17, {{21, 0}}, "16:1/0 18:1/0 20:1/1 "},
      {"an even walk to an odd branch", 16, 31, 16, {{21, 0}}, "16:1/0 18:1/0 20:1/1 "},
      {"an odd walk to an even branch marks the branch's own cell",
       16,
       31,
       17,
       {{20, 0}},
       "16:1/0 18:1/0 20:0/1 "},
      {"an odd walk past an even end", 16, 20, 17, {{23, 0}}, "16:1/0 18:1/0 "},
      {"an odd start is taken as it stands", 17, 24, 16, {{24, 0}}, "17:1/0 19:1/0 21:1/0 23:1/1 "},
      {"a branch of the other parity below the walked one",
       16,
       31,
       17,
       {{17, 18}, {18, 0}},
       "16:1/1 18:1/1 "},
      {"to the top of the address space",
       0xFFFFFFF8,
       0xFFFFFFFF,
       0xFFFFFFFC,
       {{0xFFFFFFFF, 0}},
       "4294967292:1/0 4294967294:1/1 "},
  };
  for (const Case& c : cases) {
    CoverageCellTable table;
    table.Layout(c.start, c.end);
    table.AddPath(c.from, c.pairs);
    EXPECT_EQ(literal::Picture(table), c.picture) << c.what;
    literal::Table oracle;
    oracle.Layout(c.start, c.end);
    oracle.AddPath(c.from, c.pairs);
    EXPECT_EQ(literal::Picture(oracle), c.picture) << c.what;
  }
}

TEST(CellTable, AgreesWithTheLiteralWalk) {
  Random random(20010711);
  for (int round = 0; round < 600; ++round) {
    const Neighbourhood& place = kPlaces[round % 4];
    const unsigned odd = round % 3 == 0 ? 30 : 0;
    CoverageCellTable table;
    literal::Table oracle;
    for (int step = 0; step < 25; ++step) {
      switch (Pick(random, 0, 9)) {
        case 0: {
          const std::uint32_t a = place.Address(random, odd), b = place.Address(random, 50);
          table.Layout(a, b);
          oracle.Layout(a, b);
          break;
        }
        case 1:
          table.ClearAll();
          oracle.ClearAll();
          break;
        case 2: {
          const std::uint32_t a = place.Address(random, 50), bits = Pick(random, 0, 7);
          const qal::CountPair pair{a, bits};
          table.AddCounts({&pair, 1});
          table.OrPass({&pair, 1});
          oracle.AddOne(a, bits, bits);
          break;
        }
        case 3:
          ASSERT_EQ(literal::Picture(table), literal::Picture(oracle)) << "round " << round;
          break;
        default: {
          const std::uint32_t from = place.Address(random, odd);
          const auto pairs = Report(random, place, odd);
          table.AddPath(from, pairs);
          oracle.AddPath(from, pairs);
        }
      }
    }
    ASSERT_EQ(literal::Picture(table), literal::Picture(oracle)) << "round " << round;
  }
}

TEST(PathGrid, AgreesWithTheLiteralWalkTableByTable) {
  Random random(19991231);
  for (int round = 0; round < 500; ++round) {
    const Neighbourhood& place = kPlaces[static_cast<std::size_t>(round) % std::size(kPlaces)];
    const unsigned odd = round % 3 == 0 ? 20 : 0;
    const bool evenEnds = round % 2 == 0;
    std::vector<std::unique_ptr<CoverageCellTable>> tables;
    std::vector<literal::Table> oracles;
    auto grid = std::make_unique<PathGrid>();
    const auto layOut = [&](std::size_t i) {
      const std::uint32_t a = place.Address(random, round % 5 == 0 ? 50 : 0);
      const std::uint32_t b = a + std::min(Pick(random, 0, 300), 0xFFFFFFFF - a);
      tables[i]->Layout(evenEnds ? b : b | 1u, a);
      oracles[i].Layout(evenEnds ? b : b | 1u, a);
    };
    const std::size_t count = Pick(random, 1, 6);
    for (std::size_t i = 0; i < count; ++i) {
      tables.push_back(std::make_unique<CoverageCellTable>());
      oracles.emplace_back();
      layOut(i);
    }
    for (int step = 0; step < 20; ++step) {
      const std::size_t i = Pick(random, 0, static_cast<std::uint32_t>(count - 1));
      switch (Pick(random, 0, 9)) {
        case 0:
          tables[i]->ClearAll();
          oracles[i].ClearAll();
          break;
        case 1:
          layOut(i);
          break;
        case 2:
          tables[i] = std::make_unique<CoverageCellTable>();
          oracles[i] = {};
          layOut(i);
          break;
        case 3:
          ASSERT_EQ(literal::Picture(*tables[i]), literal::Picture(oracles[i])) << "round " << round;
          break;
        case 4:
          if (Pick(random, 0, 3) == 0) grid = std::make_unique<PathGrid>();
          break;
        default: {
          std::vector<CoverageCellTable*> chosen;
          const std::uint32_t from = place.Address(random, odd);
          const auto pairs = Report(random, place, odd);
          const std::uint32_t mask = Pick(random, 0, 3) == 0 ? Pick(random, 0, 63) : 63;
          for (std::size_t k = 0; k < count; ++k) {
            if ((mask >> k & 1u) == 0) continue;
            chosen.push_back(tables[k].get());
            oracles[k].AddPath(from, pairs);
          }
          grid->Choose(chosen);
          grid->AddPath(from, pairs);
        }
      }
    }
    if (round % 4 == 0) grid.reset();
    for (std::size_t k = 0; k < count; ++k) {
      ASSERT_EQ(literal::Picture(*tables[k]), literal::Picture(oracles[k])) << "round " << round;
    }
  }
}

TEST(PathGrid, MarksOfTablesFarApartTakeLittleRoom) {
  std::vector<std::unique_ptr<CoverageCellTable>> tables;
  std::vector<CoverageCellTable*> chosen;
  for (std::uint32_t i = 0; i < 64; ++i) {
    tables.push_back(std::make_unique<CoverageCellTable>());
    tables.back()->Layout(i * 0x04000000, i * 0x04000000 + 99);
    chosen.push_back(tables.back().get());
  }
  PathGrid grid;
  grid.Choose(chosen);
  const qal::PathPair whole[] = {{0xFFFFFFFE, 0}};
  grid.AddPath(0, whole);
  EXPECT_LT(grid.bytes(), 2u << 20);
  for (auto* table : chosen) EXPECT_EQ(table->CellAt(table->end())->times, 1u);
  EXPECT_FALSE(grid.pending());
}

}  // namespace
}  // namespace coverage
