// Instruction texts of a program. Conditional instructions carry their suffix and data inside code is shown
// as data: a function is decoded as a whole, once, and the result is kept.
//
// Any thread may ask.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

namespace workbench {

class Program;

struct Instruction {
  std::uint32_t address = 0;
  std::uint32_t size = 0;  ///< 2 or 4
  std::array<std::uint8_t, 4> bytes{};
  bool isData = false;   ///< `.word`, `.hword`
  std::string mnemonic;  ///< lower case, condition suffix included
  std::string operands;

  /// The address alone: 8 lower-case hexadecimal digits.
  std::string AddressText() const;
  /// The code by halfwords (a word for data of 4 bytes), padded with blanks to 10 characters, then mnemonic
  /// and operands.
  std::string CodeText() const;
};

class Disassembler {
 public:
  explicit Disassembler(std::shared_ptr<const Program> program);
  ~Disassembler();
  Disassembler(const Disassembler&) = delete;
  Disassembler& operator=(const Disassembler&) = delete;

  /// What the image holds at `address`; an odd address means the even one below. Nothing outside the image.
  std::optional<Instruction> At(std::uint32_t address) const;
  /// What `bytes` (memory at `address`, 2 bytes or more count) hold: the image's own instruction, with its
  /// context, while memory still equals the image; else the bytes decoded by themselves. Nothing with fewer
  /// than 2 bytes.
  std::optional<Instruction> Decode(std::uint32_t address, std::span<const std::uint8_t> bytes) const;
  /// Start of the instruction before `address`, for scrolling backwards; nothing at the start of the code.
  std::optional<std::uint32_t> Before(std::uint32_t address) const;

 private:
  class Engine;
  struct Block;
  std::shared_ptr<const Block> BlockAt(std::uint32_t address) const;

  std::shared_ptr<const Program> program_;
  mutable std::mutex mutex_;
  std::unique_ptr<Engine> engine_;
  mutable std::unordered_map<std::uint32_t, std::shared_ptr<const Block>> blocks_;  // by extent start
};

}  // namespace workbench
