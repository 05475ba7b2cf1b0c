#include "workbench/disassembly/disassembler.h"

#include <capstone/capstone.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <stdexcept>

#include "workbench/program/program.h"

namespace workbench {
namespace {

constexpr std::size_t kBlocksMost = 4096;
// A stretch of code without functions is decoded in pieces of this size.
constexpr std::uint32_t kPieceSize = 64 * 1024;

std::string Hex(std::uint32_t value, int digits) {
  char text[16];
  std::snprintf(text, sizeof text, "%0*x", digits, value);
  return text;
}

std::uint32_t Little(const std::uint8_t* bytes, std::uint32_t size) {
  std::uint32_t value = 0;
  for (std::uint32_t i = size; i-- > 0;) value = value << 8 | bytes[i];
  return value;
}

Instruction Data(std::uint32_t address, const std::uint8_t* bytes, std::uint32_t size) {
  Instruction data;
  data.address = address;
  data.size = size;
  std::copy_n(bytes, size, data.bytes.begin());
  data.isData = true;
  data.mnemonic = size == 4 ? ".word" : ".hword";
  data.operands = "0x" + Hex(Little(bytes, size), static_cast<int>(2 * size));
  return data;
}

}  // namespace

std::string Instruction::AddressText() const { return Hex(address, 8); }

std::string Instruction::CodeText() const {
  std::string text;
  if (isData && size == 4) {
    text = Hex(Little(bytes.data(), 4), 8);
  } else {
    for (std::uint32_t i = 0; i < size; i += 2) text += Hex(Little(bytes.data() + i, 2), 4);
  }
  text.resize(10, ' ');
  text += mnemonic;
  if (!operands.empty()) text += ' ' + operands;
  return text;
}

// Capstone's handle; the caller holds the lock.
class Disassembler::Engine {
 public:
  Engine() {
    if (cs_open(CS_ARCH_ARM, static_cast<cs_mode>(CS_MODE_THUMB | CS_MODE_MCLASS), &handle_) != CS_ERR_OK)
      throw std::runtime_error("The disassembler could not be opened.");
    instruction_ = cs_malloc(handle_);
  }
  ~Engine() {
    if (instruction_ != nullptr) cs_free(instruction_, 1);
    cs_close(&handle_);
  }
  Engine(const Engine&) = delete;
  Engine& operator=(const Engine&) = delete;

  /// Forgets the IT block that the last instructions may have been in.
  void Restart() {
    cs_close(&handle_);
    cs_free(instruction_, 1);
    instruction_ = nullptr;
    if (cs_open(CS_ARCH_ARM, static_cast<cs_mode>(CS_MODE_THUMB | CS_MODE_MCLASS), &handle_) == CS_ERR_OK)
      instruction_ = cs_malloc(handle_);
  }

  /// Decodes straight code, IT blocks included; what is no instruction becomes data of 2 bytes.
  void Decode(std::uint32_t address, const std::uint8_t* bytes, std::uint32_t size,
              std::vector<Instruction>& into) {
    const std::uint8_t* at = bytes;
    std::size_t left = size;
    std::uint64_t where = address;
    while (left >= 2) {
      if (instruction_ != nullptr && cs_disasm_iter(handle_, &at, &left, &where, instruction_)) {
        Instruction found;
        found.address = static_cast<std::uint32_t>(instruction_->address);
        found.size = instruction_->size;
        std::copy_n(instruction_->bytes, std::min<std::size_t>(found.size, 4), found.bytes.begin());
        found.mnemonic = instruction_->mnemonic;
        found.operands = instruction_->op_str;
        into.push_back(std::move(found));
      } else {
        into.push_back(Data(static_cast<std::uint32_t>(where), at, 2));
        at += 2;
        left -= 2;
        where += 2;
      }
    }
  }

 private:
  csh handle_ = 0;
  cs_insn* instruction_ = nullptr;
};

struct Disassembler::Block {
  AddressRange range;
  std::vector<Instruction> instructions;  // ascending
  std::vector<std::uint32_t> byHalfword;  // index of the instruction that starts there, or kNone
  static constexpr std::uint32_t kNone = 0xffffffff;

  const Instruction* At(std::uint32_t address) const {
    if (address < range.start || address > range.last) return nullptr;
    const std::uint32_t index = byHalfword[(address - range.start) / 2];
    return index == kNone ? nullptr : &instructions[index];
  }
};

Disassembler::Disassembler(std::shared_ptr<const Program> program)
    : program_(std::move(program)), engine_(std::make_unique<Engine>()) {}

Disassembler::~Disassembler() = default;

// The function around `address`, or the stretch of an executable section between functions.
std::shared_ptr<const Disassembler::Block> Disassembler::BlockAt(std::uint32_t address) const {
  const auto& code = program_->CodeRanges();
  auto section = std::upper_bound(code.begin(), code.end(), address,
                                  [](std::uint32_t a, const AddressRange& range) { return a < range.start; });
  if (section == code.begin() || address > std::prev(section)->last) return nullptr;
  AddressRange range = *std::prev(section);
  const auto& functions = program_->Functions();
  const auto next =
      std::upper_bound(functions.begin(), functions.end(), address,
                       [](std::uint32_t a, const Function& function) { return a < function.start; });
  if (next != functions.end()) range.last = std::min(range.last, next->start - 1);
  if (next != functions.begin()) range.start = std::max(range.start, std::prev(next)->start);
  if (range.last - range.start >= kPieceSize) {
    range.start += (address - range.start) / kPieceSize * kPieceSize;
    range.last = std::min(range.last, range.start + (kPieceSize - 1));
  }

  const std::lock_guard lock(mutex_);
  if (const auto known = blocks_.find(range.start); known != blocks_.end()) return known->second;
  const std::uint32_t size = range.last - range.start + 1;
  std::vector<std::uint8_t> bytes(size);
  if (!program_->ReadImage(range.start, bytes.data(), size)) return nullptr;

  auto block = std::make_shared<Block>();
  block->range = range;
  std::uint32_t offset = 0;
  while (size - offset >= 2) {
    const std::uint32_t at = range.start + offset;
    const bool data = program_->IsDataInCode(at);
    std::uint32_t end = offset + 2;
    while (size - end >= 2 && program_->IsDataInCode(range.start + end) == data) end += 2;
    if (!data) {
      engine_->Decode(at, bytes.data() + offset, end - offset, block->instructions);
    } else {
      while (offset < end) {
        const std::uint32_t unit = (range.start + offset) % 4 == 0 && end - offset >= 4 ? 4 : 2;
        block->instructions.push_back(Data(range.start + offset, bytes.data() + offset, unit));
        offset += unit;
      }
    }
    offset = end;
  }
  block->byHalfword.assign((size + 1) / 2, Block::kNone);
  for (std::size_t i = 0; i < block->instructions.size(); ++i)
    block->byHalfword[(block->instructions[i].address - range.start) / 2] = static_cast<std::uint32_t>(i);
  if (blocks_.size() >= kBlocksMost) blocks_.clear();
  blocks_.emplace(range.start, block);
  return block;
}

std::optional<Instruction> Disassembler::At(std::uint32_t address) const {
  address &= ~1u;
  std::uint8_t bytes[4] = {};
  std::uint32_t size = 4;
  if (!program_->ReadImage(address, bytes, 4)) {
    size = 2;
    if (!program_->ReadImage(address, bytes, 2)) return std::nullopt;
  }
  return Decode(address, std::span(bytes, size));
}

std::optional<Instruction> Disassembler::Decode(std::uint32_t address,
                                                std::span<const std::uint8_t> bytes) const {
  address &= ~1u;
  if (bytes.size() < 2) return std::nullopt;
  if (const auto block = BlockAt(address)) {
    const Instruction* known = block->At(address);
    if (known != nullptr && known->size <= bytes.size() &&
        std::equal(known->bytes.begin(), known->bytes.begin() + known->size, bytes.begin()))
      return *known;
  } else if (std::uint8_t image[4];
             program_->ReadImage(address, image, 2) && std::memcmp(image, bytes.data(), 2) == 0) {
    // Bytes of the image outside its code: constants.
    const bool word = address % 4 == 0 && bytes.size() >= 4;
    return Data(address, bytes.data(), word ? 4 : 2);
  }
  std::vector<Instruction> found;
  const std::lock_guard lock(mutex_);
  engine_->Restart();
  engine_->Decode(address, bytes.data(), static_cast<std::uint32_t>(std::min<std::size_t>(bytes.size(), 4)),
                  found);
  engine_->Restart();
  return found.front();
}

std::optional<std::uint32_t> Disassembler::Before(std::uint32_t address) const {
  address &= ~1u;
  if (address < 2) return std::nullopt;
  const auto block = BlockAt(address - 2);
  if (block == nullptr) return std::nullopt;
  if (block->At(address - 2) != nullptr) return address - 2;
  if (address >= 4 && block->At(address - 4) != nullptr) return address - 4;
  return std::nullopt;
}

}  // namespace workbench
