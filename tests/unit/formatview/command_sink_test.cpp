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

TEST_F(CommandSink, IsAHiddenChildOfTheMainWindowWithTwoKeys) {
  EXPECT_EQ(sink->Parent(), &mainWindow);
  EXPECT_EQ(sink->Id(), 1u);
  EXPECT_FALSE(sink->IsVisible());
  EXPECT_EQ(log.Count("window.NewKey"), 2);
  EXPECT_EQ(sink->CommandKey(), 1u);
}

TEST_F(CommandSink, LooksItsServicesUpInOrder) {
  doubles::CallLog lookups;
  doubles::HostDouble watched(lookups);
  watched.logLookups = true;
  const CUiCommandSink watchedSink(&watched, nullptr);
  std::string expected;
  for (const qal::Guid& id : {qal::iid::kExpression, qal::iid::kHostAux2, qal::iid::kWorkspace,
                              qal::iid::kSettings, qal::iid::kFrame, qal::iid::kMessageOptions}) {
    expected += "host.GetService(" + doubles::Describe(id) + ")\n";
  }
  EXPECT_EQ(lookups.Take(), expected);
}

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

TEST_F(CommandSink, HandlesThatAreNoChildsChangeNothing) {
  AddChild("a");
  for (const qal::WindowHandle handle :
       {qal::WindowHandle{0}, qal::WindowHandle{0xABCDEF}, mainWindow.Handle()}) {
    EXPECT_EQ(sink->Send(sink_message::kCloseChild, handle), 1);
    EXPECT_EQ(sink->Send(sink_message::kNotifyChild, handle), 1);
  }
  EXPECT_EQ(sink->Send(sink_message::kHideChild, 0xABCDEF), 1);
  EXPECT_EQ(Story(), "");
  EXPECT_TRUE(window.states.empty());
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

TEST_F(CommandSink, AFreshFormatClientHasTheSystemsColours) {
  const std::unique_ptr<CUiDebugCommandSink> client = std::make_unique<CUiDebugCommandSink>(nullptr, nullptr);
  qal::IQFormatViewClient2& format = *client;
  platform::WideOut face;
  std::uint32_t size = 0;
  EXPECT_EQ(format.GetFont(face.put(), &size), qal::kOk);
  EXPECT_EQ(face.str(), "Courier New");
  EXPECT_EQ(size, 11u);
  platform::OwnedVariant categories;
  EXPECT_EQ(format.GetCategories(categories.put()), qal::kOk);
  EXPECT_EQ(platform::TextListOf(categories.get()), std::vector<std::string>{"Text"});
  void* out = client.get();
  EXPECT_EQ(format.QueryInterface(&qal::iid::kFormatViewSink, &out), qal::kNoInterface);
  EXPECT_EQ(out, nullptr);
  EXPECT_EQ(format.QueryInterface(&qal::iid::kFormatViewClient2, &out), qal::kOk);
  EXPECT_EQ(out, &format);
}

TEST_F(CommandSink, ColoursAreKeptByExactCategory) {
  qal::IQFormatViewClient2& format = *sink;
  const auto colours = [&](const char* category) {
    std::uint32_t fore = 99;
    std::uint32_t back = 99;
    format.GetColours(platform::Wide(category).get(), &fore, &back);
    return std::to_string(fore) + " " + std::to_string(back);
  };
  const auto current = [&] {
    std::uint32_t fore = 99;
    std::uint32_t back = 99;
    format.GetCurrentColours(&fore, &back);
    return std::to_string(fore) + " " + std::to_string(back);
  };
  EXPECT_EQ(current(), "99 99");
  EXPECT_EQ(colours("Text"), "17 17");
  EXPECT_EQ(colours("Selected Text"), "18 18");
  format.SetTextColours(1, 2);
  EXPECT_EQ(colours("Text"), "1 2");
  EXPECT_EQ(current(), "1 2");
  format.SetSelectedTextColours(3, 4);
  EXPECT_EQ(current(), "3 4");
  format.SetColours(platform::Wide("text").get(), 5, 6);
  EXPECT_EQ(colours("Text"), "1 2");
  EXPECT_EQ(colours("text"), "99 99");
  EXPECT_EQ(current(), "99 99");
}

TEST_F(CommandSink, ANewFontGoesToTheWindowAtOnce) {
  qal::IQFormatViewClient2& format = *sink;
  EXPECT_EQ(format.ChangeFont(platform::Wide("Terminus").get(), 20), qal::kOk);
  EXPECT_EQ(sink->CurrentFont(), (platform::Font{.face = "Terminus", .height = 20}));
  platform::WideOut face;
  std::uint32_t size = 0;
  format.GetFont(face.put(), &size);
  EXPECT_EQ(face.str(), "Terminus");
  EXPECT_EQ(size, 20u);
}

}  // namespace
}  // namespace coverage
