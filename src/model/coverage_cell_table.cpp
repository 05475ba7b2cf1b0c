#include "model/coverage_cell_table.h"

#include <algorithm>
#include <bit>

#include "model/path_grid.h"

namespace coverage {

namespace {

constexpr std::uint32_t kLastWalked = 0xFFFFFFFE;  ///< where every walk ends at the latest

/// The addresses that a walk passes inside [start, end]; none when first > last.
struct WalkedPart {
  std::uint64_t first;
  std::uint64_t last;
};

WalkedPart Clip(std::uint32_t current, std::uint32_t branch, std::uint32_t start, std::uint32_t end) {
  const std::uint64_t first = current >= start ? current : std::uint64_t{start} + ((start - current) & 1u);
  std::uint64_t last = std::min({branch, end, kLastWalked});
  if (last >= first) last -= (last - first) & 1u;
  return {first, last};
}

}  // namespace

CoverageCellTable::~CoverageCellTable() {
  if (grid_ != nullptr) grid_->Release();
}

std::int64_t CoverageCellTable::IndexOf(std::uint32_t address) const {
  if (address < start_ || address > end_) return -1;
  return (address - start_) / kCellStep;
}

std::optional<CoverageCell> CoverageCellTable::SettledCellAt(std::uint32_t address) const {
  const std::int64_t index = IndexOf(address);
  if (index < 0 || static_cast<std::size_t>(index) >= times_.size()) return std::nullopt;
  const auto cell = static_cast<std::size_t>(index);
  const std::size_t block = cell / 64;
  const unsigned bit = cell % 64;
  return CoverageCell{times_[cell], static_cast<std::uint32_t>((taken_[block] >> bit & 1u) |
                                                               (fallen_[block] >> bit & 1u) << 1)};
}

std::optional<CoverageCell> CoverageCellTable::CellAt(std::uint32_t address) {
  Settle();
  return SettledCellAt(address);
}

void CoverageCellTable::Layout(std::uint32_t start, std::uint32_t end) {
  Reset();
  if (start > end) std::swap(start, end);
  const std::size_t cells = std::size_t{(end - start) / kCellStep} + 1;
  const std::size_t blocks = (cells + 63) / 64;
  try {
    times_.assign(cells, 0);
    taken_.assign(blocks, 0);
    fallen_.assign(blocks, 0);
    executed_.assign(blocks, 0);
  } catch (...) {
    Reset();
    throw;
  }
  start_ = start;
  end_ = end;
}

void CoverageCellTable::Reset() {
  if (grid_ != nullptr) grid_->Release();
  marks_.Close();
  for (auto* values : {&times_, &taken_, &fallen_, &executed_}) std::vector<std::uint64_t>().swap(*values);
  start_ = end_ = 0;
}

void CoverageCellTable::ClearAll() {
  if (grid_ != nullptr) grid_->Settle();
  marks_.Close();
  std::fill(times_.begin(), times_.end(), 0);
  for (auto* bits : {&taken_, &fallen_, &executed_}) std::fill(bits->begin(), bits->end(), 0);
}

void CoverageCellTable::AddCounts(std::span<const qal::CountPair> records) {
  const std::size_t cells = times_.size();
  for (const qal::CountPair& record : records) {
    const std::size_t cell = (record.address - start_) / kCellStep;
    if (record.address < start_ || record.address > end_ || cell >= cells) continue;
    const std::uint64_t times = times_[cell] += record.value;
    const std::uint64_t bit = std::uint64_t{1} << cell % 64;
    executed_[cell / 64] = times != 0 ? executed_[cell / 64] | bit : executed_[cell / 64] & ~bit;
  }
}

void CoverageCellTable::OrPass(std::span<const qal::CountPair> records) {
  for (const qal::CountPair& record : records) AddOne(record.address, 0, record.value);
}

void CoverageCellTable::AddOne(std::uint32_t address, std::uint64_t count, std::uint32_t bits) {
  const std::int64_t index = IndexOf(address);
  if (index < 0 || static_cast<std::size_t>(index) >= times_.size()) return;
  const auto cell = static_cast<std::size_t>(index);
  const std::size_t block = cell / 64;
  const std::uint64_t bit = std::uint64_t{1} << cell % 64;
  times_[cell] += count;
  if ((bits & kPassTaken) != 0) taken_[block] |= bit;
  if ((bits & kPassFallen) != 0) fallen_[block] |= bit;
  executed_[block] = times_[cell] != 0 ? executed_[block] | bit : executed_[block] & ~bit;
}

void CoverageCellTable::AddPath(std::uint32_t from, std::span<const qal::PathPair> pairs) {
  if (times_.empty() || pairs.empty()) return;
  std::uint32_t current = from;
  const std::uint32_t start = start_;
  // A walk of odd steps ends one short of the top, so there the quick test must not take it.
  const bool atTop = (start & 1u) != 0 && end_ == 0xFFFFFFFF;
  const auto cells = static_cast<std::uint32_t>(atTop ? 0 : times_.size());
  while (!pairs.empty()) {
    if (marks_.open() && marks_.room() == 0) SettleOwnMarks();
    if (!marks_.open()) marks_.Open(times_.size());
    const std::size_t taken = std::min<std::size_t>(pairs.size(), marks_.room());
    std::uint32_t* const slots = marks_.slots();
    for (const qal::PathPair& pair : pairs.first(taken)) {
      // Rotated by one, an odd distance becomes a huge one: two comparisons tell the plain run inside the
      // range.
      const std::uint32_t first = std::rotr(current - start, 1);
      const std::uint32_t last = std::rotr(pair.branch - start, 1);
      if (first <= last && last < cells) [[likely]] {
        slots[first] += 2;
        slots[last] |= 1;
        slots[std::size_t{last} + 1] -= 2;
      } else if (current <= pair.branch) {
        MarkClipped(current, pair.branch);
      }
      current = pair.target;
    }
    marks_.Took(static_cast<std::uint32_t>(taken));
    pairs = pairs.subspan(taken);
  }
}

void CoverageCellTable::MarkClipped(std::uint32_t current, std::uint32_t branch) {
  if (branch < start_ || current > end_) return;
  const WalkedPart part = Clip(current, branch, start_, end_);
  if (part.first <= part.last) {
    marks_.MarkRun((part.first - start_) / kCellStep, (part.last - start_) / kCellStep + 1);
  }
  if (branch <= end_) marks_.MarkBranch((branch - start_) / kCellStep);
}

void CoverageCellTable::CountRun(std::uint32_t current, std::uint32_t branch) {
  if (current > branch || branch < start_ || current > end_) return;
  const WalkedPart part = Clip(current, branch, start_, end_);
  for (std::uint64_t a = part.first; a <= part.last; a += kCellStep) {
    AddOne(static_cast<std::uint32_t>(a), 1, 0);
  }
  AddOne(branch, 0, kPassTaken);
}

bool CoverageCellTable::pending() const { return marks_.open() || (grid_ != nullptr && grid_->pending()); }

void CoverageCellTable::Settle() {
  if (grid_ != nullptr && grid_->pending()) grid_->Settle();
  if (marks_.open()) SettleOwnMarks();
}

void CoverageCellTable::SettleOwnMarks() {
  std::uint32_t running = 0;
  std::uint32_t* const slots = marks_.slots();
  const std::size_t cells = times_.size();
  for (std::size_t block = 0; block * 64 < cells; ++block) {
    const std::size_t count = std::min<std::size_t>(64, cells - block * 64);
    if (PathMarks::IntegrateBlock(slots + block * 64, count, running)) TakeBlock(block, slots + block * 64);
  }
  marks_.Close();
}

void CoverageCellTable::TakeBlock(std::size_t block, const std::uint32_t* slots) {
  const std::size_t count = std::min<std::size_t>(64, times_.size() - block * 64);
  std::uint64_t* const times = times_.data() + block * 64;
  std::uint64_t flags = 0;
  std::uint64_t executed = 0;
  for (std::size_t i = 0; i < count; ++i) {
    times[i] += slots[i] >> 1;
    flags |= std::uint64_t{slots[i] & 1u} << i;
    executed |= std::uint64_t{times[i] != 0} << i;
  }
  taken_[block] |= flags;
  executed_[block] = executed;
}

std::span<const std::uint64_t> CoverageCellTable::ExecutedBits() {
  Settle();
  return executed_;
}

std::size_t CoverageCellTable::bytes() const {
  return (times_.capacity() + taken_.capacity() + fallen_.capacity() + executed_.capacity()) * 8 +
         marks_.bytes();
}

}  // namespace coverage
