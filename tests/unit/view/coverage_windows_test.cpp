#include "view/coverage_windows.h"

#include <gtest/gtest.h>

#include <utility>

#include "doubles/scratch_disk.h"
#include "formatview/command_sink.h"
#include "platform/queue.h"
#include "unit/view/view_test.h"

namespace coverage {
namespace {

class Windows : public ViewTest {
 protected:
  doubles::ScratchDisk disk;
};

TEST_F(Windows, FramesAreAskedForAndShown) {
  ASSERT_NE(Open().NewRangeWindow(0x1100, 0x11FF), nullptr);
  const std::string frames = world.log.Text("window.CreateFrame");
  EXPECT_EQ(frames,
            "window.CreateFrame(\"{WK_00000001_COVERAGE}\", \"Coverage\", 0x1804, 0xe81e, \"\")\n"
            "window.CreateFrame(\"frame-1\", \"Coverage\", 0x400, 0x0, null)\n");
  EXPECT_EQ(world.log.Text("window.SetFrameState"), "window.SetFrameState(8192)\n");
  EXPECT_EQ(Open().ViewKeyOf(*Open().Windows()[0]), "frame-1");
  EXPECT_EQ(world.window.titles[Open().Windows()[0]->Frame()], "Coverage 0x00001100- 0x000011ff");
  world.window.refuse = true;
  EXPECT_EQ(Open().NewRangeWindow(0x2000, 0x20FF), nullptr);
  EXPECT_EQ(Picture(), "range 1100-11ff*\n");
}

TEST_F(Windows, ARefusedRangeOpensNoWindow) {
  world.log.FailCall(1, "path.AddRange");
  EXPECT_EQ(Open().NewRangeWindow(0x1000, 0x10FF), nullptr);
  EXPECT_EQ(Picture(), "");
  EXPECT_EQ(world.boxes.Take(), "exclamation ok: error 0x80004005\n");
  auto* window = Open().NewRangeWindow(0x1000, 0x10FF);
  ASSERT_NE(window, nullptr);
  world.log.FailCall(1, "path.AddRange");
  Open().AddRange(*window, 0x2000, 0x20FF);
  EXPECT_EQ(Picture(), "range 1000-10ff* 2000-20ff off\n");
}

TEST_F(Windows, RangesAreAddedOnce) {
  auto* window = Open().NewRangeWindow(0x1000, 0x10FF);
  EXPECT_NE(Open().AddRange(*window, 0x2000, 0x2100), nullptr);
  EXPECT_EQ(Open().AddRange(*window, 0x2000, 0x20FF), nullptr);
  EXPECT_EQ(Open().AddRange(*window, 0x1000, 0x1100), nullptr);
  EXPECT_EQ(Picture(), "range 1000-10ff* 2000-20ff\n");
  EXPECT_EQ(window->List().RowCount(), 2);
}

TEST_F(Windows, AFunctionWithoutARangeIsNotTheDisplayedOne) {
  world.log.FailCall(1, "path.AddRange");
  Open().NewFileWindow(ViewWorld::kSource, "main.c");
  EXPECT_EQ(Picture(), "file 1000-100f=main off 1010-101f=step*\n");
}

TEST_F(Windows, TheDialogOpensOrAddsRanges) {
  Do("type 9005 0x1000;type 9006 0x2000;click 9029", [&] { Open().OpenCoverage(); });
  EXPECT_EQ(Picture(), "range 1000-1fff*\n");
  Do("type 9005 0x2000;type 9006 0x20ff;click 9029", [&] { Open().OpenCoverage(); });
  EXPECT_EQ(Picture(), "range 1000-1fff* 2000-20ff\n");
  Do("click 9030", [&] { Open().OpenCoverage(); });
  EXPECT_EQ(Picture(), "range 1000-1fff* 2000-20ff\n");
}

TEST_F(Windows, ClosingADataPaneOnlyHidesTheFrame) {
  auto* window = Open().NewRangeWindow(0x1000, 0x10FF);
  view->Send(sink_message::kCloseChild, window->Pane(1)->Handle());
  EXPECT_EQ(world.window.states[window->Frame()], 2u);
  EXPECT_EQ(Picture(), "range 1000-10ff*\n");
  view->Send(sink_message::kCloseChild, window->Handle());
  platform::PumpPosted();
  EXPECT_EQ(Picture(), "");
}

TEST_F(Windows, FunctionsWaitForTheSymbolsOfADownload) {
  Open().NewFileWindow(ViewWorld::kSource, "main.c");
  world.target.Function(ViewWorld::kSource, "late", 0x1020, 0x102F);
  qal::IQSymbolTable* const symbols = std::exchange(world.target.source.symbols, nullptr);
  const std::string old = "file 1000-100f=main* 1010-101f=step\n";
  view->OnDownload();
  EXPECT_EQ(Picture(), old);
  view->OnReset();
  EXPECT_EQ(Picture(), old);
  world.target.source.symbols = symbols;
  view->OnReset();
  EXPECT_EQ(Picture(), "file 1000-100f=main* 1010-101f=step 1020-102f=late\n");
}

TEST_F(Windows, FilesThatAreNoneAreRefused) {
  const std::string project = "Configuration name= Debug\nProject name= ";
  const std::pair<std::string, const char*> rows[] = {
      {"hello\nworld\n", "information ok: Invalid coverage file\n"},
      {project + "demo\nType= Odd\n", ""},
      {project + "other\nType= File\nFile name= C:\\space\\demo\\main.c\n",
       "information ok: This file is not supported in this project.\n"},
  };
  for (const auto& [content, box] : rows) {
    disk.Put("space/demo/bad.cov", content);
    EXPECT_FALSE(Open().LoadFile("C:\\space\\demo\\bad.cov"));
    EXPECT_EQ(world.boxes.Take(), box);
    EXPECT_EQ(Picture(), "");
  }
  EXPECT_FALSE(Open().LoadFile("C:\\space\\demo\\gone.cov"));
  EXPECT_EQ(world.boxes.Take(), "information ok: File cannot be opened.\n");
  disk.Put(
      "space/demo/other.cov",
      project +
          "other\nType= Range\n[Coverage Window 1]\n"
          "Start Address= 00001001\nEnd Address= 00001010\nEnable_status= 00000001\nPercentage= 00000042\n"
          "Function_name= \n (Times)\t(Pass)\t(Address)\n00000003\tT/F\t00001002\n");
  EXPECT_TRUE(Open().LoadFile("C:\\space\\demo\\other.cov"));
  EXPECT_EQ(world.boxes.Take(),
            "information ok: The file does not belongs to this project,\nbut will still be loaded\n");
  EXPECT_EQ(Picture(), "range 1000-100f*\n");
}

TEST_F(Windows, AChangeOfSourceIsForgottenWithItsPane) {
  auto* window = Open().NewFileWindow(ViewWorld::kSource, "main.c");
  Open().RequestSourceChange(*window->Pane(1));
  Open().CloseAll();
  Do("", [] {});  // the posted command finds no pane and opens no dialog
  EXPECT_EQ(Picture(), "");
}

TEST_F(Windows, AFullDiskLeavesTheWindowUnsaved) {
  auto* window = Open().NewRangeWindow(0x1000, 0x1FFF);
  platform::SetDiskSpace(100);
  Do("type 9035 C:\\cov.cov;click 9037", [&] { Open().SavePane(*window->Pane(1)); });
  EXPECT_EQ(world.boxes.Take(), "information ok: The data cannot be saved, error in opening the file.\n");
  EXPECT_EQ(window->Record().instances[1]->saved, 0u);
  EXPECT_EQ(window->Record().instances[1]->modified, 1u);
  EXPECT_TRUE(Open().Memory().recentCoverageFiles.empty());
}

TEST_F(Windows, AFunctionFileFillsItsWindow) {
  auto* window = Open().NewFileWindow(ViewWorld::kSource, "main.c");
  window->Record().instances[2]->counts->AddOne(0x1012, 9, 2);
  window->Record().instances[1]->SetEnabled(0);
  Do("type 9035 C:\\cov.cov;click 9037", [&] { Open().SaveWindow(*window); });
  EXPECT_NE(disk.Bytes("cov.cov").find("File name= $(PROJDIR)\\main.c\r\n[Coverage Instance 1]"),
            std::string::npos);
  window->Record().instances[2]->counts->Clear();
  // Loaded through a pane, the new window takes the old one's place.
  Do("type 9014 C:\\cov.cov;click 9027", [&] { Open().LoadPane(*window->Pane(1)); });
  EXPECT_EQ(Picture(), "file 1000-100f=main off* 1010-101f=step\n");
  EXPECT_EQ(*Open().Windows()[0]->Record().instances[2]->counts->Lookup(0x1012), (CoverageCell{9, 2}));
}

TEST_F(Windows, AClearThatTheComponentMayNotDoWaitsForTheReset) {
  auto* window = Open().NewRangeWindow(0x1000, 0x10FF);
  CoverageInstance& instance = *window->Record().instances[1];
  const auto times = [&] { return instance.counts->Lookup(0x1000)->times; };
  instance.counts->AddOne(0x1000, 5, 0);
  world.session.current = false;
  view->OnDownload();
  EXPECT_EQ(times(), 5u);
  view->OnReset();
  EXPECT_EQ(times(), 5u);
  world.session.current = true;
  view->OnReset();
  EXPECT_EQ(times(), 0u);
  instance.counts->AddOne(0x1000, 5, 0);
  view->OnReset();
  EXPECT_EQ(times(), 5u);
  view->OnDownload();
  EXPECT_EQ(times(), 0u);
  EXPECT_EQ(Picture(), "range 1000-10ff*\n");
}

TEST_F(Windows, TheSwitchFollowsCommandsAndWindows) {
  const auto last = [&] {
    world.log.Clear();
    view->UpdateCoverageSwitch();
    return world.log.Take("path.SetCollection");
  };
  EXPECT_EQ(last(), "path.SetCollection(-1)\n");
  view->Model().SetStoreEnabled(false);
  EXPECT_EQ(last(), "path.SetCollection(0)\n");
  auto* window = Open().NewRangeWindow(0x1000, 0x10FF);
  EXPECT_EQ(last(), "path.SetCollection(-1)\n");
  window->Record().instances[1]->SetEnabled(0);
  EXPECT_EQ(last(), "path.SetCollection(0)\n");
}

}  // namespace
}  // namespace coverage
