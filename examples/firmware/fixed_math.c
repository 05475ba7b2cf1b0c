// Q16.16 arithmetic. Built for speed: its short conditions become IT blocks.
#include "firmware.h"

static const int32_t kSineQuarter[17] = {0,     6424,  12785, 19024, 25080, 30893, 36410, 41576, 46341,
                                         50660, 54491, 57798, 60547, 62714, 64277, 65220, 65536};

int32_t FixedAbs(int32_t value) { return value < 0 ? -value : value; }

int32_t FixedClamp(int32_t value, int32_t low, int32_t high) {
  if (value < low) return low;
  if (value > high) return high;
  return value;
}

int32_t FixedMul(int32_t a, int32_t b) { return (int32_t)(((int64_t)a * b) >> 16); }

// Restoring division of a << 16 by b; saturates when b is 0 or the result does not fit.
int32_t FixedDiv(int32_t a, int32_t b) {
  uint32_t divisor = (uint32_t)FixedAbs(b);
  uint32_t dividend = (uint32_t)FixedAbs(a);
  if (divisor == 0) return a < 0 ? INT32_MIN : INT32_MAX;
  uint32_t remainder = dividend % divisor;
  uint32_t quotient = dividend / divisor;
  if (quotient > 0x7fff) return (a ^ b) < 0 ? INT32_MIN : INT32_MAX;
  for (int bit = 0; bit < 16; ++bit) {
    remainder <<= 1;
    quotient <<= 1;
    if (remainder >= divisor) {
      remainder -= divisor;
      quotient |= 1;
    }
  }
  return (a ^ b) < 0 ? -(int32_t)quotient : (int32_t)quotient;
}

int32_t FixedSqrt(int32_t value) {
  if (value <= 0) return 0;
  uint32_t rest = (uint32_t)value;
  uint32_t root = 0;
  for (uint32_t bit = 1u << 30; bit; bit >>= 2) {
    uint32_t trial = root + bit;
    root >>= 1;
    if (rest >= trial) {
      rest -= trial;
      root += bit;
    }
  }
  return (int32_t)(root << 8);
}

// A full turn is 64 steps of 65536; linear between the entries of the quarter table.
int32_t FixedSin(int32_t angle) {
  uint32_t step = ((uint32_t)angle >> 16) & 63;
  int32_t fraction = angle & 0xffff;
  uint32_t index = step & 15;
  bool falling = (step & 16) != 0;
  int32_t from = falling ? kSineQuarter[16 - index] : kSineQuarter[index];
  int32_t to = falling ? kSineQuarter[15 - index] : kSineQuarter[index + 1];
  int32_t value = from + FixedMul(to - from, fraction);
  return step & 32 ? -value : value;
}
