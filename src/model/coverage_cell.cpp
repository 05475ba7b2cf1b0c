#include "model/coverage_cell.h"

#include <array>

namespace coverage {

namespace {
constexpr std::array<std::string_view, 5> kPassTexts = {"-", "T", "F", "T/F", " 0"};
}

std::string_view PassText(std::uint32_t pass) {
  return kPassTexts[pass == kNoCellPass ? kNoCellPass : pass & kPassMask];
}

int PassOfText(std::string_view text) {
  for (int pass = 0; pass <= static_cast<int>(kPassMask); ++pass) {
    if (kPassTexts[static_cast<std::size_t>(pass)] == text) return pass;
  }
  return -1;
}

void SetCounters(CoverageRow& row, const CoverageCell* cell) {
  row.times = cell != nullptr ? " " + std::to_string(cell->times) : " 0";
  row.pass = PassText(cell != nullptr ? cell->pass & kPassMask : 0);
}

}  // namespace coverage
