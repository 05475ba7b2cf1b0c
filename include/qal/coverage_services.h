#pragma once

#include "qal/reserve.h"

/// The debugger's record of what was executed, and its state. The blocks of a report belong to the service:
/// the component neither keeps nor frees them.
namespace qal {

/// On and off of SetCollection.
inline constexpr std::int32_t kCollectionOn = -1;
inline constexpr std::int32_t kCollectionOff = 0;

/// AddRange and RemoveRange; `end` is the last address. Negative when the debugger refuses the range:
/// IQErrorText then has the text of that status.
struct PathCoverageTo5 : IQUnknown {
  /// The branches since the last report, oldest first.
  virtual Status GetPath(std::uint32_t* count, const PathPair** pairs) = 0;  // slot 3
  virtual Status AddRange(std::uint32_t start, std::uint32_t end) = 0;       // slot 4
  virtual Status RemoveRange(std::uint32_t start, std::uint32_t end) = 0;    // slot 5
};
struct IQPathCoverage : Reserve<PathCoverageTo5, 6, 6> {
  virtual Status SetCollection(std::int32_t onOrOff) = 0;  // slot 7
};

struct CountCoverageTo5 : IQUnknown {
  /// Execution counts per address, then pass flags (bits 1 and 2) per address.
  virtual Status GetCounts(std::uint32_t* countPairs, const CountPair** counts, std::uint32_t* flagPairs,
                           const CountPair** flags) = 0;                   // slot 3
  virtual Status AddRange(std::uint32_t start, std::uint32_t end) = 0;     // slot 4
  virtual Status RemoveRange(std::uint32_t start, std::uint32_t end) = 0;  // slot 5
};
struct IQCountCoverage : Reserve<CountCoverageTo5, 6, 6> {
  virtual Status SetCollection(std::int32_t onOrOff) = 0;  // slot 7
};

struct IQTraceStart : Reserve<IQUnknown, 3, 3> {
  /// Address at which a reported path begins.
  virtual Status GetAddress(std::uint32_t zero, std::uint32_t* address) = 0;  // slot 4
};

struct IQExecutionState : IQUnknown {
  /// Non-negative while no program runs.
  virtual Status IsHalted() = 0;  // slot 3
};

}  // namespace qal
