#include <gtest/gtest.h>

#include <random>
#include <thread>

#include "unit/workbench/elf_builder.h"
#include "unit/workbench/literal_trace.h"
#include "workbench/target/simulator.h"

namespace workbench_test {
namespace {

using workbench::CountsReport;
using workbench::PathReport;
using workbench::Program;
using workbench::RecordMode;
using workbench::Simulator;
using workbench::StopReason;
using workbench::StopReport;

std::uint32_t AddressOf(const Program& program, const char* symbol) {
  return program.FindSymbol(symbol)->address;
}

const Totals& WholeFirmware() {
  static const Totals totals = LiteralTrace(*Firmware(), AddressOf(*Firmware(), "firmware_end"));
  return totals;
}

// One way of cutting a run into pieces.
struct Cut {
  const char* name;
  std::uint32_t slice;  // 0: a random one before each piece
  std::uint64_t count;  // instructions a piece; 0: a random number
  bool take;            // take the record after each piece
};

std::ostream& operator<<(std::ostream& out, const Cut& cut) { return out << cut.name; }

struct Result {
  Totals counts;
  std::map<std::uint32_t, std::uint64_t> walked;
  std::uint64_t executed = 0;
  std::uint32_t stoppedAt = 0;
};

Result RunCut(const std::shared_ptr<const Program>& program, RecordMode mode, const Cut& cut,
              std::uint64_t most, const Totals& expected) {
  Simulator simulator(program);
  simulator.SetRecording(mode);
  std::mt19937 random(7);
  Result result;
  Walked walked;
  const auto take = [&] {
    walked.Add(simulator.TakePath());
    Add(result.counts, simulator.TakeCounts());
  };
  for (StopReport stop; result.executed < most;) {
    simulator.SetSliceSize(cut.slice != 0 ? cut.slice : random() % 5000 + 1);
    const std::uint64_t piece = cut.count != 0 ? cut.count : random() % 3000 + 1;
    stop = simulator.Run(std::min(piece, most - result.executed));
    result.executed += stop.executed;
    result.stoppedAt = stop.address;
    if (cut.take) take();
    if (stop.reason != StopReason::kCount) break;
  }
  take();
  result.walked = walked.Times(expected.times);
  EXPECT_EQ(simulator.Executed(), result.executed);
  return result;
}

class Cuts : public testing::TestWithParam<Cut> {};

TEST_P(Cuts, ChangeNoTotal) {
  const Cut& cut = GetParam();
  constexpr std::uint64_t kMost = 30'000;
  const auto program = Firmware();
  const std::uint32_t end = AddressOf(*program, "firmware_end");
  const Cut whole{"", 100'000, kMost, false};
  static const Result reference = RunCut(program, RecordMode::kBoth, whole, kMost, {});
  static const Totals expected = LiteralTrace(*program, end, reference.executed);
  for (const RecordMode mode : {RecordMode::kPath, RecordMode::kCounts, RecordMode::kBoth}) {
    SCOPED_TRACE(static_cast<int>(mode));
    const Result result = RunCut(program, mode, cut, kMost, expected);
    EXPECT_EQ(result.stoppedAt, reference.stoppedAt);
    EXPECT_EQ(result.executed, reference.executed);
    if (mode != RecordMode::kPath) {
      EXPECT_TRUE(result.counts == expected);
    }
    if (mode != RecordMode::kCounts) {
      EXPECT_TRUE(result.walked == expected.times);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Target, Cuts,
                         testing::Values(Cut{"slice1", 1, 30'000, false}, Cut{"slice2", 2, 30'000, false},
                                         Cut{"slice3", 3, 30'000, false}, Cut{"slice7", 7, 30'000, false},
                                         Cut{"slice50", 50, 30'000, false},
                                         Cut{"slice1000", 1000, 30'000, false},
                                         Cut{"sliceRandom", 0, 30'000, false},
                                         Cut{"count1", 100'000, 1, false},
                                         Cut{"count1Taken", 100'000, 1, true}, Cut{"count7Taken", 5, 7, true},
                                         Cut{"count2500Taken", 1000, 2500, true}, Cut{"random", 0, 0, true}),
                         [](const auto& cut) { return std::string(cut.param.name); });

TEST(Target, BreakpointsChangeNoTotal) {
  const auto program = Firmware();
  const Totals& expected = WholeFirmware();
  for (const RecordMode mode : {RecordMode::kPath, RecordMode::kCounts}) {
    SCOPED_TRACE(static_cast<int>(mode));
    Simulator simulator(program);
    simulator.SetRecording(mode);
    Totals totals;
    Walked walked;
    const auto take = [&] {
      walked.Add(simulator.TakePath());
      Add(totals, simulator.TakeCounts());
    };
    // In the order in which the program comes to them.
    for (const char* symbol : {"TakePayload", "CommandRun", "QuickSort", "FixedSqrt", "FixedClamp"}) {
      const std::uint32_t address = AddressOf(*program, symbol);
      for (std::uint64_t hit = 0; hit < std::min<std::uint64_t>(expected.times.at(address), 200); ++hit) {
        const StopReport stop = simulator.RunTo(address);
        ASSERT_EQ(stop.reason, StopReason::kBreakpoint) << symbol << " " << hit;
        ASSERT_EQ(stop.address, address);
        if (hit % 7 == 0) take();
      }
    }
    EXPECT_EQ(simulator.Run().reason, StopReason::kEndOfProgram);
    take();
    if (mode == RecordMode::kPath) {
      EXPECT_TRUE(walked.Times(expected.times) == expected.times);
    } else {
      EXPECT_TRUE(totals == expected);
    }
  }
}

// ite, itt, it; b<cond> narrow and wide; cbz, cbnz; tbb; bx in an IT block, once skipped and once taken.
const std::vector<std::uint16_t> kOutcomes = {0x2000, 0x2802, 0xbf0c, 0x2101, 0x2102, 0x3001, 0x2804, 0xd1f8,
                                              0x2200, 0xb102, 0xbf00, 0xb92a, 0x2a01, 0xbf08, 0x2309, 0xbf1c,
                                              0x3301, 0x3301, 0x2a00, 0xf000, 0x8001, 0xbf00, 0x2001, 0xe8df,
                                              0xf000, 0x0201, 0xe7ff, 0xbf00, 0xf000, 0xf801, 0xe007, 0x2a00,
                                              0xbf18, 0x4770, 0x2201, 0x2a00, 0xbf18, 0x4770, 0xbf00, 0xe7fe};

TEST(Target, OutcomesOfEveryKindOfCondition) {
  const std::map<std::uint32_t, std::uint32_t> expected = {{0x46, 3}, {0x48, 3}, {0x4e, 3}, {0x52, 1},
                                                           {0x56, 2}, {0x5c, 2}, {0x60, 1}, {0x62, 1},
                                                           {0x66, 1}, {0x82, 2}, {0x8a, 1}};
  const auto program = LoadCode(kOutcomes);
  for (const std::uint32_t slice : {1u, 2u, 3u, 100'000u}) {
    SCOPED_TRACE(slice);
    Simulator simulator(program);
    simulator.SetSliceSize(slice);
    simulator.SetRecording(RecordMode::kBoth);
    EXPECT_EQ(simulator.Run().reason, StopReason::kEndOfProgram);
    Totals totals;
    Add(totals, simulator.TakeCounts());
    EXPECT_EQ(totals.passes, expected);
    EXPECT_EQ(totals.times.at(0x46), 4u);  // fetched each time, skipped or not
    EXPECT_TRUE(totals == LiteralTrace(*program, *simulator.EndAddress()));
  }
}

TEST(Target, ItBlockAcrossPageBoundary) {
  // 1 KiB boundaries cut blocks: the IT instruction stands before one, its members behind it. Four rounds.
  std::vector<std::uint16_t> code = {0x2000};  // movs r0, #0
  while (0x40 + 2 * code.size() < 0x3fc) code.push_back(0xbf00);
  code.insert(code.end(), {0x2802, 0xbf0c,          // cmp r0, #2; ite eq
                           0x2101, 0x2102,          // moveq r1, #1; movne r1, #2
                           0x3001, 0x2804, 0xd1f8,  // adds r0, #1; cmp r0, #4; bne to the first cmp
                           0xe7fe});
  const auto program = LoadCode(code);
  for (const RecordMode mode : {RecordMode::kCounts, RecordMode::kPath}) {
    for (const std::uint32_t slice : {1u, 2u, 5u, 100'000u}) {
      SCOPED_TRACE(slice);
      Simulator simulator(program);
      simulator.SetSliceSize(slice);
      simulator.SetRecording(mode);
      EXPECT_EQ(simulator.Run().reason, StopReason::kEndOfProgram);
      EXPECT_EQ(simulator.ReadRegister(1), 2u);
      const Totals expected = LiteralTrace(*program, *simulator.EndAddress());
      EXPECT_EQ(expected.passes.at(0x400), 3u);
      if (mode == RecordMode::kCounts) {
        Totals totals;
        Add(totals, simulator.TakeCounts());
        EXPECT_TRUE(totals == expected);
      } else {
        Walked walked;
        walked.Add(simulator.TakePath());
        EXPECT_EQ(walked.Times(expected.times), expected.times);
      }
    }
  }
}

TEST(Target, RecordEndsAtTheStopAndTheNextBeginsThere) {
  Simulator simulator(LoadCode({0x2000, 0x3001, 0x3001, 0xe7fc, 0xe7fe}));  // movs; loop: adds; adds; b loop
  simulator.SetRecording(RecordMode::kPath);
  EXPECT_EQ(simulator.PathStart(), 0x40u);
  simulator.Run(2);
  PathReport report = simulator.TakePath();
  EXPECT_EQ(report.start, 0x40u);
  EXPECT_EQ(report.pairs, (std::vector<workbench::RecordPair>{{0x42, 0x44}}));
  EXPECT_EQ(simulator.PathStart(), 0x44u);
  simulator.Run(5);
  report = simulator.TakePath();
  EXPECT_EQ(report.start, 0x44u);
  EXPECT_EQ(report.pairs, (std::vector<workbench::RecordPair>{{0x46, 0x42}, {0x46, 0x42}}));
  EXPECT_TRUE(simulator.TakePath().pairs.empty());
}

TEST(Target, TakingInsideARunAddsNoPair) {
  const auto program = Firmware();
  PathReport whole, pieces;
  {
    Simulator simulator(program);
    simulator.SetRecording(RecordMode::kPath);
    simulator.Run(50'000);
    whole = simulator.TakePath();
  }
  Simulator simulator(program);
  simulator.SetRecording(RecordMode::kPath);
  simulator.SetSliceSize(333);
  pieces.start = simulator.PathStart();
  std::uint32_t follows = pieces.start;
  const auto take = [&] {
    const PathReport report = simulator.TakePath();
    EXPECT_EQ(report.start, follows);
    pieces.pairs.insert(pieces.pairs.end(), report.pairs.begin(), report.pairs.end());
    follows = simulator.PathStart();
    return true;
  };
  simulator.SetSliceCallback(take);
  simulator.Run(50'000);
  take();
  EXPECT_EQ(pieces.start, whole.start);
  EXPECT_TRUE(pieces.pairs == whole.pairs);
}

TEST(Target, FullRecordPausesTheRun) {
  Simulator simulator(Firmware());
  simulator.SetRecording(RecordMode::kPath);
  simulator.SetPathLimit(20'000);
  Walked walked;
  int pauses = 0;
  StopReport stop;
  while ((stop = simulator.Run()).reason == StopReason::kRecordFull) {
    EXPECT_GE(simulator.PathWaiting(), 20'000u);
    walked.Add(simulator.TakePath());
    ++pauses;
  }
  EXPECT_EQ(stop.reason, StopReason::kEndOfProgram);
  EXPECT_GT(pauses, 5);
  walked.Add(simulator.TakePath());
  EXPECT_TRUE(walked.Times(WholeFirmware().times) == WholeFirmware().times);
}

TEST(Target, StopReasons) {
  const auto program = Firmware();
  Simulator simulator(program);
  const std::uint32_t main = AddressOf(*program, "main");
  StopReport stop = simulator.RunTo(main | 1);
  EXPECT_EQ(stop.reason, StopReason::kBreakpoint);
  EXPECT_EQ(stop.address, main);
  EXPECT_EQ(simulator.Where(), main);
  stop = simulator.Run(1);
  EXPECT_EQ(stop.reason, StopReason::kCount);
  EXPECT_EQ(stop.executed, 1u);
  EXPECT_EQ(simulator.Run(0).reason, StopReason::kCount);
  simulator.SetSliceCallback([] { return false; });
  stop = simulator.Run();
  EXPECT_EQ(stop.reason, StopReason::kRequest);
  EXPECT_NEAR(static_cast<double>(stop.executed), Simulator::kSliceSize, 600);
  simulator.SetSliceCallback([&] { return simulator.RequestStop(), true; });
  EXPECT_EQ(simulator.Run().reason, StopReason::kRequest);
  simulator.SetSliceCallback(nullptr);
  stop = simulator.Run();
  EXPECT_EQ(stop.reason, StopReason::kEndOfProgram);
  EXPECT_EQ(stop.address, AddressOf(*program, "firmware_end"));
  EXPECT_EQ(simulator.ReadRegister(0), 0u) << "the firmware's own checks failed";
  stop = simulator.Run();
  EXPECT_EQ(stop.reason, StopReason::kEndOfProgram);
  EXPECT_EQ(stop.executed, 0u);
  simulator.Reset();
  EXPECT_EQ(simulator.Where(), AddressOf(*program, "Reset_Handler"));
}

TEST(Target, StopRequestFromAnotherThreadEndsAnEndlessLoop) {
  Simulator simulator(LoadCode({0xe7fe, 0xe7fe}));
  simulator.SetRecording(RecordMode::kCounts);
  std::thread asker([&] {
    while (!simulator.IsRunning()) std::this_thread::yield();
    std::uint32_t word = 0;
    EXPECT_TRUE(simulator.ReadMemory(0x40, &word, 4));
    EXPECT_EQ(word, 0xe7fee7feu);
    simulator.RequestStop();
  });
  const StopReport stop = simulator.Run();
  asker.join();
  EXPECT_EQ(stop.reason, StopReason::kRequest);
  const CountsReport report = simulator.TakeCounts();
  ASSERT_EQ(report.counts.size(), 1u);
  EXPECT_EQ(report.counts[0].second, stop.executed);
}

TEST(Target, BreakpointInsideAnItBlockStopsAtItsItInstruction) {
  Simulator simulator(LoadCode(kOutcomes));
  for (const std::uint32_t member : {0x46u, 0x48u}) {
    simulator.Reset();
    const StopReport stop = simulator.RunTo(member);
    EXPECT_EQ(stop.reason, StopReason::kBreakpoint);
    EXPECT_EQ(stop.address, 0x44u);
    EXPECT_EQ(simulator.RunTo(member).executed, 7u) << "once around the loop";
  }
}

struct Fault {
  const char* name;
  std::vector<std::uint16_t> code;
  std::uint32_t address;
  std::uint64_t executed;
  const char* text;
};

TEST(Target, FaultsStandAtTheirInstructionInEveryMode) {
  const Fault faults[] = {
      {"read",
       {0xbf00, 0x2180, 0x0609, 0xbf00, 0x680a, 0xe7fe},
       0x48,
       4,
       "The instruction at 0x00000048 reads from 0x80000000, where there is no memory."},
      {"write",
       {0xbf00, 0x2180, 0x0609, 0x600a, 0xe7fe},
       0x46,
       3,
       "The instruction at 0x00000046 writes to 0x80000000, where there is no memory."},
      {"write to flash",
       {0xbf00, 0x2100, 0x600a, 0xe7fe},
       0x44,
       2,
       "The instruction at 0x00000044 writes to 0x00000000, which is read-only."},
      {"read in an IT block",
       {0x2180, 0x0609, 0x2900, 0xbf18, 0x680a, 0xe7fe},
       0x48,
       4,
       "The instruction at 0x00000048 reads from 0x80000000, where there is no memory."},
      {"undefined",
       {0xbf00, 0xde00, 0xe7fe},
       0x42,
       1,
       "The target cannot execute the instruction at 0x00000042."},
      {"breakpoint", {0xbf00, 0xbe05, 0xe7fe}, 0x42, 1, "Breakpoint instruction at 0x00000042."},
      {"supervisor call",
       {0xbf00, 0xdf05, 0xbf00, 0xe7fe},
       0x44,
       2,
       "Supervisor call before 0x00000044: the target has no exceptions."},
      {"branch away",
       {0x2081, 0x0600, 0x3001, 0x4700, 0xe7fe},
       0x81000000,
       4,
       "Branch to 0x81000000, where there is no memory."},
  };
  for (const Fault& fault : faults) {
    SCOPED_TRACE(fault.name);
    const auto program = LoadCode(fault.code);
    for (const RecordMode mode :
         {RecordMode::kOff, RecordMode::kPath, RecordMode::kCounts, RecordMode::kBoth}) {
      SCOPED_TRACE(static_cast<int>(mode));
      Simulator simulator(program);
      simulator.SetRecording(mode);
      StopReport stop = simulator.Run();
      EXPECT_EQ(stop.reason, StopReason::kFault);
      EXPECT_EQ(stop.text, fault.text);
      EXPECT_EQ(stop.address, fault.address);
      EXPECT_EQ(stop.executed, fault.executed);
      if (mode == RecordMode::kPath && fault.address < 0x1000) {
        const PathReport report = simulator.TakePath();
        EXPECT_EQ(report.pairs.back().second, fault.address);
      }
      if (mode == RecordMode::kCounts) {
        EXPECT_EQ(simulator.TakeCounts().counts.size(), fault.executed);
      }
      EXPECT_EQ(simulator.Run().text, fault.text) << "the target goes on only after a reset";
      simulator.Reset();
      EXPECT_EQ(simulator.Run().executed, fault.executed);
    }
  }
}

TEST(Target, WrittenCodeIsTheCodeThatRuns) {
  for (const RecordMode mode : {RecordMode::kOff, RecordMode::kCounts}) {
    Simulator simulator(LoadCode({0x2001, 0xbf00, 0xe7fe}));  // movs r0, #1; nop
    simulator.SetRecording(mode);
    simulator.Run();
    EXPECT_EQ(simulator.ReadRegister(0), 1u);
    simulator.Reset();
    const std::uint16_t wider[] = {0xf04f, 0x0007};  // mov.w r0, #7
    EXPECT_TRUE(simulator.WriteMemory(0x40, wider, sizeof wider));
    EXPECT_EQ(simulator.Run().executed, 1u);
    EXPECT_EQ(simulator.ReadRegister(0), 7u);
    if (mode == RecordMode::kCounts) {
      EXPECT_EQ(simulator.TakeCounts().counts, (std::vector<workbench::RecordPair>{{0x40, 2}, {0x42, 1}}));
    }
    simulator.Reset();
    simulator.Run();
    EXPECT_EQ(simulator.ReadRegister(0), 1u) << "a reset downloads the image again";
    EXPECT_FALSE(simulator.WriteMemory(0x70000000, wider, sizeof wider));
    std::uint32_t word = 0;
    EXPECT_FALSE(simulator.ReadMemory(0xfffffffe, &word, 4));
  }
}

TEST(Target, CodeInRamThatChangesUnderTheRunIsRecordedAsItRan) {
  // Copies "movs r0, #1; bx lr" to RAM, calls it, replaces it by one wide instruction and the return, calls
  // it again.
  const std::vector<std::uint16_t> code = {
      0x4c07, 0x4a08, 0x6022, 0x1c63, 0x4798,  // ldr r4, ram; ldr r2, first; str; adds r3, r4, #1; blx r3
      0x4a07, 0x6022, 0x4a07, 0x6062, 0x4798, 0xe005,  // ldr r2, second; str; ldr r2, return; str +4; blx r3;
                                                       // b end
      0xbf00, 0xbf00, 0xbf00, 0xbf00, 0xbf00, 0x0800, 0x2000,  // 0x20000800
      0x2001, 0x4770,                                          // movs r0, #1; bx lr
      0xf04f, 0x0007,                                          // mov.w r0, #7
      0x4770, 0xbf00,                                          // bx lr
      0xe7fe};
  const auto program = LoadCode(code);
  Simulator simulator(program);
  simulator.SetRecording(RecordMode::kBoth);
  // The branch over the constants is written here, where its distance can be seen: from 0x54 to the last
  // halfword.
  const std::uint16_t toEnd = 0xe000 | ((0x70 - 0x54 - 4) / 2);
  simulator.WriteMemory(0x54, &toEnd, 2);
  const StopReport stop = simulator.Run();
  ASSERT_EQ(stop.reason, StopReason::kEndOfProgram) << stop.text;
  EXPECT_EQ(simulator.ReadRegister(0), 7u);
  Totals totals;
  Add(totals, simulator.TakeCounts());
  EXPECT_EQ(totals.times.at(0x20000800), 2u);
  EXPECT_EQ(totals.times.at(0x20000802), 1u);
  EXPECT_EQ(totals.times.at(0x20000804), 1u);
}

}  // namespace
}  // namespace workbench_test
