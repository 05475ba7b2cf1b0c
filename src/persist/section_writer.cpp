#include "persist/section_writer.h"

#include <algorithm>

#include "model/instruction_walk.h"

namespace coverage {
namespace {

/// Hands each recorded instruction's address text on; `take` gets the aligned start with it.
template <class Take>
void ForEachText(const CoverageCounts& counts, std::uint32_t start, std::uint32_t end, qal::IQHost* host,
                 DisassemblyCache& cache, Take take) {
  InstructionReader reader(host);
  CachedInstructions source(cache, reader);
  const InstructionWalk walk(start, end, reader.Alignment(), source);
  const std::uint32_t alignedStart = walk.alignedStart();
  ForEachRecorded(walk, counts.table().cellCount(), [&](std::uint32_t, const Instruction& instruction) {
    take(alignedStart, instruction.addressText);
  });
}

}  // namespace

bool RowStepper::Meet(std::uint32_t address) {
  if (first_) step_ = std::min<std::uint64_t>(step_, address);
  first_ = false;
  if (step_ != address) {
    // In steps of 2 the address is met when it lies ahead, is of the same parity, and no step before it is at
    // or beyond the end.
    if (address < step_ || ((address - step_) & 1) != 0) return false;
    if (address - 2U > step_ && address - 2U >= end_) return false;
    step_ = address;
  }
  step_ += 2;
  return true;
}

RecordedCounts CountRecorded(CoverageCounts& counts, std::uint32_t start, std::uint32_t end,
                             qal::IQHost* host, DisassemblyCache& cache) {
  RecordedCounts result;
  ForEachText(counts, start, end, host, cache, [&](std::uint32_t, std::string_view text) {
    ++result.recorded;
    const std::optional<CoverageCell> cell = counts.Lookup(AddressOfText(text));
    if (cell && cell->times > 0) ++result.executed;
  });
  return result;
}

void WriteRows(CovOutput& out, CoverageCounts& counts, std::uint32_t start, std::uint32_t end,
               qal::IQHost* host, DisassemblyCache& cache) {
  std::optional<RowStepper> stepper;
  bool meeting = true;
  ForEachText(counts, start, end, host, cache, [&](std::uint32_t alignedStart, std::string_view text) {
    if (!stepper) stepper.emplace(alignedStart, end);
    const std::uint32_t address = AddressOfText(text);
    meeting = meeting && stepper->Meet(address);
    if (!meeting) return;
    const CoverageCell cell = counts.Lookup(address).value_or(CoverageCell{});
    out.Row(cell.times, cell.pass, text);
  });
}

void WriteInstanceSection(CovOutput& out, const CoverageInstance& instance, std::uint32_t number,
                          qal::IQHost* host, DisassemblyCache& cache) {
  out.Section({instance.isFunction() ? kInstanceSection : kWindowSection, number, instance.start,
               instance.end, instance.enableStatus, instance.percentage, instance.functionName});
  WriteRows(out, *instance.counts, instance.start, instance.end, host, cache);
}

}  // namespace coverage
