#include "model/disassembly_cache.h"

#include <algorithm>
#include <cstring>

namespace coverage {

namespace {

/// In front of the two texts of a record.
struct RecordHead {
  std::uint32_t size;
  std::uint16_t addressLength;
  std::uint16_t codeLength;
};

constexpr std::size_t kMaxText = 0xFFFF;
constexpr std::size_t kRecordStep = 4;  // a place is counted in these, behind a chunk number

}  // namespace

DisassemblyCache::DisassemblyCache() = default;

std::uint32_t DisassemblyCache::PlaceOf(std::uint32_t address) const {
  if ((address & 1u) != 0) {
    const auto found = odd_.find(address);
    return found != odd_.end() ? found->second : 0;
  }
  const std::uint32_t number = address >> kPageBits;
  if (last_ == nullptr || lastPage_ != number) {
    const auto found = pages_.find(number);
    if (found == pages_.end()) return 0;
    lastPage_ = number;
    last_ = found->second.get();
  }
  return (*last_)[address / 2 % kStepsAPage];
}

void DisassemblyCache::SetPlace(std::uint32_t address, std::uint32_t place) {
  if ((address & 1u) != 0) {
    odd_[address] = place;
    return;
  }
  auto& page = pages_[address >> kPageBits];
  if (page == nullptr) page = std::make_unique<Page>();
  (*page)[address / 2 % kStepsAPage] = place;
}

bool DisassemblyCache::Find(std::uint32_t address, Instruction& out) const {
  const std::uint32_t place = PlaceOf(address);
  if (place == 0) return false;
  const std::size_t at = std::size_t{place - 1} * kRecordStep;
  const char* const record = chunks_[at / kChunk].get() + at % kChunk;
  RecordHead head;
  std::memcpy(&head, record, sizeof(head));
  const char* const texts = record + sizeof(head);
  out = {head.size, {texts, head.addressLength}, {texts + head.addressLength, head.codeLength}};
  return true;
}

Instruction DisassemblyCache::Keep(std::uint32_t address, const Instruction& instruction) {
  const std::string_view line = instruction.addressText.substr(0, kMaxText);
  const std::string_view code = instruction.codeText.substr(0, kMaxText);
  const std::size_t bytes =
      (sizeof(RecordHead) + line.size() + code.size() + kRecordStep - 1) & ~(kRecordStep - 1);
  if (chunks_.empty() || used_ + bytes > kChunk) {
    if (chunks_.size() == kMaxChunks) return instruction;
    chunks_.push_back(std::make_unique_for_overwrite<char[]>(kChunk));
    used_ = 0;
  }
  const std::size_t at = (chunks_.size() - 1) * kChunk + used_;
  char* const record = chunks_.back().get() + used_;
  const RecordHead head{instruction.size, static_cast<std::uint16_t>(line.size()),
                        static_cast<std::uint16_t>(code.size())};
  std::memcpy(record, &head, sizeof(head));
  char* const texts = record + sizeof(head);
  line.copy(texts, line.size());
  code.copy(texts + line.size(), code.size());
  if (PlaceOf(address) == 0) ++size_;
  SetPlace(address, static_cast<std::uint32_t>(at / kRecordStep + 1));
  used_ += bytes;
  return {instruction.size, {texts, line.size()}, {texts + line.size(), code.size()}};
}

bool DisassemblyCache::Fetch(std::uint32_t address, InstructionSource& source, Instruction& out) {
  if (Find(address, out)) return true;
  if (!source.InstructionAt(address, out)) return false;
  out = Keep(address, out);
  return true;
}

void DisassemblyCache::Drop() {
  pages_.clear();
  odd_.clear();
  last_ = nullptr;
  chunks_.clear();
  used_ = 0;
  size_ = 0;
  ++generation_;
}

}  // namespace coverage
