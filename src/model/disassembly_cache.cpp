#include "model/disassembly_cache.h"

namespace coverage {

DisassemblyCache::DisassemblyCache() = default;

const DisassemblyCache::Entry* DisassemblyCache::FindEntry(std::uint32_t address) const {
  if ((address & 1u) != 0) {
    const auto found = odd_.find(address);
    return found != odd_.end() ? &found->second : nullptr;
  }
  const auto found = pages_.find(address >> kPageBits);
  if (found == pages_.end()) return nullptr;
  lastPage_ = found->first;
  last_ = found->second.get();
  return &(*last_)[address / 2 % kStepsAPage];
}

DisassemblyCache::Entry& DisassemblyCache::MakeEntry(std::uint32_t address) {
  if ((address & 1u) != 0) return odd_[address];
  auto& page = pages_[address >> kPageBits];
  if (page == nullptr) page = std::make_unique<Page>();
  return (*page)[address / 2 % kStepsAPage];
}

Instruction DisassemblyCache::Keep(std::uint32_t address, const Instruction& instruction) {
  const std::string_view line = instruction.addressText;
  const std::string_view code = instruction.codeText;
  if (instruction.size > 0xFF || line.size() > 0xFF || code.size() > 0xFFFF) return instruction;
  const std::size_t bytes = line.size() + code.size();
  if (chunks_.empty() || used_ + bytes > kChunk) {
    if (chunks_.size() == kMaxChunks) return instruction;
    chunks_.push_back(std::make_unique_for_overwrite<char[]>(kChunk));
    used_ = 0;
  }
  char* const texts = chunks_.back().get() + used_;
  line.copy(texts, line.size());
  code.copy(texts + line.size(), code.size());
  Entry& entry = MakeEntry(address);
  if (entry.size == 0) ++size_;
  entry = {static_cast<std::uint32_t>((chunks_.size() - 1) * kChunk + used_),
           static_cast<std::uint8_t>(instruction.size), static_cast<std::uint8_t>(line.size()),
           static_cast<std::uint16_t>(code.size())};
  used_ += bytes;
  return {instruction.size, {texts, line.size()}, {texts + line.size(), code.size()}};
}

bool DisassemblyCache::FetchNew(std::uint32_t address, InstructionSource& source, Instruction& out) {
  if (const Entry* const entry = EntryOf(address); entry != nullptr && entry->Failed()) return false;
  if (!source.InstructionAt(address, out)) {
    NoteFailure(address);
    return false;
  }
  out = Keep(address, out);
  return true;
}

void DisassemblyCache::NoteFailure(std::uint32_t address) {
  MakeEntry(address).place = 1;
  const std::uint32_t step = address - run_.last;
  const bool follows = run_.count != 0 && address > run_.last && step <= kMaxStep &&
                       (run_.count == 1 || run_.first + step * std::uint64_t{run_.count} == address);
  if (follows) {
    // Told to the first of them, so that a walk that begins there passes over all at once.
    Entry& first = MakeEntry(run_.first);
    first.place = ++run_.count;
    first.codeLength = static_cast<std::uint16_t>(step);
    run_.last = address;
  } else {
    run_ = {address, address, 1};
  }
}

std::uint64_t DisassemblyCache::AfterFailures(std::uint32_t address, std::uint32_t step) {
  std::uint64_t next = std::uint64_t{address} + step;
  for (std::uint64_t at = address; at <= UINT32_MAX; at = next) {
    const Entry* const entry = EntryOf(static_cast<std::uint32_t>(at));
    if (entry == nullptr || !entry->Failed()) break;
    next = at + std::uint64_t{step} * (entry->codeLength == step ? entry->place : 1);
  }
  const std::uint64_t count = (next - address) / step;
  if (count > 1 && step <= kMaxStep && count <= UINT32_MAX) {
    Entry& first = MakeEntry(address);
    first.place = static_cast<std::uint32_t>(count);
    first.codeLength = static_cast<std::uint16_t>(step);
  }
  return next;
}

void DisassemblyCache::Drop() {
  pages_.clear();
  odd_.clear();
  last_ = nullptr;
  lastPage_ = kNoPage;
  chunks_.clear();
  used_ = 0;
  size_ = 0;
  run_ = {};
  ++generation_;
}

}  // namespace coverage
