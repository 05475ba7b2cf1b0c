// What recording costs: the simulated target with its record against the bare simulator, on the example
// firmware. Its end is patched to start it again, so that the simulator's translation does not count.
#include <unicorn/unicorn.h>

#include <cstdio>
#include <memory>
#include <vector>

#include "harness.h"
#include "workbench/program/program.h"
#include "workbench/target/simulator.h"

namespace {

using workbench::Program;
using workbench::RecordMode;
using workbench::Simulator;

// At firmware_end, over it and the unused handler after it: counts a word in RAM down and resets until it is
// 0.
constexpr std::uint32_t kRounds = 40;
constexpr std::uint32_t kCounter = 0x2000f000;
constexpr std::uint16_t kAgain[] = {
    0x4902, 0x680a, 0x3a01, 0x600a,   // ldr r1, =counter; ldr r2, [r1]; subs; str
    0xd104, 0xe7fe, 0xf000, 0x2000};  // bne Reset_Handler; b .
constexpr std::uint32_t kEndOffset = 10;

// The program without a single hook.
class Bare {
 public:
  explicit Bare(const Program& program)
      : program_(program), end_(program.FindSymbol("firmware_end")->address + kEndOffset) {
    uc_open(UC_ARCH_ARM, static_cast<uc_mode>(UC_MODE_THUMB | UC_MODE_MCLASS), &engine_);
    uc_ctl_set_cpu_model(engine_, UC_CPU_ARM_CORTEX_M3);
    uc_mem_map(engine_, 0, 0x40000, UC_PROT_ALL);
    uc_mem_map(engine_, 0x20000000, 0x10000, UC_PROT_ALL);
    for (const workbench::Segment& segment : program_.Segments())
      uc_mem_write(engine_, segment.address, segment.bytes.data(), segment.bytes.size());
    uc_mem_write(engine_, end_ - kEndOffset, kAgain, sizeof kAgain);
  }
  ~Bare() { uc_close(engine_); }
  Bare(const Bare&) = delete;
  Bare& operator=(const Bare&) = delete;

  void Run() {
    std::uint32_t vectors[2];
    uc_mem_read(engine_, 0, vectors, sizeof vectors);
    uc_reg_write(engine_, UC_ARM_REG_SP, &vectors[0]);
    uc_mem_write(engine_, kCounter, &kRounds, sizeof kRounds);
    uc_emu_start(engine_, vectors[1] | 1, end_, 0, 0);
  }

 private:
  const Program& program_;
  std::uint32_t end_;
  uc_engine* engine_ = nullptr;
};

// Resets, patches and runs; the instructions executed.
std::uint64_t RunPatched(Simulator& simulator, const Program& program) {
  const std::uint32_t end = program.FindSymbol("firmware_end")->address;
  simulator.Reset();
  simulator.SetEndAddress(end + kEndOffset);
  simulator.WriteMemory(end, kAgain, sizeof kAgain);
  simulator.WriteMemory(kCounter, &kRounds, sizeof kRounds);
  const std::uint64_t executed = simulator.Run().executed;
  bench::Keep(simulator.TakePath());
  bench::Keep(simulator.TakeCounts());
  return executed;
}

}  // namespace

int main(int argc, char** argv) {
  const auto program = Program::Load(QAL_EXAMPLES_DIR "/firmware/firmware.elf");
  if (program->FindSymbol("Reset_Handler")->address != program->FindSymbol("firmware_end")->address + 0x14) {
    std::puts("The firmware is laid out differently: adjust the patch of its end.");
    return 1;
  }
  Simulator counted(program);
  const auto instructions = static_cast<double>(RunPatched(counted, *program));

  bench::Suite suite("target");
  Bare bare(*program);
  suite.Measure("bare", instructions, [&] { bare.Run(); });
  struct Row {
    const char* what;
    RecordMode mode;
    double limit;
  };
  const Row rows[] = {{"no record", RecordMode::kOff, 0.5},
                      {"branches", RecordMode::kPath, 0.45},
                      {"counts and outcomes", RecordMode::kCounts, 0.25},
                      {"branches, counts and outcomes", RecordMode::kBoth, 0.22}};
  std::vector<std::unique_ptr<Simulator>> simulators;
  for (const Row& row : rows) {
    simulators.push_back(std::make_unique<Simulator>(program));
    Simulator* simulator = simulators.back().get();
    simulator->SetRecording(row.mode);
    simulator->SetSliceCallback([simulator] {
      bench::Keep(simulator->TakePath());
      return true;
    });
    suite.Measure(row.what, instructions, [simulator, &program] { RunPatched(*simulator, *program); });
    suite.RequireFaster(std::string(row.what) + ", share of the bare simulator", row.what, "bare", row.limit);
  }
  return suite.Run(argc, argv);
}
