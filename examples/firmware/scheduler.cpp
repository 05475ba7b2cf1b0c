// Periodic tasks behind one interface.
#include "firmware.h"

namespace {

class Task {
 public:
  explicit Task(uint32_t period) : period_(period) {}
  bool Due(uint32_t tick) const { return tick % period_ == 0; }
  virtual void Step(uint32_t tick) = 0;
  uint32_t Runs() const { return runs_; }

 protected:
  uint32_t runs_ = 0;

 private:
  uint32_t period_;
};

// Drives the plant towards a slow sine.
class ControlTask final : public Task {
 public:
  ControlTask() : Task(2) { PidInit(&pid_, 3 * 65536, 65536 / 8, 65536 / 2); }
  void Step(uint32_t tick) override {
    const int32_t target = 20 * FixedSin(static_cast<int32_t>(tick << 13));
    plant_ = PlantStep(plant_, PidStep(&pid_, target, plant_));
    const int32_t error = FixedAbs(target - plant_);
    if (error > worst_) worst_ = error;
    ++runs_;
  }
  int32_t Worst() const { return worst_; }

 private:
  Pid pid_;
  int32_t plant_ = 0;
  int32_t worst_ = 0;
};

// Every so often a burst of bytes arrives, more than the queue holds.
class InputTask final : public Task {
 public:
  explicit InputTask(Ring* ring) : Task(16), ring_(ring) {}
  void Step(uint32_t tick) override {
    for (uint32_t i = 0; i < 8 + tick % 80; ++i) {
      if (!RingPut(ring_, static_cast<uint8_t>(tick + i))) break;
    }
    ++runs_;
  }

 private:
  Ring* ring_;
};

class OutputTask final : public Task {
 public:
  explicit OutputTask(Ring* ring) : Task(4), ring_(ring) {}
  void Step(uint32_t) override {
    uint8_t byte;
    for (int i = 0; i < 12 && RingGet(ring_, &byte); ++i) sum_ = sum_ * 31 + byte;
    ++runs_;
  }
  uint32_t Sum() const { return sum_; }

 private:
  Ring* ring_;
  uint32_t sum_ = 7;
};

Ring ring;
ControlTask control;
InputTask input(&ring);
OutputTask output(&ring);
Task* const kTasks[] = {&control, &input, &output};

template <typename T>
T Larger(T a, T b) {
  return a < b ? b : a;
}

}  // namespace

void SchedulerSetUp(void) { RingClear(&ring); }

uint32_t SchedulerRun(uint32_t ticks) {
  uint32_t mostQueued = 0;
  for (uint32_t tick = 0; tick < ticks; ++tick) {
    for (Task* task : kTasks) {
      if (task->Due(tick)) task->Step(tick);
    }
    mostQueued = Larger(mostQueued, RingCount(&ring));
  }
  Check(control.Worst() < 30 * 65536, 0x30);
  Check(control.Runs() == (ticks + 1) / 2, 0x31);
  return output.Sum() + mostQueued;
}
