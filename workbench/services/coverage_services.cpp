#include "workbench/services/coverage_services.h"

namespace workbench {
namespace {

qal::Status Add(DebugSession& debugger, std::uint32_t start, std::uint32_t end) {
  return Guarded([&] { return debugger.AddRange(start, end) ? qal::kOk : kRangeRefused; });
}

qal::Status Remove(DebugSession& debugger, std::uint32_t start, std::uint32_t end) {
  return Guarded([&] { return debugger.RemoveRange(start, end) ? qal::kOk : kRangeUnknown; });
}

qal::Status Switch(DebugSession& debugger, std::int32_t onOrOff) {
  return Guarded([&] {
    debugger.SetCollection(onOrOff != qal::kCollectionOff);
    return qal::kOk;
  });
}

}  // namespace

qal::Status PathCoverage::GetPath(std::uint32_t* count, const qal::PathPair** pairs) {
  if (!count || !pairs) return qal::kFail;
  const auto& report = debugger_.Path().pairs;
  *count = static_cast<std::uint32_t>(report.size());
  *pairs = report.data();
  return qal::kOk;
}

qal::Status PathCoverage::AddRange(std::uint32_t start, std::uint32_t end) {
  return Add(debugger_, start, end);
}
qal::Status PathCoverage::RemoveRange(std::uint32_t start, std::uint32_t end) {
  return Remove(debugger_, start, end);
}
qal::Status PathCoverage::SetCollection(std::int32_t onOrOff) { return Switch(debugger_, onOrOff); }

qal::Status CountCoverage::GetCounts(std::uint32_t* countPairs, const qal::CountPair** counts,
                                     std::uint32_t* flagPairs, const qal::CountPair** flags) {
  if (!countPairs || !counts || !flagPairs || !flags) return qal::kFail;
  const auto& report = debugger_.Counts();
  *countPairs = static_cast<std::uint32_t>(report.counts.size());
  *counts = report.counts.data();
  *flagPairs = static_cast<std::uint32_t>(report.passes.size());
  *flags = report.passes.data();
  return qal::kOk;
}

qal::Status CountCoverage::AddRange(std::uint32_t start, std::uint32_t end) {
  return Add(debugger_, start, end);
}
qal::Status CountCoverage::RemoveRange(std::uint32_t start, std::uint32_t end) {
  return Remove(debugger_, start, end);
}
qal::Status CountCoverage::SetCollection(std::int32_t onOrOff) { return Switch(debugger_, onOrOff); }

qal::Status TraceStart::GetAddress(std::uint32_t, std::uint32_t* address) {
  if (!address) return qal::kFail;
  *address = debugger_.Path().start;
  return qal::kOk;
}

qal::Status AddressLimits::GetLimits(std::uint32_t* lowest, std::uint32_t* highest) {
  if (!lowest || !highest) return qal::kFail;
  *lowest = debugger_.Limits().start;
  *highest = debugger_.Limits().last;
  return qal::kOk;
}

}  // namespace workbench
