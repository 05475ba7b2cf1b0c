#include "model/coverage_counts.h"

#include <algorithm>
#include <atomic>
#include <utility>

#include "model/services.h"
#include "platform/text.h"
#include "qal/all.h"

namespace coverage {

namespace {

/// Ranges beyond this are no code of any target and would only take the memory away.
constexpr std::uint32_t kLargestSpan = 0x3FFFFFF;

std::uint64_t NextId() {
  static std::atomic<std::uint64_t> last{0};
  return ++last;
}

/// Whichever coverage service the debugger has, for what both can do.
struct RangeService {
  explicit RangeService(qal::IQHost* host)
      : path(FindService<qal::IQPathCoverage>(host, qal::iid::kPathCoverage)),
        count(path != nullptr ? nullptr : FindService<qal::IQCountCoverage>(host, qal::iid::kCountCoverage)) {
  }

  explicit operator bool() const { return path != nullptr || count != nullptr; }
  qal::Status Add(std::uint32_t start, std::uint32_t end) const {
    return path != nullptr ? path->AddRange(start, end) : count->AddRange(start, end);
  }
  void Remove(std::uint32_t start, std::uint32_t end) const {
    path != nullptr ? path->RemoveRange(start, end) : count->RemoveRange(start, end);
  }

  qal::IQPathCoverage* path;
  qal::IQCountCoverage* count;
};

}  // namespace

CoverageCounts::CoverageCounts(qal::IQHost* host, std::shared_ptr<StoreIndex> index, StoreOwner owner,
                               std::mutex* guard)
    : host_(host), index_(std::move(index)), owner_(owner), guard_(guard), id_(NextId()) {
  index_->Enter(*this);
}

CoverageCounts::~CoverageCounts() { index_->Leave(*this); }

std::unique_lock<std::mutex> CoverageCounts::Hold() const {
  return guard_ != nullptr ? std::unique_lock(*guard_) : std::unique_lock<std::mutex>();
}

void CoverageCounts::SetActive(std::uint32_t active) {
  const auto hold = Hold();
  active_ = active;
}

void CoverageCounts::TakeRange(std::uint32_t start, std::uint32_t end) {
  const auto hold = Hold();
  start_ = start;
  end_ = end;
  if (registered()) {
    table_.Layout(start, end);
  } else {
    table_.Reset();
  }
  index_->RangeChanged();
}

std::uint32_t CoverageCounts::SetRange(std::uint32_t start, std::uint32_t end, Reporter& reporter) {
  if (start > end) std::swap(start, end);
  const RangeService service(host_);
  if (!service || end - start > kLargestSpan) return 0;
  const std::uint32_t oldStart = start_;
  const std::uint32_t oldEnd = end_;
  const bool hadRange = registered();
  returns_ = false;
  if (hadRange) service.Remove(oldStart, oldEnd);
  TakeRange(start, end);
  if (service.count != nullptr) SetActive(1);
  if (!registered()) return 1;
  const qal::Status status = service.Add(start, end);
  if (qal::Succeeded(status)) return 1;

  TakeRange(0, 0);
  returns_ = hadRange;
  reporter.Refused(status);
  // While a person reads, the store may have been withdrawn or given another range.
  if (!std::exchange(returns_, false)) return 0;
  service.Add(oldStart, oldEnd);
  TakeRange(oldStart, oldEnd);
  return 0;
}

void CoverageCounts::RemoveRange() {
  returns_ = false;
  if (!registered()) return;
  const RangeService service(host_);
  if (!service) return;
  service.Remove(start_, end_);
  const auto hold = Hold();
  start_ = end_ = 0;
  index_->RangeChanged();
}

void CoverageCounts::AddCountReport(std::span<const qal::CountPair> counts,
                                    std::span<const qal::CountPair> pass) {
  if (active_ == 1) AddRows(counts, pass);
}

void CoverageCounts::AddPathReport(std::uint32_t from, std::span<const qal::PathPair> pairs) {
  if (active_ != 1) return;
  const auto hold = Hold();
  table_.AddPath(from, pairs);
}

void CoverageCounts::AddRows(std::span<const qal::CountPair> counts, std::span<const qal::CountPair> pass) {
  const auto hold = Hold();
  table_.AddCounts(counts);
  table_.OrPass(pass);
}

void CoverageCounts::AddOne(std::uint32_t address, std::uint64_t count, std::uint32_t bits) {
  const auto hold = Hold();
  table_.AddOne(address, count, bits);
}

void CoverageCounts::Clear() {
  const auto hold = Hold();
  table_.ClearAll();
}

std::optional<std::string> DebuggerErrorText(qal::IQHost* host, qal::Status status) {
  auto* texts = FindService<qal::IQErrorText>(host, qal::iid::kErrorText);
  platform::WideOut text;
  if (texts == nullptr || qal::Failed(texts->GetErrorText(status, text.put()))) return std::nullopt;
  return text.str();
}

}  // namespace coverage
