#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "component/resource_queries.h"

/// A resource module that answers its text queries with whatever the input says. For each of two calls, the
/// input holds what the call returns (1 byte, signed), whether and which size it writes back (1 byte, then 4
/// bytes), and the bytes it puts into the buffer (the rest is shared). It never writes beyond the buffer it
/// was told of: what is under test is how its answers are taken.
namespace {

const std::uint8_t* input;
std::size_t left;
int calls;
std::int32_t offered[2];

std::uint8_t Next() {
  if (left == 0) return 0;
  --left;
  return *input++;
}

std::int32_t Answer(char* buffer, std::int32_t* size) {
  if (calls == 2) std::abort();  // asked a third time
  offered[calls] = *size;
  ++calls;
  const auto result = static_cast<std::int8_t>(Next());
  const std::uint8_t style = Next();
  std::int32_t needed = 0;
  for (int i = 0; i < 4; ++i)
    needed = static_cast<std::int32_t>(static_cast<std::uint32_t>(needed) << 8 | Next());
  const std::size_t room = static_cast<std::size_t>(*size);
  std::size_t count = style & 0x7F;
  if (count == 0x7F) count = room;
  if (count > room) count = room;
  for (std::size_t i = 0; i < count; ++i) buffer[i] = left > 0 ? static_cast<char>(Next()) : 'x';
  if (style & 0x80) *size = needed;
  return result;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  input = data;
  left = size;
  calls = 0;
  const auto text = coverage::AskText(Answer);
  if (offered[0] != coverage::kTextQueryBuffer) std::abort();
  if (calls == 2 && (offered[1] < 1 || offered[1] > coverage::kTextQueryLimit)) std::abort();
  if (text) {
    if (text->find('\0') != std::string::npos) std::abort();
    if (text->size() > static_cast<std::size_t>(offered[calls - 1])) std::abort();
  }
  return 0;
}
