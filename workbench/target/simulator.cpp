#include "workbench/target/simulator.h"

#include <algorithm>
#include <utility>

#include "workbench/program/program.h"
#include "workbench/target/execution_recorder.h"
#include "workbench/target/machine.h"
#include "workbench/target/thumb.h"

namespace workbench {
namespace {

constexpr std::uint64_t kSmallRam = 1 << 20;
constexpr const char* kEndNames[] = {"firmware_end", "_exit", "exit"};

std::vector<ExecutionRecorder::Region> RecordedRegions(const Machine& machine) {
  std::vector<ExecutionRecorder::Region> regions;
  for (const MemoryRegion& region : machine.Regions())
    regions.push_back({region.start, region.last, region.writable});
  return regions;
}

}  // namespace

Simulator::Simulator(std::shared_ptr<const Program> program) : program_(std::move(program)) {
  machine_ = std::make_unique<Machine>(*program_);
  recorder_ = std::make_unique<ExecutionRecorder>(
      RecordedRegions(*machine_),
      [machine = machine_.get()](std::uint32_t address) { return machine->Halfword(address); });
  machine_->Attach(recorder_.get());
  for (const char* name : kEndNames) {
    const Symbol* symbol = program_->FindSymbol(name);
    if (symbol == nullptr) continue;
    endAddress_ = symbol->address;
    break;
  }
  recorder_->SetMode(RecordMode::kOff, machine_->Pc());
}

Simulator::~Simulator() = default;

void Simulator::Reset() {
  machine_->Reset(*program_);
  recorder_->Jump(machine_->Pc());
  resetAt_ = recorder_->Committed();
  fault_.clear();
}

StopReport Simulator::Run(std::uint64_t count) { return RunUntil(count, std::nullopt); }

StopReport Simulator::RunTo(std::uint32_t address) {
  return RunUntil(kNoLimit, ItInstructionOf(address & ~1u));
}

StopReport Simulator::RunUntil(std::uint64_t count, std::optional<std::uint32_t> breakpoint) {
  const std::uint64_t begin = recorder_->Committed();
  StopReport report;
  report.address = machine_->Pc();
  const auto stop = [&](StopReason reason, std::string text = {}) {
    running_.store(false, std::memory_order_relaxed);
    report.reason = reason;
    report.address = machine_->Pc();
    report.executed = recorder_->Committed() - begin;
    report.text = std::move(text);
    return report;
  };
  if (!fault_.empty()) return stop(StopReason::kFault, fault_);
  if (machine_->Pc() == endAddress_) return stop(StopReason::kEndOfProgram);
  if (count == 0) return stop(StopReason::kCount);

  std::vector<std::uint32_t> breakpoints;
  if (endAddress_) breakpoints.push_back(*endAddress_);
  if (breakpoint && breakpoint != endAddress_) breakpoints.push_back(*breakpoint);
  machine_->SetBreakpoints(std::move(breakpoints));
  stopRequested_.store(false, std::memory_order_relaxed);
  running_.store(true, std::memory_order_relaxed);

  const bool counting = mode_ == RecordMode::kCounts || mode_ == RecordMode::kBoth;
  std::uint64_t slice = sliceSize_;
  if (const std::uint64_t copied = machine_->WritableBytes(); copied > kSmallRam)
    slice = std::max(slice, copied / 8);
  for (;;) {
    const std::uint64_t done = recorder_->Committed() - begin;
    // Without counts only the last few instructions of a count need code events; no block is longer than
    // that.
    const bool exact = counting || count - done <= kExactTail;
    recorder_->BeginSlice(machine_->Pc(), slice, count - done, exact);
    const Machine::SliceEnd end = machine_->RunSlice(exact);
    recorder_->EndSlice(end.pc);

    if (!end.fault.empty()) {
      fault_ = end.fault;
      return stop(StopReason::kFault, fault_);
    }
    if (end.pc == endAddress_) return stop(StopReason::kEndOfProgram);
    if (breakpoint == end.pc) return stop(StopReason::kBreakpoint);
    if (recorder_->Committed() - begin >= count) return stop(StopReason::kCount);
    if (sliceCallback_ && !sliceCallback_()) return stop(StopReason::kRequest);
    if (stopRequested_.load(std::memory_order_relaxed)) return stop(StopReason::kRequest);
    if (recorder_->PathWaiting() >= pathLimit_) return stop(StopReason::kRecordFull);
  }
}

std::uint32_t Simulator::ItInstructionOf(std::uint32_t address) const {
  std::uint32_t start = address;
  for (const AddressRange& code : program_->CodeRanges())
    if (code.start <= address && address <= code.last) start = code.start;
  if (const Function* function = program_->FunctionAt(address)) start = function->start;
  std::uint32_t it = 0;
  unsigned members = 0;
  for (std::uint32_t at = start; at < address;) {
    if (program_->IsDataInCode(at)) {
      members = 0;
      at += 2;
      continue;
    }
    const std::uint16_t first = machine_->Halfword(at);
    if (members > 0) --members;
    if (const unsigned more = thumb::ItMembers(first)) {
      members = more;
      it = at;
    }
    at += thumb::IsWide(first) ? 4 : 2;
    if (at == address && members > 0) return it;
  }
  return address;
}

std::uint32_t Simulator::Where() const { return machine_->Pc(); }

std::uint64_t Simulator::Executed() const { return recorder_->Committed() - resetAt_; }

void Simulator::SetEndAddress(std::optional<std::uint32_t> address) {
  endAddress_ = address ? std::optional(*address & ~1u) : std::nullopt;
}

std::uint32_t Simulator::ReadRegister(unsigned index) const { return machine_->ReadRegister(index); }

void Simulator::SetSliceSize(std::uint32_t instructions) { sliceSize_ = std::max(instructions, 1u); }

void Simulator::SetRecording(RecordMode mode) {
  mode_ = mode;
  recorder_->SetMode(mode, machine_->Pc());
}

std::uint32_t Simulator::PathStart() const { return recorder_->PathStart(); }

std::size_t Simulator::PathWaiting() const { return recorder_->PathWaiting(); }

PathReport Simulator::TakePath() { return recorder_->TakePath(!IsRunning()); }

CountsReport Simulator::TakeCounts() { return recorder_->TakeCounts(); }

void Simulator::DropRecord() {
  recorder_->TakePath(!IsRunning());
  recorder_->TakeCounts();
}

const std::vector<MemoryRegion>& Simulator::Memory() const { return machine_->Regions(); }

bool Simulator::ReadMemory(std::uint32_t address, void* buffer, std::uint32_t size) const {
  return machine_->Read(address, buffer, size);
}

bool Simulator::WriteMemory(std::uint32_t address, const void* bytes, std::uint32_t size) {
  return machine_->Write(address, bytes, size);
}

}  // namespace workbench
