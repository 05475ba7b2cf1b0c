#include "model/path_marks.h"

namespace coverage {

void PathMarks::Open(std::size_t cells) {
  slots_.assign(cells + 1, 0);
  runs_ = 0;
}

void PathMarks::Close() {
  std::vector<std::uint32_t>().swap(slots_);  // gives the memory back
  runs_ = 0;
}

bool PathMarks::IntegrateBlock(std::uint32_t* slots, std::size_t count, std::uint32_t& running) {
  std::uint32_t any = running;
  for (std::size_t i = 0; i < count; ++i) any |= slots[i];
  if (any == 0) return false;
  // The sum is kept shifted like the slots, so that a flag never carries into it.
  std::uint32_t sum = running;
  for (std::size_t i = 0; i < count; ++i) {
    const std::uint32_t slot = slots[i];
    sum += slot & ~1u;
    slots[i] = sum | (slot & 1u);
  }
  running = sum;
  return true;
}

}  // namespace coverage
