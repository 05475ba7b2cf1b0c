#include "persist/cov_grammar.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>

namespace coverage {
namespace {

constexpr const char* kTexts[] = {"-", "T", "F", "T/F"};

/// What the C library makes of a row: the form that the fast writer must agree with byte for byte.
std::string PrintedRow(std::uint64_t count, std::uint32_t pass, const std::string& address) {
  char text[600];
  std::snprintf(text, sizeof text, "\r\n%08llu\t%s\t", static_cast<unsigned long long>(count), kTexts[pass]);
  const std::string padding(address.size() < 8 ? 8 - address.size() : 0, '0');
  return text + padding + address;
}

std::string FastRow(std::uint64_t count, std::uint32_t pass, const std::string& address) {
  std::string room(kRowBytesWithoutAddress + std::max<std::size_t>(address.size(), 8), '\0');
  room.resize(static_cast<std::size_t>(FormatRow(room.data(), count, pass, address) - room.data()));
  return room;
}

TEST(CovGrammar, RowsAreWrittenAsPrintfWould) {
  std::mt19937_64 random(7);
  for (const std::uint64_t count : {0ULL, 9ULL, 99999999ULL, 100000000ULL, 5000000000ULL,
                                    10000000000000000ULL, 99999999999999999ULL, 18446744073709551615ULL}) {
    for (std::uint32_t pass = 0; pass < 4; ++pass)
      EXPECT_EQ(FastRow(count, pass, "1000"), PrintedRow(count, pass, "1000"));
  }
  for (int i = 0; i < 20000; ++i) {
    const std::uint64_t count = random() >> (random() % 64);
    const std::string address(random() % 12, static_cast<char>('a' + random() % 6));
    const auto pass = static_cast<std::uint32_t>(random() % 4);
    ASSERT_EQ(FastRow(count, pass, address), PrintedRow(count, pass, address));
  }
}

TEST(CovGrammar, RowsOfTheWritersReadFastAndAlikeWithTheGeneralParser) {
  std::mt19937_64 random(11);
  for (int i = 0; i < 20000; ++i) {
    char address[16];
    std::snprintf(address, sizeof address, "%08x", static_cast<unsigned>(random()));
    std::string line =
        PrintedRow(random() >> (random() % 64), static_cast<std::uint32_t>(random() % 4), address);
    line.erase(0, 2);
    // A damaged byte now and then: the two parsers must then still agree, or the fast one must decline.
    if (i % 2 == 1) line[random() % line.size()] = "\t -TF/0a9g\r\n"[random() % 12];
    qal::CountPair count{};
    qal::CountPair pass{};
    const std::string memory = line + (i % 4 < 2 ? "\r\n" : "\n") + std::string(32, 'x');
    const std::size_t taken = ParseFastRow(memory.data(), count, pass);
    if (i % 2 == 0 && line.find('\t') == 8) {
      EXPECT_GT(taken, 0u) << line;
    }
    if (taken == 0) continue;
    qal::CountPair slowCount{};
    qal::CountPair slowPass{};
    ASSERT_TRUE(ParseTypedRow(line, slowCount, slowPass)) << line;
    ASSERT_EQ(taken, line.size() + (i % 4 < 2 ? 2 : 1)) << line;
    ASSERT_EQ(count.address, slowCount.address);
    ASSERT_EQ(count.value, slowCount.value);
    ASSERT_EQ(pass.value, slowPass.value);
    ASSERT_EQ(pass.address, slowPass.address);
    ASSERT_EQ(count.address, std::strtoul(line.c_str() + line.rfind('\t') + 1, nullptr, 16));
    ASSERT_EQ(count.value, std::min(std::strtoul(line.c_str(), nullptr, 10), 0xFFFFFFFFUL));
  }
}

TEST(CovGrammar, OtherRows) {
  const struct {
    bool typed;
    const char* line;
    const char* row;  ///< "address count pass", or "none"
  } kRows[] = {
      {true, "5000000000\tT\t00001000", "1000 4294967295 1"},
      {true, "3\tT/F\t0x1000 main", "1000 3 3"},
      {true, "00000003\t 0\t00001000", "1000 3 0"},
      {true, "00000003\tQ\t00001000", "1000 3 0"},
      {true, "3\tF\t1ffffffff", "ffffffff 3 2"},
      {true, "3\tF", "none"},
      {true, "3 F 1000", "none"},
      {true, "\t\t", "none"},
      {true, " (Times)\t(Pass)\t(Address)", "none"},
      {true, "1\tT\tmain", "none"},
      {true, "", "none"},
      {false, "00000003      T/F      00001000", "1000 3 3"},
      {false, "7      -      0000100a rest", "100a 7 0"},
      {false, "7     T      0000100a", "100a 7 0"},
      {false, "x      T      0000100a", "none"},
      {false, "00000003\tT\t00001000", "none"},
      {false, "3 ", "none"},
  };
  for (const auto& each : kRows) {
    qal::CountPair count{};
    qal::CountPair pass{};
    char text[64] = "none";
    if ((each.typed ? ParseTypedRow : ParseUntypedRow)(each.line, count, pass)) {
      std::snprintf(text, sizeof text, "%x %u %u", count.address, count.value, pass.value);
    }
    EXPECT_STREQ(text, each.row) << each.line;
  }
}

TEST(CovGrammar, Numbers) {
  const struct {
    const char* text;
    std::uint32_t hex;
    std::uint32_t decimal;
  } kRows[] = {
      {"00001000", 0x1000, 1000},
      {"0x1F", 0x1F, 0},
      {" 12", 0x12, 12},
      {"0x", 0, 0},
      {"0xg", 0, 0},
      {"ffffffff", 0xFFFFFFFF, 0},
      {"100000000", 0xFFFFFFFF, 100000000},
      {"", 0, 0},
      {"4294967296", 0xFFFFFFFF, 0xFFFFFFFF},
      {"-1", 0, 0},
      {"99999999999999999999999999", 0xFFFFFFFF, 0xFFFFFFFF},
  };
  for (const auto& row : kRows) {
    EXPECT_EQ(ParseHex32(row.text), row.hex) << row.text;
    EXPECT_EQ(ParseDecimal32(row.text), row.decimal) << row.text;
  }
}

TEST(CovGrammar, RangesAreAlignedToSteps) {
  const struct {
    std::uint32_t start, end, alignedStart, alignedEnd;
  } kRows[] = {
      {0x1001, 0x2000, 0x1000, 0x1FFF},
      {0x1000, 0x1FFF, 0x1000, 0x1FFF},
      {0x1000, 0x1000, 0x1000, 0x1000},
      {0x2000, 0x1000, 0x1000, 0x1FFF},
      {0, 0, 0, 0},
      {1, 2, 0, 1},
      {0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFE, 0xFFFFFFFF},
  };
  for (const auto& row : kRows) {
    std::uint32_t start = row.start;
    std::uint32_t end = row.end;
    AlignToSteps(start, end);
    EXPECT_EQ(start, row.alignedStart) << std::hex << row.start;
    EXPECT_EQ(end, row.alignedEnd) << std::hex << row.end;
  }
}

}  // namespace
}  // namespace coverage
