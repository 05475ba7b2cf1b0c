#pragma once

#include <vector>

#include "doubles/double.h"
#include "qal/coverage_services.h"

/// The debugger's coverage record, as tables that a test fills.
namespace doubles {

class StubPathCoverage : public Double<qal::IQPathCoverage> {
 public:
  static constexpr qal::Guid kService = qal::iid::kPathCoverage;
  using Double::Double;

  /// The next reports.
  std::vector<qal::PathPair> pairs;

  qal::Status GetPath(std::uint32_t* count, const qal::PathPair** out) override {
    *count = static_cast<std::uint32_t>(pairs.size());
    *out = pairs.data();
    return Log("path.GetPath");
  }
  qal::Status AddRange(std::uint32_t start, std::uint32_t end) override {
    return Log("path.AddRange", Hex{start}, Hex{end});
  }
  qal::Status RemoveRange(std::uint32_t start, std::uint32_t end) override {
    return Log("path.RemoveRange", Hex{start}, Hex{end});
  }
  qal::Status SetCollection(std::int32_t on) override { return Log("path.SetCollection", on); }
};

class StubCountCoverage : public Double<qal::IQCountCoverage> {
 public:
  static constexpr qal::Guid kService = qal::iid::kCountCoverage;
  using Double::Double;

  std::vector<qal::CountPair> counts;
  std::vector<qal::CountPair> flags;

  qal::Status GetCounts(std::uint32_t* countPairs, const qal::CountPair** outCounts, std::uint32_t* flagPairs,
                        const qal::CountPair** outFlags) override {
    *countPairs = static_cast<std::uint32_t>(counts.size());
    *outCounts = counts.data();
    *flagPairs = static_cast<std::uint32_t>(flags.size());
    *outFlags = flags.data();
    return Log("count.GetCounts");
  }
  qal::Status AddRange(std::uint32_t start, std::uint32_t end) override {
    return Log("count.AddRange", Hex{start}, Hex{end});
  }
  qal::Status RemoveRange(std::uint32_t start, std::uint32_t end) override {
    return Log("count.RemoveRange", Hex{start}, Hex{end});
  }
  qal::Status SetCollection(std::int32_t on) override { return Log("count.SetCollection", on); }
};

class StubTraceStart : public Double<qal::IQTraceStart> {
 public:
  static constexpr qal::Guid kService = qal::iid::kTraceStart;
  using Double::Double;
  std::uint32_t address = 0;
  qal::Status GetAddress(std::uint32_t zero, std::uint32_t* out) override {
    return Give(Log("trace.GetAddress", zero), out, address);
  }
};

class StubExecutionState : public Double<qal::IQExecutionState> {
 public:
  static constexpr qal::Guid kService = qal::iid::kExecutionState;
  using Double::Double;
  bool halted = true;
  qal::Status IsHalted() override {
    const auto status = Log("execution.IsHalted");
    return halted ? status : qal::kFail;
  }
};

}  // namespace doubles
