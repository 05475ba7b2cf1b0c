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
  if (failed_.Holds(address)) return false;
  if (!source.InstructionAt(address, out)) {
    failed_.Note(address);
    return false;
  }
  out = Keep(address, out);
  return true;
}

void DisassemblyCache::Drop() {
  pages_.clear();
  odd_.clear();
  last_ = nullptr;
  lastPage_ = kNoPage;
  chunks_.clear();
  used_ = 0;
  failed_.Clear();
  size_ = 0;
  ++generation_;
}

}  // namespace coverage
