#include "view/line_marks.h"

#include <algorithm>
#include <string>

#include "model/coverage_cell.h"
#include "platform/text.h"

namespace coverage {
namespace {

constexpr std::int32_t kFirstLine = 1;
constexpr std::int32_t kToTheEnd = -1;

void TakeCell(CoverageCounts& counts, std::uint32_t address, std::int32_t& mark) {
  const auto cell = counts.Lookup(address);
  if (!cell || cell->times == 0) return;
  switch (cell->pass) {
    case kPassTaken:
      mark = std::min(mark, line_mark::kTaken);
      break;
    case kPassFallen:
      mark = std::min(mark, line_mark::kNotTaken);
      break;
    case kPassTaken | kPassFallen:
      mark = std::min(mark, line_mark::kBoth);
      break;
    default:
      mark = line_mark::kExecuted;
  }
}

bool Holds(const CoverageCounts& counts, std::uint32_t address) {
  return counts.registered() && counts.active() == 1 && counts.table().cellCount() != 0 &&
         counts.start() <= address && address <= counts.end();
}

}  // namespace

std::string_view MarkText(std::int32_t mark) {
  switch (mark) {
    case line_mark::kBoth:
      return "T/F";
    case line_mark::kNotTaken:
      return "F";
    case line_mark::kTaken:
      return "T";
    case line_mark::kExecuted:
      return "*";
    case line_mark::kNotExecuted:
      return "-";
    default:
      return {};
  }
}

LineMarks::LineMarks(CoveredInstances& windows, CommandModel& commands, qal::IQSource* source,
                     qal::IQColumnService* columns)
    : windows_(windows), commands_(commands), source_(source), columns_(columns) {}

void LineMarks::SetColumn(EditorColumn column, std::uint32_t handle) {
  handles_[static_cast<std::size_t>(column)] = handle;
}

std::optional<std::int32_t> LineMarks::Mark(EditorColumn column, std::string_view file, std::uint32_t line) {
  const auto which = static_cast<std::size_t>(column);
  if (const auto kept = caches_[which].Find(file, line)) return kept;
  const auto address = AddressOf(column, file, line);
  if (!address) return std::nullopt;
  const auto mark = MarkOfAddress(*address);
  if (!mark) return std::nullopt;
  caches_[which].Store(file, line, *mark);
  if (columns_ != nullptr) {
    const platform::Wide name(platform::ToLower(file));
    const qal::WideText text = name.get();
    const auto only = static_cast<std::int32_t>(line);
    columns_->RefreshLines(&text, handles_[which], only, only);
  }
  return mark;
}

std::optional<std::uint32_t> LineMarks::AddressOf(EditorColumn column, std::string_view file,
                                                  std::uint32_t line) const {
  if (source_ == nullptr) return 0;
  if (column == EditorColumn::kDisassembly) return line;
  std::uint32_t address = 0;
  if (qal::Failed(source_->LineToAddress(platform::Wide(file).get(), line, &address))) return std::nullopt;
  return address;
}

std::optional<std::int32_t> LineMarks::MarkOfAddress(std::uint32_t address) {
  std::int32_t mark = line_mark::kNotExecuted;
  if (MarkFromInstances(address, mark) || MarkFromStore(address, mark) ||
      MarkFromCommandWindows(address, mark)) {
    return mark;
  }
  return std::nullopt;
}

bool LineMarks::MarkFromInstances(std::uint32_t address, std::int32_t& mark) {
  if (!instancesKnown_) {
    instances_.Clear();
    for (CoverageInstance* instance : windows_.AllInstances()) {
      instances_.Add(instance->start, instance->end, instance);
    }
    instances_.Build();
    instancesKnown_ = true;
  }
  bool covered = false;
  instances_.VisitHolding(address, [&](CoverageInstance* instance) {
    if (instance->enableStatus == 0 || address < instance->start || address > instance->end) return;
    covered = true;
    TakeCell(*instance->counts, address, mark);
  });
  return covered;
}

bool LineMarks::MarkFromStore(std::uint32_t address, std::int32_t& mark) {
  CoverageCounts& store = commands_.commandStore();
  if (!Holds(store, address)) return false;
  TakeCell(store, address, mark);
  return true;
}

bool LineMarks::MarkFromCommandWindows(std::uint32_t address, std::int32_t& mark) {
  // Command windows are only ever appended or removed all together, and no two stores have the same id.
  const std::uint32_t count = commands_.windowCount();
  const CommandEntry* const last = count == 0 ? nullptr : commands_.FirstEntry(count);
  const std::uint64_t lastId = last == nullptr ? 0 : last->counts->id();
  if (count != commandCount_ || lastId != lastCommandId_) {
    commandRanges_.Clear();
    for (std::uint32_t number = 1; number <= count; ++number) {
      const CommandEntry* const entry = commands_.FirstEntry(number);
      if (entry == nullptr || !entry->counts->registered()) continue;
      commandRanges_.Add(entry->counts->start(), entry->counts->end(), {number, entry->counts->id()});
    }
    commandRanges_.Build();
    commandCount_ = count;
    lastCommandId_ = lastId;
  }
  bool covered = false;
  commandRanges_.VisitHolding(address, [&](const CommandRange& range) {
    const CommandEntry* const entry = commands_.FirstEntry(range.number);
    if (entry == nullptr || entry->counts->id() != range.id || !Holds(*entry->counts, address)) return;
    covered = true;
    TakeCell(*entry->counts, address, mark);
  });
  return covered;
}

void LineMarks::Move(EditorColumn column, std::string_view file, std::uint32_t from, std::int32_t count) {
  caches_[static_cast<std::size_t>(column)].Move(file, from, count);
}

void LineMarks::RefreshFile(std::string_view file, std::uint32_t handle) {
  const platform::Wide name(file);
  const qal::WideText text = name.get();
  columns_->RefreshLines(&text, handle, kFirstLine, kToTheEnd);
}

void LineMarks::ForgetInstances() {
  instancesKnown_ = false;
  instances_.Clear();
}

void LineMarks::Refresh() {
  ForgetInstances();
  commandCount_ = 0;
  lastCommandId_ = 0;
  commandRanges_.Clear();
  for (std::size_t which = 0; which < 2; ++which) {
    for (const std::string& file : caches_[which].TakeFiles()) {
      if (columns_ != nullptr) RefreshFile(file, handles_[which]);
    }
  }
}

void LineMarks::DropLineMarks() {
  Refresh();
  if (columns_ == nullptr) return;
  columns_->UpdateColumns(0);
  columns_->RefreshLines(nullptr, handles_[0], kFirstLine, kToTheEnd);
}

}  // namespace coverage
