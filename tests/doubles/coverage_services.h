#pragma once

#include <vector>

#include "doubles/double.h"
#include "qal/coverage_services.h"

/// The debugger's coverage record, as tables that a test fills.
namespace doubles {

/// What both records have: ranges, and a switch.
template <class Interface, const Guid& kId, Name kName>
struct CoverageRanges : Service<Interface, kId, kName> {
  using Service<Interface, kId, kName>::Service;

  Status AddRange(Number start, Number end) override { return this->Log("AddRange", Hex{start}, Hex{end}); }
  Status RemoveRange(Number start, Number end) override {
    return this->Log("RemoveRange", Hex{start}, Hex{end});
  }
  Status SetCollection(std::int32_t on) override { return this->Log("SetCollection", on); }
};

struct StubPathCoverage : CoverageRanges<qal::IQPathCoverage, qal::iid::kPathCoverage, "path"> {
  using CoverageRanges::CoverageRanges;

  /// The next reports.
  std::vector<qal::PathPair> pairs;

  Status GetPath(Number* count, const qal::PathPair** out) override {
    *count = static_cast<Number>(pairs.size());
    *out = pairs.data();
    return Log("GetPath");
  }
};

struct StubCountCoverage : CoverageRanges<qal::IQCountCoverage, qal::iid::kCountCoverage, "count"> {
  using CoverageRanges::CoverageRanges;

  std::vector<qal::CountPair> counts;
  std::vector<qal::CountPair> flags;

  Status GetCounts(Number* countPairs, const qal::CountPair** outCounts, Number* flagPairs,
                   const qal::CountPair** outFlags) override {
    *countPairs = static_cast<Number>(counts.size());
    *outCounts = counts.data();
    *flagPairs = static_cast<Number>(flags.size());
    *outFlags = flags.data();
    return Log("GetCounts");
  }
};

struct StubTraceStart : Service<qal::IQTraceStart, qal::iid::kTraceStart, "trace"> {
  using Service::Service;
  Number address = 0;
  Status GetAddress(Number zero, Number* out) override { return Give(Log("GetAddress", zero), out, address); }
};

struct StubExecutionState : Service<qal::IQExecutionState, qal::iid::kExecutionState, "execution"> {
  using Service::Service;
  bool halted = true;
  Status IsHalted() override {
    const auto status = Log("IsHalted");
    return halted ? status : qal::kFail;
  }
};

}  // namespace doubles
