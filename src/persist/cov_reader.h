// Reads a ".COV" file section by section and hands sections and rows to a sink, which knows what to do with
// them. A file never dictates how much memory is used. UI thread only.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "persist/cov_file.h"
#include "persist/cov_grammar.h"
#include "platform/files.h"

namespace coverage {

/// The key lines of one section. The views are valid during the call that hands the section over.
struct CovSection {
  std::uint32_t start = 0;  ///< as it stands in the file: not aligned, not put in order
  std::uint32_t end = 0;
  std::uint32_t enableStatus = 0;  ///< 0 or 1
  std::uint32_t percentage = 0;    ///< typed files only
  std::string startText;
  std::string endText;
  std::string functionName;  ///< typed files only
  std::string fileName;      ///< of a "File_name" line, else empty
};

class CovSectionSink {
 public:
  enum class Take : std::uint8_t {
    kRows,  ///< rows follow, then EndSection
    kSkip,  ///< neither rows nor EndSection for this section
    kStop,  ///< nothing more is read
  };
  virtual ~CovSectionSink() = default;
  virtual Take BeginSection(const CovSection& section) = 0;
  /// Some of the section's rows: element i of both is one row. Pass values are 0 to 3.
  virtual void Rows(std::span<const qal::CountPair> counts, std::span<const qal::CountPair> pass) = 0;
  virtual void EndSection() {}
};

/// Whether a section of this file may carry a "File_name" line in front of its column line.
enum class SectionFileLine : std::uint8_t { kAllowed, kNone };

class CovReader {
 public:
  /// `file` is open and at its start.
  explicit CovReader(platform::TextReader& file) : file_(file) {}

  /// Reads lines 1 to 3, and line 4 of a "File" file. False when line 1 or 2 has no "="; the type is known
  /// even then.
  bool ReadHeader(CovHeader& header);
  /// Reads the sections of a file of the header's type. A section with a missing or unreadable key line is
  /// skipped with its rows. False when the sink stopped.
  bool ReadSections(CovType type, SectionFileLine fileLine, CovSectionSink& sink);

 private:
  bool NextLine(std::string_view& line, std::size_t limit);
  bool FindSection();
  bool ReadKeyLine(std::string_view wanted, std::string& value);
  bool ReadSection(CovType type, SectionFileLine fileLine, CovSection& section);
  void ReadRows(CovType type, CovSectionSink& sink);

  platform::TextReader& file_;
  std::string_view line_;  ///< as NextLine gave it last
  bool again_ = false;     ///< NextLine gives `line_` once more
};

/// What one file may have laid out: ranges as long as a person can enter, and not without end many of them.
class CellBudget {
 public:
  /// Whether this range, in either order, may be laid out too.
  bool Take(std::uint32_t start, std::uint32_t end);

 private:
  static constexpr std::uint64_t kMostBytes = std::uint64_t{64}
                                              << 20;  ///< of target code; 9 bytes of memory for 2
  std::uint64_t taken_ = 0;
};

}  // namespace coverage
