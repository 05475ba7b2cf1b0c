#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace workbench {

/// A verb that cannot be carried out; what() is the reason that the person reads after "error: ".
class VerbError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The words of one console line, taken from the front. Words are divided by blanks; a word in double quotes
/// may hold blanks, and a doubled quote inside stands for one. Backslashes are ordinary characters.
class Words {
 public:
  explicit Words(std::string_view line);

  bool Empty() const { return next_ >= words_.size(); }
  std::size_t Left() const { return words_.size() - next_; }

  /// The next word without taking it; empty at the end.
  std::string Peek() const { return Empty() ? std::string() : words_[next_].text; }

  /// Takes the next word. VerbError "<what> is missing" at the end.
  std::string Take(std::string_view what);

  /// Takes the next word when it is `word` (case ignored).
  bool TakeIf(std::string_view word);

  /// Takes a decimal or 0x number of at most `highest`. VerbError names `what` when it is missing, no number
  /// or too big.
  std::uint64_t TakeNumber(std::string_view what, std::uint64_t highest);

  /// Takes "on" or "off".
  bool TakeSwitch(std::string_view what);

  /// Everything not yet taken, as it stands in the line; quotes around a single last word are removed.
  std::string Rest();

  /// VerbError when words are left.
  void End() const;

 private:
  struct Word {
    std::string text;
    std::size_t at;
  };
  std::string line_;
  std::vector<Word> words_;
  std::size_t next_ = 0;
};

/// A number as `Words::TakeNumber` reads it, or nothing.
std::optional<std::uint64_t> ParseNumber(std::string_view text);

/// "1 line", "2 lines".
std::string Counted(std::uint64_t count, std::string_view what);

/// Whether two texts are equal, the case of ASCII letters ignored.
bool SameWord(std::string_view a, std::string_view b);

}  // namespace workbench
