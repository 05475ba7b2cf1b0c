#include "macro/macro_recorder.h"

#include <gtest/gtest.h>

#include <functional>

#include "doubles/host.h"
#include "doubles/ide_services.h"
#include "doubles/project_services.h"

namespace coverage {
namespace {

class RecorderTest : public testing::Test, protected MacroRecorderHost {
 protected:
  RecorderTest() {
    host.Offer(ide);
    host.Offer(workspace);
    ide.recording = true;
  }

  std::uint32_t StartMacroTimer(std::uint32_t id, std::uint32_t milliseconds) override {
    ++timersStarted;
    EXPECT_EQ(milliseconds, 500u);
    return id;
  }
  void StopMacroTimer(std::uint32_t) override { ++timersStopped; }
  bool AskMacroQuestion(const std::string& question) override {
    questions += question + '\n';
    if (meanwhile) meanwhile();
    return answer;
  }
  std::string LoadPath() const override { return loadPath; }

  std::string Lines() {
    std::string text;
    for (const std::string& line : ide.lines) text += line + '\n';
    ide.lines.clear();
    return text;
  }

  doubles::HostDouble host;
  doubles::StubMacroRecorder ide;
  doubles::StubWorkspace workspace;
  MacroRecorder recorder{&host, *this};
  std::string questions;
  std::string loadPath = "C:\\space\\demo\\cov\\b.COV";
  bool answer = true;
  std::function<void()> meanwhile;
  int timersStarted = 0;
  int timersStopped = 0;
};

TEST_F(RecorderTest, RecordsNothingAndAsksNothingWhileTheIdeDoesNotRecord) {
  const auto everything = [this] {
    recorder.RecordRangeWindow(0x1000, 0x1fff);
    recorder.RecordFileWindow("a.c", "C:\\a.c");
    recorder.ArmRangeEdit();
    recorder.RecordRangeEdit(0x1000, 0x1fff);
    recorder.RecordEnable(true, 2);
    recorder.PrepareReset(MacroRecorder::kAll);
    recorder.FinishReset(true);
    recorder.RecordSave("C:\\a.cov");
    recorder.NoteLoadStart();
    recorder.RecordLoad("C:\\a.cov");
  };
  ide.recording = false;
  everything();
  host.Withdraw(qal::iid::kMacroRecorder);
  everything();
  EXPECT_EQ(Lines() + questions, "");
  EXPECT_EQ(timersStarted, 0);
}

TEST_F(RecorderTest, WindowsAskAndTheirCommandsFollowTheAnswer) {
  recorder.RecordRangeWindow(0x1000, 0x1fff);
  EXPECT_NE(questions.find("Range: 0x1000 - 0x1FFF\n"), std::string::npos);
  recorder.RecordEnable(true, MacroRecorder::kAll);
  recorder.RecordEnable(false, 2);
  recorder.RecordSave("C:\\Space\\Demo\\cov\\a.COV");
  recorder.RecordLoad("something");
  EXPECT_EQ(Lines(),
            "cvr 0x1000 0x1fff\n"
            "cv enable\n"
            "cv 2 disable\n"
            "cvs $(PROJDIR)\\\\cov\\\\a.COV\n"
            "cvl $(PROJDIR)\\\\cov\\\\b.COV\n");

  questions.clear();
  answer = false;
  recorder.RecordFileWindow("$(PROJDIR)\\main.c", "C:\\space\\demo\\main.c");
  EXPECT_NE(questions.find("File: main.c\n"), std::string::npos);
  recorder.RecordEnable(true, MacroRecorder::kAll);
  EXPECT_EQ(Lines(), "");

  answer = true;
  recorder.RecordFileWindow("", "D:\\far\\main.c");
  recorder.RecordFileWindow("$(PROJDIR)\\main.c", "C:\\space\\demo\\main.c");
  recorder.RecordEnable(true, MacroRecorder::kAll);
  EXPECT_EQ(Lines(),
            "cvr D:\\\\far\\\\main.c\n"
            "cvr $(PROJDIR)\\\\main.c\n"
            "cv enable\n");
  EXPECT_EQ(timersStarted, 1);
}

TEST_F(RecorderTest, APathThatABlankWouldDivideStaysOneWord) {
  const struct {
    const char *path, *word;
  } rows[] = {
      {"D:\\my data\\a.cov", "{D:\\\\my data\\\\a.cov}"},
      {"D:\\my {data}\\a.cov", "\"D:\\\\my {data}\\\\a.cov\""},
      {"C:\\space\\demo\\a b.cov", "{$(PROJDIR)\\\\a b.cov}"},
      {"{a}.c", "\"{a}.c\""},
      {"a}.c", "a}.c"},
  };
  for (const auto& row : rows) {
    loadPath = row.path;
    recorder.RecordFileWindow(row.path, row.path);
    recorder.RecordSave(row.path);
    recorder.RecordLoad(row.path);
    const std::string word = row.word;
    EXPECT_EQ(Lines(), "cvr " + word + "\ncvs " + word + "\ncvl " + word + "\n");
  }
}

TEST_F(RecorderTest, AQuestionMayOutliveTheRecorder) {
  meanwhile = [this] { recorder.End(); };
  recorder.RecordRangeWindow(0x1000, 0x1fff);
  auto* const other = new MacroRecorder(&host, *this);
  meanwhile = [other] { delete other; };
  other->RecordRangeWindow(0x1000, 0x1fff);
  EXPECT_EQ(Lines(), "");
}

TEST_F(RecorderTest, ARangeEditIsRecordedOnceAndOnlyWhenArmed) {
  recorder.RecordRangeEdit(0x1000, 0x1fff);
  recorder.ArmRangeEdit();
  recorder.RecordRangeEdit(MacroRecorder::kAll, MacroRecorder::kAll);
  recorder.RecordRangeEdit(0x1000, 0x1fff);
  EXPECT_EQ(Lines(), "");
  recorder.ArmRangeEdit();
  recorder.RecordRangeEdit(0x2000, 0x2fff);
  recorder.RecordRangeEdit(MacroRecorder::kAll, MacroRecorder::kAll);
  EXPECT_EQ(Lines(), "cvr 0x2000 0x2fff\n");
}

TEST_F(RecorderTest, AResetWaitsForItsClearAndEndsWithTheRecording) {
  recorder.PrepareReset(MacroRecorder::kAll);
  recorder.FinishReset(false);
  recorder.FinishReset(true);
  EXPECT_EQ(Lines(), "");
  recorder.PrepareReset(3);
  recorder.RecordSave("C:\\a.cov");
  recorder.FinishReset(true);
  recorder.FinishReset(false);
  EXPECT_EQ(Lines(), "cvs C:\\\\a.cov\ncv 3 reset\n");

  recorder.NoteLoadStart();
  recorder.PrepareReset(MacroRecorder::kAll);
  recorder.OnMacroTimer(MacroRecorder::kTimerId);
  EXPECT_EQ(timersStopped, 0);
  ide.recording = false;
  recorder.OnMacroTimer(1);
  EXPECT_EQ(timersStopped, 0);
  recorder.OnMacroTimer(MacroRecorder::kTimerId);
  EXPECT_EQ(timersStopped, 1);
  ide.recording = true;
  recorder.FinishReset(true);
  EXPECT_EQ(Lines(), "");
  recorder.NoteLoadStart();
  EXPECT_EQ(timersStarted, 2);
}

}  // namespace
}  // namespace coverage
