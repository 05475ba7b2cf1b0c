#include "macro/coverage_images.h"

#include <cinttypes>

#include "macro/image_escapes.h"
#include "macro/name_pairing.h"
#include "platform/text.h"

namespace coverage {
namespace {

std::int32_t LowTimes(const CoverageCell& cell) { return static_cast<std::int32_t>(cell.times); }

/// Whether an image's number tells the live count: it is the count, or what images are written with, its low
/// 32 bits as a signed number.
bool IsCountOf(std::int64_t count, const CoverageCell& cell) {
  return static_cast<std::uint64_t>(count) == cell.times || count == LowTimes(cell);
}

std::string ItemHead(std::string_view token) { return "(" + WrittenToken(token) + ")"; }

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
        return {window, &*instance};
      }
    }
  }
  return {};
}

std::string CoverageImages::WriteSelection(const std::vector<std::string>& tokens) const {
  std::string text;
  for (const std::string& token : tokens) {
    if (IsSelectedToken(token) && FindWindow(token).window) text += ItemHead(token);
  }
  return text;
}

void CoverageImages::WriteImage(const std::vector<std::string>& tokens, ImageOutput& image) const {
  for (const std::string& token : tokens) {
    if (!IsSelectedToken(token)) continue;
    const Found found = FindWindow(token);
    if (!found.window) continue;
    image.Append(ItemHead(token));
    if (found.instance) {
      AppendInstance(*found.instance, image);
      continue;
    }
    for (const auto& [number, instance] : found.window->instances) AppendInstance(*instance, image);
  }
}

void CoverageImages::AppendInstance(CoverageInstance& instance, ImageOutput& image) const {
  image.Append(instance.isFunction() ? "~" + WrittenName(instance.functionName) + "~"
                                     : platform::Format("~%x %x~", instance.start, instance.end));
  CoverageCellTable& table = instance.counts->table();
  InstructionReader reader(host_);
  CachedInstructions source(windows_.Instructions(), reader);
  ForEachRecorded(InstructionWalk(instance.start, instance.end, reader.Alignment(), source),
                  table.cellCount(), [&](std::uint32_t, const Instruction& instruction) {
                    const CoverageCell cell =
                        table.CellAt(AddressOfText(instruction.addressText)).value_or(CoverageCell{});
                    image.Entry(instruction.addressText, LowTimes(cell), cell.pass);
                  });
}

std::uint64_t CoverageImages::FirstAddress(CoverageInstance& instance) const {
  if (instance.counts->table().cellCount() == 0) return kNoStart;
  InstructionReader reader(host_);
  CachedInstructions source(windows_.Instructions(), reader);
  Instruction first;
  InstructionWalk walk(instance.start, instance.end, reader.Alignment(), source);
  return walk.Next(first) ? AddressOfText(first.addressText) : kNoStart;
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
  if (!found.instance) return VerifyFunctions(item, *found.window, options, messages);
  const std::vector<ImageInstance> parts = SplitItem(item.data);
  const std::string_view data = parts.empty() ? std::string_view() : parts.front().data;
  const qal::Status outcome = VerifyInstance(data, *found.instance, options, messages);
  messages += outcome == 0 ? " Test OK&" : "&";
  return outcome;
}

// Functions of one file may share a name, and neither side keeps an order to tell them by: the list of the
// window is sorted as the person likes, when the image is written as well as now, and the image's heads hold
// names only. What does not depend on any sorting is where the functions lie. So on both sides those of a
// name are put in the order of their first instructions, which the image's entries tell for its heads, and
// the k-th belongs to the k-th. One without entries, as the debugger's refusal of its range leaves it, comes
// last on both sides.
qal::Status CoverageImages::VerifyFunctions(const ImageItem& item, const CoverageWindow& window,
                                            std::uint32_t options, std::string& messages) const {
  std::vector<CoverageInstance*> instances;
  std::vector<NamedPart> live;
  for (const auto& [number, instance] : window.instances) {
    instances.push_back(&*instance);
    live.push_back({instance->functionName, FirstAddress(*instance)});
  }
  const std::vector<ImageInstance> parts = SplitItem(item.data);
  const std::vector<std::size_t> partners = PairByName(PartsOf(parts), live);
  for (std::size_t i = 0; i < parts.size(); ++i) {
    if (partners[i] == kNoPartner) {
      messages.append(" Function \"").append(parts[i].name).append("\" not found in current system.&");
      return kRangeNotFound;
    }
    if (const qal::Status outcome =
            VerifyInstance(parts[i].data, *instances[partners[i]], options, messages)) {
      messages += "&";
      return outcome;
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
    const std::int64_t count = CountOfField(*countField);
    const bool differs = !IsCountOf(count, cell);
    if ((options & kImageTimes) && differs) {
      messages += platform::Format(" Instruction Execution Time mismatch at 0x%.*s -- Image: %" PRId64
                                   "   System: %d",
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
