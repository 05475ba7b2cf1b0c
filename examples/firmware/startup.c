// From reset to main(): vector table, initialised data, constructors; and the end of the program.
#include "firmware.h"

extern uint32_t data_load[], data_start[], data_end[], bss_start[], bss_end[], stack_top[];
typedef void (*Handler)(void);
extern Handler ctors_start[], ctors_end[];
int main(void);
void Reset_Handler(void);

static volatile int exitStatus;

void firmware_end(int status) {
  exitStatus = status;
  for (;;) {
  }
}

static void UnexpectedException(void) { firmware_end(99); }

__attribute__((section(".vectors"), used)) static const Handler vectors[16] = {
    (Handler)stack_top,  Reset_Handler,       UnexpectedException, UnexpectedException,
    UnexpectedException, UnexpectedException, UnexpectedException, 0,
    0,                   0,                   0,                   UnexpectedException,
    UnexpectedException, 0,                   UnexpectedException, UnexpectedException,
};

static void CopyWords(uint32_t* to, const uint32_t* end, const uint32_t* from) {
  while (to < end) *to++ = *from++;
}

static void ZeroWords(uint32_t* to, const uint32_t* end) {
  while (to < end) *to++ = 0;
}

void Reset_Handler(void) {
  CopyWords(data_start, data_end, data_load);
  ZeroWords(bss_start, bss_end);
  for (Handler* constructor = ctors_start; constructor < ctors_end; ++constructor) (*constructor)();
  firmware_end(main());
}

// The compiler may call these by itself.
void* memcpy(void* to, const void* from, unsigned size) {
  uint8_t* t = to;
  const uint8_t* f = from;
  while (size--) *t++ = *f++;
  return to;
}

void* memset(void* to, int value, unsigned size) {
  uint8_t* t = to;
  while (size--) *t++ = (uint8_t)value;
  return to;
}
