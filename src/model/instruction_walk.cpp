#include "model/instruction_walk.h"

#include <string>

namespace coverage {

InstructionWalk::InstructionWalk(std::uint32_t start, std::uint32_t end,
                                 std::optional<InstructionAlignment> alignment, InstructionSource& source)
    : source_(&source), end_(end), aligned_(start) {
  std::uint32_t first = start;
  if (alignment && alignment->alignment != 0) {
    aligned_ = start - start % alignment->alignment;
    first = aligned_ >= alignment->offset ? aligned_ - alignment->offset : aligned_;
  }
  position_ = first;
}

bool InstructionWalk::Step(bool& found, Instruction& out) {
  found = false;
  if (position_ >= end_) return false;
  address_ = static_cast<std::uint32_t>(position_);
  if (source_->InstructionAt(address_, out)) {
    lastSize_ = out.size;
    found = position_ + out.size > aligned_;
  }
  position_ += lastSize_;
  return true;
}

bool InstructionWalk::Next(Instruction& out) {
  bool found = false;
  while (Step(found, out)) {
    if (found) return true;
  }
  return false;
}

void ForEachRecorded(InstructionWalk walk, std::uint64_t limit,
                     const std::function<void(std::uint32_t, const Instruction&)>& take) {
  if (limit == 0) return;
  std::uint64_t recorded = 0;
  std::uint32_t lastAddress = 0;
  std::uint32_t lastSize = 0;
  std::string addressText;
  std::string codeText;
  for (Instruction instruction; walk.Next(instruction);) {
    if (recorded < limit) ++recorded;
    if (recorded < limit) {
      take(walk.address(), instruction);
      continue;
    }
    lastAddress = walk.address();
    lastSize = instruction.size;
    addressText = instruction.addressText;
    codeText = instruction.codeText;
  }
  if (recorded == limit) take(lastAddress, {lastSize, addressText, codeText});
}

}  // namespace coverage
