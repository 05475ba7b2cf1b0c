// Puts a ".COV" file together in one large chunk and hands it on when full. UI thread only.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "persist/cov_grammar.h"
#include "platform/files.h"

namespace coverage {

struct CovHeader;

/// One section's key lines.
struct CovSectionLines {
  std::string_view sectionName;  ///< kWindowSection or kInstanceSection
  std::uint32_t number = 1;
  std::uint32_t start = 0;
  std::uint32_t end = 0;
  std::uint32_t enableStatus = 0;
  std::uint32_t percentage = 0;
  std::string_view functionName;
};

class CovOutput {
 public:
  static constexpr std::size_t kChunkBytes = 256 * 1024;

  /// `file` is open; the caller closes it after Finish and learns there whether everything was written.
  explicit CovOutput(platform::TextWriter& file);

  /// Header lines 1 to 3, and line 4 when `withFileLine` is set.
  void Header(const CovHeader& header, bool withFileLine);
  /// Section line, key lines and column line.
  void Section(const CovSectionLines& section);
  /// One row. `pass` is 0 to 3; an address without a cell is written as 0 and "-".
  void Row(std::uint64_t count, std::uint32_t pass, std::string_view address) {
    if (address.size() > kLongestAddress || at_ > last_) return LongRow(count, pass, address);
    at_ = FormatRow(at_, count, pass, address);
  }
  /// Hands on what is left.
  void Finish() { Flush(); }

 private:
  static constexpr std::size_t kLongestAddress = 256;

  void Line(std::string_view first, std::string_view second = {});
  void Append(std::string_view text);
  void LongRow(std::uint64_t count, std::uint32_t pass, std::string_view address);
  void Flush();

  platform::TextWriter& file_;
  std::unique_ptr<char[]> chunk_;
  char* at_;
  char* last_;  ///< a row with an address of usual size may begin up to here
  bool started_ = false;
};

}  // namespace coverage
