#include "persist/command_file.h"

#include <gtest/gtest.h>

#include "commands/message_reporter.h"
#include "doubles/ide_services.h"
#include "doubles/message_boxes.h"
#include "doubles/project_services.h"
#include "doubles/scratch_disk.h"
#include "doubles/target.h"
#include "model/coverage_model.h"
#include "platform/text.h"

namespace coverage {
namespace {

const char* const kSource = "C:\\space\\demo\\main.c";

class CommandFileTest : public testing::Test {
 protected:
  CommandFileTest() {
    target.OfferTo(host);
    host.Offer(workspace);
    host.Offer(errors);
    target.Fill(0x1000, 0x1010);
    target.Fill(0x2000, 0x2008);
    target.Function(kSource, "main", 0x1000, 0x1003);
    target.Function(kSource, "Step", 0x1004, 0x1007);
  }

  std::string Save() {
    const auto status = SaveCommandModel(model, "C:\\a.cov", current, &host);
    return status == 0 ? drive.Bytes("a.cov") : platform::Format("%X", static_cast<unsigned>(status));
  }
  /// The status and the boxes.
  std::string Load(const std::string& content, const LoadPolicy& policy = kCommandLoad) {
    drive.Put("a.cov", content);
    doubles::RecordingBoxes boxes;
    Reporter* const who = &policy == &kAutomationLoad ? static_cast<Reporter*>(&silent) : &reporter;
    const auto status = LoadCommandModel(model, "C:\\a.cov", current, &host, policy, *who);
    return platform::Format("%X\n", static_cast<unsigned>(status)) + boxes.Take();
  }
  static std::string Picture(CoverageCounts& counts) {
    std::string picture =
        platform::Format("%x-%x %s", counts.start(), counts.end(), counts.active() == 1 ? "on" : "off");
    for (std::uint64_t at = counts.start(); at < counts.end(); at += 2) {
      const auto cell = counts.Lookup(static_cast<std::uint32_t>(at));
      if (cell && *cell != CoverageCell{}) {
        picture += platform::Format(" %x:", static_cast<unsigned>(at)) + std::to_string(cell->times);
        picture += PassText(cell->pass);
      }
    }
    return picture + "\n";
  }
  /// The store, then the windows, each with its non-zero cells.
  std::string Model() {
    std::string picture = Picture(model.commandStore());
    for (std::uint32_t i = 1; i <= model.windowCount(); ++i) {
      const CommandEntry& entry = *model.FirstEntry(i);
      picture += std::to_string(i) + " " + entry.functionName + ": " + Picture(*entry.counts);
    }
    return picture;
  }

  doubles::ScratchDisk drive;
  doubles::HostDouble host;
  doubles::TargetDouble target;
  doubles::StubWorkspace workspace;
  doubles::StubErrorText errors;
  struct Refuses final : doubles::StubPathCoverage {
    qal::Status AddRange(std::uint32_t, std::uint32_t) override { return qal::kFail; }
  } refuses;
  CoverageModel coverage{&host};
  CommandModel& model = coverage.Commands();
  MessageReporter reporter{&host};
  SilentReporter silent;
  ProjectNames current{"Debug", "demo"};
};

std::string Header(const std::string& project = "demo", const std::string& configuration = "Debug") {
  return "Configuration name= " + configuration + "\r\nProject name= " + project + "\r\n";
}

std::string Typed(const std::string& start, const std::string& end, const std::string& enable,
                  const std::string& name, const std::string& rows, const std::string& fileLine = "",
                  const char* kind = "Window") {
  return std::string("[Coverage ") + kind + " 1]\r\nStart Address= " + start + "\r\nEnd Address= " + end +
         "\r\nEnable_status= " + enable + "\r\nPercentage= 00000000\r\nFunction_name= " + name + "\r\n" +
         fileLine + " (Times)\t(Pass)\t(Address)\r\n" + rows;
}

std::string Untyped(const std::string& start, const std::string& end, const std::string& rows) {
  return "[Coverage Window 1]\r\nStart Address= " + start + "\r\nEnd Address= " + end +
         "\r\nEnable_status= 1\r\n" + rows;
}

TEST_F(CommandFileTest, RefusedAndMissingWindows) {
  ASSERT_TRUE(model.OpenFile(kSource, silent));
  doubles::RecordingBoxes boxes;
  host.Offer(refuses);
  model.AddWindow(0x2000, 0x2003, "refused", reporter);
  EXPECT_EQ(boxes.Take(), "exclamation ok: error 0x80004005\n");
  EXPECT_EQ(Save().find("refused"), std::string::npos) << "a window without a range is left out";
  Load(Header() + Untyped("2000", "2003", ""));
  EXPECT_EQ(model.windowCount(), 3u) << "nothing goes for a range that is refused";
}

TEST_F(CommandFileTest, UntypedSectionsReplaceTheCurrentRange) {
  ASSERT_TRUE(model.OpenFile(kSource, silent));
  EXPECT_EQ(Load(Header() + Untyped("1001", "1008", "00000003      T      00001000\r\n") +
                 Untyped("2000", "2004", "00000004      F      00002002\r\n")),
            "0\n");
  EXPECT_EQ(Model(), "2000-2003 on 2002:4F\n");
}

TEST_F(CommandFileTest, SectionsThatNameTheirSourceFile) {
  const std::string head = Header() + "Type= Range\r\n";
  const std::string line = "File_name= $(PROJDIR)\\main.c\r\n";
  EXPECT_EQ(Load(head + Typed("1000", "1003", "1", "main", "00000003\tT\t00001000\r\n", line) +
                 Typed("2000", "2003", "0", "", "00000001\tT\t00002000\r\n")),
            "0\n");
  EXPECT_EQ(Model(), "0-0 on\n1 main: 1000-1003 on 1000:3T\n2 : 2000-2003 off 2000:1T\n");
  EXPECT_EQ(Load(head + Typed("1000", "1003", "1", "MAIN", "00000003\tT\t00001000\r\n", line)), "80040A09\n")
      << "opened in spite of its case, but not found under that name";
  EXPECT_EQ(Model(), "0-0 on\n1 main: 1000-1003 on\n");
  target.source.symbols = nullptr;
  EXPECT_EQ(Load(head + Typed("1000", "1003", "1", "main", "00000003\tT\t00001000\r\n", line) +
                 Typed("2000", "2003", "1", "", "00000001\tT\t00002000\r\n")),
            "0\ninformation ok: Program is not downloaded!\n");
  EXPECT_EQ(Model(), "0-0 on\n1 : 2000-2003 on 2000:1T\n");
}

TEST_F(CommandFileTest, TheFirstSectionWithoutAMatchEndsTheLoad) {
  const std::string head = Header() + "Type= File\r\nFile name= $(PROJDIR)\\main.c\r\n";
  EXPECT_EQ(Load(head + Typed("1000", "1003", "1", "main", "00000003\tT\t00001000\r\n", "", "Instance") +
                 Typed("1004", "1007", "1", "step", "00000009\tT\t00001004\r\n", "", "Instance") +
                 Typed("1004", "1007", "1", "Step", "00000001\tT\t00001004\r\n", "", "Instance")),
            "80040A09\n");
  EXPECT_EQ(Model(), "0-0 off\n1 main: 1000-1003 on 1000:3T\n2 Step: 1004-1007 on\n");
}

/// Project and configuration, bad headers and refused files, for both readers.
TEST_F(CommandFileTest, WhatIsRefusedAndWhatIsSaid) {
  const std::string loaded =
      "information ok: The file does not belongs to this project,\nbut will still be loaded\n";
  const std::string refused = "information ok: This file is not supported in this project.\n";
  const std::string other =
      "information ok: The file does not belong to this configuration.\nbut will still be loaded\n";
  const std::string range = Typed("2000", "2003", "1", "", "");
  const std::string file = "Type= File\r\nFile name= $(PROJDIR)\\main.c\r\n";
  const std::string noSource = "Type= File\r\nFile name= $(PROJDIR)\\none.c\r\n";
  const struct {
    std::string content;
    std::string command;
    std::string automation;
  } kRows[] = {
      {"x\r\nProject name= demo\r\n", "80040A0B\n", "80040A0B\n"},
      {"x\r\nProject name= demo\r\nType= Range\r\n" + range, "80040A09\n", "80040A09\n"},
      {Header("Demo") + Untyped("2000", "2003", ""), "0\n" + loaded, "80040A0B\n"},
      {Header("other") + "Type= Range\r\n" + range, "80040A09\n" + refused, "80040A09\n"},
      {Header("other") + file, "80040A09\n" + refused, "80040A09\n"},
      {Header("demo", "Release") + Untyped("2000", "2003", ""), "0\n" + other, "80040A0B\n"},
      {Header("demo", "Release") + "Type= Range\r\n" + range, "0\n" + other, "0\n"},
      {Header("demo", "Release") + file, "0\n" + other, "0\n"},
      {Header() + "Type= Whatever\r\nFile name= $(PROJDIR)\\main.c\r\n", "0\n", "0\n"},
      {Header() + noSource, "80040A09\n", "80040A09\n"},
      {Header() + Untyped("0", "ffffffff", ""), "80040A05\n", "80040A05\n"},
      {Header() + "Type= Range\r\n" + Typed("0", "ffffffff", "1", "", "00000001\tT\t00000000\r\n") + range,
       "80040A05\n", "80040A05\n"},
  };
  for (const auto& row : kRows) {
    EXPECT_EQ(Load(row.content, kCommandLoad), row.command) << row.content;
    EXPECT_EQ(Load(row.content, kAutomationLoad), row.automation) << row.content;
  }
}

TEST_F(CommandFileTest, WhatWasLoadedStaysWhenAFileIsRefused) {
  ASSERT_TRUE(model.OpenFile(kSource, silent));
  model.FirstEntry(1)->counts->AddOne(0x1000, 7, 2);
  const std::string before = Model();
  for (const std::string& content :
       {std::string(), std::string(100000, '\0'), Header("other") + "Type= Range\r\n",
        std::string("half of a li"), "=\n" + Header()}) {
    Load(content);
    EXPECT_EQ(Model(), before);
  }
  EXPECT_EQ(LoadCommandModel(model, "C:\\missing.cov", current, &host, kCommandLoad, reporter),
            automation::kCannotOpen);
  EXPECT_EQ(Model(), before);
}

TEST_F(CommandFileTest, AFullDiskIsReportedAndALockedFileIsLeftAlone) {
  model.SetStoreRange(0x1000, 0x100F, reporter);
  drive.Put("a.cov/x", "");
  EXPECT_EQ(Save(), "80040A0A");
  platform::SetDiskSpace(40);
  EXPECT_EQ(SaveCommandModel(model, "C:\\b.cov", current, &host), automation::kCannotOpen);
  platform::SetDiskSpace(std::nullopt);
  EXPECT_EQ(SaveCommandModel(model, "C:\\b.cov", current, &host), qal::kOk);
}

TEST_F(CommandFileTest, NamesAreAskedWithTheKeysAndKeysOnlyOnce) {
  doubles::CallLog log;
  doubles::StubProject project(log);
  host.Offer(project);
  ProjectKeys keys;
  CurrentProjectNames(&host, keys);
  log.Clear();
  const ProjectNames names = CurrentProjectNames(&host, keys);
  EXPECT_EQ(names.configuration + "|" + names.project, "Debug|demo");
  EXPECT_EQ(
      log.Text(),
      "project.GetConfigurationName(\"ws\", \"proj\", \"conf\")\nproject.GetProjectName(\"ws\", \"proj\")\n");
}

}  // namespace
}  // namespace coverage
