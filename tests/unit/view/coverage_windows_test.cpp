#include <gtest/gtest.h>

#include <utility>

#include "formatview/command_sink.h"
#include "platform/queue.h"
#include "unit/view/view_test.h"

namespace coverage {
namespace {

using Windows = ViewTest;

TEST_F(Windows, FramesAreAskedForAndShown) {
  ASSERT_NE(Open().NewRangeWindow(0x1100, 0x11FF), nullptr);
  const std::string frames = world.log.Text("window.CreateFrame");
  EXPECT_EQ(frames,
            "window.CreateFrame(\"{WK_00000001_COVERAGE}\", \"Coverage\", 0x1804, 0xe81e, \"\")\n"
            "window.CreateFrame(\"frame-1\", \"Coverage\", 0x400, 0x0, null)\n");
  EXPECT_EQ(world.log.Text("window.SetFrameState"), "window.SetFrameState(8192)\n");
  EXPECT_EQ(Open().Windows()[0]->Record().viewKey, "frame-1");
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
  EXPECT_EQ(world.window.states[world.window.frames[0]->Handle()], 2u);
  EXPECT_TRUE(world.window.frames[0]->Children().empty());
  auto* window = Open().NewRangeWindow(0x1000, 0x10FF);
  ASSERT_NE(window, nullptr);
  world.log.FailCall(1, "path.AddRange");
  Open().AddRange(*window, 0x2000, 0x20FF);
  EXPECT_EQ(Picture(), "range 1000-10ff* 2000-20ff off\n");
}

TEST_F(Windows, AFunctionWithoutARangeIsNotTheDisplayedOne) {
  world.log.FailCall(1, "path.AddRange");
  Open().NewFileWindow(ViewWorld::kSource, "main.c");
  EXPECT_EQ(Picture(), "file 1000-100f=main off 1010-101f=step*\n");
}

TEST_F(Windows, ClosingADataPaneOnlyHidesTheFrame) {
  auto* window = Open().NewRangeWindow(0x1000, 0x10FF);
  for (const qal::WindowHandle none : {qal::WindowHandle{0}, qal::WindowHandle{0xABCDEF}, view->Handle()}) {
    for (const auto message :
         {sink_message::kCloseChild, sink_message::kNotifyChild, sink_message::kHideChild}) {
      EXPECT_EQ(view->Send(message, none), 1);
    }
  }
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
  Open().Do([&] { view->OnDownload(); });
  EXPECT_EQ(Picture(), old);
  Open().Do([&] { view->OnReset(); });
  EXPECT_EQ(Picture(), old);
  world.target.source.symbols = symbols;
  Open().Do([&] { view->OnReset(); });
  EXPECT_EQ(Picture(), "file 1000-100f=main* 1010-101f=step 1020-102f=late\n");
}

TEST_F(Windows, FunctionsThatCannotBeListedAgainLookLikeIt) {
  auto* window = Open().NewFileWindow(ViewWorld::kSource, "main.c");
  // The path is refused, and by its bare name the file is not known.
  world.log.FailCall(1, "symbols.GetFileFunctions");
  Open().Do([&] { view->OnDownload(); });
  EXPECT_EQ(world.boxes.Take(), "information ok: Program is not downloaded!\n");
  EXPECT_EQ(Picture(), "file 1000-100f=main off 1010-101f=step off\n");
  EXPECT_EQ(world.log.Count("path.AddRange"), world.log.Count("path.RemoveRange"));
  EXPECT_EQ(window->ViewPane()->List().RowCount(), 0);
  window->List().Click(0);
  EXPECT_EQ(window->List().SelectedRow(), -1);
}

TEST_F(Windows, AFrameThatTheIdeDestroysTakesItsWindowAlong) {
  auto* window = Open().NewRangeWindow(0x1000, 0x10FF);
  Open().AddRange(*window, 0x2000, 0x20FF);
  Open().NewFileWindow(ViewWorld::kSource, "main.c");
  world.window.frames[0]->Destroy();
  EXPECT_EQ(Picture(), "file 1000-100f=main* 1010-101f=step\n");
  EXPECT_EQ(world.log.Text("path.RemoveRange"),
            "path.RemoveRange(0x1000, 0x10ff)\npath.RemoveRange(0x2000, 0x20ff)\n");
}

TEST_F(Windows, AnAskedForSwitchIsSentOnceForAThousandFunctions) {
  for (std::uint32_t i = 0; i < 1000; ++i) {
    world.target.Function("C:\\many.c", platform::Format("f%u", i), 0x1000 + 4 * i, 0x1003 + 4 * i);
  }
  world.log.Clear();
  Open().NewFileWindow("C:\\many.c", "many.c");
  EXPECT_EQ(world.log.Text("path.SetCollection") + world.log.Text("columns.UpdateColumns"),
            "path.SetCollection(-1)\ncolumns.UpdateColumns(0)\n");
}

TEST_F(Windows, AChangeOfSourceIsForgottenWithItsPane) {
  auto* window = Open().NewFileWindow(ViewWorld::kSource, "main.c");
  view->ChangeSource(*window->Record().Instance(1));
  Open().CloseAll();
  Do("", [] {});  // the posted command finds no pane and opens no dialog
  EXPECT_EQ(Picture(), "");
}

TEST_F(Windows, AFunctionThatIsClearedCountsAsSavedNoLonger) {
  auto* window = Open().NewFileWindow(ViewWorld::kSource, "main.c");
  CoverageInstance& instance = *window->Record().instances[2];
  instance.saved = 1;
  EXPECT_TRUE(view->MayLose(DataLoss::kClearFunction, instance));
  EXPECT_EQ(instance.saved, 0u);
  CoverageInstance& first = *window->Record().instances[1];
  first.saved = instance.saved = 1;
  EXPECT_TRUE(view->MayLose(DataLoss::kClearAll, instance));
  EXPECT_EQ(first.saved + instance.saved, 0u);
  first.counts->AddOne(0x1000, 5, 0);
  EXPECT_TRUE(view->MayLose(DataLoss::kEditRange, first));
  EXPECT_EQ(first.counts->Lookup(0x1000)->times, 0u) << "at once, whatever the dialog brings";
}

TEST_F(Windows, TheFirstFunctionDecidesWhetherClosingAsks) {
  auto* window = Open().NewFileWindow(ViewWorld::kSource, "main.c");
  world.options.state[2] = true;
  world.window.states[window->Frame()] = 5;
  Do("click 9018", [&] { view->Send(sink_message::kCloseChild, window->Handle()); });
  EXPECT_EQ(world.window.states[window->Frame()], 5u) << "a window that is kept stays in view";
  window->Record().instances[1]->modified = 0;
  Do("", [&] { view->Send(sink_message::kCloseChild, window->Handle()); });
  EXPECT_EQ(Picture(), "");
}

TEST_F(Windows, AreTenAtMost) {
  const auto enabled = [&] {
    return platform::QueryCommand(*view, control_command::kOpenCoverage).Enabled();
  };
  const auto open = [&](std::uint32_t i) {
    const std::string file = "C:\\" + std::to_string(i) + ".c";
    world.target.Function(file, "f", 0x3000 + 0x10 * i, 0x300F + 0x10 * i);
    Open().NewFileWindow(file, file);
  };
  auto* range = Open().NewRangeWindow(0x1000, 0x10FF);
  for (std::uint32_t i = 0; i < 9; ++i) open(i);
  EXPECT_TRUE(enabled()) << "for another range";
  view->CloseChild(range->Frame(), 0);
  EXPECT_TRUE(enabled());
  open(9);
  EXPECT_FALSE(enabled());
}

TEST_F(Windows, AClearThatTheComponentMayNotDoWaitsForTheReset) {
  auto* window = Open().NewRangeWindow(0x1000, 0x10FF);
  CoverageInstance& instance = *window->Record().instances[1];
  const auto times = [&] { return instance.counts->Lookup(0x1000)->times; };
  instance.counts->AddOne(0x1000, 5, 0);
  world.session.current = false;
  Open().Do([&] { view->OnDownload(); });
  EXPECT_EQ(times(), 5u);
  Open().Do([&] { view->OnReset(); });
  EXPECT_EQ(times(), 5u);
  world.session.current = true;
  Open().Do([&] { view->OnReset(); });
  EXPECT_EQ(times(), 0u);
  instance.counts->AddOne(0x1000, 5, 0);
  Open().Do([&] { view->OnReset(); });
  EXPECT_EQ(times(), 5u);
  CoverageCounts& store = view->Model().commandStore();
  view->Model().SetStoreRange(0x2000, 0x20FF, view->Messages());
  store.AddOne(0x2000, 5, 0);
  Open().Do([&] { view->OnDownload(); });
  EXPECT_EQ(times() + store.Lookup(0x2000)->times, 0u);
  EXPECT_EQ(Picture(), "range 1000-10ff*\n");
}

TEST_F(Windows, TheSwitchFollowsCommandsAndWindows) {
  const auto sent = [&](const std::function<void()>& act) {
    world.log.Clear();
    Open().Do(act);
    return world.log.Take("path.SetCollection");
  };
  const auto store = [&](bool on) { return [&, on] { view->Model().SetStoreEnabled(on); }; };
  EXPECT_EQ(sent(store(true)), "path.SetCollection(-1)\n") << "the same value, too";
  EXPECT_EQ(sent(store(false)), "path.SetCollection(0)\n");
  EXPECT_EQ(sent([] {}), "");
  auto* window = Open().NewRangeWindow(0x1000, 0x10FF);
  const auto enable = [&](bool on) {
    return [&, on] { view->Coverage().Enable(*window->Record().Instance(1), on); };
  };
  EXPECT_EQ(sent(enable(true)), "path.SetCollection(-1)\n");
  EXPECT_EQ(sent(enable(false)), "path.SetCollection(0)\n");
  view->Enable();
  EXPECT_EQ(world.log.Take("path.SetCollection"), "path.SetCollection(-1)\n") << "what automation enables";
  doubles::Script person("meanwhile", &world.boxes);
  std::string meanwhile;
  person.meanwhile = [&] { meanwhile = sent(store(false)); };
  person.Run([&] { platform::RunCommand(*view, control_command::kOpenCoverage); });
  EXPECT_EQ(meanwhile, "path.SetCollection(0)\n") << "while a dialog is open, too";
}

}  // namespace
}  // namespace coverage
