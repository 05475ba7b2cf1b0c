#include "view/coverage_windows.h"

#include <gtest/gtest.h>

#include <utility>

#include "doubles/scratch_disk.h"
#include "formatview/command_sink.h"
#include "platform/presenter.h"
#include "platform/queue.h"
#include "platform/script_presenter.h"
#include "unit/view/view_world.h"
#include "view/coverage_ctrl.h"

namespace coverage {
namespace {

class Windows : public testing::Test {
 protected:
  Windows() {
    view = std::make_unique<CJepCoverageCtrl>(&world.host, &customizer);
    view->CreateSinkWindow();
    world.log.Clear();
  }
  CoverageWindows& Open() { return view->Windows(); }
  std::string Picture() {
    std::string picture;
    for (auto* window : Open().Windows()) {
      picture += window->Record().kind == WindowKind::kFile ? "file" : "range";
      for (const auto& [number, instance] : window->Record().instances) {
        picture += platform::Format(" %u:%x-%x", number, instance->start, instance->end);
        if (!instance->functionName.empty()) picture += "=" + instance->functionName;
        picture += instance->enableStatus ? "" : " off";
        picture += instance->shown ? "*" : "";
      }
      picture += '\n';
    }
    return picture;
  }
  /// The lines act on whatever dialog or box opens while the action runs.
  template <class Action>
  std::string Do(std::deque<std::string> lines, Action action) {
    std::string printed;
    platform::ScriptPresenter person(
        [&]() -> std::optional<std::string> {
          if (lines.empty()) return std::nullopt;
          std::string line = lines.front();
          lines.pop_front();
          return line;
        },
        [&](std::string_view line) { printed += std::string(line) + '\n'; });
    person.SetAnnounce(false);
    {
      const platform::PresenterScope scope(person);
      platform::InstallMessageBoxPresenter(&world.boxes);
      action();
      platform::PumpPosted();
    }
    platform::InstallMessageBoxPresenter(&world.boxes);
    EXPECT_TRUE(lines.empty()) << "first line left: " << lines.front();
    return printed;
  }
  std::string Ranges() { return world.log.Take("path."); }
  static std::string Joined(const std::vector<std::string>& texts) {
    std::string joined;
    for (const std::string& text : texts) joined += text + ' ';
    return joined;
  }

  ViewWorld world;
  doubles::ScratchDisk disk;
  CUiCustomizer customizer{&world.host};
  std::unique_ptr<CJepCoverageCtrl> view;
};

TEST_F(Windows, ARangeEndsOnTheLastByteOfItsStep) {
  struct Row {
    std::uint32_t start, end;
    const char* registered;
  };
  for (const Row& row : {Row{0x1000, 0x2000, "path.AddRange(0x1000, 0x1fff)\n"},
                         Row{0x1000, 0x1FFF, "path.AddRange(0x1000, 0x1fff)\n"},
                         Row{0x1000, 0x1000, "path.AddRange(0x1000, 0x1000)\n"}}) {
    world.log.Clear();
    ASSERT_NE(Open().NewRangeWindow(row.start, row.end), nullptr);
    EXPECT_EQ(world.log.Text("path.AddRange"), row.registered);
    Open().CloseAll();
  }
  EXPECT_EQ(Joined(Open().Memory().starts.texts()), "1000 ");
  EXPECT_EQ(Joined(Open().Memory().ends.texts()), "1000 1fff ");
}

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
  EXPECT_EQ(Picture(), "range 1:1100-11ff*\n");
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
  EXPECT_EQ(Picture(), "range 1:1000-10ff* 2:2000-20ff off\n");
}

TEST_F(Windows, RangesAreAddedOnce) {
  auto* window = Open().NewRangeWindow(0x1000, 0x10FF);
  EXPECT_NE(Open().AddRange(*window, 0x2000, 0x2100), nullptr);
  EXPECT_EQ(Open().AddRange(*window, 0x2000, 0x20FF), nullptr);
  EXPECT_EQ(Open().AddRange(*window, 0x1000, 0x1100), nullptr);
  EXPECT_EQ(Picture(), "range 1:1000-10ff* 2:2000-20ff\n");
  EXPECT_EQ(window->List().RowCount(), 2);
}

TEST_F(Windows, AFileWindowHasOneInstanceForEachFunction) {
  auto* window = Open().NewFileWindow(ViewWorld::kSource, "$(PROJDIR)\\main.c");
  ASSERT_NE(window, nullptr);
  EXPECT_EQ(Picture(), "file 1:1000-100f=main* 2:1010-101f=step\n");
  EXPECT_EQ(window->Record().typedSourceFile, "$(PROJDIR)\\main.c");
  EXPECT_EQ(Joined(Open().Memory().starts.texts()), "1000 ");
  EXPECT_EQ(Open().NewFileWindow("C:\\none.c", "none.c"), nullptr);
  world.log.FailCall(1, "symbols.GetFileFunctions");
  world.boxes.Take();
  world.target.source.symbols = nullptr;
  EXPECT_EQ(Open().NewFileWindow(ViewWorld::kSource, "main.c"), nullptr);
  EXPECT_EQ(world.boxes.Take(), "information ok: Program is not downloaded!\n");
}

TEST_F(Windows, AFunctionWithoutARangeIsNotTheDisplayedOne) {
  world.log.FailCall(1, "path.AddRange");
  Open().NewFileWindow(ViewWorld::kSource, "main.c");
  EXPECT_EQ(Picture(), "file 1:1000-100f=main off 2:1010-101f=step*\n");
}

TEST_F(Windows, TheDialogOpensOrAddsRanges) {
  Do({"type 9005 0x1000", "type 9006 0x2000", "click 9029"}, [&] { Open().OpenCoverage(); });
  EXPECT_EQ(Picture(), "range 1:1000-1fff*\n");
  Do({"type 9005 0x2000", "type 9006 0x20ff", "click 9029"}, [&] { Open().OpenCoverage(); });
  EXPECT_EQ(Picture(), "range 1:1000-1fff* 2:2000-20ff\n");
  Do({"click 9030"}, [&] { Open().OpenCoverage(); });
  EXPECT_EQ(Picture(), "range 1:1000-1fff* 2:2000-20ff\n");
}

TEST_F(Windows, ClosingAsksWhenTheOptionDoes) {
  auto* window = Open().NewRangeWindow(0x1000, 0x10FF);
  world.options.state[2] = true;
  const qal::WindowHandle frame = window->Frame();
  Do({"click 9018"}, [&] { view->Send(sink_message::kCloseChild, frame); });
  EXPECT_EQ(Picture(), "range 1:1000-10ff*\n");
  world.log.Clear();
  Do({"check 9059 off", "click 9017"}, [&] { view->Send(sink_message::kCloseChild, frame); });
  EXPECT_EQ(Picture(), "");
  EXPECT_EQ(world.log.Text("path.RemoveRange"), "path.RemoveRange(0x1000, 0x10ff)\n");
  EXPECT_EQ(world.window.states[frame], 2u);
}

TEST_F(Windows, ClosingADataPaneOnlyHidesTheFrame) {
  auto* window = Open().NewRangeWindow(0x1000, 0x10FF);
  view->Send(sink_message::kCloseChild, window->Pane(1)->Handle());
  EXPECT_EQ(world.window.states[window->Frame()], 2u);
  EXPECT_EQ(Picture(), "range 1:1000-10ff*\n");
  view->Send(sink_message::kCloseChild, window->Handle());
  platform::PumpPosted();
  EXPECT_EQ(Picture(), "");
}

TEST_F(Windows, ClosingAFileWindowRemovesEveryRange) {
  auto* window = Open().NewFileWindow(ViewWorld::kSource, "main.c");
  world.log.Clear();
  view->Send(sink_message::kCloseChild, window->Handle());
  platform::PumpPosted();
  EXPECT_EQ(world.log.Count("path.RemoveRange"), 2);
  EXPECT_EQ(Picture(), "");
  EXPECT_EQ(view->Windows().AllInstances().size(), 0u);
}

TEST_F(Windows, ADownloadGivesFunctionsTheirNewAddresses) {
  auto* range = Open().NewRangeWindow(0x2000, 0x20FF);
  range->Record().instances[1]->counts->AddOne(0x2000, 4, 1);
  Open().NewFileWindow(ViewWorld::kSource, "main.c");
  world.target.Function(ViewWorld::kSource, "late", 0x1020, 0x102F);
  view->OnDownload();
  platform::PumpPosted();
  EXPECT_EQ(Picture(), "range 1:2000-20ff*\nfile 1:1000-100f=main* 2:1010-101f=step 3:1020-102f=late\n");
  EXPECT_EQ(range->Record().instances[1]->counts->Lookup(0x2000)->times, 0u);
  EXPECT_EQ(range->Record().instances[1]->percentage, 0u);
  EXPECT_EQ(Open().Windows()[1]->List().RowCount(), 3);
}

TEST_F(Windows, FunctionsWaitForTheSymbolsOfADownload) {
  Open().NewFileWindow(ViewWorld::kSource, "main.c");
  world.target.Function(ViewWorld::kSource, "late", 0x1020, 0x102F);
  qal::IQSymbolTable* const symbols = std::exchange(world.target.source.symbols, nullptr);
  const std::string old = "file 1:1000-100f=main* 2:1010-101f=step\n";
  view->OnDownload();
  EXPECT_EQ(Picture(), old);
  view->OnReset();
  EXPECT_EQ(Picture(), old);
  world.target.source.symbols = symbols;
  view->OnReset();
  EXPECT_EQ(Picture(), "file 1:1000-100f=main* 2:1010-101f=step 3:1020-102f=late\n");
}

TEST_F(Windows, WhatIsSavedComesBack) {
  auto* window = Open().NewRangeWindow(0x1000, 0x100F);
  Open().AddRange(*window, 0x2000, 0x2007);
  window->Record().instances[1]->counts->AddOne(0x1002, 7, 3);
  window->Record().instances[2]->SetEnabled(0);
  disk.Put("space/demo/keep.txt", "");
  const auto save = [&](const char* path) {
    return Do({std::string("type 9035 ") + path, "click 9037"}, [&] { Open().SavePane(*window->Pane(1)); });
  };
  save("C:\\space\\demo\\out");
  EXPECT_EQ(Joined(Open().Memory().recentCoverageFiles), "C:\\space\\demo\\out.cov ");
  EXPECT_EQ(window->Record().instances[2]->saved, 1u);
  EXPECT_EQ(window->Record().instances[2]->modified, 0u);
  Open().CloseAll();
  EXPECT_TRUE(Open().LoadFile("C:\\space\\demo\\out.cov")) << world.boxes.Take();
  EXPECT_EQ(Picture(), "range 1:1000-100f* 2:2000-2007 off\n");
  CoverageInstance& first = *Open().Windows()[0]->Record().instances[1];
  EXPECT_EQ(*first.counts->Lookup(0x1002), (CoverageCell{7, 3}));
  EXPECT_EQ(first.counts->Lookup(0x1004)->times, 0u);
  EXPECT_EQ(world.boxes.Take(), "");
}

TEST_F(Windows, FilesThatAreNoneAreRefused) {
  struct Row {
    const char* what;
    const char* content;
    const char* box;
  };
  const Row rows[] = {
      {"no header", "hello\nworld\n", "information ok: Invalid coverage file\n"},
      {"another type", "Configuration name= Debug\nProject name= demo\nType= Odd\n", ""},
      {"a file of another project",
       "Configuration name= Debug\nProject name= other\nType= File\nFile name= C:\\space\\demo\\main.c\n",
       "information ok: This file is not supported in this project.\n"},
  };
  for (const Row& row : rows) {
    disk.Put("space/demo/bad.cov", row.content);
    EXPECT_FALSE(Open().LoadFile("C:\\space\\demo\\bad.cov")) << row.what;
    EXPECT_EQ(world.boxes.Take(), row.box) << row.what;
    EXPECT_EQ(Picture(), "") << row.what;
  }
  EXPECT_FALSE(Open().LoadFile("C:\\space\\demo\\gone.cov"));
  EXPECT_EQ(world.boxes.Take(), "information ok: File cannot be opened.\n");
  disk.Put("space/demo/other.cov",
           "Configuration name= Debug\nProject name= other\nType= Range\n[Coverage Window 1]\n"
           "Start Address= 00001001\nEnd Address= 00001010\nEnable_status= 00000001\nPercentage= 00000042\n"
           "Function_name= \n (Times)\t(Pass)\t(Address)\n00000003\tT/F\t00001002\n");
  EXPECT_TRUE(Open().LoadFile("C:\\space\\demo\\other.cov"));
  EXPECT_EQ(world.boxes.Take(),
            "information ok: The file does not belongs to this project,\nbut will still be loaded\n");
  EXPECT_EQ(Picture(), "range 1:1000-100f*\n");
}

TEST_F(Windows, AFileWindowTakesAnotherSourceFile) {
  constexpr const char* kOther = "C:\\space\\demo\\other.c";
  world.target.Function(kOther, "helper", 0x1100, 0x110F);
  auto* window = Open().NewFileWindow(ViewWorld::kSource, "$(PROJDIR)\\main.c");
  window->Record().instances[1]->counts->AddOne(0x1000, 3, 0);
  Do({"click 9022"}, [&] { Open().RequestSourceChange(*window->Pane(1)); });
  EXPECT_EQ(Picture(), "file 1:1000-100f=main* 2:1010-101f=step\n");
  EXPECT_EQ(window->Record().instances[1]->counts->Lookup(0x1000)->times, 0u);  // cleared all the same
  Do({"type 9046 $(PROJDIR)\\other", "click 9021"}, [&] { Open().RequestSourceChange(*window->Pane(2)); });
  EXPECT_EQ(Picture(), "file 1:1100-110f=helper*\n");
  EXPECT_EQ(Open().Windows()[0]->Record().sourceFile, kOther);
  EXPECT_EQ(Open().Memory().sourcePath, "C:\\space\\demo");
}

TEST_F(Windows, AChangeOfSourceIsForgottenWithItsPane) {
  auto* window = Open().NewFileWindow(ViewWorld::kSource, "main.c");
  Open().RequestSourceChange(*window->Pane(1));
  Open().CloseAll();
  Do({}, [] {});  // the posted command finds no pane and opens no dialog
  EXPECT_EQ(Picture(), "");
}

TEST_F(Windows, ADownloadOffersUnsavedWindows) {
  struct Row {
    const char* what;
    bool option;
    std::uint32_t percentage;
    std::deque<std::string> lines;
    const char* saved;  // bytes of the file that was written, cut to its first line
  };
  const Row rows[] = {
      {"option off", false, 50, {}, ""},
      {"nothing executed", true, 0, {}, ""},
      {"no", true, 50, {"click 9032"}, ""},
      {"no to all", true, 50, {"click 9065"}, ""},
      {"yes", true, 50, {"click 9031", "type 9035 C:\\cov.cov", "click 9037"}, "Configuration name= Debug"},
  };
  for (const Row& row : rows) {
    auto* window = Open().NewRangeWindow(0x1000, 0x10FF);
    window->Record().instances[1]->percentage = row.percentage;
    world.options.state[3] = row.option;
    Do(row.lines, [&] { view->OnDownload(); });
    const std::string bytes = disk.Bytes("cov.cov");
    EXPECT_EQ(bytes.substr(0, bytes.find('\r')), row.saved) << row.what;
    Open().CloseAll();
  }
}

TEST_F(Windows, ClearingAFunctionAsksForWhatWasNotSaved) {
  auto* window = Open().NewFileWindow(ViewWorld::kSource, "main.c");
  CoverageInstance& instance = *window->Record().instances[2];
  instance.saved = 1;
  EXPECT_TRUE(Open().MayClearFunction(*window->Pane(2)));  // the option does not ask
  EXPECT_EQ(instance.saved, 0u);
  world.options.state[1] = true;
  bool may = true;
  Do({"click 9018"}, [&] { may = Open().MayClearFunction(*window->Pane(2)); });
  EXPECT_FALSE(may);
  Do({"check 9059 off", "click 9017"}, [&] { may = Open().MayClearFunction(*window->Pane(2)); });
  EXPECT_TRUE(may);
  instance.modified = 0;
  EXPECT_TRUE(Open().MayClearFunction(*window->Pane(2)));
}

TEST_F(Windows, AFullDiskLeavesTheWindowUnsaved) {
  auto* window = Open().NewRangeWindow(0x1000, 0x1FFF);
  platform::SetDiskSpace(100);
  Do({"type 9035 C:\\cov.cov", "click 9037"}, [&] { Open().SavePane(*window->Pane(1)); });
  EXPECT_EQ(world.boxes.Take(), "information ok: The data cannot be saved, error in opening the file.\n");
  EXPECT_EQ(window->Record().instances[1]->saved, 0u);
  EXPECT_EQ(window->Record().instances[1]->modified, 1u);
  EXPECT_TRUE(Open().Memory().recentCoverageFiles.empty());
}

TEST_F(Windows, AFunctionFileFillsItsWindow) {
  auto* window = Open().NewFileWindow(ViewWorld::kSource, "main.c");
  window->Record().instances[2]->counts->AddOne(0x1012, 9, 2);
  window->Record().instances[1]->SetEnabled(0);
  Do({"type 9035 C:\\cov.cov", "click 9037"}, [&] { Open().SaveWindow(*window); });
  EXPECT_NE(disk.Bytes("cov.cov").find("File name= $(PROJDIR)\\main.c\r\n[Coverage Instance 1]"),
            std::string::npos);
  window->Record().instances[2]->counts->Clear();
  // Loaded through a pane, the new window takes the old one's place.
  Do({"type 9014 C:\\cov.cov", "click 9027"}, [&] { Open().LoadPane(*window->Pane(1)); });
  EXPECT_EQ(Picture(), "file 1:1000-100f=main off* 2:1010-101f=step\n");
  EXPECT_EQ(*Open().Windows()[0]->Record().instances[2]->counts->Lookup(0x1012), (CoverageCell{9, 2}));
}

TEST_F(Windows, OpeningWhileAMacroIsRecordedAsksAndRecords) {
  world.recorder.recording = true;
  world.host.Offer(world.recorder);
  Do({"type 9005 0x1000", "type 9006 0x1fff", "click 9029"}, [&] { Open().OpenCoverage(); });
  EXPECT_EQ(Joined(world.recorder.lines), "cvr 0x1000 0x1fff ");
  EXPECT_EQ(platform::TimerCount(), 1u);
  world.recorder.recording = false;
  platform::PassTime(std::chrono::milliseconds(600));
  EXPECT_EQ(platform::TimerCount(), 0u);
}

}  // namespace
}  // namespace coverage
