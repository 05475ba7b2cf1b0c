#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "qal/types.h"
#include "workbench/disassembly/disassembler.h"
#include "workbench/program/program.h"
#include "workbench/target/simulator.h"

namespace workbench {

/// One downloaded program with everything that was made from it. The three live and die together.
struct Debuggee {
  std::shared_ptr<const Program> program;
  std::unique_ptr<Simulator> simulator;
  std::unique_ptr<Disassembler> disassembler;
};

/// Which coverage service the debugger offers.
enum class CoverageOffer { kNone, kPath, kCounts };

/// Reports in the form of the contract.
struct PathRecord {
  std::uint32_t start = 0;
  std::vector<qal::PathPair> pairs;
};
struct CountRecord {
  std::vector<qal::CountPair> counts;
  std::vector<qal::CountPair> passes;
};

/// What the debugger tells its listener, on the main thread.
class DebugListener {
 public:
  virtual ~DebugListener() = default;
  virtual void OnRunBegins() = 0;
  virtual void OnRunEnds() = 0;
  virtual void OnCoverageAvailable() = 0;
  virtual void OnRedraw() = 0;
  virtual void OnSymbolsChanged() = 0;
  virtual void OnTargetReset() = 0;
};

/// The debugger: a program on the simulated target, the record of what it executed, and the faults that were
/// asked for.
///
/// Main thread, except `Current` and what it gives: a debuggee that is held stays whole while another one is
/// loaded.
class DebugSession {
 public:
  /// Reads that take part in a run are few, so a run may be as long as a person waits; a report is handed on
  /// as soon as it holds this many pairs.
  static constexpr std::size_t kPairsPerReport = 1u << 20;

  DebugSession() = default;
  DebugSession(const DebugSession&) = delete;
  DebugSession& operator=(const DebugSession&) = delete;

  void SetListener(DebugListener* listener) { listener_ = listener; }
  /// Asked after each slice of a run; true ends it.
  void SetStopQuestion(std::function<bool()> question) { stopQuestion_ = std::move(question); }

  /// Any thread; null while no program is downloaded.
  std::shared_ptr<const Debuggee> Current() const;

  /// Loads an image (an operating-system path) and downloads it. Throws ProgramError or TargetError; the
  /// program that was there stays then. The listener learns of changed symbols.
  void Load(const std::string& file, const std::string& projectDirectory);
  /// Loads the same file again. Throws as `Load` does, TargetError when there is none.
  void Download(const std::string& projectDirectory);

  /// Runs and, when the target stands again, signals the new coverage data. Throws TargetError without a
  /// program.
  StopReport Run(std::uint64_t count = Simulator::kNoLimit);
  StopReport RunTo(std::uint32_t address);
  void Reset();
  /// Ends a run under way at its next slice. Any thread, and from a signal handler.
  void Interrupt() { interrupted_.store(true); }
  bool IsRunning() const { return running_.load(); }

  // --- coverage ---
  CoverageOffer Offer() const { return offer_; }
  void SetOffer(CoverageOffer offer);
  /// The component's switch: nothing is recorded while it is off. On at start and for every new component.
  void SetCollection(bool on);
  bool Collection() const { return collection_; }
  /// The reports of the last stop. They stand until the next run begins.
  const PathRecord& Path() const { return path_; }
  const CountRecord& Counts() const { return counts_; }

  /// Ranges that the component registered, in the order of registration; a range may stand there twice.
  const std::vector<AddressRange>& Ranges() const { return ranges_; }
  /// False when the debugger refuses the range.
  bool AddRange(std::uint32_t start, std::uint32_t last);
  /// False when no such range is registered.
  bool RemoveRange(std::uint32_t start, std::uint32_t last);
  void ForgetRanges() { ranges_.clear(); }
  /// Ranges that touch this one are refused from now on; nothing takes the refusal back.
  void Refuse(std::optional<AddressRange> range) { refused_ = range; }
  std::optional<AddressRange> Refused() const { return refused_; }

  /// Valid addresses, both inclusive.
  AddressRange Limits() const { return limits_; }
  void SetLimits(AddressRange limits) { limits_ = limits; }

 private:
  const Debuggee& Need() const;
  void ApplyRecording();
  void TakeReports();
  bool OnSlice();
  template <class Start>
  StopReport Execute(Start start);

  DebugListener* listener_ = nullptr;
  std::function<bool()> stopQuestion_;
  mutable std::mutex mutex_;  // guards debuggee_ against readers on other threads
  std::shared_ptr<const Debuggee> debuggee_;
  std::atomic<bool> interrupted_{false};
  std::atomic<bool> running_{false};
  std::atomic<CoverageOffer> offer_ = CoverageOffer::kPath;  // read on every thread
  bool collection_ = true;
  PathRecord path_;
  CountRecord counts_;
  std::vector<AddressRange> ranges_;
  std::optional<AddressRange> refused_;
  AddressRange limits_{0, 0xFFFFFFFFu};
};

}  // namespace workbench
