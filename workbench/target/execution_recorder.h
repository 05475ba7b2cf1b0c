// The record of an execution, made from the events of the simulator: exact, however the run is cut into
// slices.
//
// A block event says that a straight stretch of code is about to run, not that it will run to its end. So the
// newest block stays pending until the next event, or the program counter after a return, shows how far it
// came. Fetched instructions come from blocks, for they hold the skipped members of IT blocks too; which
// members passed comes from code events, which skipped instructions do not raise.
//
// One thread. Knows nothing of the simulator behind the events.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "workbench/target/simulator.h"
#include "workbench/target/thumb.h"

namespace workbench {

class ExecutionRecorder {
 public:
  /// A stretch of memory in which code may run. The code of a changeable one is decoded anew each time.
  struct Region {
    std::uint32_t start = 0;
    std::uint32_t last = 0;
    bool changeable = false;
  };
  /// Gives the halfword at an address, 0 where there is none.
  using ReadHalfword = std::function<std::uint16_t(std::uint32_t)>;

  ExecutionRecorder(const std::vector<Region>& regions, ReadHalfword read);
  ~ExecutionRecorder();

  void SetMode(RecordMode mode, std::uint32_t pc);

  // --- events; true asks the simulator to stop before what the event announces ---
  /// Prepares for a slice from `pc`: stop at the first block after `soft` more instructions, never after
  /// more than `hard`. With `exact` every instruction raises a code event and `hard` is met inside a
  /// block too.
  void BeginSlice(std::uint32_t pc, std::uint64_t soft, std::uint64_t hard, bool exact);
  bool OnBlock(std::uint32_t address, std::uint32_t size) {
    if (pending_ != nullptr) CommitPending();
    pending_ = FindBlock(address, size);
    pendingStart_ = address;
    lastCode_ = kNone;
    ++blocks_;
    stoppedAtBlock_ =
        committed_ >= softLimit_ || (committed_ + pending_->instructions > hardLimit_ && StopInside());
    return stoppedAtBlock_;
  }
  /// Address of the block at whose event the simulator was stopped; nothing when code events followed it.
  std::optional<std::uint32_t> StoppedAtBlock() const {
    return stoppedAtBlock_ && lastCode_ == kNone ? std::optional(pendingStart_) : std::nullopt;
  }
  bool OnCode(std::uint32_t address) {
    if (passing_ != nullptr) CommitPass();
    lastCode_ = address;
    if (counting_) WatchPass(address);
    return address == stopAt_;
  }
  /// A code event of a breakpoint. False when it only announces the instruction that the slice began
  /// with.
  bool OnBreakpoint(std::uint32_t address) {
    lastCode_ = address;
    return !(blocks_ == 1 && address == sliceStart_);
  }
  /// The simulator returned and stands at `pc`.
  void EndSlice(std::uint32_t pc);
  /// The program counter was moved by a reset.
  void Jump(std::uint32_t pc);

  /// Instructions fetched since the recorder was made.
  std::uint64_t Committed() const { return committed_; }

  // --- the record ---
  std::uint32_t PathStart() const { return start_; }
  std::size_t PathWaiting() const { return pairs_.size(); }
  /// With `closing`, up to the program counter; else up to the last branch.
  PathReport TakePath(bool closing);
  CountsReport TakeCounts();
  /// The code in this range is about to be rewritten.
  void ForgetCode(std::uint32_t address, std::uint32_t size);

 private:
  static constexpr std::uint32_t kNone = 0xffffffff;  // odd, so never the address of an instruction
  static constexpr std::uint32_t kPageBits = 10;      // blocks end at boundaries of 1 KiB
  static constexpr std::uint32_t kHalfwords = (1u << kPageBits) / 2;

  struct Block {
    std::uint64_t count = 0;
    std::uint16_t size = 0;  // 0: not decoded
    std::uint16_t instructions = 0;
    std::uint16_t lastOffset = 0;  // of the last instruction
    bool endsConditional = false;  // the last instruction is a conditional branch
  };
  struct Page {
    std::uint32_t base = 0;
    bool changeable = false;
    std::array<Block, kHalfwords> blocks{};
    std::array<std::uint64_t, kHalfwords> fetched{};
    std::array<std::uint64_t, kHalfwords> passed{};
    std::array<std::uint8_t, kHalfwords> outcomes{};
    std::array<bool, kHalfwords> isMember{};  // of an IT block
  };
  struct PagedRegion {
    Region region;
    std::vector<std::unique_ptr<Page>> pages;
  };

  static std::uint32_t Slot(std::uint32_t address) { return (address & ((1u << kPageBits) - 1)) / 2; }

  Page* FindPage(std::uint32_t address) {
    if ((address >> kPageBits) == lastPageNumber_) return lastPage_;
    return FindPageSlowly(address);
  }
  Block* FindBlock(std::uint32_t address, std::uint32_t size) {
    Page* page = FindPage(address);
    Block* block = &page->blocks[Slot(address)];
    pendingPage_ = page;
    if (block->size != size || page->changeable) Decode(*page, *block, address, size);
    return block;
  }
  void CommitPending() {
    Block& block = *pending_;
    if (pendingStart_ != flowEnd_) {
      if (tracing_) pairs_.push_back({last_, pendingStart_});
      if (openOutcome_ != nullptr) *openOutcome_ |= 1;
    } else if (openOutcome_ != nullptr) {
      *openOutcome_ |= 2;
    }
    openOutcome_ = nullptr;
    if (counting_) {
      ++block.count;
      if (block.endsConditional)
        openOutcome_ = &pendingPage_->outcomes[Slot(pendingStart_ + block.lastOffset)];
      if (pendingPage_->changeable) SpreadCount(*pendingPage_, block, pendingStart_);
    }
    flowEnd_ = pendingStart_ + block.size;
    last_ = pendingStart_ + block.lastOffset;
    committed_ += block.instructions;
    runOpen_ = true;
    if (passing_ != nullptr) CommitPass();
  }
  void CommitPass() {
    ++*passing_;
    passing_ = nullptr;
  }
  void WatchPass(std::uint32_t address) {
    Page* page = FindPage(address);
    if (page->isMember[Slot(address)]) passing_ = &page->passed[Slot(address)];
  }

  Page* FindPageSlowly(std::uint32_t address);
  void Decode(Page& page, Block& block, std::uint32_t address, std::uint32_t size);
  void SpreadCount(Page& page, Block& block, std::uint32_t address);
  void CommitUpTo(std::uint32_t pc);
  bool StopInside();
  static std::uint8_t MemberOutcome(const Page& page, std::uint32_t slot) {
    return (page.passed[slot] > 0 ? 1 : 0) | (page.fetched[slot] > page.passed[slot] ? 2 : 0);
  }
  std::uint32_t SizeAt(std::uint32_t address) const { return thumb::IsWide(read_(address)) ? 4 : 2; }

  std::vector<PagedRegion> regions_;
  Page elsewhere_;  // code outside every region: simulated, never counted
  ReadHalfword read_;
  bool tracing_ = false;
  bool counting_ = false;

  // the flow: where the committed instructions end, and what waits behind them
  Block* pending_ = nullptr;
  Page* pendingPage_ = nullptr;
  std::uint32_t pendingStart_ = 0;
  std::uint32_t flowEnd_ = 0;
  std::uint32_t last_ = 0;
  std::uint64_t committed_ = 0;
  std::uint8_t* openOutcome_ = nullptr;  // of the conditional branch that the flow ends with
  std::uint64_t* passing_ = nullptr;     // of the IT member that was announced last
  std::uint32_t lastCode_ = kNone;
  std::uint32_t carryAddress_ = kNone;  // where the rest of an IT block goes on that a block boundary cut
  unsigned carryMembers_ = 0;

  // the slice
  std::uint64_t softLimit_ = 0;
  std::uint64_t hardLimit_ = 0;
  bool exact_ = false;
  std::uint32_t stopAt_ = kNone;
  std::uint32_t sliceStart_ = 0;
  std::uint64_t blocks_ = 0;
  bool stoppedAtBlock_ = false;

  // the path
  std::uint32_t start_ = 0;
  std::uint32_t standsAt_ = 0;
  bool runOpen_ = false;  // something was executed since the last pair, or since the start
  std::vector<RecordPair> pairs_;

  std::uint32_t lastPageNumber_ = kNone;
  Page* lastPage_ = nullptr;
};

}  // namespace workbench
