// A PID controller and a first-order plant to try it on. All values are Q16.16.
#include "firmware.h"

void PidInit(Pid* pid, int32_t kp, int32_t ki, int32_t kd) {
  pid->kp = kp;
  pid->ki = ki;
  pid->kd = kd;
  pid->integral = 0;
  pid->lastError = 0;
  pid->low = -100 * 65536;
  pid->high = 100 * 65536;
}

int32_t PidStep(Pid* pid, int32_t target, int32_t measured) {
  int32_t error = target - measured;
  int32_t derivative = error - pid->lastError;
  pid->lastError = error;
  pid->integral = FixedClamp(pid->integral + FixedMul(pid->ki, error), pid->low, pid->high);
  int32_t drive = FixedMul(pid->kp, error) + pid->integral + FixedMul(pid->kd, derivative);
  return FixedClamp(drive, pid->low, pid->high);
}

int32_t PlantStep(int32_t state, int32_t drive) { return state + (drive - state) / 16; }
