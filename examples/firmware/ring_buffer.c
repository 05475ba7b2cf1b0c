// A queue of bytes between an interrupt and the main loop.
#include "firmware.h"

static uint32_t Next(uint32_t index) { return (index + 1) % kRingSize; }

void RingClear(Ring* ring) { ring->head = ring->tail = ring->lost = 0; }

bool RingPut(Ring* ring, uint8_t byte) {
  if (Next(ring->head) == ring->tail) {
    ++ring->lost;
    return false;
  }
  ring->bytes[ring->head] = byte;
  ring->head = Next(ring->head);
  return true;
}

bool RingGet(Ring* ring, uint8_t* byte) {
  if (ring->head == ring->tail) return false;
  *byte = ring->bytes[ring->tail];
  ring->tail = Next(ring->tail);
  return true;
}

uint32_t RingCount(const Ring* ring) { return (ring->head - ring->tail) % kRingSize; }
