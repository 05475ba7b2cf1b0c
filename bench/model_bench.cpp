#include <algorithm>
#include <cstdio>
#include <memory>
#include <random>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "harness.h"
#include "model/coverage_cell_table.h"
#include "model/coverage_instance.h"
#include "model/disassembly_cache.h"
#include "model/instruction_plan.h"
#include "model/path_grid.h"
#include "unit/loose_records.h"

// What the coverage records cost, against floors and plain versions of the same work in the same run.

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

/// The record that counts each instruction of a run, one after the other.
struct PlainTable {
  std::uint32_t start = kStart, end = kEnd;
  std::vector<coverage::CoverageCell> cells = std::vector<coverage::CoverageCell>(kCells);

  coverage::CoverageCell* CellAt(std::uint32_t address) {
    if (address < start || address > end) return nullptr;
    return &cells[(address - start) / 2];
  }
  void AddPath(std::uint32_t from, const std::vector<qal::PathPair>& pairs) {
    std::uint32_t current = from;
    for (const auto& [branch, target] : pairs) {
      if (current <= branch) {
        for (std::uint64_t a = current; a <= branch; a += 2) {
          if (auto* cell = CellAt(static_cast<std::uint32_t>(a))) ++cell->times;
        }
        if (auto* cell = CellAt(branch)) cell->pass |= 1;
      }
      current = target;
    }
  }
};

void PathRows(bench::Suite& suite) {
  static const auto big32 = Report(10'000'000, kStart, kCells, 32);
  static const auto big4 = Report(10'000'000, kStart, kCells, 4);
  static CoverageCellTable table;
  static PlainTable plain;
  static std::vector<std::uint32_t> floorCells(kCells);
  table.Layout(kStart, kEnd);

  suite.Measure("floor: two increments a pair", 10e6, [] {
    std::uint32_t current = kStart;
    for (const auto& [branch, target] : big32) {
      ++floorCells[(current - kStart) / 2];
      ++floorCells[(branch - kStart) / 2];
      current = target;
    }
    bench::Keep(floorCells[0]);
  });
  const auto whole = [&suite](const char* what, const std::vector<qal::PathPair>& report) {
    suite.Measure(what, 10e6, [&report] {
      table.AddPath(kStart, report);
      table.Settle();
    });
  };
  whole("report of 32 a run, read", big32);
  whole("report of 4 a run, read", big4);
  suite.Measure("plain walk of 32 a run", 10e6, [] { plain.AddPath(kStart, big32); });
  suite.Measure("plain walk of 4 a run", 10e6, [] { plain.AddPath(kStart, big4); });
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

  suite.RequireAtMost("path report, one range, against two increments a pair", "report of 32 a run, read",
                      "floor: two increments a pair", 2.5);
  suite.RequireFaster("path report, against the plain walk, 32 a run", "report of 32 a run, read",
                      "plain walk of 32 a run", 12);
  suite.RequireFaster("path report, against the plain walk, 4 a run", "report of 4 a run, read",
                      "plain walk of 4 a run", 6);
  suite.RequireAtMost("reports of 1,000 pairs, a pair, against one of ten million", "reports of 1000 pairs",
                      "report of 32 a run, marked only", 3);
}

void ManyRangesRows(bench::Suite& suite) {
  constexpr std::uint32_t kTables = 1000;
  constexpr std::size_t kPairs = 200'000;
  constexpr std::size_t kGridPairs = 10'000'000;
  static std::vector<std::unique_ptr<CoverageCellTable>> tables;
  static std::vector<CoverageCellTable*> chosen;
  for (std::uint32_t i = 0; i < kTables; ++i) {
    tables.push_back(std::make_unique<CoverageCellTable>());
    tables.back()->Layout(kStart + i * 200, kStart + i * 200 + 199);
    chosen.push_back(tables.back().get());
  }
  static const auto report = Report(kGridPairs, kStart, kTables * 100, 16);
  suite.Measure("range by range", kPairs, [] {
    for (auto* table : chosen) {
      table->AddPath(kStart, std::span(report).first(kPairs));
      table->Settle();
    }
  });
  static coverage::PathGrid grid;
  suite.Measure("one grid, read", kGridPairs, [] {
    grid.Choose(chosen);
    grid.AddPath(kStart, report);
    for (auto* table : chosen) table->Settle();
  });
  suite.RequireFaster("path report into 1,000 ranges, against range by range", "one grid, read",
                      "range by range", 200);
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
  static std::unordered_map<std::uint32_t, std::uint32_t> lengths;
  static PlainTable plain;
  table.Layout(kStart, kEnd);
  table.AddPath(kStart, Report(30'000, kStart, kCells, 16));
  table.Settle();
  plan.Update(kStart, kEnd, {}, table, cache, code);
  for (std::uint64_t at = kStart; at < kEnd; at += Code::SizeAt(static_cast<std::uint32_t>(at))) {
    lengths[static_cast<std::uint32_t>(at)] = Code::SizeAt(static_cast<std::uint32_t>(at));
    plain.CellAt(static_cast<std::uint32_t>(at))->times = table.CellAt(static_cast<std::uint32_t>(at))->times;
  }
  static std::uint64_t fast, slow;
  suite.Measure("percentage", 100, [] {
    for (std::uint32_t i = 0; i < 100; ++i) {
      table.AddOne(kStart + 2 * i, 1, 0);  // so that there is something to compute
      plan.Update(kStart, kEnd, {}, table, cache, code);
      fast = coverage::PercentageOf(plan.Executed(table), plan.recorded());
      bench::Keep(fast);
    }
  });
  suite.Measure("percentage through a hash map", 1, [] {
    std::uint64_t recorded = 0, executed = 0;
    for (std::uint64_t at = kStart; at < kEnd;) {
      const auto address = static_cast<std::uint32_t>(at);
      ++recorded;
      const auto* cell = plain.CellAt(address);
      if (cell != nullptr && cell->times > 0) ++executed;
      at += lengths.find(address)->second;
    }
    slow = executed * 100 / recorded;
    bench::Keep(slow);
  });
  suite.RequireFaster("percentage, code known, against a walk through a hash map", "percentage",
                      "percentage through a hash map", 1000);
  suite.RequireFigure(
      "both percentages differ by",
      [] { return static_cast<double>(fast > slow ? fast - slow : slow - fast); }, 0);
}

void CacheRows(bench::Suite& suite) {
  constexpr int kRows = 50;
  constexpr std::uint32_t kPages = 64;
  constexpr int kTimes = 100;
  struct Maps {
    std::unordered_map<std::uint32_t, std::uint32_t> lengths;
    std::unordered_map<std::uint32_t, std::string> lines, codes;
  };
  static DisassemblyCache cache;
  static Maps maps;
  static Code code;
  static std::vector<std::uint32_t> pages;
  for (std::uint32_t at = kStart; at < kEnd; at += Code::SizeAt(at)) {
    Instruction instruction;
    cache.Fetch(at, code, instruction);
    maps.lengths[at] = instruction.size;
    maps.lines[at] = instruction.addressText;
    maps.codes[at] = instruction.codeText;
  }
  // The pages that a person comes back to, all over the range.
  for (std::uint32_t i = 0; i < kPages; ++i) pages.push_back(kStart + i * 32768);
  const auto shuffle = [] { std::shuffle(pages.begin(), pages.end(), std::mt19937(pages[0])); };
  static std::size_t seen;
  const auto look = [](std::string_view line, std::string_view text) {
    seen +=
        static_cast<unsigned char>(line[0]) + static_cast<unsigned char>(text[0]) + line.size() + text.size();
  };
  suite.Measure("page of instruction texts", kPages * kTimes, shuffle, [look] {
    for (int i = 0; i < kTimes; ++i) {
      for (std::uint32_t at : pages) {
        for (int row = 0; row < kRows; ++row) {
          Instruction instruction;
          cache.Fetch(at, code, instruction);
          look(instruction.addressText, instruction.codeText);
          at += instruction.size;
        }
      }
    }
    bench::Keep(seen);
  });
  suite.Measure("page of texts from hash maps", kPages * kTimes, shuffle, [look] {
    for (int i = 0; i < kTimes; ++i) {
      for (std::uint32_t at : pages) {
        for (int row = 0; row < kRows; ++row) {
          look(maps.lines.find(at)->second, maps.codes.find(at)->second);
          at += maps.lengths.find(at)->second;
        }
      }
    }
    bench::Keep(seen);
  });
  suite.RequireFaster("instruction texts of a page, against growing hash maps", "page of instruction texts",
                      "page of texts from hash maps", 3);
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
