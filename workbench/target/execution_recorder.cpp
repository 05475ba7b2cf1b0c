#include "workbench/target/execution_recorder.h"

#include <algorithm>
#include <utility>

namespace workbench {

ExecutionRecorder::ExecutionRecorder(const std::vector<Region>& regions, ReadHalfword read)
    : read_(std::move(read)) {
  elsewhere_.changeable = true;
  for (const Region& region : regions) {
    PagedRegion paged{region, {}};
    paged.pages.resize((region.last >> kPageBits) - (region.start >> kPageBits) + 1);
    regions_.push_back(std::move(paged));
  }
}

ExecutionRecorder::~ExecutionRecorder() = default;

void ExecutionRecorder::SetMode(RecordMode mode, std::uint32_t pc) {
  const bool trace = mode == RecordMode::kPath || mode == RecordMode::kBoth;
  const bool count = mode == RecordMode::kCounts || mode == RecordMode::kBoth;
  if (!trace || !tracing_) {
    pairs_ = {};
    start_ = flowEnd_ = pc;
    runOpen_ = false;
  }
  if (!count) TakeCounts();
  tracing_ = trace;
  counting_ = count;
  standsAt_ = pc;
}

void ExecutionRecorder::BeginSlice(std::uint32_t pc, std::uint64_t soft, std::uint64_t hard, bool exact) {
  sliceStart_ = pc;
  hardLimit_ = hard > ~committed_ ? ~std::uint64_t{0} : committed_ + hard;
  softLimit_ = std::min(hardLimit_, committed_ + soft);
  exact_ = exact;
  if (exact) hardLimit_ = softLimit_;
  stopAt_ = kNone;
  blocks_ = 0;
  stoppedAtBlock_ = false;
  pending_ = nullptr;
  passing_ = nullptr;
}

bool ExecutionRecorder::StopInside() {
  if (!exact_) return true;
  std::uint32_t address = pendingStart_;
  const std::uint32_t end = pendingStart_ + pending_->size;
  for (std::uint64_t left = hardLimit_ - committed_; left > 0; --left) address += SizeAt(address);
  // The simulator cannot stop among the members of an IT block.
  while (address < end && pendingPage_->isMember[Slot(address)]) address += SizeAt(address);
  if (address < end) stopAt_ = address;
  return false;
}

void ExecutionRecorder::EndSlice(std::uint32_t pc) {
  if (passing_ != nullptr) {
    if (pc == lastCode_)
      passing_ = nullptr;
    else
      CommitPass();
  }
  if (pending_ != nullptr) CommitUpTo(pc);
  pending_ = nullptr;
  if (openOutcome_ != nullptr) *openOutcome_ |= pc == flowEnd_ ? 2 : 1;
  openOutcome_ = nullptr;
  standsAt_ = pc;
}

void ExecutionRecorder::CommitUpTo(std::uint32_t pc) {
  const bool inside = pc - pendingStart_ < pending_->size;
  // A code event behind the program counter: the block ran to its end and branched back into itself.
  const bool returned = lastCode_ != kNone && lastCode_ > pc;
  if (!inside || returned) {
    CommitPending();
    return;
  }
  if (pc == pendingStart_) return;
  // The part that was executed, as a block of its own.
  Block part;
  Decode(*pendingPage_, part, pendingStart_, pc - pendingStart_);
  pending_ = &part;
  CommitPending();
  if (counting_) SpreadCount(*pendingPage_, part, pendingStart_);
}

void ExecutionRecorder::Jump(std::uint32_t pc) {
  standsAt_ = pc;
  if (!runOpen_ && pairs_.empty()) start_ = flowEnd_ = pc;
}

PathReport ExecutionRecorder::TakePath(bool closing) {
  PathReport report{start_, {}};
  if (!tracing_) return report;
  if (closing) {
    if (runOpen_) pairs_.push_back({last_, standsAt_});
    runOpen_ = false;
    start_ = flowEnd_ = standsAt_;
  } else if (!pairs_.empty()) {
    start_ = pairs_.back().second;
  }
  report.pairs.swap(pairs_);
  return report;
}

CountsReport ExecutionRecorder::TakeCounts() {
  CountsReport report;
  for (PagedRegion& region : regions_) {
    for (const auto& page : region.pages) {
      if (page == nullptr) continue;
      for (std::uint32_t slot = 0; slot < kHalfwords; ++slot) {
        Block& block = page->blocks[slot];
        if (block.count != 0) SpreadCount(*page, block, page->base + 2 * slot);
      }
    }
    for (const auto& page : region.pages) {
      if (page == nullptr) continue;
      for (std::uint32_t slot = 0; slot < kHalfwords; ++slot) {
        const std::uint32_t address = page->base + 2 * slot;
        std::uint32_t bits = std::exchange(page->outcomes[slot], std::uint8_t{0});
        if (page->isMember[slot]) bits |= MemberOutcome(*page, slot);
        page->passed[slot] = 0;
        std::uint64_t fetched = std::exchange(page->fetched[slot], 0);
        if (bits != 0) report.passes.push_back({address, bits});
        for (; fetched > 0xffffffff; fetched -= 0xffffffff) report.counts.push_back({address, 0xffffffff});
        if (fetched > 0) report.counts.push_back({address, static_cast<std::uint32_t>(fetched)});
      }
    }
  }
  return report;
}

void ExecutionRecorder::ForgetCode(std::uint32_t address, std::uint32_t size) {
  if (size == 0) return;
  const std::uint32_t firstPage = address >> kPageBits;
  const std::uint32_t lastPage = (address + (size - 1)) >> kPageBits;
  for (PagedRegion& region : regions_) {
    for (const auto& page : region.pages) {
      // A block of the page before may end with an instruction that reaches over the boundary.
      if (page == nullptr) continue;
      const std::uint32_t number = page->base >> kPageBits;
      if (number > lastPage || number + 1 < firstPage) continue;
      for (std::uint32_t slot = 0; slot < kHalfwords; ++slot) {
        Block& block = page->blocks[slot];
        if (block.count != 0) SpreadCount(*page, block, page->base + 2 * slot);
        block = {};
      }
      for (std::uint32_t slot = 0; slot < kHalfwords; ++slot) {
        if (!std::exchange(page->isMember[slot], false)) continue;
        page->outcomes[slot] |= MemberOutcome(*page, slot);
      }
    }
  }
  carryAddress_ = kNone;
}

ExecutionRecorder::Page* ExecutionRecorder::FindPageSlowly(std::uint32_t address) {
  lastPageNumber_ = address >> kPageBits;
  lastPage_ = &elsewhere_;
  for (PagedRegion& region : regions_) {
    if (address < region.region.start || address > region.region.last) continue;
    auto& page = region.pages[(address >> kPageBits) - (region.region.start >> kPageBits)];
    if (page == nullptr) {
      page = std::make_unique<Page>();
      page->base = address >> kPageBits << kPageBits;
      page->changeable = region.region.changeable;
    }
    lastPage_ = page.get();
    break;
  }
  return lastPage_;
}

void ExecutionRecorder::Decode(Page& page, Block& block, std::uint32_t address, std::uint32_t size) {
  if (block.count != 0) SpreadCount(page, block, address);
  block = {};
  block.size = static_cast<std::uint16_t>(size);
  unsigned members = address == carryAddress_ ? carryMembers_ : 0;
  std::uint32_t offset = 0;
  while (offset < size) {
    const std::uint16_t first = read_(address + offset);
    const bool wide = thumb::IsWide(first);
    bool& isMember = page.isMember[Slot(address + offset)];
    isMember = members > 0 || (isMember && !page.changeable);
    if (members > 0) --members;
    if (const unsigned more = thumb::ItMembers(first)) members = more;
    block.endsConditional = thumb::IsConditionalBranch(first, wide ? read_(address + offset + 2) : 0);
    block.lastOffset = static_cast<std::uint16_t>(offset);
    ++block.instructions;
    offset += wide ? 4 : 2;
  }
  if (members > 0) {
    carryAddress_ = address + size;
    carryMembers_ = members;
  }
}

void ExecutionRecorder::SpreadCount(Page& page, Block& block, std::uint32_t address) {
  for (unsigned i = 0; i < block.instructions; ++i) {
    page.fetched[Slot(address)] += block.count;
    address += SizeAt(address);
  }
  block.count = 0;
}

}  // namespace workbench
