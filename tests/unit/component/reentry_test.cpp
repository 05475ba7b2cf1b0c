#include <gtest/gtest.h>

#include "unit/component/story.h"

// What a person, the debugger and the IDE do while something of the component is open: a dialog, a menu, a
// box. Run under the address sanitizer.

namespace coverage {
namespace {

/// Something happens when the IDE asks the next question.
struct Questions final : doubles::StubMessageOptions {
  using StubMessageOptions::StubMessageOptions;
  std::function<void()> asked;
  qal::Status AskOption(qal::Guid option, qal::WideText message, qal::Flag* out) override {
    if (asked) std::exchange(asked, nullptr)();
    return StubMessageOptions::AskOption(option, message, out);
  }
};

struct Visitor : Person {
  Visitor() {
    questions.state = world.options.state;
    world.host.Offer(questions);
  }
  /// Of the first component that has one, or null.
  qal::IQCoverageTestClient* TestClient() {
    const auto found = world.host.Registered<qal::IQCoverageTestClient>(qal::iid::kCoverageTestClient);
    return found.empty() ? nullptr : found.front();
  }
  Questions questions{world.log};
};

using Act = std::function<void(Visitor&)>;

/// The lines get "meanwhile" in front: it happens when the dialog or menu has just opened.
Act OnPane(WindowKind kind, std::uint32_t command, const std::string& lines,
           const std::string& first = "meanwhile;") {
  return [=](Visitor& person) { person.Choose(person.Data(kind), command, first + lines); };
}
Act OnStatistics(WindowKind kind, std::uint32_t command, const std::string& lines) {
  return [=](Visitor& person) {
    person.OnList(person.Window(kind), "row 0");
    person.Choose(person.Window(kind), command, "meanwhile;" + lines);
  };
}
Act InDialog(const std::string& lines) {
  return [=](Visitor& person) { person.Open(lines); };
}
Act OnHeader(bool data) {
  return [=](Visitor& person) {
    CCoverageListCtrl& list =
        data ? person.Data(WindowKind::kRange)->List() : person.Window(WindowKind::kRange)->List();
    person.Do("meanwhile;menu cancel", [&] { platform::ActOnList(list, "context header 0"); });
  };
}

constexpr char kCleared[] = "check 9059 off;click 9017;";  ///< the answer to a clearing's question
/// While the IDE records a macro: it happens when the question about what will be recorded is open.
Act Recorded(const Act& act) {
  return [act](Visitor& person) {
    person.world.recorder.recording = true;
    person.questions.asked = person.meanwhile;
    act(person);
  };
}
/// Over two small ranges, a big one and a file.
Act InSelection(const std::string& lines) {
  return [=](Visitor& person) {
    person.Open("type 9005 0x3000;type 9006 0x7000;click 9029");
    person.Do(lines, [&] { person.TestClient()->EditSelection(); });
  };
}

constexpr std::string_view kTestSelection = "test selection";
constexpr std::string_view kBigRange = "big range of a test selection";

const std::vector<std::pair<std::string_view, Act>>& Openers() {
  using namespace pane_command;
  constexpr auto kRange = WindowKind::kRange;
  constexpr auto kFile = WindowKind::kFile;
  static const std::vector<std::pair<std::string_view, Act>> openers = {
      {"open a range", InDialog("meanwhile;type 9005 0x2800;type 9006 0x28ff;click 9029")},
      {"open a file", InDialog("click 9040;meanwhile;type 9041 C:\\space\\demo\\main.c;click 9029")},
      {"placeholder menu", InDialog("click 9040;click 9042;meanwhile;menu 33411;click 9030")},
      {"browse", InDialog("click 9040;click 9043;meanwhile;file C:\\space\\demo\\main.c;click 9029")},
      {"another file", InDialog("click 9004;click 9029;meanwhile;file C:\\space\\demo\\out.cov")},
      {"recent file", InDialog("click 9061;meanwhile;click 9029")},
      {"add range", OnPane(kRange, kAddRange, "type 9005 0x2800;type 9006 0x28ff;click 9029")},
      {"add range from the list",
       OnStatistics(kRange, kAddRange, "type 9005 0x2800;type 9006 0x28ff;click 9029")},
      {"go to", OnPane(kRange, kGoToAddress, "type 8999 0x1010;click 9024")},
      {"edit range", OnPane(kRange, kEditRange, "type 204 0x1000;type 205 0x11ff;click 9021")},
      {"edit range from the list",
       OnStatistics(kRange, kEditRange, "type 204 0x1000;type 205 0x11ff;click 9021")},
      {"other source", OnPane(kFile, kEditRange, "type 9046 C:\\space\\demo\\main.c;click 9021")},
      {"save", OnPane(kRange, kSaveData, "type 9035 C:\\space\\demo\\new;click 9037")},
      {"save file", OnStatistics(kFile, kSaveData, "type 9035 C:\\space\\demo\\new;click 9037")},
      {"load", OnPane(kRange, kLoadData, "type 9014 C:\\space\\demo\\out.cov;click 9027")},
      {"load file", OnStatistics(kFile, kLoadData, "type 9014 C:\\space\\demo\\out.cov;click 9027")},
      {"clear", OnPane(kRange, kClearData, "check 9059 off;click 9017")},
      {"clear and save", OnPane(kFile, kClearData, "check 9059 on;click 9017;type 9035 C:\\new;click 9037")},
      {"clear all", OnStatistics(kFile, kClearAll, "check 9059 off;click 9017")},
      {"delete range", OnStatistics(kRange, kDeleteRange, "check 9059 off;click 9017")},
      {"delete and save",
       OnStatistics(kRange, kDeleteRange, "check 9059 on;click 9017;type 9035 C:\\new;click 9037")},
      {"header menu of the data", OnHeader(true)},
      {"header menu of the list", OnHeader(false)},
      {"close",
       [](Visitor& p) {
         const qal::WindowHandle frame = p.Window(WindowKind::kRange)->Frame();
         p.Do("meanwhile;check 9059 off;click 9017",
              [&] { p.View()->Send(sink_message::kCloseChild, frame); });
       }},
      {"download",
       [](Visitor& p) {
         p.Do("meanwhile;click 9031;type 9035 C:\\new;click 9037",
              [&] { p.component->OnDebugEvent(&qal::event::kDownload); });
       }},
      {"session saving",
       [](Visitor& p) {
         auto* client = p.world.host.Registered<qal::IQWorkSpaceClient2>(qal::iid::kWorkSpaceClient2).front();
         p.Do("meanwhile;click 9031;type 9035 C:\\new;click 9037",
              [&] { client->OnSessionSaving(nullptr, nullptr, nullptr); });
       }},
      {"macro question of a range", Recorded(InDialog("type 9005 0x2800;type 9006 0x28ff;click 9029"))},
      {"macro question of a file",
       Recorded(InDialog("click 9040;type 9041 C:\\space\\demo\\main.c;click 9029"))},
      {"macro question of an edited range",
       Recorded(OnPane(kRange, kEditRange, "type 204 0x1000;type 205 0x11ff;click 9021", kCleared))},
      {"macro question of another source",
       Recorded(OnPane(kFile, kEditRange, "type 9046 C:\\space\\demo\\main.c;click 9021", kCleared))},
      {kTestSelection, InSelection("meanwhile;list 2214 row 0;click 2215;click 2234")},
      {kBigRange, InSelection("list 2214 row 2;click 2215;meanwhile;click 2224;click 2234")},
  };
  return openers;
}

/// Opens everything, one after the other in a fresh IDE, and lets the interruption happen meanwhile.
void Interrupt(const Act& interruption, bool onlyOfTests = false) {
  for (const auto& [what, act] : Openers()) {
    if (onlyOfTests && what != kTestSelection && what != kBigRange) continue;
    SCOPED_TRACE(what);
    Visitor person;
    ASSERT_TRUE(person.Begin());
    person.other->Initialize(&person.world.host, qal::kTrue);
    person.OpenRange();
    person.Open("type 9005 0x2000;type 9006 0x20ff;click 9029");
    person.OpenFile();
    person.Choose(person.Data(WindowKind::kRange), pane_command::kSaveData,
                  "type 9035 C:\\space\\demo\\out;click 9037");
    for (const auto& instance : OpenWindows(*person.View()).Instances()) {
      instance->counts->AddOne(instance->start, 3, 1);
      instance->modified = 1;
      instance->saved = 0;
      instance->percentage = 5;
    }
    const auto ask = [&](bool on) {
      for (std::uint32_t option = 1; option <= 4; ++option) person.questions.state[option] = on;
    };
    ask(true);
    EXPECT_EQ(person.slips, "");
    bool happened = false;
    person.meanwhile = [&] {
      happened = true;
      ask(false);
      interruption(person);
    };
    act(person);
    EXPECT_TRUE(happened) << person.slips;
    // What is left still works.
    person.OpenRange();
    person.Type("cv");
    person.EndOther();
    person.End();
    EXPECT_EQ(person.world.host.RegistrationCount(), 0u);
    EXPECT_EQ(platform::TimerCount(), 0u);
    EXPECT_EQ(platform::PostedCount(), 0u);
  }
}

TEST(Reentry, WindowsAreClosedWhileSomethingIsOpen) {
  Interrupt([](Visitor& p) {
    while (p.View() != nullptr && !p.View()->Windows().Panes().empty()) {
      p.View()->CloseChild(p.View()->Windows().Panes().front()->Frame(), 0);
    }
  });
}

TEST(Reentry, FramesAreDestroyedWhileSomethingIsOpen) {
  Interrupt([](Visitor& p) {
    for (auto& frame : p.world.window.frames) frame->Destroy();
  });
}

TEST(Reentry, AProgramIsDownloadedWhileSomethingIsOpen) {
  Interrupt([](Visitor& p) { p.component->OnDebugEvent(&qal::event::kDownload); });
}

TEST(Reentry, ASessionIsOpenedWhileSomethingIsOpen) {
  Interrupt([](Visitor& p) {
    const platform::Wide text("a");
    for (auto* client : p.world.host.Registered<qal::IQWorkSpaceClient2>(qal::iid::kWorkSpaceClient2)) {
      client->OnSessionOpened(text.get(), text.get(), text.get(), text.get());
    }
  });
}

TEST(Reentry, AnotherInstanceGoesWhileSomethingIsOpen) {
  Interrupt([](Visitor& p) { p.EndOther(); });
}

TEST(Reentry, TheComponentEndsWhileSomethingIsOpen) {
  Interrupt([](Visitor& p) { p.component->Uninitialize(qal::kTrue); });
}

TEST(Reentry, TheTestClientIsCalledWhileSomethingIsOpen) {
  Interrupt([](Visitor& p) {
    platform::WideOut image;
    platform::WideOut name;
    platform::WideOut messages;
    std::uint32_t runStatus = 0;
    p.TestClient()->SetSelection(platform::Wide("1.007(rng+0x2000 - 0x20FF)").get());
    p.TestClient()->GetImage(image.put());
    p.TestClient()->Verify(image.get(), name.put(), messages.put(), &runStatus);
    EXPECT_EQ(runStatus, 0u);
    p.TestClient()->Compare(nullptr, image.get(), name.put(), messages.put(), &runStatus);
  });
}

TEST(Reentry, TheObjectOfATestClientGoesWhileItsDialogIsOpen) {
  const auto end = [](Visitor& p) {
    p.component->Uninitialize(qal::kTrue);
    p.component = std::make_unique<CJepCoverageDataCtrl>();
  };
  Interrupt(end, true);
}

}  // namespace
}  // namespace coverage
