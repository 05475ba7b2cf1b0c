#include "model/command_model.h"

#include <algorithm>
#include <utility>

#include "platform/text.h"

namespace coverage {

CommandModel::CommandModel(qal::IQHost* host, std::shared_ptr<StoreIndex> index, StaleViews& stale)
    : host_(host),
      index_(std::move(index)),
      stale_(stale),
      store_(std::make_unique<CoverageCounts>(host, index_, StoreOwner::kCurrentRange, &mutex_)) {
  byId_.emplace(store_->id(), store_.get());
}

void CommandModel::MarkWanted() {
  stale_.wanted = true;
  stale_.marks = true;
}

void CommandModel::Withdraw() {
  RemoveAllWindows();
  store_->RemoveRange();
}

void CommandModel::SetStoreEnabled(bool enabled) {
  storeActive_ = enabled ? 1 : 0;
  SetActive(*store_, storeActive_);
}

void CommandModel::SetActive(CoverageCounts& store, std::uint32_t active) {
  store.SetActive(active);
  MarkWanted();
}

std::uint32_t CommandModel::SetStoreRange(std::uint32_t start, std::uint32_t end, Reporter& reporter) {
  MarkWanted();
  return store_->SetRange(start, end, reporter);
}

void CommandModel::ClearStore() {
  store_->Clear();
  stale_.marks = true;
}

void CommandModel::AddRows(CoverageCounts& store, std::span<const qal::CountPair> counts,
                           std::span<const qal::CountPair> pass) {
  store.AddRows(counts, pass);
  stale_.marks = true;
}

const CommandEntry* CommandModel::FirstEntry(std::uint32_t number) const {
  const auto found = windows_.find(number);
  return found != windows_.end() && !found->second.empty() ? &found->second.front() : nullptr;
}

std::uint32_t CommandModel::WindowOfFunction(std::string_view functionName) const {
  for (const auto& [number, entries] : windows_) {
    if (!entries.empty() && entries.front().functionName == functionName) return number;
  }
  return 0;
}

std::uint32_t CommandModel::WindowOf(std::uint32_t start, std::uint32_t end,
                                     std::string_view functionName) const {
  for (const auto& [number, entries] : windows_) {
    if (entries.empty() || entries.front().functionName != functionName) continue;
    const CoverageCounts& counts = *entries.front().counts;
    if (counts.start() == start && counts.end() == end) return number;
  }
  return 0;
}

bool CommandModel::AnyWindowActive() const {
  return std::any_of(windows_.begin(), windows_.end(), [](const auto& window) {
    return !window.second.empty() && window.second.front().counts->active() == 1;
  });
}

void CommandModel::SetWindowEnabled(std::uint32_t number, bool enabled) {
  if (const CommandEntry* entry = FirstEntry(number)) SetActive(*entry->counts, enabled ? 1 : 0);
}

void CommandModel::SetAllWindowsEnabled(bool enabled) {
  for (const auto& [number, entries] : windows_) SetWindowEnabled(number, enabled);
}

void CommandModel::ClearWindow(std::uint32_t number) {
  const auto found = windows_.find(number);
  if (found == windows_.end()) return;
  for (const CommandEntry& entry : found->second) entry.counts->Clear();
  stale_.marks = true;
}

void CommandModel::ClearAllWindows() {
  for (const auto& [number, entries] : windows_) ClearWindow(number);
}

void CommandModel::ClearAll() {
  ClearStore();
  ClearAllWindows();
}

void CommandModel::RemoveAllWindows() {
  if (!windows_.empty()) MarkWanted();
  for (const auto& [number, entries] : windows_) {
    for (const CommandEntry& entry : entries) entry.counts->RemoveRange();
  }
  std::map<std::uint32_t, std::vector<CommandEntry>> gone;
  {
    const std::lock_guard hold(mutex_);
    gone.swap(windows_);
    for (const auto& [number, entries] : gone) {
      for (const CommandEntry& entry : entries) byId_.erase(entry.counts->id());
    }
  }
  filePath_.clear();
}

CommandModel::Added CommandModel::Enter(std::unique_ptr<CoverageCounts> counts, std::string functionName) {
  MarkWanted();
  const Added added{windowCount() + 1, counts.get(), counts->registered()};
  const std::lock_guard hold(mutex_);
  byId_.emplace(counts->id(), counts.get());
  windows_[added.number].push_back({std::move(counts), std::move(functionName)});
  return added;
}

CommandModel::Added CommandModel::AddWindow(std::uint32_t start, std::uint32_t end, std::string functionName,
                                            Reporter& reporter) {
  auto counts = std::make_unique<CoverageCounts>(host_, index_, StoreOwner::kCommandWindow, &mutex_);
  counts->SetRange(start, end, reporter);
  return Enter(std::move(counts), std::move(functionName));
}

CommandModel::Added CommandModel::AddWindow(std::string functionName) {
  return Enter(std::make_unique<CoverageCounts>(host_, index_, StoreOwner::kCommandWindow, &mutex_),
               std::move(functionName));
}

bool CommandModel::OpenFile(const std::string& sourceFile, Reporter& reporter) {
  RemoveAllWindows();
  const FileFunctions listing = ListFileFunctions(host_, sourceFile, false);
  ReportListing(listing, reporter);
  for (const SourceFunction& function : listing.functions) {
    AddWindow(function.start, function.end, function.name, reporter);
  }
  if (windowCount() == 0) return false;
  ClearStore();
  SetStoreEnabled(false);
  filePath_ = sourceFile;
  return true;
}

std::vector<CoverageCounts*> CommandModel::Stores() const {
  std::vector<CoverageCounts*> stores{store_.get()};
  for (const auto& [number, entries] : windows_) {
    for (const CommandEntry& entry : entries) stores.push_back(entry.counts.get());
  }
  return stores;
}

void CommandModel::SettleStores() {
  for (CoverageCounts* store : Stores()) store->table().Settle();
}

CommandModel::Reader::Reader(CommandModel& model) : model_(model) {
  const std::lock_guard hold(model_.mutex_);
  model_.SettleStores();
  ++model_.readers_;
}

CommandModel::Reader::~Reader() {
  const std::lock_guard hold(model_.mutex_);
  --model_.readers_;
}

std::uint32_t CommandModel::CountWindows() const {
  const std::lock_guard hold(mutex_);
  return windowCount();
}

StoreDescription CommandModel::DescribeStore() const {
  const std::lock_guard hold(mutex_);
  return {store_->id(), store_->start(), store_->end(), store_->active(), {}};
}

std::optional<StoreDescription> CommandModel::DescribeWindow(std::uint32_t number) const {
  const std::lock_guard hold(mutex_);
  const CommandEntry* entry = FirstEntry(number);
  if (entry == nullptr) return std::nullopt;
  const CoverageCounts& counts = *entry->counts;
  return StoreDescription{counts.id(), counts.start(), counts.end(), counts.active(), entry->functionName};
}

CommandModel::CellRead CommandModel::ReadCell(std::uint64_t id, std::uint32_t address,
                                              CoverageCell& out) const {
  const std::lock_guard hold(mutex_);
  const auto found = byId_.find(id);
  if (found == byId_.end()) return CellRead::kGone;
  const auto cell = std::as_const(*found->second).table().SettledCellAt(address);
  if (!cell) return CellRead::kNoCell;
  out = *cell;
  return CellRead::kCell;
}

}  // namespace coverage
