#include "commands/display_worker.h"

#include <gtest/gtest.h>

#include <thread>

#include "command_world.h"

namespace coverage {
namespace {

class DisplayTest : public testing::Test {
 protected:
  std::string Display() {
    doubles::StubCommandOutput output;
    EXPECT_EQ(world.Run("cvd", &output), "");
    EXPECT_EQ(world.statusWord, 0xFFFF);
    return output.WaitForEnd();
  }

  CommandWorld world;
};

TEST_F(DisplayTest, ListsTheCurrentRange) {
  world.Run("cvr 0x1000 0x1003");
  world.model.commandStore().AddOne(0x1000, 12345678901, 3);
  EXPECT_EQ(Display(),
            "12345678901 T/F\t0x00001000\t1017      op2\t\n"
            "       0   -\t0x00001002\t1e25      op2\t\n");
  world.host.Withdraw(qal::iid::kAddressText);
  EXPECT_EQ(Display().substr(0, 25), "12345678901 T/F\t00001000\t");
}

TEST_F(DisplayTest, ListsWindowsUnderTheirNames) {
  world.target.information.alignment = 4;
  world.model.AddWindow(0x1002, 0x1003, "", world.reporter);
  world.model.AddWindow(0x1004, 0x1005, "step", world.reporter);
  EXPECT_EQ(Display(),
            "\trange 1: 0x00001002-0x00001003\n"
            "       0   -\t0x00001000\t1017      op2\t\n"
            "       0   -\t0x00001002\t1e25      op2\t\n"
            "\tfunction 2: step\n"
            "       0   -\t0x00001004\t2c33      op2\t\n")
      << "the first instruction lies below the range and has no cell";
}

/// Holds the first line back until it is let go, so that a test knows that a listing is under way.
class SlowOutput final : public doubles::StubCommandOutput {
 public:
  qal::Status WriteLine(qal::WideText line, qal::WideText second) override {
    std::unique_lock lock(gate_);
    waiting_ = true;
    changed_.notify_all();
    changed_.wait(lock, [this] { return open_; });
    return StubCommandOutput::WriteLine(line, second);
  }
  void WaitForFirstLine() {
    std::unique_lock lock(gate_);
    changed_.wait(lock, [this] { return waiting_; });
  }
  void LetGo() {
    const std::lock_guard lock(gate_);
    open_ = true;
    changed_.notify_all();
  }

 private:
  std::mutex gate_;
  std::condition_variable changed_;
  bool waiting_ = false;
  bool open_ = false;
};

TEST_F(DisplayTest, CancelStopsEveryListingAtItsNextInstruction) {
  world.Run("cvr 0x1000 0x100f");
  SlowOutput first;
  SlowOutput second;
  world.Run("cvd", &first);
  world.Run("cvd", &second);
  first.WaitForFirstLine();
  second.WaitForFirstLine();
  EXPECT_EQ(world.Named("cvd")->CancelCommand(), qal::kOk);
  first.LetGo();
  second.LetGo();
  const std::string row = "       0   -\t0x00001000\t1017      op2\t\n";
  EXPECT_EQ(first.WaitForEnd(), row);
  EXPECT_EQ(second.WaitForEnd(), row);
  doubles::StubCommandOutput third;
  world.Run("cvd", &third);
  EXPECT_EQ(third.WaitForEnd().size(), 8 * row.size()) << "a later listing has a stop flag of its own";
}

TEST_F(DisplayTest, AListingEndsWhereItsWindowIsTakenAway) {
  world.Run("cvr $(PD)\\main");
  SlowOutput output;
  world.Run("cvd", &output);
  output.WaitForFirstLine();
  world.Run("cvr 0x2000 0x2003");
  output.LetGo();
  EXPECT_EQ(output.WaitForEnd(), "\tfunction 1: main\nCan not display the coverage information.");
}

TEST_F(DisplayTest, DestroyingTheCommandEndsItsListings) {
  world.target.Fill(0x10000, 0x2FFFF);
  world.Run("cvr 0x10000 0x2ffff");
  doubles::StubCommandOutput output;
  world.Run("cvd", &output);
  world.commands.clear();
  EXPECT_EQ(output.WaitForEnd().find("(no end)"), std::string::npos);
}

/// Meant for the thread sanitizer: listings run while the UI thread changes all that they read.
TEST_F(DisplayTest, CommandsAndReportsGoOnBesideListings) {
  world.target.path.pairs = {{0x1006, 0x1000}};
  world.target.traceStart.address = 0x1000;
  for (int round = 0; round < 20; ++round) {
    doubles::StubCommandOutput outputs[3];
    for (auto& output : outputs) {
      world.Run(round % 2 == 0 ? "cvr 0x1000 0x100f" : "cvr $(PD)\\main");
      world.Run("cvd", &output);
      world.coverage.TakeReport();
      world.Run("cv reset");
      world.Run("cv disable");
      world.Run("cv enable");
      world.coverage.TakeReport();
      world.Run("cvr 0x2000 0x2007");
    }
    if (round % 5 == 0) world.Named("cvd")->CancelCommand();
    for (auto& output : outputs) EXPECT_EQ(output.WaitForEnd().find("(no end)"), std::string::npos);
  }
}

}  // namespace
}  // namespace coverage
