#include "panes/row_builder.h"

#include <algorithm>

#include "model/services.h"
#include "platform/text.h"

namespace coverage {
namespace {

constexpr std::uint32_t kHexadecimal = 16;
constexpr std::size_t kTabWidth = 4;
constexpr std::size_t kLongestSource = 254;
constexpr std::size_t kEllipsisAt = 252;
constexpr std::string_view kEllipsis = "...";
constexpr int kAllColumns[] = {kTimesColumn, kPassColumn, kAddressColumn, kAssemblerColumn, kSourceColumn};

/// Whether a text is the number that the instruction's own text begins with. Without "0x" or a digit in front
/// it may be a label.
bool IsNumberOf(std::string_view text, std::string_view addressText) {
  if (text.starts_with("0x")) {
    text.remove_prefix(2);
  } else if (text.empty() || text[0] < '0' || text[0] > '9') {
    return false;
  }
  if (!addressText.starts_with(text)) return false;
  addressText.remove_prefix(text.size());
  return addressText.empty() || addressText[0] == ' ';
}

}  // namespace

std::string SourceColumnText(std::string_view line) {
  std::string text;
  text.reserve(line.size());
  for (std::size_t at = 0; at < line.size(); at = platform::NextChar(line, at)) {
    if (line[at] == '\t') {
      text.append(kTabWidth - text.size() % kTabWidth, ' ');
    } else {
      text += line.substr(at, platform::CharLength(line, at));
    }
  }
  if (text.size() <= kLongestSource) return text;
  const std::size_t from = platform::CutToBytes(text, kEllipsisAt).size();
  std::size_t to = from;
  while (to < kEllipsisAt + kEllipsis.size()) to = platform::NextChar(text, to);
  return text.replace(from, to - from, kEllipsis);
}

RowBuilder::RowBuilder(qal::IQHost* host, CoverageInstance& instance, DisassemblyCache& cache,
                       CUiReportListCtrl& list, int rowsPerPage)
    : instance_(instance),
      cache_(cache),
      list_(list),
      rowsPerPage_(rowsPerPage),
      reader_(host),
      expressions_(FindService<qal::IQExpression>(host, qal::iid::kExpression)),
      addressTexts_(FindService<qal::IQAddressText>(host, qal::iid::kAddressText)),
      source_(FindService<qal::IQSource>(host, qal::iid::kSource)) {}

std::optional<std::uint32_t> RowBuilder::AddressOfRow(int row) const {
  const std::string& text = list_.ItemText(row, kAddressColumn);
  if (text.empty() || !expressions_) return std::nullopt;
  std::uint64_t address = 0;
  if (qal::Failed(expressions_->EvaluateInRadix(platform::Wide(text).get(), kHexadecimal, &address))) {
    return std::nullopt;
  }
  return static_cast<std::uint32_t>(address);
}

std::uint32_t RowBuilder::StartAddress(std::uint32_t fromAddress, int& firstRow, int& rowCount) const {
  if (firstRow == 0) return instance_.start;
  if (fromAddress != 0) return fromAddress;
  if (list_.ItemText(firstRow, kAddressColumn).empty() && firstRow > rowsPerPage_) {
    if (const auto address = AddressOfRow(firstRow - rowsPerPage_)) {
      firstRow -= rowsPerPage_;
      rowCount += rowsPerPage_;
      return *address;
    }
  }
  if (const auto address = AddressOfRow(firstRow)) return *address;
  const std::uint64_t size = instance_.averageInstructionSize;
  const std::uint64_t bytes = std::uint64_t{instance_.end - instance_.start} + 1;
  // The list may have more rows than the range has instructions; its last page shows the range's end all the
  // same.
  const std::uint64_t page = std::min(bytes, size * static_cast<std::uint64_t>(std::max(rowsPerPage_, 1)));
  const std::uint64_t before = std::min(size * static_cast<std::uint64_t>(firstRow), bytes - page);
  return instance_.start + static_cast<std::uint32_t>(before);
}

std::uint32_t RowBuilder::Build(bool rewrite, std::uint32_t fromAddress, int firstRow, int rowCount) {
  if (instance_.shown == 0) return 0;
  if (firstRow < 0) firstRow = list_.TopRow();
  if (rowCount < 0) rowCount = rowsPerPage_;

  std::uint32_t aligned = StartAddress(fromAddress, firstRow, rowCount);
  std::uint64_t address = aligned;
  if (const auto alignment = reader_.Alignment()) {
    aligned -= aligned % alignment->alignment;
    address = aligned >= alignment->offset ? aligned - alignment->offset : aligned;
  }

  std::uint64_t sizes = instance_.averageInstructionSize;
  std::uint64_t count = 1;
  std::uint32_t lastSize = kCellStep;
  bool rewritten = false;
  int row = firstRow;
  while (row <= firstRow + rowCount && address < instance_.end) {
    Instruction instruction;
    if (!cache_.Fetch(static_cast<std::uint32_t>(address), reader_, instruction)) {
      address = cache_.Failed().After(static_cast<std::uint32_t>(address), lastSize);
      continue;
    }
    lastSize = instruction.size;
    sizes += instruction.size;
    ++count;
    const bool before = address + instruction.size <= aligned;
    const auto at = static_cast<std::uint32_t>(address);
    address += instruction.size;
    if (before) continue;
    if (row >= list_.RowCount()) list_.SetRowCount(row + 1);
    if (rewrite || rewritten || !ShowsAddressOf(row, instruction)) {
      WriteCode(row, instruction);
      rewritten = true;
    }
    WriteCounters(row, at);
    ++row;
  }
  instance_.averageInstructionSize =
      static_cast<std::uint32_t>(std::clamp<std::uint64_t>(sizes / count, 1, UINT32_MAX));
  FitRowCount(row, firstRow + rowCount, address);
  return static_cast<std::uint32_t>(std::min<std::uint64_t>(address, UINT32_MAX));
}

void RowBuilder::FitRowCount(int nextRow, int pageEnd, std::uint64_t address) {
  if (address < instance_.end) {
    const std::uint64_t left = (instance_.end - address) / instance_.averageInstructionSize + 1;
    list_.SetRowCount(nextRow +
                      static_cast<int>(std::min<std::uint64_t>(left, platform::ListRows::kMaxRows / 2)));
    return;
  }
  if (list_.RowCount() > std::max(nextRow, pageEnd)) list_.SetRowCount(std::max(nextRow, pageEnd));
  for (int row = nextRow; row < list_.RowCount(); ++row) {
    for (const int column : kAllColumns) list_.SetItemTextDefault(row, column, {});
  }
}

std::string RowBuilder::AddressTextOf(const Instruction& instruction) const {
  platform::WideOut text;
  if (addressTexts_ && qal::Succeeded(addressTexts_->AddressToText(AddressOfText(instruction.addressText), 0,
                                                                   -1, 0, text.put()))) {
    return text.str();
  }
  return std::string(instruction.addressText);
}

std::string RowBuilder::SourceTextAt(std::uint32_t address) const {
  static const std::string kNone = " ";
  platform::WideOut file;
  std::uint32_t line = 0;
  if (!source_ || qal::Failed(source_->AddressToLine(address, file.put(), &line))) return kNone;
  std::uint32_t lineAddress = 0;
  if (qal::Failed(source_->LineToAddress(file.get(), line, &lineAddress)) || lineAddress != address)
    return kNone;
  platform::WideOut text;
  if (qal::Failed(source_->GetLineText(file.get(), line, text.put()))) return kNone;
  return SourceColumnText(text.str());
}

bool RowBuilder::ShowsAddressOf(int row, const Instruction& instruction) const {
  const std::string& shown = list_.ItemText(row, kAddressColumn);
  if (shown.empty()) return false;
  return IsNumberOf(shown, instruction.addressText) || shown == AddressTextOf(instruction);
}

void RowBuilder::WriteCode(int row, const Instruction& instruction) {
  list_.SetItemTextDefault(row, kAssemblerColumn, instruction.codeText);
  list_.SetItemTextDefault(row, kSourceColumn, SourceTextAt(AddressOfText(instruction.addressText)));
  list_.SetItemTextDefault(row, kAddressColumn, AddressTextOf(instruction));
}

void RowBuilder::WriteCounters(int row, std::uint32_t address) {
  const auto cell = instance_.counts->Lookup(address);
  SetCounters(counters_, cell ? &*cell : nullptr);
  list_.SetItemTextDefault(row, kTimesColumn, counters_.times);
  list_.SetItemTextDefault(row, kPassColumn, counters_.pass);
}

}  // namespace coverage
