#include <algorithm>
#include <cstdio>
#include <memory>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "harness.h"
#include "model/coverage_cell_table.h"
#include "model/coverage_instance.h"
#include "model/disassembly_cache.h"
#include "model/instruction_plan.h"
#include "model/path_grid.h"
#include "unit/loose_records.h"

// What the coverage records cost, against floors in the same run: the least that the same work takes.

namespace {

using coverage::CoverageCellTable;
using coverage::DisassemblyCache;
using coverage::Instruction;

constexpr std::uint32_t kStart = 0x08000000;
constexpr std::uint32_t kCells = 1048576;
constexpr std::uint32_t kEnd = kStart + 2 * kCells - 1;

/// Runs of `length` instructions at random places of [start, start + 2 * cells).
std::vector<qal::PathPair> Report(std::size_t pairs, std::uint32_t start, std::uint32_t cells,
                                  std::uint32_t length) {
  std::mt19937 random(17);
  std::vector<qal::PathPair> report(pairs);
  std::uint32_t current = start;
  for (auto& pair : report) {
    pair.branch = current + 2 * (length - 1);
    pair.target = current = start + 2 * (random() % (cells - length));
  }
  return report;
}

/// The least that a report costs: a number changed at both ends of each run.
void Floor(const std::vector<qal::PathPair>& report) {
  static std::vector<std::uint32_t> cells(kCells);
  std::uint32_t current = kStart;
  for (const auto& [branch, target] : report) {
    ++cells[(current - kStart) / 2];
    ++cells[(branch - kStart) / 2];
    current = target;
  }
  bench::Keep(cells[0]);
}

void PathRows(bench::Suite& suite) {
  static const auto big32 = Report(10'000'000, kStart, kCells, 32);
  static const auto big4 = Report(10'000'000, kStart, kCells, 4);
  static CoverageCellTable table;
  table.Layout(kStart, kEnd);

  const auto against = [&suite](const std::string& runs, const std::vector<qal::PathPair>& report) {
    suite.Measure("floor: two increments a pair, " + runs, 10e6, [&report] { Floor(report); });
    suite.Measure("report, " + runs, 10e6, [&report] {
      table.AddPath(kStart, report);
      table.Settle();
    });
    suite.RequireAtMost("path report, " + runs + ", against two increments a pair", "report, " + runs,
                        "floor: two increments a pair, " + runs, 3.2);
  };
  against("32 a run", big32);
  against("4 a run", big4);
  suite.Measure(
      "report of 32 a run, marked only", 10e6, [] { table.Settle(); }, [] { table.AddPath(kStart, big32); });
  suite.Measure(
      "reports of 1000 pairs", 10e6,
      [] {
        table.Settle();
        table.AddPath(kStart, std::span(big32).first(1));
      },
      [] {
        for (std::size_t at = 0; at < big32.size(); at += 1000) {
          table.AddPath(kStart, std::span(big32).subspan(at, 1000));
        }
      });
  suite.RequireAtMost("reports of 1,000 pairs, a pair, against one of ten million", "reports of 1000 pairs",
                      "report of 32 a run, marked only", 2);
}

void ManyRangesRows(bench::Suite& suite) {
  constexpr std::uint32_t kTables = 1000;
  constexpr std::size_t kPairs = 10'000'000;
  static std::vector<std::unique_ptr<CoverageCellTable>> tables;
  static std::vector<CoverageCellTable*> chosen;
  for (std::uint32_t i = 0; i < kTables; ++i) {
    tables.push_back(std::make_unique<CoverageCellTable>());
    tables.back()->Layout(kStart + i * 200, kStart + i * 200 + 199);
    chosen.push_back(tables.back().get());
  }
  static const auto report = Report(kPairs, kStart, kTables * 100, 16);
  static CoverageCellTable whole;
  whole.Layout(kStart, kStart + kTables * 200 - 1);
  suite.Measure("one range over all", kPairs, [] {
    whole.AddPath(kStart, report);
    whole.Settle();
  });
  static coverage::PathGrid grid;
  suite.Measure("one grid, read", kPairs, [] {
    grid.Choose(chosen);
    grid.AddPath(kStart, report);
    for (auto* table : chosen) table->Settle();
  });
  suite.RequireAtMost("path report into 1,000 ranges, against one range over them", "one grid, read",
                      "one range over all", 3.5);
}

/// Gives 2- and 4-byte instructions, without a target behind it.
class Code final : public coverage::InstructionSource {
 public:
  static std::uint32_t SizeAt(std::uint32_t address) { return address % 16 == 8 ? 4 : 2; }
  bool InstructionAt(std::uint32_t address, Instruction& out) override {
    std::snprintf(line_, sizeof line_, "%08x", address);
    std::snprintf(code_, sizeof code_, "%08x  ldr r%u, [pc, #%u]", address * 2654435761u, address / 2 % 8,
                  address % 1021);
    out = {SizeAt(address), line_, code_};
    return true;
  }

 private:
  char line_[16];
  char code_[48];
};

void PercentageRows(bench::Suite& suite) {
  static CoverageCellTable table;
  static DisassemblyCache cache;
  static Code code;
  static coverage::InstructionPlan plan;
  static std::uint64_t computed;
  table.Layout(kStart, kEnd);
  table.AddPath(kStart, Report(30'000, kStart, kCells, 16));
  table.Settle();
  plan.Update(kStart, kEnd, {}, table, cache, code);
  suite.Measure("percentage", 100, [] {
    for (std::uint32_t i = 0; i < 100; ++i) {
      table.AddOne(kStart + 2 * i, 1, 0);  // so that there is something to compute
      plan.Update(kStart, kEnd, {}, table, cache, code);
      computed = coverage::PercentageOf(plan.Executed(table), plan.recorded());
      bench::Keep(computed);
    }
  });
  // Bits of the cells that begin an instruction, then of those that were executed.
  static std::vector<std::uint64_t> bits(2 * kCells / 64, 0x5555555555555555);
  suite.Measure("floor: look at two bits a cell", 100, [] {
    for (std::uint32_t i = 0; i < 100; ++i) {
      const std::uint64_t* const starts = bits.data();
      const std::uint64_t* const executed = starts + kCells / 64;
      std::uint64_t sums[8] = {};
      for (std::size_t word = 0; word < kCells / 64; word += 8) {
        for (std::size_t k = 0; k < 8; ++k) sums[k] += starts[word + k] & executed[word + k];
      }
      bench::Keep(sums);
    }
  });
  suite.RequireAtMost("percentage, code known, against looking at two bits a cell", "percentage",
                      "floor: look at two bits a cell", 2);
  suite.RequireFigure(
      "percentage differs from a walk over the cells by",
      [] {
        std::uint64_t instructions = 0;
        std::uint64_t run = 0;
        for (std::uint64_t at = kStart; at < kEnd; at += Code::SizeAt(static_cast<std::uint32_t>(at))) {
          ++instructions;
          run += table.CellAt(static_cast<std::uint32_t>(at))->times > 0 ? 1 : 0;
        }
        const std::uint64_t walked = run * 100 / instructions;
        return static_cast<double>(computed > walked ? computed - walked : walked - computed);
      },
      0);
}

void CacheRows(bench::Suite& suite) {
  static constexpr int kRows = 50;
  static constexpr std::uint32_t kPages = 64;
  static constexpr int kTimes = 100;
  static DisassemblyCache cache;
  static std::vector<Instruction> known(kCells);
  static Code code;
  static std::vector<std::uint32_t> pages;
  for (std::uint32_t at = kStart; at < kEnd; at += Code::SizeAt(at)) {
    cache.Fetch(at, code, known[(at - kStart) / 2]);
  }
  // The pages that a person comes back to, all over the range.
  for (std::uint32_t i = 0; i < kPages; ++i) pages.push_back(kStart + i * 32768);
  const auto shuffle = [] { std::shuffle(pages.begin(), pages.end(), std::mt19937(pages[0])); };
  static std::size_t seen;
  const auto look = [](const Instruction& instruction) {
    const std::string_view line = instruction.addressText;
    const std::string_view text = instruction.codeText;
    seen +=
        static_cast<unsigned char>(line[0]) + static_cast<unsigned char>(text[0]) + line.size() + text.size();
    return instruction.size;
  };
  const auto measure = [&](const char* what, auto at) {
    suite.Measure(what, kPages * kTimes, shuffle, [look, at] {
      for (int i = 0; i < kTimes; ++i) {
        for (std::uint32_t address : pages) {
          for (int row = 0; row < kRows; ++row) address += look(at(address));
        }
      }
      bench::Keep(seen);
    });
  };
  measure("page of instruction texts", [](std::uint32_t address) {
    Instruction instruction;
    cache.Fetch(address, code, instruction);
    return instruction;
  });
  measure("floor: texts from an array",
          [](std::uint32_t address) -> const Instruction& { return known[(address - kStart) / 2]; });
  suite.RequireAtMost("instruction texts of a page, against texts from an array", "page of instruction texts",
                      "floor: texts from an array", 1.6);
}

void MemoryRows(bench::Suite& suite) {
  // One instance with everything it holds: counters, bits of executed cells, bits of instruction starts.
  static const auto measure = [](bool pending) {
    const std::size_t before = bench::AllocatedBytes();
    DisassemblyCache cache;
    coverage::LooseInstance instance(nullptr, kStart, kEnd, {}, 1);
    instance.counts->table().Layout(kStart, kEnd);
    instance.ComputePercentage(false, cache);
    const auto report = Report(1000, kStart, kCells, 16);
    instance.counts->AddPathReport(kStart, report);
    if (!pending) instance.counts->table().Settle();
    const std::size_t bytes = bench::AllocatedBytes() - before - report.capacity() * sizeof(report[0]);
    return static_cast<double>(bytes) / kCells;
  };
  suite.RequireFigure(
      "bytes a cell at rest", [] { return measure(false); }, 9);
  suite.RequireFigure(
      "bytes a cell with a report pending", [] { return measure(true); }, 14);
}

}  // namespace

int main(int argc, char** argv) {
  bench::Suite suite("model");
  PathRows(suite);
  ManyRangesRows(suite);
  PercentageRows(suite);
  CacheRows(suite);
  MemoryRows(suite);
  return suite.Run(argc, argv);
}
