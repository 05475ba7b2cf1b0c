#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "model/instruction_reader.h"

namespace coverage {

/// Instructions that were disassembled once: lengths, address texts and code texts by address. Pages of 4 KiB
/// of addresses hold where each instruction's record lies; the records lie in chunks that never move, so
/// texts are valid until Drop. UI thread only.
class DisassemblyCache {
 public:
  DisassemblyCache();

  bool Find(std::uint32_t address, Instruction& out) const;
  /// Keeps an instruction and gives the kept texts; texts beyond 64 KiB are cut. When the cache is full (1
  /// GiB of texts) the instruction is handed back as it came.
  Instruction Keep(std::uint32_t address, const Instruction& instruction);
  /// From the cache, else from `source`. Failures are not kept.
  bool Fetch(std::uint32_t address, InstructionSource& source, Instruction& out);

  /// Forgets everything and begins a new generation.
  void Drop();
  /// Grows with each Drop: what was derived under another number must be derived again. Never 0.
  std::uint64_t generation() const { return generation_; }
  std::size_t size() const { return size_; }

 private:
  static constexpr std::uint32_t kPageBits = 12;
  static constexpr std::size_t kStepsAPage = std::size_t{1} << (kPageBits - 1);
  static constexpr std::size_t kChunk = std::size_t{1} << 20;
  static constexpr std::size_t kMaxChunks = 1024;
  using Page = std::array<std::uint32_t, kStepsAPage>;  ///< place of a record + 1, or 0

  std::uint32_t PlaceOf(std::uint32_t address) const;
  void SetPlace(std::uint32_t address, std::uint32_t place);

  std::unordered_map<std::uint32_t, std::unique_ptr<Page>> pages_;
  std::unordered_map<std::uint32_t, std::uint32_t> odd_;  ///< places of odd addresses
  mutable std::uint32_t lastPage_ = 0;                    ///< number of `last_`
  mutable Page* last_ = nullptr;
  std::vector<std::unique_ptr<char[]>> chunks_;
  std::size_t used_ = 0;  ///< bytes of the last chunk
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
