#include "macro/coverage_images.h"

#include <charconv>

#include "platform/text.h"

namespace coverage {
namespace {

/// Without leading zeros; a text of zeros only stays whole.
std::string_view WithoutZeros(std::string_view addressText) {
  const std::size_t digit = addressText.find_first_not_of('0');
  return digit == std::string_view::npos ? addressText : addressText.substr(digit);
}

std::int32_t LowTimes(const CoverageCell& cell) { return static_cast<std::int32_t>(cell.times); }

void AppendNumber(std::string& text, std::int32_t number) {
  char digits[12];
  const auto end = std::to_chars(digits, digits + sizeof digits, number).ptr;
  text.append(digits, end);
}

void AppendItemHead(std::string& image, std::string_view token) {
  image.append("(").append(StarsForBackslashes(token)).append(")");
}

const char* ExecutedText(bool executed) { return executed ? "Executed" : "No"; }

int Length(std::string_view text) { return static_cast<int>(text.size()); }

}  // namespace

std::vector<std::string> CoverageImages::ListItems() const {
  std::vector<std::string> tokens;
  for (const CoverageWindow* window : windows_.OpenWindows()) {
    if (window->kind == WindowKind::kFile) {
      tokens.push_back(SourceToken(window->sourceFile, false));
      continue;
    }
    for (const auto& [number, instance] : window->instances) {
      tokens.push_back(RangeToken(instance->start, instance->end, false));
    }
  }
  return tokens;
}

CoverageImages::Found CoverageImages::FindWindow(std::string_view token) const {
  const bool source = IsSourceToken(token);
  if (!source && !IsRangeToken(token)) return {};
  for (const CoverageWindow* window : windows_.OpenWindows()) {
    if (source != (window->kind == WindowKind::kFile)) continue;
    if (source) {
      if (platform::EqualNoCase(window->sourceFile, token.substr(kTokenBody))) return {window, nullptr};
      continue;
    }
    for (const auto& [number, instance] : window->instances) {
      if (platform::EqualNoCase(RangeToken(instance->start, instance->end, true), token)) {
        return {window, instance};
      }
    }
  }
  return {};
}

std::string CoverageImages::WriteSelection(const std::vector<std::string>& tokens) const {
  std::string text;
  for (const std::string& token : tokens) {
    if (IsSelectedToken(token) && FindWindow(token).window) AppendItemHead(text, token);
  }
  return text;
}

std::string CoverageImages::WriteImage(const std::vector<std::string>& tokens) const {
  std::string image;
  for (const std::string& token : tokens) {
    if (!IsSelectedToken(token)) continue;
    const Found found = FindWindow(token);
    if (!found.window) continue;
    AppendItemHead(image, token);
    if (found.instance) {
      AppendInstance(*found.instance, image);
      continue;
    }
    for (const auto& [number, instance] : found.window->instances) AppendInstance(*instance, image);
  }
  return image;
}

void CoverageImages::AppendInstance(CoverageInstance& instance, std::string& image) const {
  if (instance.isFunction()) {
    image.append("~").append(instance.functionName).append("~");
  } else {
    image += platform::Format("~%x %x~", instance.start, instance.end);
  }
  CoverageCellTable& table = instance.counts->table();
  InstructionReader reader(host_);
  CachedInstructions source(windows_.Instructions(), reader);
  ForEachRecorded(InstructionWalk(instance.start, instance.end, reader.Alignment(), source),
                  table.cellCount(), [&](std::uint32_t, const Instruction& instruction) {
                    const CoverageCell cell =
                        table.CellAt(AddressOfText(instruction.addressText)).value_or(CoverageCell{});
                    image.append(WithoutZeros(instruction.addressText)).push_back(' ');
                    AppendNumber(image, LowTimes(cell));
                    image.append(" ").append(PassText(cell.pass)).push_back(' ');
                  });
}

ImageVerdict CoverageImages::VerifyImage(std::string_view image) const {
  ImageVerdict verdict;
  const std::uint32_t options = ParseImageSelection(image).options;
  const auto items = SplitImage(image);
  if (!items) {
    verdict.runStatus = 2;
    return verdict;
  }
  for (const ImageItem& item : *items) {
    const qal::Status outcome = VerifyItem(item, options, verdict.messages);
    verdict.messages += "&";
    if (outcome == 0) continue;
    verdict.runStatus = 1;
    verdict.resultName = OutcomeName(outcome, false);
  }
  if (verdict.runStatus != 1) verdict.messages.clear();
  verdict.messages = StarsForBackslashes(verdict.messages);
  return verdict;
}

qal::Status CoverageImages::VerifyItem(const ImageItem& item, std::uint32_t options,
                                       std::string& messages) const {
  messages.append("Range ").append(TokenLabel(item.token)).append(":&");
  const Found found = FindWindow(item.token);
  if (!found.window) {
    messages += "not found in current system.&";
    return kRangeNotFound;
  }
  ImageInstances instances(item.data);
  if (found.instance) {
    const ImageInstance first = instances.Next().value_or(ImageInstance{});
    if (const qal::Status outcome = VerifyInstance(first.data, *found.instance, options, messages)) {
      messages += "&";
      return outcome;
    }
  } else {
    while (const auto part = instances.Next()) {
      CoverageInstance* instance = nullptr;
      for (const auto& [number, candidate] : found.window->instances) {
        if (candidate->functionName != part->name) continue;
        instance = candidate;
        break;
      }
      if (!instance) {
        messages.append(" Function \"").append(part->name).append("\" not found in current system.&");
        return kRangeNotFound;
      }
      if (const qal::Status outcome = VerifyInstance(part->data, *instance, options, messages)) {
        messages += "&";
        return outcome;
      }
    }
  }
  messages += " Test OK&";
  return 0;
}

qal::Status CoverageImages::VerifyInstance(std::string_view data, CoverageInstance& instance,
                                           std::uint32_t options, std::string& messages) const {
  CoverageCellTable& table = instance.counts->table();
  EntryReader entries(data);
  qal::Status outcome = 0;
  bool ended = false;

  const auto check = [&](const Instruction& instruction) -> qal::Status {
    if (ended) return kAddressMismatch;
    const CoverageCell cell = table.CellAt(AddressOfText(instruction.addressText)).value_or(CoverageCell{});
    const std::string_view system = WithoutZeros(instruction.addressText);
    const auto address = entries.Field();
    if (!address) {
      messages +=
          platform::Format(" Instruction at  0x%.*s not found in image.", Length(system), system.data());
      return kAddressMismatch;
    }
    if (*address != system && !platform::EqualNoCase(*address, system)) {
      messages += platform::Format(" Instruction address mismatch -- Image: 0x%.*s   System: 0x%.*s",
                                   Length(*address), address->data(), Length(system), system.data());
      return kAddressMismatch;
    }
    const auto countField = entries.Field();
    if (!countField) {
      messages += platform::Format(" Address 0x%.*s  execution information not found in image.",
                                   Length(system), system.data());
      return kImageCorrupted;
    }
    const std::int32_t count = CountOfField(*countField);
    const bool differs = static_cast<std::uint64_t>(std::int64_t{count}) != cell.times;
    if ((options & kImageTimes) && differs) {
      messages += platform::Format(" Instruction Execution Time mismatch at 0x%.*s -- Image: %d   System: %d",
                                   Length(system), system.data(), count, LowTimes(cell));
      return kTimesMismatch;
    }
    if ((options & kImageExecution) && differs && (count == 0 || cell.times == 0)) {
      messages += platform::Format(" Instruction execution path mismatch at 0x%.*s -- Image: %s   System: %s",
                                   Length(system), system.data(), ExecutedText(count != 0),
                                   ExecutedText(cell.times != 0));
      return kExecutionMismatch;
    }
    // Only an outcome that is looked at ends the data without a word; else the next address is missed by
    // name.
    bool last = false;
    const std::string_view pass = entries.LastField(last);
    if ((options & kImagePass) == 0) return 0;
    ended = last;
    const std::string_view live = PassText(cell.pass);
    if (pass != live && !platform::EqualNoCase(pass, live)) {
      messages += platform::Format(
          " Pass information mismatch at address 0x%.*s -- Image: %.*s   System: %.*s", Length(system),
          system.data(), Length(pass), pass.data(), Length(live), live.data());
      return kPassMismatch;
    }
    return 0;
  };

  InstructionReader reader(host_);
  CachedInstructions source(windows_.Instructions(), reader);
  ForEachRecorded(InstructionWalk(instance.start, instance.end, reader.Alignment(), source),
                  table.cellCount(), [&](std::uint32_t, const Instruction& instruction) {
                    if (outcome == 0) outcome = check(instruction);
                  });
  return outcome;
}

}  // namespace coverage
