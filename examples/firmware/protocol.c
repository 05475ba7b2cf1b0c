// Frames on a serial line: 0x7e, type, size, payload, CRC-16 high, CRC-16 low. One function per state.
#include "firmware.h"

enum { kMaxPayload = 32, kFlag = 0x7e };

typedef void (*State)(uint8_t byte);

static State state;
static FrameHandler frameHandler;
static uint8_t frame[2 + kMaxPayload];
static uint32_t filled;
static uint16_t checksum;
static uint32_t frames;
static uint32_t errors;

static void WaitFlag(uint8_t byte);
static void TakeType(uint8_t byte);
static void TakeSize(uint8_t byte);
static void TakePayload(uint8_t byte);
static void TakeCrcHigh(uint8_t byte);
static void TakeCrcLow(uint8_t byte);

static void Fail(void) {
  ++errors;
  state = WaitFlag;
}

static void WaitFlag(uint8_t byte) {
  if (byte == kFlag) state = TakeType;
}

static void TakeType(uint8_t byte) {
  if (byte == kFlag) return;
  frame[0] = byte;
  state = TakeSize;
}

static void TakeSize(uint8_t byte) {
  if (byte > kMaxPayload) {
    Fail();
    return;
  }
  frame[1] = byte;
  filled = 2;
  state = byte ? TakePayload : TakeCrcHigh;
}

static void TakePayload(uint8_t byte) {
  frame[filled++] = byte;
  if (filled == 2u + frame[1]) state = TakeCrcHigh;
}

static void TakeCrcHigh(uint8_t byte) {
  checksum = (uint16_t)(byte << 8);
  state = TakeCrcLow;
}

static void TakeCrcLow(uint8_t byte) {
  checksum |= byte;
  if (checksum != Crc16(frame, 2u + frame[1])) {
    Fail();
    return;
  }
  ++frames;
  state = WaitFlag;
  if (frameHandler) frameHandler(frame[0], frame + 2, frame[1]);
}

void ProtocolReset(void) {
  state = WaitFlag;
  frames = errors = 0;
}

void ProtocolOnFrame(FrameHandler handler) { frameHandler = handler; }
void ProtocolFeed(uint8_t byte) { state(byte); }
uint32_t ProtocolFrames(void) { return frames; }
uint32_t ProtocolErrors(void) { return errors; }
