#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/rc/resource_source.h"

/// Text files cut into lines of words.
namespace rc {

struct Word {
  std::string text;
  bool quoted = false;
};

/// One line that is neither empty nor a comment. The readers take its words one after the other; what does
/// not fit throws a SourceError that names the file and the line.
class Line {
 public:
  Line(const std::string& file, int number, std::string_view text);

  std::size_t indent() const { return indent_; }
  const std::string& bare() const { return bare_; }
  /// Cuts the line into words, with texts between double quotes and their escapes.
  void Split();

  bool AtEnd() const { return next_ == words_.size(); }
  std::string TakeWord(const char* what);
  std::string TakeText(const char* what);
  std::uint32_t TakeNumber(const char* what, std::uint32_t highest = 0xFFFFFFFF);
  std::int16_t TakePlace(const char* what) { return static_cast<std::int16_t>(TakeNumber(what, 0x7FFF)); }
  /// The next word must be `word`.
  void Expect(const char* word);
  void ExpectEnd();
  [[noreturn]] void Fail(const std::string& what) const;

 private:
  const Word& Take(const char* what);

  std::string file_;
  int number_;
  std::size_t indent_;
  std::string bare_;
  std::vector<Word> words_;
  std::size_t next_ = 0;
};

/// The lines of a file without empty ones and comments, which begin with '#'.
std::vector<Line> LinesOf(std::string_view text, const std::string& file);

/// A decimal or, after "0x", hexadecimal number; false when the text is none or is above 32 bits.
bool ParseNumber(const std::string& text, std::uint32_t* number);

}  // namespace rc
