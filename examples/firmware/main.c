// A day in the life of a small controller, in about two million instructions.
#include "firmware.h"

static uint32_t randomState = 12345;
static uint32_t payloadSum;
static int32_t samples[256];

static uint32_t Random(void) {
  randomState = randomState * 1664525u + 1013904223u;
  return randomState >> 8;
}

static uint32_t Fibonacci(uint32_t n) { return n < 2 ? n : Fibonacci(n - 1) + Fibonacci(n - 2); }

static void TakeFrame(uint8_t type, const uint8_t* payload, uint32_t size) {
  payloadSum += type;
  for (uint32_t i = 0; i < size; ++i) payloadSum += payload[i];
}

static void SendFrame(uint8_t type, uint32_t size, bool damaged) {
  uint8_t frame[2 + 32];
  frame[0] = type;
  frame[1] = (uint8_t)size;
  for (uint32_t i = 0; i < size; ++i) frame[2 + i] = (uint8_t)Random();
  uint16_t crc = Crc16(frame, 2 + size);
  if (damaged) crc ^= 1;
  ProtocolFeed(0x7e);
  for (uint32_t i = 0; i < 2 + size; ++i) ProtocolFeed(frame[i]);
  ProtocolFeed((uint8_t)(crc >> 8));
  ProtocolFeed((uint8_t)crc);
}

static void TryProtocol(void) {
  ProtocolReset();
  ProtocolOnFrame(TakeFrame);
  for (uint32_t i = 0; i < 200; ++i) SendFrame((uint8_t)(i % 100), i % 33, i % 10 == 9);
  Check(ProtocolFrames() == 180, 0x10);
  Check(ProtocolErrors() == 20, 0x11);
}

static void TryCommands(void) {
  static const char* const lines[] = {"s 12", "a 30", " m -2", "g", "x", "d 4", "d 0", "", "a", "?", "n"};
  int32_t last = 0;
  for (int round = 0; round < 50; ++round) {
    for (uint32_t i = 0; i < sizeof lines / sizeof lines[0]; ++i) {
      Reply reply = CommandRun(lines[i]);
      if (reply.kind == kReplyValue) last = reply.value;
    }
  }
  Check(last == 500, 0x20);
}

static void TrySorting(void) {
  static const Compare orders[] = {Ascending, Descending, ByMagnitude};
  for (uint32_t i = 0; i < 3; ++i) {
    for (int k = 0; k < 256; ++k) samples[k] = (int32_t)(Random() & 0xffff) - 0x8000;
    QuickSort(samples, 0, 255, orders[i]);
    Check(IsSorted(samples, 256, orders[i]), 0x40 + i);
  }
}

static void TryMaths(void) {
  int32_t worst = 0;
  for (int32_t i = 1; i < 400; ++i) {
    int32_t value = i * 4096;
    int32_t root = FixedSqrt(value);
    int32_t error = FixedAbs(FixedMul(root, root) - value);
    if (error > worst) worst = error;
    Check(FixedAbs(FixedMul(FixedDiv(65536, value), value) - 65536) < 4096, 0x50);
  }
  Check(worst < 8192, 0x51);
  Check(FixedDiv(-65536, 0) == INT32_MIN, 0x52);
}

static void TryChecksum(void) {
  static const char text[] = "123456789";
  Crc32Init();
  Check(Crc32((const uint8_t*)text, 9) == 0xcbf43926u, 0x60);
  uint32_t sum = 0;
  for (int round = 0; round < 60; ++round) sum ^= Crc32((const uint8_t*)samples, sizeof samples);
  Check(sum == 0, 0x61);
}

int main(void) {
  SchedulerSetUp();
  TryProtocol();
  TryCommands();
  TrySorting();
  TryMaths();
  TryChecksum();
  Check(SchedulerRun(3000) != 0, 0x70);
  Check(Fibonacci(18) == 2584, 0x71);
  return DiagnosticsFailures() == 0 ? 0 : 1;
}
