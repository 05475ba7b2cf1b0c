#include <gtest/gtest.h>

#include "workbench/services/expression_evaluator.h"

namespace workbench {
namespace {

std::optional<std::uint64_t> Symbols(std::string_view name) {
  if (name == "main") return 0x1000;
  if (name == "add") return 0x2000;
  if (name == "pump::open") return 0x3000;
  return std::nullopt;
}

std::string Shown(std::string_view text, unsigned radix) {
  const Evaluation result = Evaluate(text, radix, Symbols);
  return result.value ? std::to_string(*result.value) : "error: " + result.error;
}

TEST(ExpressionEvaluator, ReadsNumbersSymbolsAndSums) {
  const struct {
    const char* text;
    unsigned radix;
    const char* shown;
  } rows[] = {
      {"10", 10, "10"},
      {"10", 16, "16"},
      {"0x10", 10, "16"},
      {"0X1f", 16, "31"},
      {"ff", 16, "255"},
      {"ff", 10, "error: 'ff' is no symbol and no number"},
      {"102", 2, "error: '102' is no symbol and no number"},
      {"main", 16, "4096"},
      {"main+10", 16, "4112"},
      {"pump::open", 16, "12288"},
      {"add", 16, "8192"},  // a symbol goes before a number
      {"addd", 16, "44509"},
      {" 2 + 3 * 4 ", 10, "14"},
      {"(2 + 3) * 4", 10, "20"},
      {"7 - 2 - 1", 10, "4"},
      {"-1", 10, "18446744073709551615"},
      {"2--1", 10, "3"},
      {"ffffffffffffffff", 16, "18446744073709551615"},
      {"10000000000000000", 16, "error: '10000000000000000' is too large"},
      {"", 16, "error: a value is missing"},
      {"1 +", 16, "error: a value is missing"},
      {"(1", 16, "error: a closing bracket is missing"},
      {"1)", 16, "error: ')' is not expected here"},
      {"1 2", 16, "error: '2' is not expected here"},
      {"main.c", 16, "error: 'main.c' is no symbol and no number"},
      {"0x", 16, "error: '0x' is no symbol and no number"},
  };
  for (const auto& row : rows) EXPECT_EQ(Shown(row.text, row.radix), row.shown) << row.text;
}

TEST(ExpressionEvaluator, EndsOnHostileTexts) {
  EXPECT_EQ(Shown(std::string(65, '(') + "1", 10), "error: brackets are nested too deeply");
  EXPECT_EQ(Shown(std::string(5000, '1'), 10), "error: the expression is too long");
  EXPECT_EQ(Shown(std::string(4000, '-') + "1", 10), "1");
}

TEST(ExpressionEvaluator, NarrowsToAddresses) {
  EXPECT_EQ(ToAddress(0xFFFFFFFFu), 0xFFFFFFFFu);
  EXPECT_EQ(ToAddress(~std::uint64_t{0}), 0xFFFFFFFFu);
  EXPECT_EQ(ToAddress(0x100000000u), std::nullopt);
}

}  // namespace
}  // namespace workbench
