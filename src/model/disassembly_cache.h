#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "model/failed_addresses.h"
#include "model/instruction_reader.h"

namespace coverage {

/// Instructions that were disassembled once: lengths, address texts and code texts by address, and where
/// there was none. Pages of 4 KiB of addresses hold where each instruction's record lies; the records lie in
/// chunks that never move, so texts are valid until Drop. UI thread only.
class DisassemblyCache {
 public:
  DisassemblyCache();

  bool Find(std::uint32_t address, Instruction& out) const {
    const Entry* const entry = EntryOf(address);
    if (entry == nullptr || entry->size == 0) return false;
    const char* const texts = chunks_[entry->place / kChunk].get() + entry->place % kChunk;
    out.size = entry->size;
    out.addressText = {texts, entry->addressLength};
    out.codeText = {texts + entry->addressLength, entry->codeLength};
    return true;
  }
  /// Keeps an instruction and gives the kept texts. One that is out of proportion (255 bytes of code or of
  /// address text, 64 KiB of code text), or for which the cache is full (1 GiB of texts), is handed back as
  /// it came.
  Instruction Keep(std::uint32_t address, const Instruction& instruction);
  /// From the cache, else from `source`, which is not asked again where it failed.
  bool Fetch(std::uint32_t address, InstructionSource& source, Instruction& out) {
    return Find(address, out) || FetchNew(address, source, out);
  }
  /// Where instructions could not be fetched.
  const FailedAddresses& Failed() const { return failed_; }

  /// Forgets everything and begins a new generation.
  void Drop();
  /// Grows with each Drop: what was derived under another number must be derived again. Never 0.
  std::uint64_t generation() const { return generation_; }
  std::size_t size() const { return size_; }

 private:
  static constexpr std::uint32_t kPageBits = 12;
  static constexpr std::uint32_t kNoPage = 0xFFFFFFFF;
  static constexpr std::size_t kStepsAPage = std::size_t{1} << (kPageBits - 1);
  static constexpr std::size_t kChunk = std::size_t{1} << 20;
  static constexpr std::size_t kMaxChunks = 1024;
  /// Where the texts lie and how long they are. Size 0: nothing known.
  struct Entry {
    std::uint32_t place = 0;
    std::uint8_t size = 0;
    std::uint8_t addressLength = 0;
    std::uint16_t codeLength = 0;
  };
  static_assert(sizeof(Entry) == 8);
  using Page = std::array<Entry, kStepsAPage>;

  bool FetchNew(std::uint32_t address, InstructionSource& source, Instruction& out);
  const Entry* EntryOf(std::uint32_t address) const {
    // The page looked at last, unless the address is odd: then no page has this number.
    if ((address >> kPageBits | (address & 1u) << 31) == lastPage_) [[likely]] {
      return &(*last_)[address / 2 % kStepsAPage];
    }
    return FindEntry(address);
  }
  const Entry* FindEntry(std::uint32_t address) const;
  Entry& MakeEntry(std::uint32_t address);

  std::unordered_map<std::uint32_t, std::unique_ptr<Page>> pages_;
  std::unordered_map<std::uint32_t, Entry> odd_;  ///< entries of odd addresses
  mutable std::uint32_t lastPage_ = kNoPage;      ///< number of `last_`
  mutable Page* last_ = nullptr;
  std::vector<std::unique_ptr<char[]>> chunks_;
  std::size_t used_ = 0;  ///< bytes of the last chunk
  FailedAddresses failed_;
  std::size_t size_ = 0;
  std::uint64_t generation_ = 1;
};

/// The cache in front of a reader, as a source. Texts hold until the cache is dropped.
class CachedInstructions final : public InstructionSource {
 public:
  CachedInstructions(DisassemblyCache& cache, InstructionSource& source) : cache_(cache), source_(source) {}
  bool InstructionAt(std::uint32_t address, Instruction& out) override {
    return cache_.Fetch(address, source_, out);
  }

 private:
  DisassemblyCache& cache_;
  InstructionSource& source_;
};

}  // namespace coverage
