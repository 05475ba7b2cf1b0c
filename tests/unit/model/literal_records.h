#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <vector>

#include "model/coverage_cell_table.h"
#include "model/instruction_walk.h"

/// The records written down word for word, one step after the other: what the fast ones must agree with.
namespace literal {

struct Table {
  std::uint32_t start = 0;
  std::uint32_t end = 0;
  std::vector<coverage::CoverageCell> cells;

  void Layout(std::uint32_t first, std::uint32_t last) {
    start = std::min(first, last);
    end = std::max(first, last);
    cells.assign((end - start) / 2 + 1, {});
  }
  void ClearAll() { cells.assign(cells.size(), {}); }
  coverage::CoverageCell* CellAt(std::uint32_t address) {
    if (address < start || address > end || (address - start) / 2 >= cells.size()) return nullptr;
    return &cells[(address - start) / 2];
  }
  void AddOne(std::uint32_t address, std::uint64_t count, std::uint32_t bits) {
    if (auto* cell = CellAt(address)) {
      cell->times += count;
      cell->pass |= bits & 3;
    }
  }
  void AddPath(std::uint32_t from, std::span<const qal::PathPair> pairs) {
    std::uint32_t current = from;
    for (const auto& [branch, target] : pairs) {
      if (current <= branch) {
        for (std::uint64_t a = current; a <= branch && a <= 0xFFFFFFFE; a += 2) {
          AddOne(static_cast<std::uint32_t>(a), 1, 0);
        }
        AddOne(branch, 0, 1);
      }
      current = target;
    }
  }
};

/// "address:times/pass" of every cell that is not zero.
inline std::string Picture(const Table& table) {
  std::string text;
  for (std::size_t i = 0; i < table.cells.size(); ++i) {
    const auto& cell = table.cells[i];
    if (cell == coverage::CoverageCell{}) continue;
    text += std::to_string(table.start + 2 * i) + ":" + std::to_string(cell.times) + "/" +
            std::to_string(cell.pass) + " ";
  }
  return text;
}

inline std::string Picture(coverage::CoverageCellTable& table) {
  Table copy;
  copy.start = table.start();
  copy.end = table.end();
  for (std::size_t i = 0; i < table.cellCount(); ++i) {
    copy.cells.push_back(*table.CellAt(static_cast<std::uint32_t>(table.start() + 2 * i)));
  }
  return Picture(copy);
}

/// Percentage by recording every text and looking each up.
inline std::uint32_t Percentage(std::uint32_t start, std::uint32_t end,
                                std::optional<coverage::InstructionAlignment> alignment,
                                coverage::CoverageCellTable& table, coverage::InstructionSource& source) {
  const std::size_t limit = table.cellCount();
  std::uint32_t aligned = start;
  std::uint64_t walk = start;
  if (alignment) {
    aligned = start - start % alignment->alignment;
    walk = aligned >= alignment->offset ? aligned - alignment->offset : aligned;
  }
  std::vector<std::string> texts;
  std::uint32_t lastSize = 2;
  while (walk < end) {
    coverage::Instruction instruction;
    if (source.InstructionAt(static_cast<std::uint32_t>(walk), instruction)) {
      if (walk + instruction.size > aligned && limit > 0) {
        if (texts.size() == limit) texts.pop_back();
        texts.emplace_back(instruction.addressText);
      }
      lastSize = instruction.size;
    }
    walk += lastSize;
  }
  std::uint64_t executed = 0;
  for (const std::string& text : texts) {
    const auto cell = table.CellAt(static_cast<std::uint32_t>(std::stoul(text, nullptr, 16)));
    if (cell && cell->times > 0) ++executed;
  }
  return texts.empty() ? 0 : static_cast<std::uint32_t>(executed * 100 / texts.size());
}

}  // namespace literal
