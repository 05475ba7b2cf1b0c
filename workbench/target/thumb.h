// The few facts about Thumb code that recording needs: lengths, IT blocks, conditional branches.
#pragma once

#include <bit>
#include <cstdint>

namespace workbench::thumb {

/// True when the instruction that begins with this halfword has a second one.
constexpr bool IsWide(std::uint16_t first) { return (first >> 11) >= 0x1d; }

/// Number of instructions that an IT instruction makes conditional; 0 for any other instruction.
constexpr unsigned ItMembers(std::uint16_t first) {
  if ((first & 0xff00) != 0xbf00 || (first & 0xf) == 0) return 0;
  return 4 - static_cast<unsigned>(std::countr_zero(static_cast<unsigned>(first & 0xf)));
}

/// B<cond>, CBZ and CBNZ; `second` is not looked at for an instruction of one halfword.
constexpr bool IsConditionalBranch(std::uint16_t first, std::uint16_t second) {
  if ((first & 0xf000) == 0xd000) return (first & 0x0f00) < 0x0e00;
  if ((first & 0xf500) == 0xb100) return true;
  return (first & 0xf800) == 0xf000 && (second & 0xd000) == 0x8000 && (first & 0x0380) != 0x0380;
}

}  // namespace workbench::thumb
