#include "commands/arguments.h"

#include <gtest/gtest.h>

#include <array>

#include "commands/tokenizer.h"
#include "doubles/program_services.h"
#include "platform/text.h"

namespace coverage {
namespace {

/// The tokens of a line as "[token]" or, quoted, as "q[token]".
std::string Tokens(std::string_view line) {
  std::string picture;
  std::string token;
  TokenKind kind;
  do {
    const std::size_t before = line.size();
    NextToken(line, token, kind);
    if (line.size() == before && token.empty()) break;
    picture += (kind == TokenKind::kQuoted ? "q[" : "[") + token + "]";
  } while (!line.empty());
  return picture;
}

TEST(Tokenizer, CutsALine) {
  const struct {
    const char* line;
    const char* tokens;
  } kRows[] = {
      {"  5   enable", "[5][enable]"},
      {"\t5 x", "[\t5][x]"},
      {"\"a\"\"b\" c", "q[\"a\"b\"][c]"},
      {"\"a\"b", "q[\"a\"][b]"},
      {"\"open end", "q[\"open end]"},
      {"\"\"", "q[\"\"]"},
      {"\"\"\"", "q[\"\"]"},
      {"{a b} c", "[a b][c]"},
      {"{a{b}", "[a{b]"},
      {"{a b", "[a b]"},
      {"{}x", "[][x]"},
      {"a\"b c", "[a\"b][c]"},
      {"", ""},
      {"   ", "[]"},
  };
  for (const auto& row : kRows) EXPECT_EQ(Tokens(row.line), row.tokens) << row.line;
}

TEST(Tokenizer, ASecondByteIsNoBrace) {
  platform::SetCodePage(platform::kShiftJis);
  EXPECT_EQ(Tokens("{\x83\x7d"
                   "a} b"),
            "[\x83\x7d"
            "a][b]");
  platform::SetCodePage(platform::kUtf8);
}

TEST(Arguments, Numbers) {
  doubles::StubExpression expressions;
  const struct {
    bool required;
    std::uint32_t radix;
    const char* token;
    TokenKind kind;
    const char* outcome;  ///< value, then "default" or the error
  } kRows[] = {
      {false, 10, "12", TokenKind::kWord, "12"},
      {false, 16, "12", TokenKind::kWord, "18"},
      {false, 0, "0x20", TokenKind::kWord, "32"},
      {false, 10, "100", TokenKind::kWord, "100"},
      {false, 10, "101", TokenKind::kWord, "error 1"},
      {true, 10, "4", TokenKind::kWord, "error 1"},
      {false, 10, "enable", TokenKind::kWord, "7 default"},
      {true, 10, "enable", TokenKind::kWord, "error 4"},
      {false, 10, "", TokenKind::kWord, "7 default"},
      {true, 10, "", TokenKind::kWord, "error 2"},
      {false, 10, "\"12\"", TokenKind::kQuoted, "7 default"},
  };
  for (const auto& row : kRows) {
    CArgNumberUnsigned number(row.required, row.radix, &expressions, 7, 5, 100);
    const bool parsed = number.Parse(row.token, row.kind);
    std::string outcome = parsed ? std::to_string(number.value) : "error " + std::to_string(number.error);
    if (number.defaulted != 0) outcome += " default";
    EXPECT_EQ(outcome, row.outcome) << row.token;
  }
  CArgNumberUnsigned without(true, 10, nullptr, 7, 5, 100);
  EXPECT_FALSE(without.Parse("12", TokenKind::kWord));
  EXPECT_EQ(without.error, CArg::kNoNumber);
}

TEST(Arguments, Keywords) {
  constexpr char kWords[] = "enable\0entire\0disable\0reset\0";
  const struct {
    bool required;
    const char* token;
    std::int32_t index;
    std::uint32_t error;
    std::uint32_t defaulted;
  } kRows[] = {
      {false, "ENABLE", 0, 0, 0}, {false, "en", 1, 0, 0},     {false, "ena", 0, 0, 0}, {false, "d", 2, 0, 0},
      {false, "R", 3, 0, 0},      {false, "x", 2, 0, 1},      {true, "x", -1, 3, 0},   {false, "", 2, 0, 1},
      {true, "", -1, 2, 0},       {true, "resets", -1, 3, 0},
  };
  for (const auto& row : kRows) {
    CArgKeyword keyword(row.required, kWords, 2);
    EXPECT_EQ(keyword.Parse(row.token, TokenKind::kWord), row.error == 0) << row.token;
    EXPECT_EQ(keyword.index, row.index) << row.token;
    EXPECT_EQ(keyword.error, row.error) << row.token;
    EXPECT_EQ(keyword.defaulted, row.defaulted) << row.token;
  }
}

TEST(Arguments, ADefaultLeavesItsTokenToTheNext) {
  doubles::StubExpression expressions;
  constexpr char kWords[] = "enable\0reset\0";
  const struct {
    const char* line;
    const char* outcome;  ///< count, number, keyword, rest
  } kRows[] = {
      {"enable x", "2 9 0 | x"},        {"5 reset", "2 5 1 |"}, {"", "2 9 -1 |"},
      {"11 reset", "0 9 -1 |11 reset"}, {"x 5", "2 9 -1 |x 5"},
  };
  for (const auto& row : kRows) {
    CArgNumberUnsigned number(false, 10, &expressions, 9, 1, 10);
    CArgKeyword keyword(false, kWords, -1);
    const std::array<CArg*, 2> arguments = {&number, &keyword};
    std::string_view cursor = row.line;
    const std::size_t count = ParseArguments(cursor, arguments);
    if (count == 0) number.value = number.defaultValue;
    EXPECT_EQ(std::to_string(count) + " " + std::to_string(number.value) + " " +
                  std::to_string(keyword.index) + " |" + std::string(cursor),
              row.outcome)
        << row.line;
  }
}

}  // namespace
}  // namespace coverage
