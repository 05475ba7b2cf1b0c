#include "workbench/services/expression_evaluator.h"

#include <limits>

namespace workbench {
namespace {

constexpr std::size_t kLongestText = 4096;
constexpr int kDeepestNesting = 64;

bool IsDigitOf(char c, unsigned radix, unsigned& digit) {
  if (c >= '0' && c <= '9') {
    digit = static_cast<unsigned>(c - '0');
  } else if (c >= 'a' && c <= 'z') {
    digit = static_cast<unsigned>(c - 'a') + 10;
  } else if (c >= 'A' && c <= 'Z') {
    digit = static_cast<unsigned>(c - 'A') + 10;
  } else {
    return false;
  }
  return digit < radix;
}

bool IsWordPart(char c) {
  return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == '.' ||
         c == '$' || c == ':' || c == '~' || static_cast<unsigned char>(c) >= 0x80;
}

/// Recursive descent over the text; the first error ends it.
class Parser {
 public:
  Parser(std::string_view text, unsigned radix, const SymbolLookup& symbols)
      : text_(text), radix_(radix < 2 || radix > 36 ? 10 : radix), symbols_(symbols) {}

  Evaluation Run() {
    const std::uint64_t value = Sum();
    SkipBlanks();
    if (error_.empty() && at_ < text_.size())
      Fail("'" + std::string(1, text_[at_]) + "' is not expected here");
    if (!error_.empty()) return {std::nullopt, error_};
    return {value, {}};
  }

 private:
  void Fail(std::string reason) {
    if (error_.empty()) error_ = std::move(reason);
  }

  void SkipBlanks() {
    while (at_ < text_.size() && (text_[at_] == ' ' || text_[at_] == '\t')) ++at_;
  }

  bool Take(char c) {
    SkipBlanks();
    if (at_ >= text_.size() || text_[at_] != c) return false;
    ++at_;
    return true;
  }

  std::uint64_t Sum() {
    std::uint64_t value = Product();
    while (error_.empty()) {
      if (Take('+')) {
        value += Product();
      } else if (Take('-')) {
        value -= Product();
      } else {
        break;
      }
    }
    return value;
  }

  std::uint64_t Product() {
    std::uint64_t value = Unary();
    while (error_.empty() && Take('*')) value *= Unary();
    return value;
  }

  std::uint64_t Unary() {
    bool negative = false;
    for (;;) {
      if (Take('-')) {
        negative = !negative;
      } else if (!Take('+')) {
        break;
      }
    }
    const std::uint64_t value = Primary();
    return negative ? 0 - value : value;
  }

  std::uint64_t Primary() {
    if (Take('(')) {
      if (++depth_ > kDeepestNesting) return Fail("brackets are nested too deeply"), 0;
      const std::uint64_t value = Sum();
      --depth_;
      if (error_.empty() && !Take(')')) Fail("a closing bracket is missing");
      return value;
    }
    const std::size_t start = at_;
    while (at_ < text_.size() && IsWordPart(text_[at_])) ++at_;
    if (at_ == start) {
      Fail(at_ < text_.size() ? "'" + std::string(1, text_[at_]) + "' is not expected here"
                              : "a value is missing");
      return 0;
    }
    return Word(text_.substr(start, at_ - start));
  }

  std::uint64_t Word(std::string_view word) {
    if (symbols_) {
      if (const auto value = symbols_(word)) return *value;
    }
    unsigned radix = radix_;
    std::string_view digits = word;
    if (word.size() > 2 && word[0] == '0' && (word[1] == 'x' || word[1] == 'X')) {
      radix = 16;
      digits.remove_prefix(2);
    }
    std::uint64_t value = 0;
    for (const char c : digits) {
      unsigned digit = 0;
      if (!IsDigitOf(c, radix, digit))
        return Fail("'" + std::string(word) + "' is no symbol and no number"), 0;
      if (value > (std::numeric_limits<std::uint64_t>::max() - digit) / radix) {
        return Fail("'" + std::string(word) + "' is too large"), 0;
      }
      value = value * radix + digit;
    }
    return value;
  }

  std::string_view text_;
  unsigned radix_;
  const SymbolLookup& symbols_;
  std::size_t at_ = 0;
  int depth_ = 0;
  std::string error_;
};

}  // namespace

Evaluation Evaluate(std::string_view text, unsigned radix, const SymbolLookup& symbols) {
  if (text.size() > kLongestText) return {std::nullopt, "the expression is too long"};
  return Parser(text, radix, symbols).Run();
}

std::optional<std::uint32_t> ToAddress(std::uint64_t value) {
  if (value <= 0xFFFFFFFFu || value >= 0xFFFFFFFF80000000u) return static_cast<std::uint32_t>(value);
  return std::nullopt;
}

}  // namespace workbench
