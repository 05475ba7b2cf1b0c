#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "model/instruction_reader.h"

namespace coverage {

/// The walk over the instructions of a range that percentages, files, images and displays share. Steps in 64
/// bits, so that it ends at the top of the address space too. A value; the thread of its source.
class InstructionWalk {
 public:
  /// Begins below `start` where the alignment says that instructions may. `source` must outlive the walk.
  InstructionWalk(std::uint32_t start, std::uint32_t end, std::optional<InstructionAlignment> alignment,
                  InstructionSource& source);

  /// The next instruction that ends behind the aligned start and begins before the end; false when there is
  /// none left. An address without an instruction is passed over by the last size, at first by 2.
  bool Next(Instruction& out);
  /// One step: true with `found` when an instruction was taken or skipped, false at the end. For walks that
  /// must be able to stop between two instructions however many fail.
  bool Step(bool& found, Instruction& out);

  /// Address of the instruction that Next gave last.
  std::uint32_t address() const { return address_; }
  /// First address of the range after alignment.
  std::uint32_t alignedStart() const { return aligned_; }
  /// Address that the last step found nothing at; meaningful after a Step without `found`.
  std::uint64_t position() const { return position_; }

 private:
  InstructionSource* source_;
  std::uint64_t position_;
  std::uint64_t end_;
  std::uint32_t aligned_;
  std::uint32_t address_ = 0;
  std::uint32_t lastSize_ = 2;
};

/// Hands on at most `limit` instructions of the walk: the first limit - 1, then the last of all further ones.
/// `take` gets the address of the walk and the instruction; texts must hold for the whole walk (a cache's
/// do).
void ForEachRecorded(InstructionWalk walk, std::uint64_t limit,
                     const std::function<void(std::uint32_t, const Instruction&)>& take);

}  // namespace coverage
