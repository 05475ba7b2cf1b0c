// What the units of the example firmware offer each other.
#pragma once

#include <stdbool.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

// startup.c: the program ends by calling this; a debugger stops there.
void firmware_end(int status) __attribute__((noipa, noreturn));

// crc.c
void Crc32Init(void);
uint32_t Crc32(const uint8_t* bytes, uint32_t size);
uint16_t Crc16(const uint8_t* bytes, uint32_t size);

// ring_buffer.c
enum { kRingSize = 64 };
typedef struct {
  uint8_t bytes[kRingSize];
  uint32_t head;
  uint32_t tail;
  uint32_t lost;
} Ring;
void RingClear(Ring* ring);
bool RingPut(Ring* ring, uint8_t byte);
bool RingGet(Ring* ring, uint8_t* byte);
uint32_t RingCount(const Ring* ring);

// pid.c
typedef struct {
  int32_t kp, ki, kd;  // Q16.16
  int32_t integral;
  int32_t lastError;
  int32_t low, high;
} Pid;
void PidInit(Pid* pid, int32_t kp, int32_t ki, int32_t kd);
int32_t PidStep(Pid* pid, int32_t target, int32_t measured);
int32_t PlantStep(int32_t state, int32_t drive);

// command.c
typedef enum { kReplyNone, kReplyOk, kReplyValue, kReplyUnknown, kReplyBadNumber } ReplyKind;
typedef struct {
  ReplyKind kind;
  int32_t value;
} Reply;
Reply CommandRun(const char* line);

// protocol.c
typedef void (*FrameHandler)(uint8_t type, const uint8_t* payload, uint32_t size);
void ProtocolReset(void);
void ProtocolOnFrame(FrameHandler handler);
void ProtocolFeed(uint8_t byte);
uint32_t ProtocolFrames(void);
uint32_t ProtocolErrors(void);

// fixed_math.c (Q16.16)
int32_t FixedMul(int32_t a, int32_t b);
int32_t FixedDiv(int32_t a, int32_t b);
int32_t FixedSqrt(int32_t value);
int32_t FixedSin(int32_t angle);
int32_t FixedClamp(int32_t value, int32_t low, int32_t high);
int32_t FixedAbs(int32_t value);

// sort.c
typedef int (*Compare)(int32_t a, int32_t b);
int Ascending(int32_t a, int32_t b);
int Descending(int32_t a, int32_t b);
int ByMagnitude(int32_t a, int32_t b);
void InsertionSort(int32_t* values, int32_t count, Compare compare);
void QuickSort(int32_t* values, int32_t low, int32_t high, Compare compare);
bool IsSorted(const int32_t* values, int32_t count, Compare compare);

// diagnostics.c
void Check(bool condition, uint32_t code);
uint32_t DiagnosticsFailures(void);
void DumpState(void);

// scheduler.cpp
void SchedulerSetUp(void);
uint32_t SchedulerRun(uint32_t ticks);

#ifdef __cplusplus
}
#endif
