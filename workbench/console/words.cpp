#include "workbench/console/words.h"

#include <charconv>

namespace workbench {
namespace {

char Lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r'; }

}  // namespace

std::string Counted(std::uint64_t count, std::string_view what) {
  return std::to_string(count) + " " + std::string(what) + (count == 1 ? "" : "s");
}

bool SameWord(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (Lower(a[i]) != Lower(b[i])) return false;
  }
  return true;
}

std::optional<std::uint64_t> ParseNumber(std::string_view text) {
  int radix = 10;
  if (text.size() > 2 && text[0] == '0' && Lower(text[1]) == 'x') {
    radix = 16;
    text.remove_prefix(2);
  }
  std::uint64_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, radix);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return value;
}

Words::Words(std::string_view line) : line_(line) {
  std::size_t at = 0;
  for (;;) {
    while (at < line_.size() && IsBlank(line_[at])) ++at;
    if (at >= line_.size()) return;
    Word word{{}, at};
    bool quoted = false;
    for (; at < line_.size() && (quoted || !IsBlank(line_[at])); ++at) {
      if (line_[at] != '"') {
        word.text += line_[at];
      } else if (quoted && at + 1 < line_.size() && line_[at + 1] == '"') {
        word.text += '"';
        ++at;
      } else {
        quoted = !quoted;
      }
    }
    words_.push_back(std::move(word));
  }
}

std::string Words::Take(std::string_view what) {
  if (Empty()) throw VerbError(std::string(what) + " is missing");
  return words_[next_++].text;
}

bool Words::TakeIf(std::string_view word) {
  if (Empty() || !SameWord(words_[next_].text, word)) return false;
  ++next_;
  return true;
}

std::uint64_t Words::TakeNumber(std::string_view what, std::uint64_t highest) {
  const std::string word = Take(what);
  const auto value = ParseNumber(word);
  if (!value) throw VerbError(std::string(what) + " is no number: " + word);
  if (*value > highest)
    throw VerbError(std::string(what) + " is above " + std::to_string(highest) + ": " + word);
  return *value;
}

bool Words::TakeSwitch(std::string_view what) {
  const std::string word = Take(what);
  if (SameWord(word, "on")) return true;
  if (SameWord(word, "off")) return false;
  throw VerbError(std::string(what) + " must be on or off, not " + word);
}

std::string Words::Rest() {
  if (Empty()) return {};
  const Word& word = words_[next_];
  std::string rest = Left() == 1 ? word.text : line_.substr(word.at);
  next_ = words_.size();
  while (!rest.empty() && IsBlank(rest.back())) rest.pop_back();
  return rest;
}

void Words::End() const {
  if (!Empty()) throw VerbError("too many words, from: " + words_[next_].text);
}

}  // namespace workbench
