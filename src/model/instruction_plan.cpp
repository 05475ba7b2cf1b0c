#include "model/instruction_plan.h"

#include <algorithm>
#include <bit>

namespace coverage {

namespace {

/// Remembers the addresses at which a source had nothing.
class NotesFailures final : public InstructionSource {
 public:
  NotesFailures(InstructionSource& source, std::vector<std::uint32_t>& failed, std::size_t most)
      : source_(source), failed_(failed), most_(most) {}
  bool InstructionAt(std::uint32_t address, Instruction& out) override {
    if (source_.InstructionAt(address, out)) return true;
    if (failed_.size() < most_) failed_.push_back(address);
    return false;
  }

 private:
  InstructionSource& source_;
  std::vector<std::uint32_t>& failed_;
  std::size_t most_;
};

#if defined(__x86_64__)
/// The same loop with the processor's own count of bits, which the baseline of this architecture lacks.
__attribute__((target("popcnt"))) std::uint64_t CountCommonNatively(const std::uint64_t* a,
                                                                    const std::uint64_t* b,
                                                                    std::size_t words) {
  std::uint64_t even = 0;
  std::uint64_t odd = 0;
  std::size_t i = 0;
  for (; i + 2 <= words; i += 2) {
    even += static_cast<std::uint64_t>(__builtin_popcountll(a[i] & b[i]));
    odd += static_cast<std::uint64_t>(__builtin_popcountll(a[i + 1] & b[i + 1]));
  }
  if (i < words) even += static_cast<std::uint64_t>(__builtin_popcountll(a[i] & b[i]));
  return even + odd;
}
#endif

/// Bits that are set in both.
std::uint64_t CountCommon(const std::uint64_t* a, const std::uint64_t* b, std::size_t words) {
#if defined(__x86_64__)
  if (__builtin_cpu_supports("popcnt")) return CountCommonNatively(a, b, words);
#endif
  std::uint64_t count = 0;
  for (std::size_t i = 0; i < words; ++i) count += static_cast<std::uint64_t>(std::popcount(a[i] & b[i]));
  return count;
}

}  // namespace

void InstructionPlan::Update(std::uint32_t start, std::uint32_t end,
                             std::optional<InstructionAlignment> alignment, const CoverageCellTable& table,
                             DisassemblyCache& cache, InstructionSource& source) {
  CachedInstructions cached(cache, source);
  Key key{cache.generation(), start, end, table.start(), table.end(), table.cellCount(), alignment};
  if (key == key_) {
    if (FailedStill(source)) return;
    // There is memory where there was none: whatever is known of the code may be wrong.
    cache.Drop();
    key.generation = cache.generation();
  }

  key_ = {};
  starts_.assign((table.cellCount() + 63) / 64, 0);
  further_.clear();
  failed_.clear();
  recorded_ = 0;
  NotesFailures noting(cached, failed_, kMaxFailed);
  ForEachRecorded(InstructionWalk(start, end, alignment, noting), table.cellCount(),
                  [&](std::uint32_t, const Instruction& instruction) {
                    Record(AddressOfText(instruction.addressText), table);
                  });
  further_.shrink_to_fit();
  key_ = key;
}

bool InstructionPlan::FailedStill(InstructionSource& source) const {
  Instruction instruction;
  return std::none_of(failed_.begin(), failed_.end(),
                      [&](std::uint32_t address) { return source.InstructionAt(address, instruction); });
}

void InstructionPlan::Record(std::uint32_t address, const CoverageCellTable& table) {
  ++recorded_;
  const std::int64_t index = table.IndexOf(address);
  if (index < 0) return;  // never executed here
  const auto cell = static_cast<std::size_t>(index);
  const std::uint64_t bit = std::uint64_t{1} << cell % 64;
  if ((starts_[cell / 64] & bit) != 0) {
    further_.push_back(static_cast<std::uint32_t>(cell));
  } else {
    starts_[cell / 64] |= bit;
  }
}

std::uint64_t InstructionPlan::Executed(CoverageCellTable& table) const {
  const std::span<const std::uint64_t> executed = table.ExecutedBits();
  const std::size_t words = std::min(executed.size(), starts_.size());
  std::uint64_t count = CountCommon(executed.data(), starts_.data(), words);
  for (const std::uint32_t cell : further_) count += executed[cell / 64] >> cell % 64 & 1u;
  return count;
}

std::size_t InstructionPlan::bytes() const {
  return starts_.capacity() * 8 + (further_.capacity() + failed_.capacity()) * 4;
}

}  // namespace coverage
