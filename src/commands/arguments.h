// The typed arguments of commands: each turns one token into a value, with defaults, ranges and
// abbreviations. UI thread only.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "commands/tokenizer.h"
#include "qal/all.h"

namespace coverage {

class PlaceholderResolver;

class CArg {
 public:
  enum Error : std::uint32_t {
    kNoError = 0,
    kOutOfRange = 1,
    kMissing = 2,
    kNoKeyword = 3,
    kNoNumber = 4,
  };

  explicit CArg(bool isRequired) : required(isRequired ? 1 : 0) {}
  CArg(const CArg&) = delete;
  CArg& operator=(const CArg&) = delete;
  virtual ~CArg() = default;
  /// Takes a token. False leaves the reason in `error`. True with `defaulted` set: the token is the next
  /// argument's.
  virtual bool Parse(const std::string& token, TokenKind kind) = 0;

  std::uint32_t required;
  std::string text;
  std::uint32_t error = kNoError;
  std::uint32_t defaulted = 0;

 protected:
  void Reset();
  /// Fails with `why` when the argument is required; else it is defaulted.
  bool DefaultOr(Error why);
};

class CArgNumber : public CArg {
 public:
  /// Without an evaluator every text counts as no number. A radix of 0 leaves the radix to the evaluator.
  CArgNumber(bool isRequired, std::uint32_t numberRadix, qal::IQExpression* expressions)
      : CArg(isRequired), radix(numberRadix), evaluator(expressions) {}

  std::uint32_t radix;
  qal::IQExpression* evaluator;
};

class CArgNumberUnsigned final : public CArgNumber {
 public:
  CArgNumberUnsigned(bool isRequired, std::uint32_t numberRadix, qal::IQExpression* expressions,
                     std::uint64_t standard, std::uint64_t lowest, std::uint64_t highest)
      : CArgNumber(isRequired, numberRadix, expressions),
        defaultValue(standard),
        minValue(lowest),
        maxValue(highest),
        value(standard) {}
  bool Parse(const std::string& token, TokenKind kind) override;

  std::uint64_t defaultValue;
  std::uint64_t minValue;
  std::uint64_t maxValue;
  std::uint64_t value;
};

class CArgKeyword final : public CArg {
 public:
  /// `list` is zero-terminated texts one after the other, ended by an empty one.
  CArgKeyword(bool isRequired, const char* list, std::int32_t standard);
  bool Parse(const std::string& token, TokenKind kind) override;

  std::vector<std::string> keywords;
  std::int32_t index = -1;
  std::int32_t defaultIndex;
};

class CArgString : public CArg {
 public:
  CArgString(bool isRequired, std::string standard) : CArg(isRequired), defaultValue(std::move(standard)) {}
  bool Parse(const std::string& token, TokenKind kind) override;

  std::string defaultValue;
  std::string value;
};

class CArgStringFileName final : public CArgString {
 public:
  /// `expander` may be none: then nothing is expanded.
  CArgStringFileName(bool isRequired, std::string standard, PlaceholderResolver* expander)
      : CArgString(isRequired, std::move(standard)), placeholders(expander) {}
  bool Parse(const std::string& token, TokenKind kind) override;

  std::string expanded;
  PlaceholderResolver* placeholders;
};

/// Parses arguments in order until one fails; an argument that took its default leaves its token to the next.
/// Gives how many were parsed, with `cursor` behind the last token that was used.
std::size_t ParseArguments(std::string_view& cursor, std::span<CArg* const> arguments);

}  // namespace coverage
