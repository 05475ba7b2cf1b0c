#include "platform/rc/source_lines.h"

#include <charconv>

namespace rc {

bool ParseNumber(const std::string& text, std::uint32_t* number) {
  const bool hexadecimal = text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X');
  const char* first = text.data() + (hexadecimal ? 2 : 0);
  const char* last = text.data() + text.size();
  const auto [end, error] = std::from_chars(first, last, *number, hexadecimal ? 16 : 10);
  return error == std::errc{} && end == last;
}

Line::Line(const std::string& file, int number, std::string_view text) : file_(file), number_(number) {
  const std::size_t first = text.find_first_not_of(' ');
  indent_ = first == std::string_view::npos ? 0 : first;
  const std::size_t last = text.find_last_not_of(" \t\r");
  bare_ =
      last == std::string_view::npos ? std::string{} : std::string(text.substr(indent_, last + 1 - indent_));
}

void Line::Fail(const std::string& what) const {
  throw SourceError(file_ + ":" + std::to_string(number_) + ": " + what);
}

void Line::Split() {
  std::size_t i = 0;
  while (i < bare_.size()) {
    if (bare_[i] == ' ' || bare_[i] == '\t') {
      ++i;
      continue;
    }
    Word word;
    if (bare_[i] != '"') {
      const std::size_t end = bare_.find_first_of(" \t", i);
      word.text = bare_.substr(i, end == std::string::npos ? end : end - i);
      i += word.text.size();
    } else {
      word.quoted = true;
      for (++i;; ++i) {
        if (i >= bare_.size()) Fail("the text has no closing double quote");
        if (bare_[i] == '"') break;
        if (bare_[i] != '\\') {
          word.text += bare_[i];
          continue;
        }
        const char escape = ++i < bare_.size() ? bare_[i] : '\0';
        switch (escape) {
          case 'n':
            word.text += '\n';
            break;
          case 't':
            word.text += '\t';
            break;
          case '"':
          case '\\':
            word.text += escape;
            break;
          default:
            Fail("unknown escape in a text; known are \\n, \\t, \\\" and \\\\");
        }
      }
      ++i;
    }
    words_.push_back(std::move(word));
  }
}

const Word& Line::Take(const char* what) {
  if (AtEnd()) Fail(std::string(what) + " is missing");
  return words_[next_++];
}

std::string Line::TakeWord(const char* what) {
  const Word& word = Take(what);
  if (word.quoted) Fail(std::string(what) + " must not stand in double quotes");
  return word.text;
}

std::string Line::TakeText(const char* what) {
  const Word& word = Take(what);
  if (!word.quoted) Fail(std::string(what) + " must stand in double quotes");
  return word.text;
}

std::uint32_t Line::TakeNumber(const char* what, std::uint32_t highest) {
  const std::string word = TakeWord(what);
  std::uint32_t number = 0;
  if (!ParseNumber(word, &number)) Fail(std::string(what) + " is not a number: " + word);
  if (number > highest) Fail(std::string(what) + " is above " + std::to_string(highest) + ": " + word);
  return number;
}

void Line::Expect(const char* word) {
  if (const std::string found = TakeWord(("\"" + std::string(word) + "\"").c_str()); found != word) {
    Fail("expected \"" + std::string(word) + "\", found \"" + found + "\"");
  }
}

void Line::ExpectEnd() {
  if (!AtEnd()) Fail("too much on the line, from \"" + words_[next_].text + "\" on");
}

std::vector<Line> LinesOf(std::string_view text, const std::string& file) {
  std::vector<Line> lines;
  int number = 0;
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    Line line(file, ++number, text.substr(0, end));
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    if (!line.bare().empty() && line.bare()[0] != '#') lines.push_back(std::move(line));
  }
  return lines;
}

}  // namespace rc
