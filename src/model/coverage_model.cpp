#include "model/coverage_model.h"

#include <algorithm>
#include <utility>

#include "model/services.h"
#include "qal/all.h"

namespace coverage {

CoverageModel::CoverageModel(qal::IQHost* host)
    : host_(host),
      index_(std::make_shared<StoreIndex>()),
      collector_(host),
      commands_(host, index_, stale_) {}

// What a change makes stale.

void CoverageModel::MarkListed(CoverageInstance& instance) {
  if (instance.window != nullptr) instance.window->stale.lists = true;
}

void CoverageModel::MarkWanted(CoverageInstance& instance) {
  stale_.wanted = true;
  MarkListed(instance);
}

void CoverageModel::MarkRowsOf(CoverageInstance& instance, StaleRows level) {
  if (instance.window != nullptr && instance.shown != 0) instance.window->stale.MarkRows(level);
}

void CoverageModel::MarkLists() {
  for (const WindowPtr& window : windows_) window->stale.lists = true;
}

void CoverageModel::MarkRows() {
  for (const WindowPtr& window : windows_) window->stale.MarkRows(StaleRows::kRedraw);
}

// Windows.

CoverageWindow* CoverageModel::FirstRangeWindow() const {
  const auto found = std::find_if(windows_.begin(), windows_.end(),
                                  [](const WindowPtr& window) { return !window->isFile(); });
  return found == windows_.end() ? nullptr : found->get();
}

bool CoverageModel::RangeShownElsewhere(const CoverageWindow* window, std::uint32_t start,
                                        std::uint32_t end) const {
  return std::any_of(windows_.begin(), windows_.end(), [&](const WindowPtr& other) {
    return other.get() != window && !other->isFile() &&
           std::any_of(other->instances.begin(), other->instances.end(), [&](const auto& each) {
             return each.second->start == start && each.second->end == end;
           });
  });
}

void CoverageModel::Open(WindowPtr window) {
  window->open = true;
  stale_.wanted = stale_.marks = true;
  windows_.push_back(std::move(window));
}

void CoverageModel::Close(CoverageWindow& window) {
  const auto found = std::find_if(windows_.begin(), windows_.end(),
                                  [&](const WindowPtr& each) { return each.get() == &window; });
  if (found == windows_.end()) return;
  const WindowPtr closed = *found;
  windows_.erase(found);
  closed->open = false;
  RemoveAll(*closed);
  stale_.wanted = true;
}

// Instances.

CoverageModel::InstancePtr CoverageModel::NewInstance(std::uint32_t start, std::uint32_t end,
                                                      std::string name, std::uint32_t shown) {
  return std::make_shared<CoverageInstance>(host_, index_, start, end, std::move(name), shown);
}

void CoverageModel::Add(CoverageWindow& window, InstancePtr instance) {
  instance->window = &window;
  MarkWanted(*instance);
  stale_.marks = true;
  MarkRowsOf(*instance, StaleRows::kReset);
  const std::uint32_t number = window.instances.empty() ? 1 : window.instances.back().first + 1;
  window.instances[number] = std::move(instance);
}

void CoverageModel::NumberAnew(CoverageWindow& window, std::vector<InstancePtr> order) {
  window.instances.clear();
  std::uint32_t number = 0;
  for (InstancePtr& instance : order) window.instances[++number] = std::move(instance);
  window.stale.lists = true;
}

void CoverageModel::Remove(CoverageInstance& instance) {
  CoverageWindow* const window = instance.window;
  if (window == nullptr) return;
  Withdraw(instance);
  MarkRowsOf(instance, StaleRows::kReset);
  std::vector<InstancePtr> rest;
  InstancePtr removed;
  for (const auto& [number, each] : window->instances) {
    (each.get() == &instance ? removed : rest.emplace_back()) = each;
  }
  NumberAnew(*window, std::move(rest));
  instance.SetEnabled(0);
  instance.shown = 0;
  instance.window = nullptr;
}

void CoverageModel::RemoveAll(CoverageWindow& window) {
  for (const auto& [number, instance] : window.instances) {
    Enable(*instance, false);
    instance->modified = 0;
    instance->shown = 0;
    instance->window = nullptr;
  }
  window.instances.clear();
  window.stale.lists = true;
  window.stale.MarkRows(StaleRows::kReset);
}

void CoverageModel::Renumber(CoverageWindow& window, const std::vector<InstancePtr>& order) {
  NumberAnew(window, order);
}

void CoverageModel::Display(CoverageInstance& instance) {
  if (instance.window == nullptr || instance.rangeSet == 0) return;
  for (const auto& [number, each] : instance.window->instances) each->shown = 0;
  instance.shown = 1;
  instance.window->stale.title = true;
  MarkListed(instance);
  MarkRowsOf(instance, StaleRows::kReset);
}

void CoverageModel::DisplayRegistered(CoverageWindow& window) {
  CoverageInstance* const displayed = window.Displayed();
  if (displayed != nullptr && displayed->rangeSet != 0) return;
  window.stale.MarkRows(StaleRows::kReset);
  if (displayed != nullptr) displayed->shown = 0;
  const auto first = std::find_if(window.instances.begin(), window.instances.end(),
                                  [](const auto& each) { return each.second->rangeSet != 0; });
  if (first != window.instances.end()) Display(*first->second);
}

// Figures.

void CoverageModel::ReRegister(CoverageInstance& instance, Reporter& reporter) {
  MarkWanted(instance);
  MarkRowsOf(instance, StaleRows::kWrite);
  stale_.marks = true;
  // Nobody takes it for registered while the person is told that it is not.
  instance.rangeSet = 0;
  instance.rangeSet = instance.counts->SetRange(instance.start, instance.end, reporter);
  if (instance.rangeSet == 0) instance.SetEnabled(0);
}

void CoverageModel::Register(CoverageInstance& instance, Reporter& reporter) {
  ReRegister(instance, reporter);
  if (instance.rangeSet != 0) instance.counts->SetActive(instance.enableStatus);
}

void CoverageModel::Withdraw(CoverageInstance& instance) {
  instance.rangeSet = 0;
  const bool registered = instance.counts->registered();
  instance.counts->RemoveRange();
  if (!registered) return;
  MarkWanted(instance);
  if (instance.counts->active() == 1) stale_.marks = true;
}

void CoverageModel::SetRange(CoverageInstance& instance, std::uint32_t start, std::uint32_t end) {
  instance.start = start;
  instance.end = end;
  instance.percentage = 0;
  MarkListed(instance);
  MarkRowsOf(instance, StaleRows::kReset);
  if (instance.window != nullptr && instance.shown != 0) instance.window->stale.title = true;
}

void CoverageModel::PutBack(CoverageInstance& instance, std::uint32_t start, std::uint32_t end,
                            std::uint32_t enableStatus) {
  SetRange(instance, start, end);
  instance.enableStatus = enableStatus;
}

void CoverageModel::Reuse(CoverageInstance& instance, std::uint32_t start, std::uint32_t end,
                          std::string name, std::uint32_t shown) {
  instance.SetEnabled(0);
  instance.refreshLocked = 0;
  instance.averageInstructionSize = 2;
  instance.modified = 1;
  instance.functionName = std::move(name);
  instance.shown = shown;
  if (shown == 0) instance.RenewCounts();
  SetRange(instance, start, end);
}

void CoverageModel::Enable(CoverageInstance& instance, bool enabled) {
  if (enabled && instance.rangeSet == 0) return;
  const std::uint32_t value = enabled ? 1 : 0;
  if (instance.enableStatus != value || instance.counts->active() != value) stale_.marks = true;
  instance.SetEnabled(value);
  MarkWanted(instance);
}

void CoverageModel::Clear(CoverageInstance& instance) {
  instance.counts->Clear();
  instance.percentage = 0;
  stale_.marks = true;
  MarkListed(instance);
  MarkRowsOf(instance, StaleRows::kWrite);
}

void CoverageModel::Lock(CoverageInstance& instance, bool locked) {
  instance.refreshLocked = locked ? 1 : 0;
  MarkListed(instance);
  if (!locked) MarkRowsOf(instance, StaleRows::kWrite);
}

void CoverageModel::ComputePercentage(CoverageInstance& instance, bool force0) {
  instance.ComputePercentage(force0, instructions_);
  MarkListed(instance);
}

void CoverageModel::LoadPercentage(CoverageInstance& instance, std::uint32_t percentage) {
  instance.percentage = percentage;
  MarkListed(instance);
}

void CoverageModel::AddRows(CoverageInstance& instance, std::span<const qal::CountPair> counts,
                            std::span<const qal::CountPair> pass) {
  instance.counts->AddRows(counts, pass);
  stale_.marks = true;
  MarkRowsOf(instance, StaleRows::kWrite);
}

// All windows.

bool CoverageModel::TakeReport() {
  if (!collector_.Collect(*index_, commands_)) return false;
  stale_.reported = true;
  for (const WindowPtr& window : windows_) {
    for (const auto& [number, instance] : window->instances) {
      instance->modified = 1;
      instance->saved = 0;
    }
  }
  return true;
}

void CoverageModel::ComputePercentages() {
  stale_.marks = stale_.marks || stale_.reported;
  for (const WindowPtr& window : windows_) {
    for (const auto& [number, instance] : window->instances) ComputePercentage(*instance);
  }
}

bool CoverageModel::CoverageWanted() const {
  if (commands_.commandStoreActive() == 1) return true;
  if (commands_.windowCount() != 0) return commands_.AnyWindowActive();
  return std::any_of(windows_.begin(), windows_.end(), [](const WindowPtr& window) {
    return std::any_of(window->instances.begin(), window->instances.end(),
                       [](const auto& each) { return each.second->enableStatus == 1; });
  });
}

void CoverageModel::UpdateCoverageSwitch() {
  stale_.wanted = false;
  const std::int32_t value = CoverageWanted() ? qal::kCollectionOn : qal::kCollectionOff;
  if (auto* path = FindService<qal::IQPathCoverage>(host_, qal::iid::kPathCoverage)) {
    path->SetCollection(value);
  } else if (auto* count = FindService<qal::IQCountCoverage>(host_, qal::iid::kCountCoverage)) {
    count->SetCollection(value);
  }
}

}  // namespace coverage
