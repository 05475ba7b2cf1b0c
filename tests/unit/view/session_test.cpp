#include <gtest/gtest.h>

#include "platform/queue.h"
#include "unit/view/view_test.h"

namespace coverage {
namespace {

class Session : public ViewTest {
 protected:
  Session() { world.host.Offer(data); }
  void Save() {
    qal::IQWorkSpaceClient2& client = *view;
    EXPECT_EQ(client.OnSessionSaving(nullptr, nullptr, nullptr), qal::kOk);
  }
  void OpenSession() {
    qal::IQWorkSpaceClient2& client = *view;
    EXPECT_EQ(client.OnSessionOpened(nullptr, nullptr, nullptr, nullptr), qal::kOk);
    platform::PumpPosted();
  }

  doubles::StubSessionData data{world.log};
};

TEST_F(Session, HoldsTheWindowsUnderTheirKeys) {
  auto* window = Open().NewRangeWindow(0x1000, 0x10FF);
  Open().AddRange(*window, 0x2000, 0x20FF);
  window->Record().instances[2]->SetEnabled(0);
  Open().NewFileWindow(ViewWorld::kSource, "main.c");
  view->History().lastTexts = {"1000", "10ff"};
  view->History().coveragePath = "C:\\space\\demo\\a.cov";
  view->History().recentCoverageFiles = {"1.cov", "2.cov", "3.cov", "4.cov", "C:\\space\\5.cov"};
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
  const std::string before = Picture();
  Restart();
  OpenSession();
  EXPECT_EQ(Picture(), before);
  EXPECT_EQ(Open().Windows()[0]->Record().viewKey, "frame-1") << "its old place in the layout";
}

TEST_F(Session, FunctionsOfOneNameComeBackEachAsItWas) {
  world.target.Function(ViewWorld::kSource, "step", 0x1020, 0x102F);
  auto* window = Open().NewFileWindow(ViewWorld::kSource, "main.c");
  window->Record().instances[3]->SetEnabled(0);
  const std::string before = Picture();
  Save();
  Restart();
  OpenSession();
  EXPECT_EQ(Picture(), before);
}

TEST_F(Session, ADamagedOneOpensWhatItCan) {
  OpenSession();
  EXPECT_EQ(Picture(), "");
  data.numbers = {{"CoverageCtrlViews", 1},          {"CoverageCtrlViews0", 4},
                  {"CoverageWnd0StartAddr", 0x2000}, {"CoverageWnd0EndAddr", 0x1000},
                  {"CoverageWnd1StartAddr", 0x0},    {"CoverageWnd1EndAddr", 0xFFFFFFFF},
                  {"CoverageWnd2StartAddr", 0x2000}, {"CoverageWnd2EndAddr", 0x2100},
                  {"CoverageWnd2Enable", 7},         {"CoverageCtrlViewsFromDiffFile", 0xFFFFFFFF},
                  {"CoverageWnd3StartAddr", 0x2200}, {"CoverageWnd3EndAddr", 0x2200},
                  {"CoverageFileName", 0xFFFFFFFF}};
  OpenSession();
  EXPECT_EQ(Picture(), "range 1000-1fff off* 2000-20ff 2200-2200 off\n");
  EXPECT_EQ(world.boxes.Take(), "");
}

}  // namespace
}  // namespace coverage
