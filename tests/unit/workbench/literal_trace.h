// What a program executes, found the slow and literal way: one uncut run in a bare simulator that notes every
// executed instruction; skipped members of IT blocks are filled in by looking at the code. The recorder is
// held against it.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <vector>

#include "workbench/target/simulator.h"

namespace workbench_test {

struct Totals {
  std::map<std::uint32_t, std::uint64_t> times;   ///< by address of the instruction
  std::map<std::uint32_t, std::uint32_t> passes;  ///< 1 held, 2 failed; conditional instructions only
  friend bool operator==(const Totals&, const Totals&) = default;
};

/// Runs from reset up to `end`, or until `most` instructions were fetched.
Totals LiteralTrace(const workbench::Program& program, std::uint32_t end,
                    std::uint64_t most = ~std::uint64_t{0});

/// Adds a report's values to the totals.
void Add(Totals& totals, const workbench::CountsReport& report);
/// Times of every 2-byte step of flash, from walking paths step by step.
class Walked {
 public:
  void Add(const workbench::PathReport& report);
  /// Those of the steps at which an instruction starts, which are the keys of `starts`, and that were met at
  /// all.
  std::map<std::uint32_t, std::uint64_t> Times(const std::map<std::uint32_t, std::uint64_t>& starts) const;

 private:
  std::vector<std::uint64_t> steps_ = std::vector<std::uint64_t>(0x20000);
};

}  // namespace workbench_test
