#include <algorithm>
#include <cinttypes>
#include <cstring>

#include "macro/coverage_images.h"
#include "platform/text.h"

namespace coverage {
namespace {

/// Bytes looked at at once for a stretch that both sides share.
constexpr std::size_t kStretch = 4096;
/// Of an entry: address, count and outcomes, each with a blank behind it.
constexpr std::ptrdiff_t kFields = 3;

int Length(std::string_view text) { return static_cast<int>(text.size()); }

bool Same(std::string_view left, std::string_view right) {
  return left == right || platform::EqualNoCase(left, right);
}

const char* ExecutedText(std::int64_t count) { return count != 0 ? "Executed" : "No"; }

/// How many characters from the beginning on are the same, of at most a stretch.
std::size_t CommonLength(std::string_view left, std::string_view right) {
  const std::size_t size = std::min({left.size(), right.size(), kStretch});
  std::size_t length = 0;
  for (; length + 8 <= size && std::memcmp(&left[length], &right[length], 8) == 0; length += 8) {
  }
  while (length < size && left[length] == right[length]) ++length;
  return length;
}

/// Passes over whole entries that are equal to the letter on both sides: they cannot differ in anything, and
/// most of two images is the same.
void SkipEqualEntries(EntryReader& first, EntryReader& second) {
  std::size_t common = kStretch;
  while (common == kStretch) {
    const std::string_view left = first.rest();
    common = CommonLength(left, second.rest());
    const auto blanks = std::count(left.begin(), left.begin() + static_cast<std::ptrdiff_t>(common), ' ');
    if (blanks < kFields) return;
    auto over = blanks % kFields;
    std::size_t whole = common;
    for (; left[whole - 1] != ' ' || over > 0; --whole) over -= left[whole - 1] == ' ' ? 1 : 0;
    first.Skip(whole);
    second.Skip(whole);
  }
}

qal::Status CompareInstances(std::string_view firstData, std::string_view secondData, std::uint32_t options,
                             std::string& messages) {
  EntryReader first(firstData);
  EntryReader second(secondData);
  for (bool firstEnded = false; !firstEnded;) {
    SkipEqualEntries(first, second);
    const auto address = first.Field();
    if (!address) {
      if (!second.HasField()) return 0;
      messages += "Image 2 has a larger address area.";
      return kAddressMismatch;
    }
    const int size = Length(*address);
    const char* text = address->data();
    const auto firstCount = first.Field();
    if (!firstCount) {
      messages += platform::Format("Address 0x%.*s execution information not found in image 1", size, text);
      return kImageCorrupted;
    }
    const std::string_view firstPass = first.LastField(firstEnded);

    const auto otherAddress = second.Field();
    if (!otherAddress) {
      messages += platform::Format("Coverage Information for 0x%.*s not found in image 2.", size, text);
      return kAddressMismatch;
    }
    if (!Same(*address, *otherAddress)) {
      messages += platform::Format("Instruction address mismatch. Image_1: 0x%.*s   Image_2: 0x%.*s", size,
                                   text, Length(*otherAddress), otherAddress->data());
      return kAddressMismatch;
    }
    const auto secondCount = second.Field();
    if (!secondCount) {
      messages += platform::Format("Execution information for 0x%.*s not found in image 2", size, text);
      return kImageCorrupted;
    }
    const std::int64_t before = CountOfField(*firstCount);
    const std::int64_t after = CountOfField(*secondCount);
    if ((options & kImageTimes) && before != after) {
      messages += platform::Format("Instruction Execution Time mismatch at address 0x%.*s. Image_1: %" PRId64
                                   "   Image_2: %" PRId64,
                                   size, text, before, after);
      return kTimesMismatch;
    }
    if ((options & kImageExecution) && before != after && (before == 0 || after == 0)) {
      messages += platform::Format("Execution path mismatch at address 0x%.*s. Image_1: %s   Image_2: %s",
                                   size, text, ExecutedText(before), ExecutedText(after));
      return kExecutionMismatch;
    }
    bool secondEnded = false;
    const std::string_view secondPass = second.LastField(secondEnded);
    if ((options & kImagePass) && !Same(firstPass, secondPass)) {
      messages +=
          platform::Format("Pass information mismatch at address 0x%.*s. Image_1: %.*s   Image_2: %.*s", size,
                           text, Length(firstPass), firstPass.data(), Length(secondPass), secondPass.data());
      return kPassMismatch;
    }
  }
  return 0;
}

qal::Status CompareItems(const ImageItem& first, const ImageItem& second, std::uint32_t options,
                         std::string& messages) {
  const std::vector<ImageInstance> left = SplitItem(first.data);
  const std::vector<ImageInstance> right = SplitItem(second.data);
  if (!IsSourceToken(first.token)) {
    const auto data = [](const std::vector<ImageInstance>& parts) {
      return parts.empty() ? std::string_view() : parts.front().data;
    };
    return CompareInstances(data(left), data(right), options, messages);
  }
  // The order of the heads says nothing: see where an image is verified.
  const std::vector<std::size_t> partners = PairByName(PartsOf(left), PartsOf(right));
  for (std::size_t i = 0; i < left.size(); ++i) {
    if (partners[i] == kNoPartner) {
      messages.append(" Function ").append(left[i].name).append(" not found in image 2&");
      return kRangeNotFound;
    }
    if (const qal::Status outcome =
            CompareInstances(left[i].data, right[partners[i]].data, options, messages)) {
      return outcome;
    }
  }
  return 0;
}

}  // namespace

ImageVerdict CompareImages(std::string_view first, std::string_view second) {
  ImageVerdict verdict;
  const std::uint32_t options = ParseImageSelection(first).options;
  const auto firstItems = SplitImage(first);
  const auto secondItems = SplitImage(second);
  if (!firstItems || !secondItems) {
    verdict.runStatus = 2;
    return verdict;
  }
  for (const ImageItem& item : *firstItems) {
    verdict.messages.append("Range ").append(TokenLabel(item.token)).append(":&");
    const auto other =
        std::find_if(secondItems->begin(), secondItems->end(),
                     [&](const ImageItem& candidate) { return candidate.token == item.token; });
    if (other == secondItems->end()) {
      verdict.messages += " Range Information not found in Image_2&&";
      verdict.resultName = OutcomeName(kRangeNotFound, true);
      verdict.runStatus = 1;
      continue;
    }
    const qal::Status outcome = CompareItems(item, *other, options, verdict.messages);
    if (outcome == 0) {
      verdict.messages += "Test Pass";
    } else {
      verdict.runStatus = 1;
      verdict.resultName = OutcomeName(outcome, true);
    }
    verdict.messages += "&&";
  }
  if (verdict.runStatus != 1) verdict.messages.clear();
  verdict.messages = StarsForBackslashes(verdict.messages);
  return verdict;
}

}  // namespace coverage
