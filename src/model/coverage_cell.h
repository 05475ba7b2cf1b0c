#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// What is counted for one 2-byte address step, and the texts it is shown with. Values; any thread.
namespace coverage {

/// Bytes that one cell stands for.
inline constexpr std::uint32_t kCellStep = 2;
/// Longest range that a person or a file may ask for: last address minus first.
inline constexpr std::uint32_t kMaxRangeSpan = 0x1FFFFF;

/// Branch outcome bits of a cell.
inline constexpr std::uint32_t kPassTaken = 1;
inline constexpr std::uint32_t kPassFallen = 2;
inline constexpr std::uint32_t kPassMask = 3;

struct CoverageCell {
  std::uint64_t times = 0;  ///< how often the instruction that starts here was executed
  std::uint32_t pass = 0;   ///< kPass… bits, 0 to 3
  friend bool operator==(const CoverageCell&, const CoverageCell&) = default;
};

/// Index of the pass text that files hold for an address without a cell.
inline constexpr std::uint32_t kNoCellPass = 4;

/// "-", "T", "F", "T/F" for 0 to 3, " 0" for kNoCellPass; any other value reads as its two low bits.
std::string_view PassText(std::uint32_t pass);
/// 0 to 3 for the four texts of cells, compared exactly; -1 for any other.
int PassOfText(std::string_view text);

/// Texts of one displayed address, in column order.
struct CoverageRow {
  std::string times;
  std::string pass;
  std::string address;
  std::string assembler;
  std::string source;
  friend bool operator==(const CoverageRow&, const CoverageRow&) = default;
};

/// Writes columns Times and Pass: " %u" and the pass text, or " 0" and "-" where there is no cell (null).
void SetCounters(CoverageRow& row, const CoverageCell* cell);

}  // namespace coverage
