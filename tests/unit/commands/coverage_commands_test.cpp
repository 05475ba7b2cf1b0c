#include <gtest/gtest.h>

#include "command_world.h"
#include "commands/coverage_automation.h"
#include "persist/command_file.h"

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

TEST_F(CoverageCommandsTest, RegisterTheirNamesAndClientsAndWithdrawThem) {
  EXPECT_EQ(world.log.Text("registry"),
            "registry.AddCommand(\"coverage\", \"[<function number>] [<state>]\", 0)\n"
            "registry.AddCommand(\"cv\", \"[<function number>] [<state>]\", 1)\n"
            "registry.AddCommand(\"coverage_range\", \"[ [<start><end>] | [<filename>] ]\", 0)\n"
            "registry.AddCommand(\"cvr\", \"[ [<start><end>] | [<filename>] ]\", 1)\n"
            "registry.AddCommand(\"coverage_display\", \"    \", 0)\n"
            "registry.AddCommand(\"cvd\", \"    \", 1)\n"
            "registry.AddCommand(\"coverage_save\", \"<filename>\", 0)\n"
            "registry.AddCommand(\"cvs\", \"<filename>\", 1)\n"
            "registry.AddCommand(\"coverage_load\", \"<filename>\", 0)\n"
            "registry.AddCommand(\"cvl\", \"<filename>\", 1)\n");
  EXPECT_EQ(world.host.Registered(qal::iid::kCmdClient).size(), 5u);
  EXPECT_EQ(world.host.Registered(qal::iid::kCmdClient2).size(), 5u);
  world.log.Clear();
  world.commands.clear();
  EXPECT_EQ(world.log.Count("registry.RemoveCommand"), 10);
  EXPECT_EQ(world.host.RegistrationCount(), 0u);
}

TEST_F(CoverageCommandsTest, AreClientsUnderThreeIdentifiers) {
  CCoverageCommand& command = *world.Named("cv");
  for (const qal::Guid& id : {qal::iid::kUnknown, qal::iid::kCmdClient, qal::iid::kCmdClient2}) {
    void* found = nullptr;
    EXPECT_EQ(command.QueryInterface(&id, &found), qal::kOk);
    EXPECT_EQ(found, static_cast<qal::IQCmdClient2*>(&command));
  }
  void* found = &command;
  EXPECT_EQ(command.QueryInterface(&qal::iid::kCoverageAutomation, &found), qal::kNoInterface);
  EXPECT_EQ(found, nullptr);
  qal::VariantArray* list = nullptr;
  std::int32_t id = 0;
  EXPECT_EQ(command.GetCommandNamesEx(&list, &id), qal::kOk);
  EXPECT_EQ(platform::TextsOf(list), (std::vector<std::string>{"coverage", "cv"}));
  EXPECT_EQ(id, -1);
  qal::FreeVariantArray(list);
}

TEST_F(CoverageCommandsTest, RangeSetsAndChecksTheRange) {
  const struct {
    const char* line;
    const char* outcome;
    const char* range;
  } kRows[] = {
      {"cvr 0x1000 0x1fff", "", "1000-1fff"},
      {"cvr 0x1000 0x2000", "", "1000-1fff"},
      {"coverage_range 3000 3001 \t ", "", "3000-3001"},
      {"cvr 0x1000 0x200fff", "", "1000-200fff"},
      {"cvr 0x1000 0x201000", " !\ninformation ok: The range is too large.", "1000-200fff"},
      {"cvr 0x1001 0x2000", " !\ninformation ok: Please enter a start address of even value", "1000-200fff"},
      {"cvr 0x2000 0x1000", "The start address is exceeded than the end address. !", "1000-200fff"},
      {"cvr 0x1000 0x1000", "There is no range. !", "1000-200fff"},
      {"cvr 0x1000 0x2000 x", "Invalid parameter !", "1000-200fff"},
      {"cvr 0x1000", "Invalid parameter !", "1000-200fff"},
      {"cvr 0x1000 main.c", "Invalid parameter !", "1000-200fff"},
      {"cvr 0x1000 0x100000000", "Invalid parameter !", "1000-200fff"},
  };
  for (const auto& row : kRows) {
    EXPECT_EQ(world.Run(row.line), row.outcome) << row.line;
    EXPECT_EQ(Range(), row.range) << row.line;
  }
  world.target.limits.lowest = 0x4000;
  EXPECT_EQ(world.Run("cvr 0x1000 0x5000"), "Invalid parameter !");
  world.host.Offer(world.refuses);
  EXPECT_EQ(world.Run("cvr 0x4000 0x5000"),
            "Coverage range cannot be set. !\nexclamation ok: error 0x80004005");
  EXPECT_EQ(Range(), "1000-200fff");
}

TEST_F(CoverageCommandsTest, RangeOpensSourceFiles) {
  RunAll({
      {"cvr $(PROJDIR)\\\\main.c", ""},
      {"cvr", "\n\t1\tmain : 0x00001000 - 0x00001003\n\t2\tstep : 0x00001004 - 0x00001007"},
      {"cvr \"C:\\space\\demo\\main.c\"", ""},
      {"cvr {C:\\space\\demo\\main}", ""},
      {"cvr main.h", "Invalid file name, the file format should be .C or .CPP !"},
      {"cvr main.c x", "Too many parameters !"},
  });
  EXPECT_EQ(world.model.windowCount(), 2u);
  EXPECT_EQ(world.model.filePath(), "C:\\space\\demo\\main.c");
  RunAll({{"cvr none.CPP", "Invalid coverage file !"}, {"cvr", "Coverage Range :0x00000000 - 0x00000000"}});
  world.target.source.symbols = nullptr;
  RunAll({{"cvr main", "Invalid coverage file !\ninformation ok: Program is not downloaded!"}});
}

TEST_F(CoverageCommandsTest, RangeListsTheCurrentRange) {
  world.Run("cvr 0x1000 0x1fff");
  EXPECT_EQ(world.Run("cvr"), "Coverage Range :0x00001000 - 0x00001fff");
  world.target.addressText.names[0x1fff] = "";
  EXPECT_EQ(world.Run("cvr"), "Coverage Range :0x00001000 -  !") << "an address without a text";
  world.host.Withdraw(qal::iid::kAddressText);
  EXPECT_EQ(world.Run("cvr"), "Coverage Range :00001000 - 00001fff");
}

TEST_F(CoverageCommandsTest, StateOfTheCurrentRange) {
  world.Run("cvr 0x1000 0x100f");
  world.model.commandStore().AddOne(0x1000, 1, 1);
  RunAll({
      {"cv", "Coverage Enabled"},
      {"coverage DIS", ""},
      {"cv", "Coverage Disabled"},
      {"cv 1", "Invalid parameter !"},
      {"cv enable 1", "Invalid parameter !"},
      {"cv e r", "Invalid parameter !"},
      {"cv x", "Invalid parameter !"},
      {"cv e", ""},
      {"cv", "Coverage Enabled"},
  });
  EXPECT_EQ(world.model.commandStore().Lookup(0x1000)->times, 1u);
  EXPECT_EQ(world.Run("cv reset"), "");
  EXPECT_EQ(world.model.commandStore().Lookup(0x1000)->times, 0u);
  world.calls.clear();
  world.Run("cv disable");
  EXPECT_EQ(world.calls, "refresh switch update ");
}

TEST_F(CoverageCommandsTest, StateOfTheWindows) {
  world.Run("cvr $(PD)\\main.c");
  world.model.FirstEntry(1)->counts->AddOne(0x1000, 1, 1);
  world.model.FirstEntry(2)->counts->AddOne(0x1004, 1, 1);
  RunAll({
      {"cv", "\n\tmain : Enabled\n\tstep : Enabled"},
      {"cv 2 disable", ""},
      {"cv 2", "\n\tstep : Disabled"},
      {"cv 1", "\n\tmain : Enabled"},
      {"cv 0", "Invalid parameter !"},
      {"cv 3", "Invalid parameter !"},
      {"cv 2 reset x", "Invalid parameter !"},
      {"cv reset 2", "Invalid parameter !"},
      {"cv 2 reset", ""},
  });
  EXPECT_EQ(world.model.FirstEntry(1)->counts->Lookup(0x1000)->times, 1u);
  EXPECT_EQ(world.model.FirstEntry(2)->counts->Lookup(0x1004)->times, 0u);
  RunAll({{"cv disable", ""}, {"cv", "\n\tmain : Disabled\n\tstep : Disabled"}, {"cv reset", ""}});
  EXPECT_EQ(world.model.FirstEntry(1)->counts->Lookup(0x1000)->times, 0u);
  world.host.Withdraw(qal::iid::kExpression);
  world.commands = MakeCoverageCommands(world);
  RunAll({{"cv 1", "Invalid parameter !"}, {"cv", "\n\tmain : Disabled\n\tstep : Disabled"}});
}

TEST_F(CoverageCommandsTest, ARangeWindowIsNamedByItsEnds) {
  world.model.AddWindow(0x1000, 0x1003, "");
  EXPECT_EQ(world.Run("cv"), "\n\t0x00001000-0x00001003 : Enabled");
  world.host.Withdraw(qal::iid::kAddressText);
  EXPECT_EQ(world.Run("cv"), "\n\t00001000-00001003 : Enabled");
}

TEST_F(CoverageCommandsTest, SaveNamesAndPlacesItsFile) {
  world.Run("cvr 0x1000 0x1003");
  RunAll({
      {"cvs out", ""},
      {"cvs out.TXT", ""},
      {"cvs {sub.txt}", ""},
      {"cvs out.doc", "Invalid file name, the file format must be .COV or .TXT !"},
      {"cvs a b", "Too many parameters !"},
      {"cvs", "Invalid parameter !"},
      {"cvs D:\\$(PN)", ""},
      {"cvs \"C:\\space\\demo\\with blank.cov\"", ""},
      {"cvs $(PROJDIR)\\\\recorded.cov", ""},
  });
  EXPECT_EQ(world.disk.Bytes("space/demo/out.cov").substr(0, 20), "Configuration name= ");
  EXPECT_EQ(world.disk.Bytes("space/demo/out.cov"), world.disk.Bytes("space/demo/out.TXT"));
  for (const char* name :
       {"space/demo/sub.txt", "demo.cov", "space/demo/with blank.cov", "space/demo/recorded.cov"}) {
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

TEST_F(CoverageCommandsTest, SaveFailures) {
  EXPECT_EQ(world.Run("cvs a"), "Cannot save the coverage information !") << "no range";
  world.Run("cvr 0x1000 0x1003");
  world.disk.Put("space/demo/a.cov/x", "");
  EXPECT_EQ(world.Run("cvs a"), "The data cannot be saved, error in opening the file. !");
  world.Run("cvr $(PD)\\main");
  EXPECT_EQ(world.Run("cvs a"), "Cannot save the coverage information !") << "windows";
}

TEST_F(CoverageCommandsTest, LoadCompletesItsNameAndReportsFailures) {
  world.Run("cvr 0x1000 0x1003");
  world.model.commandStore().AddOne(0x1002, 5, 2);
  world.Run("cvs data");
  world.Run("cvr 0x2000 0x2003");
  world.calls.clear();
  RunAll({
      {"cvl data", ""},
      {"cvr", "\n\t1\t0x00001000-0x00001003 : 0x00001000 - 0x00001003"},
      {"cvl data.txt", "Invalid file name, the file format should be .COV !"},
      {"cvl missing", "Invalid coverage file !"},
      {"cvl a b", "Too many parameters !"},
      {"cvl", "Invalid parameter !"},
  });
  EXPECT_EQ(world.model.FirstEntry(1)->counts->Lookup(0x1002)->times, 5u);
  EXPECT_EQ(world.calls.substr(0, 14), "switch update ");
  world.disk.Put(
      "space/demo/old.cov",
      "Configuration name= Debug\r\nProject name= demo\r\n[Coverage Window 1]\r\nStart Address= 0\r\n"
      "End Address= ffffffff\r\nEnable_status= 1\r\n");
  EXPECT_EQ(world.Run("cvl old"), "Coverage range cannot be set. !");
}

TEST_F(CoverageCommandsTest, AutomationGivesStatusesAndNeverABox) {
  CoverageAutomation automation(world);
  const struct {
    std::uint32_t start, end;
    std::uint32_t status;
  } kRows[] = {
      {0xFFFFFFFF, 0, 0x80040A01},    {0x10, 0x2000, 0x80040A02},   {0x1000, 0x90000001, 0x80040A02},
      {0x1000, 0, 0x80040A01},        {0x2000, 0x1000, 0x80040A03}, {0x1000, 0x1000, 0x80040A04},
      {0x1000, 0x201000, 0x80040A05}, {0x1001, 0x1003, 0x80040A06}, {0x1000, 0x2000, 0},
      {0x1000, 0x200FFF, 0},
  };
  world.target.limits.lowest = 0x100;
  world.target.limits.highest = 0x90000000;
  for (const auto& row : kRows) {
    EXPECT_EQ(static_cast<std::uint32_t>(automation.SetRange(row.start, row.end)), row.status)
        << std::hex << row.start;
  }
  EXPECT_EQ(Range(), "1000-200fff");
  world.host.Offer(world.refuses);
  EXPECT_EQ(automation.SetRange(0x1000, 0x1003), automation::kRangeRefused);
  EXPECT_EQ(world.boxes.Take(), "");
}

TEST_F(CoverageCommandsTest, AutomationEnablesAndClears) {
  CoverageAutomation automation(world);
  automation.SetRange(0x1000, 0x1003);
  world.calls.clear();
  automation.SetRange(0x1000, 0x1005);
  EXPECT_EQ(world.calls, "switch update ") << "it was active before";
  world.model.commandStore().AddOne(0x1000, 1, 1);
  qal::Flag enabled = 1;
  automation.Disable();
  automation.IsEnabled(&enabled);
  EXPECT_EQ(enabled, qal::kFalse);
  EXPECT_EQ(world.model.commandStoreActive(), 0u);
  automation.Enable();
  automation.IsEnabled(&enabled);
  EXPECT_EQ(enabled, qal::kTrue);
  automation.Clear();
  EXPECT_EQ(world.model.commandStore().Lookup(0x1000)->times, 0u);
}

TEST_F(CoverageCommandsTest, AutomationFiles) {
  CoverageAutomation automation(world);
  const struct {
    bool save;
    const char* path;
    std::uint32_t status;
  } kRows[] = {
      {true, "$(PD)\\a", 0},
      {true, "$(PD)\\a.txt", 0},
      {true, "$(PD)\\a.doc", 0x80040A0C},
      {true, "$(NOSUCH)\\a", 0x80040A08},
      {true, "$(PD)\\no\\a", 0x80040A0D},
      {true, "", 0x80040A08},
      {true, "a", 0},
      {false, "$(PD)\\a", 0},
      {false, "$(PD)\\a.txt", 0x80040A0C},
      {false, "$(PD)\\b", 0x80040A0A},
      {false, "", 0x80040A0A},
  };
  automation.SetRange(0x1000, 0x1003);
  for (const auto& row : kRows) {
    const platform::Wide path(row.path);
    const qal::Status status = row.save ? automation.Save(path.get()) : automation.Load(path.get());
    EXPECT_EQ(static_cast<std::uint32_t>(status), row.status) << row.path;
  }
  EXPECT_EQ(world.model.windowCount(), 1u);
  EXPECT_EQ(world.boxes.Take(), "");
}

}  // namespace
}  // namespace coverage
