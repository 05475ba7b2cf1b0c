// The simulated target: a Cortex-M3 that runs a program and keeps an exact record of what it executed.
//
// One thread uses it, except RequestStop. The record is exact whatever cuts a run into pieces: slices,
// breakpoints, counts, stop requests and resets change no total. While the target stands, the path record is
// complete up to the program counter and the next record begins there.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace workbench {

class Program;
class ExecutionRecorder;
class Machine;

/// The program cannot be set up or memory cannot be reached; the text says what is wrong.
class TargetError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

enum class RecordMode {
  kOff,
  kPath,    ///< branches only
  kCounts,  ///< fetches and outcomes per instruction
  kBoth,
};

enum class StopReason {
  kEndOfProgram,  ///< reached the program's stop symbol
  kBreakpoint,    ///< reached the address of RunTo
  kCount,         ///< executed as many instructions as were asked for
  kRequest,       ///< RequestStop, or the slice callback said so
  kRecordFull,    ///< kPathLimit pairs wait and nobody took them; take the report and run on
  kFault,         ///< the target cannot go on before a reset; `text` says why
};

struct StopReport {
  StopReason reason = StopReason::kCount;
  std::uint32_t address = 0;   ///< where the target stands: the next instruction
  std::uint64_t executed = 0;  ///< instructions fetched by this run, skipped members of IT blocks included
  std::string text;            ///< for kFault: what happened, with the address
};

/// Two packed 32-bit values, as reports hand them over.
struct RecordPair {
  std::uint32_t first = 0;   ///< branch address, or instruction address
  std::uint32_t second = 0;  ///< branch target, or count, or pass bits
  friend bool operator==(const RecordPair&, const RecordPair&) = default;
};

/// Execution as straight runs: from `start` up to and including the first pair's branch, on from its target,
/// and so on.
struct PathReport {
  std::uint32_t start = 0;
  std::vector<RecordPair> pairs;
};

struct CountsReport {
  std::vector<RecordPair> counts;  ///< {address, fetches}; an address repeats when a count passes 32 bits
  std::vector<RecordPair>
      passes;  ///< {address, bits}: 1 the condition held at least once, 2 it failed at least once
};

/// Memory that the target has, `last` inclusive.
struct MemoryRegion {
  std::uint32_t start = 0;
  std::uint32_t last = 0;
  bool writable = false;  ///< by the program; a download and WriteMemory reach everything
};

class Simulator {
 public:
  /// Called after each slice of a run (about 100,000 instructions); false stops the run. It may read memory,
  /// take reports and call RequestStop; it must not run or reset the target.
  using SliceCallback = std::function<bool()>;

  static constexpr std::uint64_t kNoLimit = ~std::uint64_t{0};
  static constexpr std::uint32_t kSliceSize = 100'000;
  /// Path pairs that may wait to be taken; beyond, a run asks the record-full callback, and stops without
  /// one.
  static constexpr std::size_t kPathLimit = 8'000'000;

  /// Maps the program's memory, downloads and resets. Throws TargetError when the image does not fit the
  /// target.
  explicit Simulator(std::shared_ptr<const Program> program);
  ~Simulator();
  Simulator(const Simulator&) = delete;
  Simulator& operator=(const Simulator&) = delete;

  /// Writes the whole image and clears the other memory, then sets the stack pointer and the program counter
  /// from the vector table. What was recorded and not yet taken stays.
  void Reset();

  /// Runs until the end of the program, a fault, a stop request or `count` instructions. IT blocks are
  /// executed whole: a count that ends inside one is exceeded by up to 3.
  StopReport Run(std::uint64_t count = kNoLimit);
  /// The same, and stops when `address` is about to be executed; at least one instruction is executed. An
  /// address inside an IT block means its IT instruction.
  StopReport RunTo(std::uint32_t address);
  /// Ends the current run at the next slice. Any thread; does nothing while the target stands.
  void RequestStop() { stopRequested_.store(true, std::memory_order_relaxed); }
  bool IsRunning() const { return running_.load(std::memory_order_relaxed); }
  /// Address of the next instruction.
  std::uint32_t Where() const;
  /// Instructions fetched since the last reset.
  std::uint64_t Executed() const;
  /// The program's end: the symbol `firmware_end`, else `_exit`, else `exit`; nothing when it has none.
  std::optional<std::uint32_t> EndAddress() const { return endAddress_; }
  /// Another end, or none: the run then goes on until something else stops it.
  void SetEndAddress(std::optional<std::uint32_t> address);

  /// Registers 0 to 15 and the program status (16). The target must stand.
  std::uint32_t ReadRegister(unsigned index) const;

  void SetSliceCallback(SliceCallback callback) { sliceCallback_ = std::move(callback); }
  /// Targets with more than 1 MiB of RAM may take larger slices.
  void SetSliceSize(std::uint32_t instructions);
  /// In place of kPathLimit; a slice may exceed it by its own pairs.
  void SetPathLimit(std::size_t pairs) { pathLimit_ = pairs; }

  // --- the record ---
  RecordMode Recording() const { return mode_; }
  /// Changes what is recorded from here on. What was recorded and is not wanted any more is dropped.
  void SetRecording(RecordMode mode);
  /// Where the waiting path record begins: the trace-start address.
  std::uint32_t PathStart() const;
  /// Path pairs that wait to be taken.
  std::size_t PathWaiting() const;
  /// What was recorded since the last take; the next record begins where this one ends. Taken while a run is
  /// under way (in the slice callback), the record ends with the last branch.
  PathReport TakePath();
  CountsReport TakeCounts();
  void DropRecord();

  // --- memory, any thread ---
  const std::vector<MemoryRegion>& Memory() const;
  /// False when a byte is outside the target's memory; nothing is copied then.
  bool ReadMemory(std::uint32_t address, void* buffer, std::uint32_t size) const;
  bool WriteMemory(std::uint32_t address, const void* bytes, std::uint32_t size);

 private:
  /// A count with no more left than this is run with code events, which end it exactly.
  static constexpr std::uint64_t kExactTail = 2000;

  std::uint32_t ItInstructionOf(std::uint32_t address) const;
  StopReport RunUntil(std::uint64_t count, std::optional<std::uint32_t> breakpoint);

  std::shared_ptr<const Program> program_;
  std::unique_ptr<Machine> machine_;
  std::unique_ptr<ExecutionRecorder> recorder_;
  RecordMode mode_ = RecordMode::kOff;
  std::optional<std::uint32_t> endAddress_;
  SliceCallback sliceCallback_;
  std::uint32_t sliceSize_ = kSliceSize;
  std::size_t pathLimit_ = kPathLimit;
  std::uint64_t resetAt_ = 0;
  std::string fault_;  // why the target cannot go on
  std::atomic<bool> stopRequested_{false};
  std::atomic<bool> running_{false};
};

}  // namespace workbench
