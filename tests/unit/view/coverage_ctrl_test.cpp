#include "view/coverage_ctrl.h"

#include <gtest/gtest.h>

#include "platform/queue.h"
#include "unit/view/view_world.h"

namespace coverage {
namespace {

class CoverageCtrl : public testing::Test {
 protected:
  CoverageCtrl() {
    view = std::make_unique<CJepCoverageCtrl>(&world.host, &customizer);
    view->CreateSinkWindow();
  }
  std::string Windows() {
    std::string picture;
    for (auto* window : view->Windows().Windows()) {
      picture += window->Record().kind == WindowKind::kFile ? "file" : "range";
      for (const auto& [number, instance] : window->Record().instances) {
        picture += platform::Format(" %u:%x-%x%s%s", number, instance->start, instance->end,
                                    instance->enableStatus ? "" : " off", instance->shown ? "*" : "");
      }
      picture += '\n';
    }
    return picture;
  }
  bool OpenEnabled() { return platform::QueryCommand(*view, control_command::kOpenCoverage).Enabled(); }

  ViewWorld world;
  CUiCustomizer customizer{&world.host};
  std::unique_ptr<CJepCoverageCtrl> view;
};

TEST_F(CoverageCtrl, RegistersEverythingAndWithdrawsItAgain) {
  const std::string calls = world.log.Take();
  const auto place = [&](const char* call) { return calls.find(call); };
  const char* const order[] = {
      "host.Advise(workspace)",
      "host.Advise(workspace2)",
      "host.Advise(format)",
      "options.RegisterOption(messages, \"Clear Coverage Data\"",
      "host.Advise(command)",
      "host.RegisterProvider(automation)",
      "window.RegisterMenu(201, 1, class, [32770], \"\", 1)",
      "window.RegisterWindow(1, class)",
      "window.RegisterResourceModule(1, class)",
      "window.RegisterToolbar(\"{WK_TB00000014_CODE}\", \"Code\", 203, 0, 1, class, [32770]",
      "window.RegisterAccelerators(9000, 1, class, [32770])"};
  std::size_t last = 0;
  for (const char* call : order) {
    ASSERT_NE(place(call), std::string::npos) << call;
    EXPECT_GE(place(call), last) << call;
    last = place(call);
  }
  for (const char* name : {"coverage\"", "cv\"", "coverage_range\"", "cvr\"", "coverage_display\"", "cvd\"",
                           "coverage_save\"", "cvs\"", "coverage_load\"", "cvl\""}) {
    const std::size_t at = calls.find(std::string("AddCommand(\"") + name, 0);
    EXPECT_NE(at, std::string::npos) << name;
  }
  view.reset();
  const std::string end = world.log.Take();
  EXPECT_LT(end.find("options.WithdrawOption(5)"), end.find("host.Unadvise(command)"));
  EXPECT_LT(end.find("host.Unadvise(command)"), end.find("host.Unadvise(workspace)"));
  EXPECT_LT(end.find("host.Unadvise(format)"), end.find("host.UnregisterProvider(automation)"));
  EXPECT_EQ(world.host.RegistrationCount(), 0u);
  EXPECT_NE(end.find("window.UnregisterWindow(1)"), std::string::npos);
  EXPECT_EQ(platform::TimerCount(), 0u);
}

TEST_F(CoverageCtrl, LivesWithoutAnyService) {
  doubles::HostDouble bare;
  {
    CJepCoverageCtrl lonely(&bare, nullptr);
    EXPECT_TRUE(lonely.CreateSinkWindow());
    lonely.OnDownload();
    lonely.OnReset();
    lonely.CollectCoverage();
    lonely.BringUpToDate();
    EXPECT_EQ(lonely.Windows().NewRangeWindow(0x1000, 0x1FFF), nullptr);
    EXPECT_EQ(lonely.Windows().NewFileWindow("a.c", "a.c"), nullptr);
  }
  EXPECT_EQ(bare.RegistrationCount(), 0u);
  CJepCoverageCtrl hostless(nullptr, nullptr);
  hostless.BringUpToDate();
}

TEST_F(CoverageCtrl, AnswersAsTheWorkspaceClient) {
  qal::IQFormatViewClient2& format = *view;
  void* out = nullptr;
  for (const qal::Guid& id : {qal::iid::kUnknown, qal::iid::kWorkSpaceClient, qal::iid::kWorkSpaceClient2}) {
    EXPECT_EQ(format.QueryInterface(&id, &out), qal::kOk);
    EXPECT_EQ(out, static_cast<qal::IQWorkSpaceClient2*>(view.get()));
  }
  for (const qal::Guid& id : {qal::iid::kFormatViewSink, qal::iid::kFormatViewClient2}) {
    EXPECT_EQ(format.QueryInterface(&id, &out), qal::kNoInterface);
    EXPECT_EQ(out, nullptr);
  }
  qal::IQWorkSpaceClient2& workspace = *view;
  std::uint32_t value = 7;
  EXPECT_EQ(workspace.GetSessionValue(1, 2, 3, &value), qal::kOk);
  EXPECT_EQ(value, 0u);
  EXPECT_EQ(workspace.Notify14(1, 2), qal::kOk);
}

TEST_F(CoverageCtrl, TheOpenCommandStopsAtTenFileWindows) {
  for (int i = 0; i < 9; ++i) view->Windows().NewFileWindow(ViewWorld::kSource, "main.c");
  EXPECT_TRUE(OpenEnabled());
  view->Windows().NewFileWindow(ViewWorld::kSource, "main.c");
  EXPECT_FALSE(OpenEnabled());
  view->Windows().NewRangeWindow(0x2000, 0x20FF);
  EXPECT_TRUE(OpenEnabled());
}

TEST_F(CoverageCtrl, FontAndColoursGoToTheStoreAndToEveryWindow) {
  auto* window = view->Windows().NewRangeWindow(0x2000, 0x20FF);
  ASSERT_NE(window, nullptr);
  qal::IQFormatViewClient2& format = *view;
  platform::WideOut name;
  format.GetFormatName(name.put());
  EXPECT_EQ(name.str(), "Coverage");
  EXPECT_EQ(format.ChangeFont(platform::Wide("Terminus").get(), 12), qal::kOk);
  EXPECT_EQ(window->List().CurrentFont().face, "Terminus");
  EXPECT_EQ(world.settings.texts["JEP_COVERAGE_FONT_NAME"], "Terminus");
  EXPECT_EQ(world.settings.numbers["JEP_COVERAGE_FONT_SIZE"], 12u);
  EXPECT_EQ(format.SetSelectedTextColours(1, 2), qal::kOk);
  EXPECT_FALSE(world.settings.numbers.contains("JEP_COVERAGE_FGCOLOUR"));
  EXPECT_EQ(format.SetTextColours(3, 4), qal::kOk);
  EXPECT_EQ(world.settings.numbers["JEP_COVERAGE_FGCOLOUR"], 3u);
  EXPECT_EQ(world.settings.numbers["JEP_COVERAGE_BKCOLOUR"], 4u);

  CJepCoverageCtrl next(&world.host, nullptr);
  platform::WideOut face;
  std::uint32_t size = 0;
  static_cast<qal::IQFormatViewClient2&>(next).GetFont(face.put(), &size);
  EXPECT_EQ(face.str(), "Terminus");
  EXPECT_EQ(size, 12u);
}

TEST_F(CoverageCtrl, AReportReachesEveryWindowAndTheCommands) {
  auto* window = view->Windows().NewRangeWindow(0x1000, 0x10FF);
  view->Model().SetStoreRange(0x1000, 0x10FF);
  world.Ran(0x1000, {{0x1004, 0x1080}, {0x1082, 0x1000}});
  view->CollectCoverage();
  CoverageInstance& instance = *window->Record().instances[1];
  EXPECT_EQ(instance.counts->Lookup(0x1002)->times, 1u);
  EXPECT_EQ(instance.counts->Lookup(0x1004)->pass, 1u);
  EXPECT_EQ(view->Model().commandStore().Lookup(0x1082)->times, 1u);
  EXPECT_EQ(instance.modified, 1u);
  view->RefreshAllStatistics();
  EXPECT_EQ(instance.percentage, 100u * 5 / 128);
  EXPECT_EQ(window->List().ItemText(0, 1), " 3%");
}

TEST_F(CoverageCtrl, AClearThatTheComponentMayNotDoWaitsForTheReset) {
  auto* window = view->Windows().NewRangeWindow(0x1000, 0x10FF);
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
  EXPECT_EQ(Windows(), "range 1:1000-10ff*\n");
}

TEST_F(CoverageCtrl, TheSwitchFollowsCommandsAndWindows) {
  const auto last = [&] {
    world.log.Clear();
    view->UpdateCoverageSwitch();
    return world.log.Take("path.SetCollection");
  };
  EXPECT_EQ(last(), "path.SetCollection(-1)\n");
  view->Model().SetStoreEnabled(false);
  EXPECT_EQ(last(), "path.SetCollection(0)\n");
  auto* window = view->Windows().NewRangeWindow(0x1000, 0x10FF);
  EXPECT_EQ(last(), "path.SetCollection(-1)\n");
  window->Record().instances[1]->SetEnabled(0);
  EXPECT_EQ(last(), "path.SetCollection(0)\n");
}

TEST_F(CoverageCtrl, DestroyingItClosesTheWindowsFirst) {
  view->Windows().NewRangeWindow(0x1000, 0x10FF);
  view->Windows().NewFileWindow(ViewWorld::kSource, "main.c");
  world.log.Clear();
  view.reset();
  const std::string end = world.log.Take();
  for (const char* range : {"path.RemoveRange(0x1000, 0x10ff)", "path.RemoveRange(0x1000, 0x100f)",
                            "path.RemoveRange(0x1010, 0x101f)"}) {
    EXPECT_NE(end.find(range), std::string::npos) << range;
  }
  EXPECT_LT(end.rfind("window.UnregisterWindow(3)"), end.find("window.UnregisterWindow(1)"));
  EXPECT_EQ(world.boxes.Take(), "");
}

}  // namespace
}  // namespace coverage
