#include <gtest/gtest.h>

#include <memory>
#include <thread>

#include "platform/clock.h"
#include "platform/controls.h"
#include "platform/picture.h"
#include "platform/queue.h"
#include "platform/text_presenter.h"
#include "unit/platform/windows_fixture.h"

namespace platform {
namespace {

using std::chrono::milliseconds;

TEST(Windows, LiveAndDieWithTheirParents) {
  std::string log;
  LogWindow frame("frame", &log), pane("pane", &log), list("list", &log);
  ASSERT_TRUE(frame.Open());
  ASSERT_TRUE(pane.Create(frame.Handle(), 7, "pane", kShownChild));
  ASSERT_TRUE(list.Create(pane.Handle(), 200, "list", kShownChild));
  const WindowHandle was = pane.Handle();
  EXPECT_EQ(frame.Child(7), &pane);
  EXPECT_EQ(ParentOf(list.Handle()), was);
  EXPECT_EQ(Picture(frame), "window \"frame\"\n  window \"pane\"\n    window \"list\"\n");

  frame.Destroy();
  EXPECT_EQ(log,
            "frame create\npane create\nlist create\nframe destroy\npane destroy\nlist destroy\nlist final\n"
            "pane final\nframe final\n");
  EXPECT_FALSE(IsWindow(was));
  EXPECT_FALSE(list.Exists());
  EXPECT_FALSE(list.Create(was, 1, "", kShownChild)) << "a parent that is gone";
  ASSERT_TRUE(frame.Open());
  EXPECT_NE(frame.Handle(), was);
}

/// Every way in which windows go while their handlers run.
TEST(Windows, GoInsideTheirHandlers) {
  struct Row {
    const char* what;
    std::function<void(std::unique_ptr<LogWindow>& frame, std::unique_ptr<LogWindow>& pane)> act;
    bool frameLeft;
    bool paneLeft;
  };
  const Row rows[] = {
      {"destroys itself", [](auto&, auto& pane) { pane->Destroy(); }, true, false},
      {"destroys its parent", [](auto& frame, auto&) { frame->Destroy(); }, false, false},
      {"is deleted later", [](auto&, auto& pane) { DeleteLater(std::move(pane)); }, true, false},
      {"and its parent are deleted later",
       [](auto& frame, auto& pane) {
         DeleteLater(std::move(frame));
         DeleteLater(std::move(pane));
       },
       false, false},
      {"closes by message", [](auto&, auto& pane) { pane->Send(message::kClose); }, true, false},
      {"destroys the parent while its child goes",
       [](auto& frame, auto& pane) {
         LogWindow* outer = frame.get();
         pane->react = [outer](const Message& m) {
           return m.id == message::kDestroy ? (outer->Destroy(), 0) : 0;
         };
         pane->Destroy();
       },
       false, false},
  };
  for (const bool posted : {false, true}) {
    for (const Row& row : rows) {
      auto frame = std::make_unique<LogWindow>("frame");
      auto pane = std::make_unique<LogWindow>("pane");
      ASSERT_TRUE(frame->Open());
      ASSERT_TRUE(pane->Create(frame->Handle(), 1, "", kShownChild));
      pane->SetFocus();
      const WindowRef frameRef(*frame), paneRef(*pane);
      pane->react = [&](const Message& message) {
        if (message.id == message::kUser) row.act(frame, pane);
        return LResult{0};
      };
      const WindowHandle handle = pane->Handle();
      if (posted) {
        PostTo(handle, message::kUser);
        PostTo(handle, message::kUser + 1);
        PumpPosted();
      } else {
        SendTo(handle, message::kUser);
      }
      EXPECT_EQ(static_cast<bool>(frameRef), row.frameLeft) << row.what;
      EXPECT_EQ(static_cast<bool>(paneRef), row.paneLeft) << row.what;
      EXPECT_TRUE(!pane || pane->own.find("user 1") == std::string::npos) << row.what;
      EXPECT_EQ(FocusedWindow(), nullptr) << row.what;
    }
  }
}

TEST(Windows, DeleteLaterWaitsForTheOutermostHandler) {
  struct Owned : LogWindow {
    explicit Owned(bool& gone) : gone_(gone) {}
    ~Owned() override { gone_ = true; }
    bool& gone_;
  };
  bool gone = false;
  auto owned = std::make_unique<Owned>(gone);
  ASSERT_TRUE(owned->Open());
  LogWindow outer;
  ASSERT_TRUE(outer.Open());
  bool goneInside = true;
  outer.react = [&](const Message& message) {
    if (message.id != message::kUser) return LResult{0};
    outer.Post(message::kUser + 1);
    DeleteLater(std::move(owned));
    PumpPosted();
    goneInside = gone;
    return LResult{1};
  };
  outer.Send(message::kUser);
  EXPECT_FALSE(goneInside);
  EXPECT_TRUE(gone);
}

TEST(Windows, TheDeadGetNeitherMessagesNorTimers) {
  ManualClock clock;
  InstallClock(&clock);
  auto window = std::make_unique<LogWindow>();
  ASSERT_TRUE(window->Open());
  const WindowHandle handle = window->Handle();
  EXPECT_TRUE(window->Post(message::kUser));
  EXPECT_EQ(window->SetTimer(5, milliseconds(100)), 5u);
  window.reset();
  EXPECT_EQ(PostedCount(), 0u);
  EXPECT_EQ(TimerCount(), 0u);
  EXPECT_FALSE(PostTo(handle, message::kUser));
  EXPECT_EQ(SendTo(handle, message::kUser), 0);
  clock.Advance(milliseconds(500));
  EXPECT_EQ(PumpPosted(), 0u);
  InstallClock(nullptr);
}

TEST(Windows, BelongToOneThread) {
  LogWindow window;
  ASSERT_TRUE(window.Open());
  const auto fromAnother = [&] {
    bool posted = true;
    std::thread([&] { posted = PostTo(window.Handle(), message::kUser); }).join();
    return posted;
  };
#ifdef NDEBUG
  EXPECT_FALSE(fromAnother());
#else
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_DEATH(fromAnother(), "windows belong to one thread");
#endif
  window.Destroy();
  bool opened = false;
  std::thread([&] {
    LogWindow there;
    opened = there.Open();
  }).join();
  EXPECT_TRUE(opened) << "without windows any thread may begin";
}

TEST(Windows, FocusGoesWithUseAndIsAnnounced) {
  std::string log;
  LogWindow frame("frame", &log), left("left", &log), right("right", &log);
  ASSERT_TRUE(frame.Open());
  ASSERT_TRUE(left.Create(frame.Handle(), 1, "", kShownChild));
  ASSERT_TRUE(right.Create(frame.Handle(), 2, "", kShownChild | window_style::kDisabled));
  log.clear();
  EXPECT_TRUE(left.SetFocus());
  EXPECT_FALSE(right.SetFocus()) << "disabled";
  EXPECT_TRUE(left.HasFocus());
  right.Enable(true);
  EXPECT_TRUE(right.SetFocus());
  EXPECT_EQ(log, "left focus\nleft no focus\nright focus\n");
  frame.Show(false);
  EXPECT_EQ(FocusedWindow(), nullptr);
  EXPECT_FALSE(right.CanBeUsed());
}

TEST(Windows, PresenterSeesEveryChangeOnce) {
  std::string seen;
  TextPresenter presenter([&](std::string_view line) { seen += std::string(line) + "\n"; }, true);
  const PresenterScope scope(presenter);
  {
    LogWindow frame("frame");
    ASSERT_TRUE(frame.Open());
    Button button;
    ASSERT_TRUE(button.Create(frame, 3, "Go"));
    button.SetText("Go");
    button.SetText("Stop");
    button.Enable(false);
    button.Enable(false);
    button.Move({0, 0, 10, 10});
    button.SetCheck(true);
    frame.Show(false);
  }
  EXPECT_EQ(
      seen,
      "created \"frame\"\ncreated 3 \"Go\"\ntext of 3 \"Stop\"\nenabled of 3 \"Stop\"\nbounds of 3 \"Stop\"\n"
      "check of 3 \"Stop\"\nvisible of \"frame\"\ndestroyed 3 \"Stop\"\ndestroyed \"frame\"\n");
}

TEST(Windows, ContextMenuAndWheelRiseToTheParent) {
  LogWindow frame, pane, top;
  ASSERT_TRUE(frame.Open());
  ASSERT_TRUE(pane.Create(frame.Handle(), 1, "", kShownChild));
  ASSERT_TRUE(top.Create(frame.Handle(), 2, "", window_style::kVisible)) << "owned, not inside";
  std::string risen;
  frame.react = [&](const Message& message) {
    if (message.id == message::kContextMenu)
      risen += "menu " + std::to_string(UnpackPoint(message.l).x) + "\n";
    if (message.id == message::kMouseWheel)
      risen += "wheel " + std::to_string(message.WheelDistance()) + "\n";
    return LResult{0};
  };
  pane.Send(message::kContextMenu, pane.Handle(), static_cast<LParam>(Pack(-3, 4)));
  pane.Send(message::kMouseWheel, Pack(0, -240));
  top.Send(message::kMouseWheel, Pack(0, 120));
  EXPECT_EQ(risen, "menu -3\nwheel -240\n");
}

TEST(Queue, RunsInOrderWithWhatIsPostedMeanwhile) {
  LogWindow window;
  ASSERT_TRUE(window.Open());
  window.own.clear();
  window.react = [&](const Message& message) {
    if (message.id == message::kUser + 1) window.Post(message::kUser + 3);
    return LResult{0};
  };
  int wakes = 0;
  SetWakeHook([&] { ++wakes; });
  window.Post(message::kUser + 1, 5, -6);
  window.Post(message::kUser + 2);
  EXPECT_EQ(TimeToNextMessage(), milliseconds(0));
  EXPECT_EQ(PumpPosted(), 3u);
  SetWakeHook({});
  EXPECT_EQ(window.own, "user 1 5 -6\nuser 2 0 0\nuser 3 0 0\n");
  EXPECT_EQ(wakes, 3);
  EXPECT_FALSE(TimeToNextMessage());
}

TEST(Queue, ThrowingHandlerLosesNothingBehindIt) {
  LogWindow window;
  ASSERT_TRUE(window.Open());
  window.own.clear();
  window.react = [&](const Message& message) -> LResult {
    if (message.id == message::kUser) throw std::runtime_error("no");
    return 0;
  };
  window.Post(message::kUser);
  window.Post(message::kUser + 1);
  EXPECT_THROW(PumpPosted(), std::runtime_error);
  EXPECT_EQ(PumpPosted(), 1u);
  EXPECT_EQ(window.own, "user 0 0 0\nuser 1 0 0\n");
}

TEST(Timers, FireThroughTheQueueWhenTheClockAdvances) {
  ManualClock clock;
  InstallClock(&clock);
  LogWindow window;
  ASSERT_TRUE(window.Open());
  window.own.clear();
  window.SetTimer(1, milliseconds(500));
  window.SetTimer(2, milliseconds(100));
  EXPECT_EQ(TimeToNextMessage(), milliseconds(100));
  clock.Advance(milliseconds(99));
  EXPECT_EQ(PumpPosted(), 0u);
  clock.Advance(milliseconds(401));
  PumpPosted();
  EXPECT_EQ(window.own, "timer 2\ntimer 1\n") << "once each, however late, the earlier one first";
  window.own.clear();
  EXPECT_TRUE(window.KillTimer(2));
  EXPECT_FALSE(window.KillTimer(2));
  EXPECT_EQ(window.SetTimer(0, milliseconds(1)), 0u);
  PassTime(milliseconds(1000));
  EXPECT_EQ(window.own, "timer 1\ntimer 1\n");
  EXPECT_FALSE(RunUntil([] { return false; })) << "a clock that stands still brings nothing";
  window.KillTimer(1);
  InstallClock(nullptr);
}

TEST(Keys, AreSeenByTheWindowAndItsParentsFirst) {
  struct Catcher : LogWindow {
    using LogWindow::LogWindow;
    bool PreTranslate(const Message& message) override {
      own += "saw " + std::to_string(message.w) + "\n";
      return message.w == key::kReturn;
    }
  };
  Catcher frame, pane;
  ASSERT_TRUE(frame.Open());
  ASSERT_TRUE(pane.Create(frame.Handle(), 1, "", kShownChild));
  int keys = 0;
  pane.react = [&](const Message& message) {
    if (message.id == message::kKeyDown || message.id == message::kKeyUp) ++keys;
    return LResult{0};
  };
  EXPECT_TRUE(TypeKey(pane, key::kDown));
  EXPECT_EQ(keys, 2);
  TypeKey(pane, key::kReturn);
  EXPECT_EQ(keys, 2);
  EXPECT_EQ(frame.own, "create\nsaw 40\n");
  pane.Enable(false);
  EXPECT_FALSE(TypeKey(pane, key::kDown));
}

}  // namespace
}  // namespace platform
