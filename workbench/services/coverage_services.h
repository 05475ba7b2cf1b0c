#pragma once

#include "qal/coverage_services.h"
#include "qal/program_services.h"
#include "workbench/services/debug_session.h"
#include "workbench/services/service.h"

namespace workbench {

/// Statuses that the debugger itself answers with; ErrorText has a text for each.
inline constexpr qal::Status kRangeRefused = static_cast<qal::Status>(0x80040101u);
inline constexpr qal::Status kRangeUnknown = static_cast<qal::Status>(0x80040102u);
inline constexpr qal::Status kNothingLoaded = static_cast<qal::Status>(0x80040103u);
inline constexpr qal::Status kNoSourceFile = static_cast<qal::Status>(0x80040104u);
inline constexpr qal::Status kNoExpression = static_cast<qal::Status>(0x80040105u);

/// The branches that the target took up to its last stop. Main thread.
class PathCoverage final : public Service<qal::IQPathCoverage, qal::iid::kPathCoverage> {
 public:
  explicit PathCoverage(DebugSession& debugger) : debugger_(debugger) {}
  qal::Status GetPath(std::uint32_t* count, const qal::PathPair** pairs) override;
  qal::Status AddRange(std::uint32_t start, std::uint32_t end) override;
  qal::Status RemoveRange(std::uint32_t start, std::uint32_t end) override;
  qal::Status SetCollection(std::int32_t onOrOff) override;

 private:
  DebugSession& debugger_;
};

/// Executions and outcomes per instruction up to the last stop. Main thread.
class CountCoverage final : public Service<qal::IQCountCoverage, qal::iid::kCountCoverage> {
 public:
  explicit CountCoverage(DebugSession& debugger) : debugger_(debugger) {}
  qal::Status GetCounts(std::uint32_t* countPairs, const qal::CountPair** counts, std::uint32_t* flagPairs,
                        const qal::CountPair** flags) override;
  qal::Status AddRange(std::uint32_t start, std::uint32_t end) override;
  qal::Status RemoveRange(std::uint32_t start, std::uint32_t end) override;
  qal::Status SetCollection(std::int32_t onOrOff) override;

 private:
  DebugSession& debugger_;
};

class TraceStart final : public Service<qal::IQTraceStart, qal::iid::kTraceStart> {
 public:
  explicit TraceStart(DebugSession& debugger) : debugger_(debugger) {}
  qal::Status GetAddress(std::uint32_t zero, std::uint32_t* address) override;

 private:
  DebugSession& debugger_;
};

class ExecutionState final : public Service<qal::IQExecutionState, qal::iid::kExecutionState> {
 public:
  explicit ExecutionState(DebugSession& debugger) : debugger_(debugger) {}
  qal::Status IsHalted() override { return debugger_.IsRunning() ? qal::kFail : qal::kOk; }

 private:
  DebugSession& debugger_;
};

class AddressLimits final : public Service<qal::IQAddressLimits, qal::iid::kAddressLimits> {
 public:
  explicit AddressLimits(DebugSession& debugger) : debugger_(debugger) {}
  qal::Status GetLimits(std::uint32_t* lowest, std::uint32_t* highest) override;

 private:
  DebugSession& debugger_;
};

}  // namespace workbench
