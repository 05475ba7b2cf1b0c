#include <gtest/gtest.h>
#include <sys/stat.h>

#include "command_world.h"
#include "commands/coverage_automation.h"
#include "util/placeholder_resolver.h"

namespace coverage {
namespace {

struct Step {
  const char* line;
  const char* outcome;
};

class CoverageCommandsTest : public testing::Test {
 protected:
  void RunAll(std::initializer_list<Step> steps) {
    for (const Step& step : steps) EXPECT_EQ(world.Run(step.line), step.outcome) << step.line;
  }
  std::string Range() {
    std::uint32_t start = 0;
    std::uint32_t end = 0;
    CoverageAutomation(world).GetRange(&start, &end);
    return platform::Format("%x-%x", start, end);
  }

  CommandWorld world;
};

/// A command that tells what a text expands to.
struct Expander final : CCmd {
  explicit Expander(qal::IQHost* where) : CCmd(where, 1, "expand", nullptr, {}, {}) {}
  qal::Status DoCommand(const std::string& line, std::string& result, std::uint32_t&) override {
    result = SharedPlaceholders()->ExpandPlaceholders(line);
    return qal::kOk;
  }
  std::string Run(const char* line) {
    doubles::StubCommandOutput lines;
    return doubles::Executed(*this, line, lines).result;
  }
};

TEST(Commands, ExpandPlaceholdersThroughTheirOwnHost) {
  doubles::StubWorkspace here;
  doubles::StubWorkspace there;
  there.projectDirectory = "D:\\there";
  doubles::HostDouble host;
  doubles::HostDouble other;
  host.Offer(here);
  other.Offer(there);
  auto first = std::make_unique<Expander>(&host);
  Expander second(&other);
  EXPECT_EQ(first->Run("expand $(PROJDIR)"), "C:\\space\\demo");
  EXPECT_EQ(second.Run("expand $(PROJDIR)"), "D:\\there");
  first.reset();
  host.Offer(there);  // another session of the same host
  EXPECT_EQ(Expander(&host).Run("expand $(PROJDIR)"), "D:\\there");
}

TEST_F(CoverageCommandsTest, RangeOpensSourceFiles) {
  RunAll({
      {"cvr $(PROJDIR)\\\\main.c", ""},
      {"cvr", "\n\t1\tmain : 0x00001000 - 0x00001003\n\t2\tstep : 0x00001004 - 0x00001007"},
      {"cvr \"C:\\space\\demo\\main.c\"", ""},
      {"cvr {C:\\space\\demo\\main}", ""},
      {"cvr main.c x", "Too many parameters !"},
  });
  EXPECT_EQ(world.model.windowCount(), 2u);
  EXPECT_EQ(world.model.filePath(), "C:\\space\\demo\\main.c");
  RunAll({{"cvr none.CPP", "Invalid coverage file !"}, {"cvr", "Coverage Range :0x00000000 - 0x00000000"}});
}

/// An address-text service that says nothing.
struct SaysNothing final : doubles::StubAddressText {
  qal::Status AddressToText(std::uint32_t, std::uint32_t, std::int32_t, std::uint32_t, char16_t**) override {
    return qal::kFail;
  }
};

TEST_F(CoverageCommandsTest, AddressesWithoutTextsAreDigits) {
  SaysNothing failing;
  for (const bool missing : {false, true}) {
    world.host.Offer(failing);
    if (missing) world.host.Withdraw(qal::iid::kAddressText);
    RunAll({{"cvr 0xabc0 0xabcf", ""}, {"cvr", "Coverage Range :0000abc0 - 0000abcf !"}});
    world.model.AddWindow(0x1000, 0x1003, "", world.reporter);
    RunAll({{"cvr", "\n\t1\t00001000-00001003 : 00001000 - 00001003"},
            {"cv", "\n\t00001000-00001003 : Enabled"}});
    doubles::StubCommandOutput output;
    world.Run("cvd", &output);
    EXPECT_TRUE(output.WaitForEnd().starts_with("\trange 1: 00001000-00001003\n"));
  }
}

TEST_F(CoverageCommandsTest, WithoutAPlaceForWhatIsAskedNothingIsDone) {
  CCoverageCommand& command = *world.Named("cvr");
  std::int32_t id = 7;
  qal::Flag more = 7;
  EXPECT_EQ(command.QueryInterface(&qal::iid::kCmdClient, nullptr), qal::kFail);
  EXPECT_EQ(command.GetCommandNames(nullptr), qal::kFail);
  EXPECT_EQ(command.GetCommandNamesEx(nullptr, &id), qal::kFail);
  EXPECT_EQ(command.ExecuteCommand(platform::Wide("cvr 0x1000 0x1003").get(), nullptr, nullptr, &more,
                                   nullptr, nullptr),
            qal::kFail);
  EXPECT_EQ(id, 7);
  EXPECT_EQ(more, 7);
  EXPECT_EQ(Range(), "0-0");
}

TEST_F(CoverageCommandsTest, ResetClearsWhatItNames) {
  world.Run("cvr $(PD)\\main.c");
  const auto times = [&](std::uint32_t window) {
    return world.model.FirstEntry(window)->counts->Lookup(0xFFC + 4 * window)->times;
  };
  for (const std::uint32_t window : {1u, 2u}) {
    world.model.FirstEntry(window)->counts->AddOne(0xFFC + 4 * window, 1, 1);
  }
  RunAll(
      {{"cv reset 2", "Invalid parameter !"}, {"cv 2 reset x", "Invalid parameter !"}, {"cv 2 reset", ""}});
  EXPECT_EQ(times(1), 1u);
  EXPECT_EQ(times(2), 0u);
  world.Run("cv reset");
  EXPECT_EQ(times(1), 0u);
  world.calls.clear();
  world.Run("cv disable");
  EXPECT_EQ(world.calls, "update ");
  EXPECT_TRUE(world.coverage.Stale().wanted);
}

TEST_F(CoverageCommandsTest, SaveNamesAndPlacesItsFile) {
  world.Run("cvr 0x1000 0x1003");
  ASSERT_EQ(mkfifo((world.disk.root() + "/nobody-reads.cov").c_str(), 0600), 0);
  RunAll({
      {"cvs out.TXT", ""},
      {"cvs {sub.txt}", ""},
      {"cvs D:\\$(PN)", ""},
      {"cvs \"C:\\space\\demo\\with blank.cov\"", ""},
      {"cvs $(PROJDIR)\\\\recorded.cov", ""},
      {"cvs \"lone", ""},
      {"cvs C:\\nobody-reads.cov", "The data cannot be saved, error in opening the file. !"},
  });
  for (const char* name : {"space/demo/out.TXT", "space/demo/sub.txt", "demo.cov",
                           "space/demo/with blank.cov", "space/demo/recorded.cov", "space/demo/\"lone.cov"}) {
    EXPECT_TRUE(world.disk.Has(name)) << name;
  }
}

TEST_F(CoverageCommandsTest, SaveAsks) {
  const std::string unresolved =
      "\nquestion yes-no: File name entered is not valid, do you want to save the file under current project "
      "directory?";
  const std::string create = "\nexclamation ok-cancel: Directory does not exist. Create new directory?";
  const std::string notSaved = "The data cannot be saved, error in opening the file. !";
  world.Run("cvr 0x1000 0x1003");
  EXPECT_EQ(world.Run("cvs $(NOSUCH)\\a"), notSaved + unresolved);
  world.boxes.answers = {platform::Answer::kYes};
  EXPECT_EQ(world.Run("cvs $(NOSUCH)\\a"), unresolved);
  EXPECT_TRUE(world.disk.Has("space/demo/a.cov"));
  world.boxes.answers = {platform::Answer::kYes};
  EXPECT_EQ(world.Run("cvs $(NOSUCH)"), notSaved + unresolved) << "no name to put there";
  EXPECT_EQ(world.Run("cvs new\\b"), notSaved + create);
  world.boxes.answers = {platform::Answer::kOk};
  EXPECT_EQ(world.Run("cvs new\\b"), create);
  EXPECT_TRUE(world.disk.Has("space/demo/new/b.cov"));
  world.boxes.answers = {platform::Answer::kOk};
  EXPECT_EQ(world.Run("cvs x\\y\\b"), "Cannot create new directory, no file is saved !" + create);
}

TEST_F(CoverageCommandsTest, ARangeThatTheFileMayNotHoldIsNotSet) {
  world.disk.Put(
      "space/demo/old.cov",
      "Configuration name= Debug\r\nProject name= demo\r\n[Coverage Window 1]\r\nStart Address= 0\r\n"
      "End Address= ffffffff\r\nEnable_status= 1\r\n");
  EXPECT_EQ(world.Run("cvl old"), "The range is too large. !");
}

}  // namespace
}  // namespace coverage
