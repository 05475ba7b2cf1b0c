// What should not happen. In a good run Check() counts nothing, and the rest of this file never executes.
#include "firmware.h"

enum { kLogSize = 8 };
static uint32_t failureLog[kLogSize];
static uint32_t failures;

static void LogFailure(uint32_t code) {
  failureLog[failures % kLogSize] = code;
  ++failures;
}

void Check(bool condition, uint32_t code) {
  if (!condition) LogFailure(code);
}

uint32_t DiagnosticsFailures(void) { return failures; }

// Kept for people with a debugger: nothing calls it.
__attribute__((used)) void DumpState(void) {
  uint8_t bytes[kLogSize * 4];
  for (uint32_t i = 0; i < kLogSize; ++i) {
    for (uint32_t k = 0; k < 4; ++k) bytes[i * 4 + k] = (uint8_t)(failureLog[i] >> (8 * k));
  }
  failureLog[0] = Crc32(bytes, sizeof bytes);
}
