#include "formatview/command_sink.h"

#include <gtest/gtest.h>

#include "doubles/host.h"
#include "doubles/window_service.h"
#include "formatview/debug_command_sink.h"
#include "platform/queue.h"
#include "qal/ids.h"

namespace coverage {
namespace {

/// Writes down what happens to it.
class LoggedChild final : public CUiChildWindow {
 public:
  LoggedChild(qal::IQHost* hostObject, CUiCustomizer* customizerObject, std::string name, std::string& story)
      : CUiChildWindow(hostObject, customizerObject), name_(std::move(name)), story_(story) {}
  ~LoggedChild() override { story_ += name_ + " deleted\n"; }
  void OnRemove() override {
    story_ += name_ + " removed\n";
    CUiChildWindow::OnRemove();
  }
  void OnNotify() override { story_ += name_ + " notified\n"; }
  void OnFirstDebugNotification() override { story_ += name_ + " first\n"; }
  void OnSecondDebugNotification() override { story_ += name_ + " second\n"; }
  std::uint32_t Key() const { return commandKey; }

 protected:
  platform::LResult OnMessage(const platform::Message& message) override {
    if (message.id == platform::message::kDestroy) story_ += name_ + " destroyed\n";
    return CUiChildWindow::OnMessage(message);
  }

 private:
  std::string name_;
  std::string& story_;
};

class CommandSink : public testing::Test {
 protected:
  CommandSink() {
    window.OfferTo(host);
    customizer = std::make_unique<CUiCustomizer>(&host);
    mainWindow.Create(0, 0, "IDE", platform::window_style::kVisible);
    sink = std::make_unique<CUiDebugCommandSink>(&host, customizer.get());
    EXPECT_TRUE(sink->CreateSinkWindow());
  }
  ~CommandSink() override {
    sink.reset();
    mainWindow.Destroy();
  }
  LoggedChild& AddChild(const std::string& name) {
    auto child = std::make_unique<LoggedChild>(&host, customizer.get(), name, story);
    LoggedChild& added = *child;
    child->Create(mainWindow.Handle(), 5, name, platform::window_style::kChild);
    sink->AddChild(std::move(child));
    return added;
  }
  std::string Story() { return std::exchange(story, {}); }

  doubles::CallLog log;
  doubles::HostDouble host;
  doubles::StubWindowService window{log};
  std::unique_ptr<CUiCustomizer> customizer;
  platform::Window mainWindow;
  std::unique_ptr<CUiDebugCommandSink> sink;
  std::string story;
};

TEST_F(CommandSink, MessagesReachTheChild) {
  LoggedChild& a = AddChild("a");
  LoggedChild& b = AddChild("b");
  const qal::WindowHandle handle = a.Handle();
  EXPECT_EQ(sink->Send(sink_message::kNotifyChild, b.Handle()), 1);
  EXPECT_EQ(Story(), "b notified\n");
  EXPECT_EQ(sink->Send(sink_message::kHideChild, handle), 1);
  EXPECT_EQ(window.states[mainWindow.Handle()], 1u);
  EXPECT_EQ(sink->Send(sink_message::kCloseChild, handle), 1);
  platform::PumpPosted();
  EXPECT_EQ(Story(), "a removed\na destroyed\na deleted\n");
  EXPECT_FALSE(platform::IsWindow(handle));
  sink->NotifyChildren();
  EXPECT_EQ(Story(), "b notified\n");
}

TEST_F(CommandSink, DebuggerEventsGoToEveryChildInOrder) {
  AddChild("a");
  AddChild("b");
  sink->NotifyChildrenFirst();
  sink->NotifyChildrenSecond();
  EXPECT_EQ(Story(), "a first\nb first\na second\nb second\n");
}

TEST_F(CommandSink, ChildrensRegistrationsAreWithdrawnBeforeItsOwn) {
  LoggedChild& child = AddChild("a");
  customizer->RegisterWindow(sink->CommandKey(), qal::kClassId, sink->Handle());
  customizer->RegisterWindow(child.Key(), qal::kClassId, child.Handle());
  log.Clear();
  sink->DestroySinkWindow();
  EXPECT_EQ(Story(), "a removed\na destroyed\na deleted\n");
  EXPECT_EQ(log.Take(), "window.UnregisterWindow(3)\nwindow.UnregisterWindow(1)\n");
  EXPECT_FALSE(sink->Exists());
}

}  // namespace
}  // namespace coverage
