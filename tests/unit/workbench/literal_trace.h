// What a program executes, found the slow and literal way: one uncut run in a bare simulator that notes every
// executed instruction; skipped members of IT blocks are filled in by looking at the code. The recorder is
// held against it.
#pragma once

#include <cstdint>
#include <map>
#include <memory>

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
/// Walks the path 2 bytes a step and adds one to each of the steps that are keys of `starts`: other steps are
/// the second halves of instructions.
void Walk(std::map<std::uint32_t, std::uint64_t>& times, const workbench::PathReport& report,
          const std::map<std::uint32_t, std::uint64_t>& starts);

}  // namespace workbench_test
