#include "commands/arguments.h"

#include "platform/text.h"
#include "util/placeholder_resolver.h"

namespace coverage {

void CArg::Reset() {
  text.clear();
  error = kNoError;
  defaulted = 0;
}

bool CArg::DefaultOr(Error why) {
  if (required != 0) {
    error = why;
    return false;
  }
  defaulted = 1;
  return true;
}

bool CArgNumberUnsigned::Parse(const std::string& token, TokenKind kind) {
  Reset();
  if (kind == TokenKind::kWord) text = token;
  value = defaultValue;
  if (text.empty()) return DefaultOr(kMissing);
  std::uint64_t evaluated = 0;
  qal::Status status = qal::kFail;
  if (evaluator != nullptr) {
    const platform::Wide wide(text);
    status = radix != 0 ? evaluator->EvaluateInRadix(wide.get(), radix, &evaluated)
                        : evaluator->EvaluateDefault(wide.get(), &evaluated);
  }
  if (qal::Failed(status)) return DefaultOr(kNoNumber);
  value = evaluated;
  if (value < minValue || value > maxValue) {
    error = kOutOfRange;
    return false;
  }
  return true;
}

CArgKeyword::CArgKeyword(bool isRequired, const char* list, std::int32_t standard)
    : CArg(isRequired), defaultIndex(standard) {
  while (*list != '\0') {
    keywords.emplace_back(list);
    list += keywords.back().size() + 1;
  }
}

bool CArgKeyword::Parse(const std::string& token, TokenKind) {
  Reset();
  index = -1;
  text = token;
  if (!text.empty()) {
    std::int32_t prefixed = -1;
    for (std::size_t i = 0; i < keywords.size(); ++i) {
      const std::string& keyword = keywords[i];
      if (text.size() > keyword.size()) continue;
      if (!platform::EqualNoCase(std::string_view(keyword).substr(0, text.size()), text)) continue;
      prefixed = static_cast<std::int32_t>(i);
      if (text.size() == keyword.size()) break;
    }
    if (prefixed >= 0) {
      index = prefixed;
      return true;
    }
  }
  if (!DefaultOr(text.empty() ? kMissing : kNoKeyword)) return false;
  index = defaultIndex;
  return true;
}

bool CArgString::Parse(const std::string& token, TokenKind) {
  Reset();
  text = token;
  value = token;
  if (!value.empty()) return true;
  value = defaultValue;
  return DefaultOr(kMissing);
}

bool CArgStringFileName::Parse(const std::string& token, TokenKind kind) {
  const bool parsed = CArgString::Parse(token, kind);
  expanded = placeholders != nullptr ? placeholders->ExpandPlaceholders(value) : value;
  return parsed;
}

std::size_t ParseArguments(std::string_view& cursor, std::span<CArg* const> arguments) {
  std::size_t count = 0;
  std::string token;
  for (CArg* const argument : arguments) {
    const std::string_view before = cursor;
    TokenKind kind;
    NextToken(cursor, token, kind);
    if (!argument->Parse(token, kind)) {
      cursor = before;
      break;
    }
    ++count;
    if (argument->defaulted != 0) cursor = before;
  }
  return count;
}

}  // namespace coverage
