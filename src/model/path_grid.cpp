#include "model/path_grid.h"

#include <algorithm>

#include "model/coverage_cell_table.h"

namespace coverage {

namespace {

constexpr unsigned kPageBits = 6;
constexpr unsigned kRegionBits = 16;
constexpr std::uint32_t kPagesARegion = 1u << (kRegionBits - kPageBits);
constexpr std::uint32_t kCellsAPage = 1u << (kPageBits - 1);
constexpr std::uint32_t kLastRegion = (1u << (32 - kRegionBits)) - 1;

}  // namespace

PathGrid::~PathGrid() { Release(); }

void PathGrid::Choose(std::span<CoverageCellTable* const> tables) {
  if (std::equal(tables.begin(), tables.end(), chosen_.begin(), chosen_.end())) return;
  Release();
  chosen_.assign(tables.begin(), tables.end());
  for (CoverageCellTable* table : chosen_) {
    if (table->grid_ != nullptr) table->grid_->Release();
  }
  for (CoverageCellTable* table : chosen_) {
    table->grid_ = this;
    if (table->cellCount() == 0) continue;
    ((table->start() & 1u) == 0 ? shared_ : alone_).push_back(table);
  }
  Build();
}

void PathGrid::Release() {
  Settle();
  for (CoverageCellTable* table : chosen_) table->grid_ = nullptr;
  chosen_.clear();
  shared_.clear();
  alone_.clear();
  slotCount_ = 0;
}

void PathGrid::Build() {
  regions_.clear();
  pages_.clear();
  slotCount_ = 0;
  evenEnds_ = std::any_of(shared_.begin(), shared_.end(), [](const auto* t) { return (t->end() & 1u) == 0; });
  if (shared_.empty()) return;
  std::sort(shared_.begin(), shared_.end(),
            [](const auto* a, const auto* b) { return a->start() < b->start(); });

  std::uint32_t lowest = shared_.front()->start() >> kRegionBits;
  std::uint32_t highest = 0;
  for (const auto* table : shared_) highest = std::max(highest, table->end() >> kRegionBits);
  // A region on either side stands for everything below and above.
  if (lowest > 0) --lowest;
  if (highest < kLastRegion) ++highest;
  firstRegion_ = lowest;
  regions_.resize(highest - lowest + 1);

  auto next = shared_.begin();
  std::uint64_t coveredTo = 0;  // behind the last covered page so far
  bool gapOpen = false;         // the last page stands for the whole gap
  for (std::uint32_t region = lowest; region <= highest; ++region) {
    const std::uint64_t regionStart = std::uint64_t{region} << kRegionBits;
    const std::uint64_t regionEnd = regionStart + (1u << kRegionBits);
    const bool covered = coveredTo > regionStart || (next != shared_.end() && (*next)->start() < regionEnd);
    Region& entry = regions_[region - lowest];
    if (!covered) {
      if (!gapOpen) pages_.push_back({static_cast<std::uint32_t>(slotCount_), 0});
      gapOpen = true;
      entry = {static_cast<std::uint32_t>(pages_.size() - 1), 0};
      continue;
    }
    gapOpen = false;
    entry = {static_cast<std::uint32_t>(pages_.size()), kPagesARegion - 1};
    for (std::uint64_t page = regionStart; page < regionEnd; page += 1u << kPageBits) {
      for (; next != shared_.end() && (*next)->start() < page + (1u << kPageBits); ++next) {
        coveredTo = std::max(coveredTo, std::uint64_t{(*next)->end()} + 1);
      }
      const bool inside = coveredTo > page;
      pages_.push_back({static_cast<std::uint32_t>(slotCount_), inside ? kCellsAPage - 1 : 0});
      if (inside) slotCount_ += kCellsAPage;
    }
  }
}

inline const PathGrid::Page& PathGrid::PageOf(std::uint32_t address) const {
  const std::uint32_t number = address >> kRegionBits;
  const auto last = static_cast<std::uint32_t>(regions_.size()) - 1;
  const std::uint32_t at = number < firstRegion_ ? 0 : std::min(number - firstRegion_, last);
  const Region& region = regions_[at];
  return pages_[region.firstPage + (address >> kPageBits & region.mask)];
}

void PathGrid::AddPath(std::uint32_t from, std::span<const qal::PathPair> pairs) {
  for (CoverageCellTable* table : alone_) table->AddPath(from, pairs);
  if (slotCount_ == 0) return;
  std::uint32_t current = from;
  while (!pairs.empty()) {
    if (marks_.open() && marks_.room() == 0) Settle();
    if (!marks_.open()) marks_.Open(slotCount_);
    const std::size_t taken = std::min<std::size_t>(pairs.size(), marks_.room());
    std::uint32_t* const slots = marks_.slots();
    for (const qal::PathPair& pair : pairs.first(taken)) {
      if (((current | pair.branch) & 1u) == 0 && current <= pair.branch) [[likely]] {
        const Page& begin = PageOf(current);
        const Page& end = PageOf(pair.branch);
        const std::uint32_t first = begin.base + (current >> 1 & begin.mask);
        const std::uint32_t last = end.base + (pair.branch >> 1 & end.mask);
        // Outside the union the run ends in front of `last`, and there is no cell for the flag.
        const std::uint32_t inside = end.mask & 1u;
        slots[first] += 2;
        slots[last] |= inside;
        slots[last + inside] -= 2;
      } else if (current <= pair.branch) {
        MarkOdd(current, pair.branch);
      }
      current = pair.target;
    }
    marks_.Took(static_cast<std::uint32_t>(taken));
    pairs = pairs.subspan(taken);
  }
}

void PathGrid::MarkOdd(std::uint32_t current, std::uint32_t branch) {
  if (evenEnds_) {
    // A slot cannot tell the even from the odd address of the last cell of such a range.
    for (CoverageCellTable* table : shared_) table->CountRun(current, branch);
    return;
  }
  const auto slotOf = [this](std::uint32_t address) {
    const Page& page = PageOf(address);
    return page.base + (address >> 1 & page.mask);
  };
  std::uint32_t last = std::min(branch, 0xFFFFFFFE);
  if (last >= current) {
    last -= (last - current) & 1u;
    marks_.MarkRun(slotOf(current), slotOf(last) + (PageOf(last).mask & 1u));
  }
  if (PageOf(branch).mask != 0) marks_.MarkBranch(slotOf(branch));
}

void PathGrid::Settle() {
  if (!marks_.open()) return;
  std::uint32_t* const slots = marks_.slots();
  std::uint32_t running = 0;
  for (std::size_t at = 0; at < slotCount_; at += PathMarks::kBlock) {
    PathMarks::IntegrateBlock(slots + at, std::min(PathMarks::kBlock, slotCount_ - at), running);
  }
  for (CoverageCellTable* table : shared_) {
    const Page& page = PageOf(table->start());
    const std::uint32_t* slice = slots + page.base + (table->start() >> 1 & page.mask);
    const std::size_t cells = table->cellCount();
    for (std::size_t block = 0; block * 64 < cells; ++block, slice += 64) {
      const std::size_t count = std::min<std::size_t>(64, cells - block * 64);
      std::uint32_t any = 0;
      for (std::size_t i = 0; i < count; ++i) any |= slice[i];
      if (any != 0) table->TakeBlock(block, slice);
    }
  }
  marks_.Close();
}

std::size_t PathGrid::bytes() const {
  return regions_.capacity() * sizeof(Region) + pages_.capacity() * sizeof(Page) + marks_.bytes();
}

}  // namespace coverage
