#include <gtest/gtest.h>

#include <thread>

#include "unit/workbench/elf_builder.h"
#include "workbench/disassembly/disassembler.h"
#include "workbench/program/program.h"

namespace workbench_test {
namespace {

using workbench::Disassembler;
using workbench::Instruction;

std::string TextAt(const Disassembler& disassembler, std::uint32_t address) {
  const auto instruction = disassembler.At(address);
  return instruction ? instruction->AddressText() + " " + instruction->CodeText() : "nothing";
}

TEST(Disassembly, ConditionalInstructionsKeepTheirSuffixWhereverReadingBegins) {
  const auto program = LoadCode({0x2802, 0xbf0c, 0x2101, 0xf04f, 0x0102, 0x3001, 0xe7fe});
  const Disassembler disassembler(program);
  EXPECT_EQ(TextAt(disassembler, 0x46), "00000046 f04f0102  movne.w r1, #2");
  EXPECT_EQ(TextAt(disassembler, 0x44), "00000044 2101      moveq r1, #1");
  EXPECT_EQ(TextAt(disassembler, 0x42), "00000042 bf0c      ite eq");
  EXPECT_EQ(TextAt(disassembler, 0x4a), "0000004a 3001      adds r0, #1");
  EXPECT_EQ(TextAt(disassembler, 0x45), TextAt(disassembler, 0x44));
  EXPECT_EQ(TextAt(disassembler, 0x10000000), "nothing");
  // The bytes as memory holds them give the same, whatever follows them.
  const std::uint8_t bytes[] = {0x01, 0x21, 0xff, 0xff};
  EXPECT_EQ(disassembler.Decode(0x44, bytes)->CodeText(), "2101      moveq r1, #1");
}

TEST(Disassembly, ChangedMemoryIsDecodedByItself) {
  const Disassembler disassembler(LoadCode({0x2802, 0xbf0c, 0x2101, 0x2102, 0xe7fe}));
  const std::uint8_t other[] = {0x07, 0x21, 0x00, 0xbf};
  EXPECT_EQ(disassembler.Decode(0x44, other)->CodeText(), "2107      movs r1, #7");
  EXPECT_EQ(disassembler.Decode(0x20000000, other)->CodeText(), "2107      movs r1, #7");
  const std::uint8_t ite[] = {0x0c, 0xbf};
  EXPECT_EQ(disassembler.Decode(0x20000000, ite)->CodeText(), "bf0c      ite eq");
  EXPECT_EQ(disassembler.Decode(0x20000002, other)->CodeText(), "2107      movs r1, #7")
      << "the IT block of one question does not reach into the next";
  EXPECT_FALSE(disassembler.Decode(0x44, std::span(other, 1)));
}

TEST(Disassembly, WhatIsNoInstructionIsData) {
  const Disassembler disassembler(LoadCode({0xffff, 0xffff, 0xbf00, 0xe7fe}));
  EXPECT_EQ(TextAt(disassembler, 0x40), "00000040 ffff      .hword 0xffff");
  EXPECT_EQ(TextAt(disassembler, 0x42), "00000042 ffff      .hword 0xffff");
  EXPECT_EQ(TextAt(disassembler, 0x44), "00000044 bf00      nop");
  EXPECT_EQ(TextAt(disassembler, 0x0), "00000000 20001000  .word 0x20001000") << "outside the code";
}

TEST(Disassembly, LiteralPoolsAreData) {
  const auto program = Firmware();
  const Disassembler disassembler(program);
  const workbench::Function& parser = program->FunctionsOf("command.c").back();
  EXPECT_EQ(disassembler.At(parser.start)->CodeText().substr(0, 10).size(), 10u);
  std::uint32_t address = parser.end + 1;
  ASSERT_TRUE(program->IsDataInCode(address));
  const auto data = disassembler.At(address);
  EXPECT_TRUE(data->isData);
  EXPECT_EQ(data->mnemonic, ".word");
}

TEST(Disassembly, WalkingTheWholeCodeForwardsAndBackAgain) {
  const auto program = Firmware();
  const Disassembler disassembler(program);
  std::uint32_t before = 0;
  int instructions = 0, data = 0;
  for (const auto& code : program->CodeRanges()) {
    for (std::uint32_t address = code.start; address <= code.last;) {
      const auto instruction = disassembler.At(address);
      ASSERT_TRUE(instruction);
      EXPECT_EQ(instruction->address, address);
      EXPECT_TRUE(instruction->size == 2 || instruction->size == 4);
      EXPECT_EQ(instruction->isData, program->IsDataInCode(address)) << instruction->AddressText();
      if (before != 0) {
        EXPECT_EQ(disassembler.Before(address), before);
      }
      ++(instruction->isData ? data : instructions);
      before = address;
      address += instruction->size;
    }
  }
  EXPECT_GT(instructions, 1000);
  EXPECT_GT(data, 50);
  EXPECT_FALSE(disassembler.Before(program->CodeRanges().front().start));
}

TEST(Disassembly, TwoThreadsReadTheSame) {
  const auto program = Firmware();
  const Disassembler disassembler(program);
  const auto read = [&] {
    std::string text;
    for (std::uint32_t address = 0x40; address < 0xc00; address += 2)
      text += TextAt(disassembler, address) + "\n";
    return text;
  };
  std::string first, second;
  std::thread other([&] { second = read(); });
  first = read();
  other.join();
  EXPECT_EQ(first, second);
  EXPECT_EQ(first, read());
}

}  // namespace
}  // namespace workbench_test
