#include <gtest/gtest.h>

#include "platform/queue.h"
#include "unit/view/view_world.h"
#include "view/coverage_ctrl.h"

namespace coverage {
namespace {

class Session : public testing::Test {
 protected:
  Session() {
    world.host.Offer(data);
    view = Make();
  }
  std::unique_ptr<CJepCoverageCtrl> Make() {
    auto made = std::make_unique<CJepCoverageCtrl>(&world.host, &customizer);
    made->CreateSinkWindow();
    return made;
  }
  void Save() {
    qal::IQWorkSpaceClient2& client = *view;
    EXPECT_EQ(client.OnSessionSaving(nullptr, nullptr, nullptr), qal::kOk);
  }
  void OpenSession() {
    qal::IQWorkSpaceClient2& client = *view;
    const platform::Wide first("a");
    const platform::Wide second("b");
    const platform::Wide third("c");
    const platform::Wide fourth("d");
    EXPECT_EQ(client.OnSessionOpened(first.get(), second.get(), third.get(), fourth.get()), qal::kOk);
    platform::PumpPosted();
  }
  std::string Windows() {
    std::string picture;
    for (auto* window : view->Windows().Windows()) {
      picture += window->Record().kind == WindowKind::kFile ? "file" : "range";
      for (const auto& [number, instance] : window->Record().instances) {
        picture += platform::Format(" %x-%x%s", instance->start, instance->end,
                                    instance->enableStatus ? "" : " off");
      }
      picture += '\n';
    }
    return picture;
  }

  ViewWorld world;
  doubles::StubSessionData data{world.log};
  CUiCustomizer customizer{&world.host};
  std::unique_ptr<CJepCoverageCtrl> view;
};

TEST_F(Session, HoldsTheWindowsUnderTheirKeys) {
  auto* window = view->Windows().NewRangeWindow(0x1000, 0x10FF);
  view->Windows().AddRange(*window, 0x2000, 0x20FF);
  window->Record().instances[2]->SetEnabled(0);
  view->Windows().NewFileWindow(ViewWorld::kSource, "main.c");
  view->Windows().Memory().lastTexts = {"1000", "10ff"};
  view->Windows().Memory().coveragePath = "C:\\space\\demo\\a.cov";
  view->Windows().Memory().recentCoverageFiles = {"1.cov", "2.cov", "3.cov", "4.cov", "C:\\space\\5.cov"};
  Save();
  EXPECT_EQ(data.Picture(),
            "CoverageCtrlViews = 1\nCoverageCtrlViews0 = 2\n"
            "CoverageCtrlViewsFile0 = 2\n"
            "CoverageCtrlViewsFile0CoverageWndInstanceKey0 = \"frame-2\"\n"
            "CoverageCtrlViewsFile0SourceFile = \"$(PROJDIR)\\main.c\"\n"
            "CoverageCtrlViewsFromDiffFile = 1\n"
            "CoverageFileName = 4\n"
            "CoverageWnd0Enable = 1\nCoverageWnd0EndAddr = 4351\nCoverageWnd0StartAddr = 4096\n"
            "CoverageWnd1Enable = 0\nCoverageWnd1EndAddr = 8447\nCoverageWnd1StartAddr = 8192\n"
            "CoverageWndFile0Func0Enable = 1\nCoverageWndFile0Func0EndAddr = 4111\n"
            "CoverageWndFile0Func0FuncName = \"main\"\nCoverageWndFile0Func0StartAddr = 4096\n"
            "CoverageWndFile0Func1Enable = 1\nCoverageWndFile0Func1EndAddr = 4127\n"
            "CoverageWndFile0Func1FuncName = \"step\"\nCoverageWndFile0Func1StartAddr = 4112\n"
            "CoverageWndInstanceKey0 = \"frame-1\"\nCoverageWndInstanceKey1 = \"frame-1\"\n"
            "FileName0 = \"$(WORKSPDIR)\\5.cov\"\nFileName1 = \"4.cov\"\nFileName2 = \"3.cov\"\n"
            "FileName3 = \"2.cov\"\n"
            "JepCov_Cov_SL = \"$(PROJDIR)\\a.cov\"\nJepCov_Open_End = \"10ff\"\n"
            "JepCov_Open_Start = \"1000\"\nJepCov_Src_Open = \"\"\n");
}

TEST_F(Session, BringsTheWindowsBack) {
  auto* window = view->Windows().NewRangeWindow(0x1000, 0x10FF);
  view->Windows().AddRange(*window, 0x2000, 0x20FF);
  window->Record().instances[2]->SetEnabled(0);
  auto* file = view->Windows().NewFileWindow(ViewWorld::kSource, "main.c");
  file->Record().instances[1]->SetEnabled(0);
  view->Windows().Memory().recentCoverageFiles = {"1.cov", "2.cov"};
  const std::string before = Windows();
  Save();
  view.reset();
  view = Make();
  world.log.Clear();
  OpenSession();
  EXPECT_EQ(Windows(), before);
  EXPECT_EQ(view->Windows().Memory().sessionCoverageFiles, (std::vector<std::string>{"2.cov", "1.cov"}));
  EXPECT_TRUE(view->Windows().Memory().recentCoverageFiles.empty());
  const std::string calls = world.log.Take();
  EXPECT_NE(calls.find("project.GetSessionText(\"a\", \"b\", \"d\")"), std::string::npos);
  EXPECT_NE(calls.find("0xe81e, \"frame-1\""), std::string::npos);  // its old place in the layout
  EXPECT_LT(calls.find("data.Open(session)"), calls.find("data.Close()"));
}

TEST_F(Session, IsNotWrittenForAnotherSession) {
  view->Windows().NewRangeWindow(0x1000, 0x10FF);
  world.session.current = false;
  Save();
  EXPECT_EQ(data.Picture(), "");
  world.session.current = true;
  world.log.Clear();
  data.texts.clear();
  Save();
  EXPECT_NE(data.Picture(), "");
}

TEST_F(Session, ADamagedOneOpensWhatItCan) {
  OpenSession();
  EXPECT_EQ(Windows(), "");
  data.numbers = {{"CoverageCtrlViews", 1},          {"CoverageCtrlViews0", 3},
                  {"CoverageWnd0StartAddr", 0x2000}, {"CoverageWnd0EndAddr", 0x1000},
                  {"CoverageWnd1StartAddr", 0x0},    {"CoverageWnd1EndAddr", 0xFFFFFFFF},
                  {"CoverageWnd2StartAddr", 0x2000}, {"CoverageWnd2EndAddr", 0x2100},
                  {"CoverageWnd2Enable", 7},         {"CoverageCtrlViewsFromDiffFile", 0xFFFFFFFF},
                  {"CoverageFileName", 0xFFFFFFFF}};
  OpenSession();
  EXPECT_EQ(Windows(), "range 2000-20ff\n");
  EXPECT_EQ(world.boxes.Take(), "");
}

}  // namespace
}  // namespace coverage
