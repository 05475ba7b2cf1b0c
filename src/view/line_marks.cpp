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

LineMarks::LineMarks(CoverageModel& model, qal::IQSource* source, qal::IQColumnService* columns)
    : model_(model), source_(source), columns_(columns) {}

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
  // The command line is asked only where no window covers the address.
  for (const StoreOwner owner :
       {StoreOwner::kInstance, StoreOwner::kCurrentRange, StoreOwner::kCommandWindow}) {
    std::int32_t mark = line_mark::kNotExecuted;
    bool covered = false;
    model_.Stores().VisitHolding(owner, address, [&](CoverageCounts& store) {
      if (store.active() != 1) return;
      covered = true;
      TakeCell(store, address, mark);
    });
    if (covered) return mark;
  }
  return std::nullopt;
}

void LineMarks::Move(EditorColumn column, std::string_view file, std::uint32_t from, std::int32_t count) {
  caches_[static_cast<std::size_t>(column)].Move(file, from, count);
}

void LineMarks::RefreshFile(std::string_view file, std::uint32_t handle) {
  const platform::Wide name(file);
  const qal::WideText text = name.get();
  columns_->RefreshLines(&text, handle, kFirstLine, kToTheEnd);
}

void LineMarks::Refresh() {
  model_.Stale().marks = model_.Stale().reported = false;
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
