#include "persist/cov_reader.h"

#include <array>

#include "model/coverage_cell.h"

namespace coverage {
namespace {

std::string ValueOf(std::string_view line) {
  std::string_view key;
  std::string_view value;
  return SplitKeyLine(line, key, value) ? std::string(value) : std::string();
}

}  // namespace

bool CovReader::ReadHeader(CovHeader& header) {
  header = {};
  bool valid = true;
  for (std::string* value : {&header.configuration, &header.project}) {
    std::string_view line;
    std::string_view key;
    std::string_view text;
    if (NextLine(line, kHeaderLineLimit) && SplitKeyLine(line, key, text)) {
      *value = text;
    } else {
      valid = false;
    }
  }
  std::string_view line;
  if (!NextLine(line, kHeaderLineLimit)) return valid;
  if (line.find('=') == std::string_view::npos) {
    again_ = true;
    return valid;
  }
  const std::string type = ValueOf(line);
  header.type = type == kTypeRange ? CovType::kRange : type == kTypeFile ? CovType::kFile : CovType::kOther;
  if (header.type != CovType::kRange && NextLine(line, kHeaderLineLimit)) {
    if (IsSectionLine(line)) {
      again_ = true;
    } else {
      header.fileName = ValueOf(line);
    }
  }
  return valid;
}

bool CovReader::ReadSections(CovType type, SectionFileLine fileLine, CovSectionSink& sink) {
  CovSection section;
  while (FindSection()) {
    if (!ReadSection(type, fileLine, section)) continue;
    switch (sink.BeginSection(section)) {
      case CovSectionSink::Take::kStop:
        return false;
      case CovSectionSink::Take::kSkip:
        break;
      case CovSectionSink::Take::kRows:
        ReadRows(type, sink);
        sink.EndSection();
        break;
    }
  }
  return true;
}

bool CovReader::NextLine(std::string_view& line, std::size_t limit) {
  if (!again_) {
    if (!file_.ReadLine(&line_, limit)) return false;
    line_ = line_.substr(0, line_.find('\0'));
  }
  again_ = false;
  line = line_;
  return true;
}

bool CovReader::FindSection() {
  std::string_view line;
  while (NextLine(line, kSectionLineLimit)) {
    if (IsSectionLine(line)) return true;
  }
  return false;
}

bool CovReader::ReadKeyLine(std::string_view wanted, std::string& value) {
  std::string_view line;
  if (!NextLine(line, kSectionLineLimit)) return false;
  std::string_view key;
  std::string_view text;
  if (!SplitKeyLine(line, key, text) || key != wanted) {
    again_ = true;
    return false;
  }
  value = text;
  return true;
}

bool CovReader::ReadSection(CovType type, SectionFileLine fileLine, CovSection& section) {
  section = {};
  std::string enable;
  if (!ReadKeyLine(kStartKey, section.startText) || !ReadKeyLine(kEndKey, section.endText) ||
      !ReadKeyLine(kEnableKey, enable)) {
    return false;
  }
  section.start = ParseHex32(section.startText);
  section.end = ParseHex32(section.endText);
  section.enableStatus = ParseHex32(enable) != 0 ? 1 : 0;
  if (type == CovType::kUntyped) return true;

  std::string percentage;
  if (!ReadKeyLine(kPercentageKey, percentage) || !ReadKeyLine(kFunctionKey, section.functionName))
    return false;
  section.percentage = ParseDecimal32(percentage);
  std::string_view line;
  if (!NextLine(line, kSectionLineLimit)) return true;
  if (fileLine == SectionFileLine::kAllowed && line.find(kSectionFileKey) != std::string_view::npos) {
    if (line.find('=') == std::string_view::npos) return false;
    section.fileName = ValueOf(line);
    if (!NextLine(line, kSectionLineLimit)) return true;
  }
  if (IsSectionLine(line)) again_ = true;
  return true;
}

void CovReader::ReadRows(CovType type, CovSectionSink& sink) {
  std::array<qal::CountPair, 512> counts;
  std::array<qal::CountPair, 512> passes;
  std::size_t held = 0;
  const auto handOn = [&] {
    if (held != 0) sink.Rows({counts.data(), held}, {passes.data(), held});
    held = 0;
  };
  for (;;) {
    // Rows of the writers' own shape are taken where they lie; anything else goes line by line.
    if (type != CovType::kUntyped && !again_) {
      const std::string_view ahead = file_.Peek(kFastRowBytes);
      const char* at = ahead.data();
      const char* const last = at + ahead.size();
      while (static_cast<std::size_t>(last - at) >= kFastRowBytes) {
        if (held == counts.size()) handOn();
        const std::size_t bytes = ParseFastRow(at, counts[held], passes[held]);
        if (bytes == 0) break;
        at += bytes;
        ++held;
      }
      file_.Skip(static_cast<std::size_t>(at - ahead.data()));
    }
    std::string_view line;
    if (!NextLine(line, kSectionLineLimit)) break;
    if (IsSectionLine(line)) {
      again_ = true;
      break;
    }
    if (held == counts.size()) handOn();
    const auto parse = type == CovType::kUntyped ? ParseUntypedRow : ParseTypedRow;
    if (parse(line, counts[held], passes[held])) ++held;
  }
  handOn();
}

bool CellBudget::Take(std::uint32_t start, std::uint32_t end) {
  const std::uint32_t span = start <= end ? end - start : start - end;
  if (span > kMaxRangeSpan || taken_ + span + 1 > kMostBytes) return false;
  taken_ += std::uint64_t{span} + 1;
  return true;
}

}  // namespace coverage
