#include "model/command_model.h"

#include <utility>

#include "platform/text.h"

namespace coverage {

CommandModel::CommandModel(qal::IQHost* host)
    : host_(host), store_(std::make_unique<CoverageCounts>(host, &mutex_)) {
  byId_.emplace(store_->id(), store_.get());
}

void CommandModel::Withdraw() {
  RemoveAllWindows();
  store_->RemoveRange();
}

void CommandModel::SetStoreEnabled(bool enabled) {
  storeActive_ = enabled ? 1 : 0;
  store_->SetActive(storeActive_);
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

void CommandModel::SetWindowEnabled(std::uint32_t number, bool enabled) {
  if (const CommandEntry* entry = FirstEntry(number)) entry->counts->SetActive(enabled ? 1 : 0);
}

void CommandModel::SetAllWindowsEnabled(bool enabled) {
  for (const auto& [number, entries] : windows_) SetWindowEnabled(number, enabled);
}

void CommandModel::ClearWindow(std::uint32_t number) {
  const auto found = windows_.find(number);
  if (found == windows_.end()) return;
  for (const CommandEntry& entry : found->second) entry.counts->Clear();
}

void CommandModel::ClearAllWindows() {
  for (const auto& [number, entries] : windows_) ClearWindow(number);
}

void CommandModel::ClearAll() {
  ClearStore();
  ClearAllWindows();
}

void CommandModel::RemoveAllWindows() {
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

CommandModel::Added CommandModel::AddWindow(std::uint32_t start, std::uint32_t end,
                                            std::string functionName) {
  auto counts = std::make_unique<CoverageCounts>(host_, &mutex_);
  Added added;
  added.counts = counts.get();
  added.registered = counts->SetRange(start, end) == 1;
  added.number = windowCount() + 1;
  const std::lock_guard hold(mutex_);
  byId_.emplace(counts->id(), counts.get());
  windows_[added.number].push_back({std::move(counts), std::move(functionName)});
  return added;
}

bool CommandModel::OpenFile(const std::string& sourceFile, bool quiet) {
  RemoveAllWindows();
  const FileFunctions listing = ListFileFunctions(host_, sourceFile, false);
  if (!quiet) ShowListingFailure(host_, listing);
  for (const SourceFunction& function : listing.functions) {
    AddWindow(function.start, function.end, function.name);
  }
  if (windowCount() == 0) return false;
  ClearStore();
  SetStoreEnabled(false);
  filePath_ = sourceFile;
  return true;
}

std::uint32_t CommandModel::AddFunctionWindows(const std::string& sourceFile, std::string_view functionName,
                                               bool quiet) {
  const FileFunctions listing = ListFileFunctions(host_, sourceFile, false);
  if (!quiet) ShowListingFailure(host_, listing);
  std::uint32_t added = 0;
  for (const SourceFunction& function : listing.functions) {
    if (!platform::EqualNoCase(function.name, functionName)) continue;
    AddWindow(function.start, function.end, function.name);
    ++added;
  }
  return added;
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
