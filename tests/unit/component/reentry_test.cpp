#include <gtest/gtest.h>

#include "unit/component/story.h"

// What a person, the debugger and the IDE do while something of the component is open: a dialog, a menu, a
// box. Run under the address sanitizer.

namespace coverage {
namespace {

using Act = std::function<void(Person&)>;

/// The lines get "meanwhile" in front: it happens when the dialog or menu has just opened.
Act OnPane(WindowKind kind, std::uint32_t command, const std::string& lines) {
  return [=](Person& person) { person.Choose(person.Data(kind), command, "meanwhile;" + lines); };
}
Act OnStatistics(WindowKind kind, std::uint32_t command, const std::string& lines) {
  return [=](Person& person) {
    person.OnList(person.Window(kind), "row 0");
    person.Choose(person.Window(kind), command, "meanwhile;" + lines);
  };
}
Act InDialog(const std::string& lines) {
  return [=](Person& person) { person.Open(lines); };
}
Act OnHeader(bool data) {
  return [=](Person& person) {
    CCoverageListCtrl& list =
        data ? person.Data(WindowKind::kRange)->List() : person.Window(WindowKind::kRange)->List();
    person.Do("meanwhile;menu cancel", [&] { platform::ActOnList(list, "context header 0"); });
  };
}

const std::vector<std::pair<const char*, Act>>& Openers() {
  using namespace pane_command;
  constexpr auto kRange = WindowKind::kRange;
  constexpr auto kFile = WindowKind::kFile;
  static const std::vector<std::pair<const char*, Act>> openers = {
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
       [](Person& p) {
         const qal::WindowHandle frame = p.Window(WindowKind::kRange)->Frame();
         p.Do("meanwhile;check 9059 off;click 9017",
              [&] { p.View()->Send(sink_message::kCloseChild, frame); });
       }},
      {"download",
       [](Person& p) {
         p.Do("meanwhile;click 9031;type 9035 C:\\new;click 9037",
              [&] { p.component->OnDebugEvent(&qal::event::kDownload); });
       }},
      {"session saving",
       [](Person& p) {
         auto* client = p.world.host.Registered<qal::IQWorkSpaceClient2>(qal::iid::kWorkSpaceClient2).front();
         p.Do("meanwhile;click 9031;type 9035 C:\\new;click 9037",
              [&] { client->OnSessionSaving(nullptr, nullptr, nullptr); });
       }},
      {"test selection",
       [](Person& p) {
         auto* client =
             p.world.host.Registered<qal::IQCoverageTestClient>(qal::iid::kCoverageTestClient).front();
         p.Do("meanwhile;list 2214 row 0;click 2215;click 2234", [&] { client->EditSelection(); });
       }},
  };
  return openers;
}

/// Opens everything, one after the other in a fresh IDE, and lets the interruption happen meanwhile.
void Interrupt(const Act& interruption) {
  for (const auto& [what, act] : Openers()) {
    SCOPED_TRACE(what);
    Person person;
    ASSERT_TRUE(person.Begin());
    person.other->Initialize(&person.world.host, qal::kTrue);
    person.OpenRange();
    person.Open("type 9005 0x2000;type 9006 0x20ff;click 9029");
    person.OpenFile();
    person.Choose(person.Data(WindowKind::kRange), pane_command::kSaveData,
                  "type 9035 C:\\space\\demo\\out;click 9037");
    for (auto* instance : person.View()->Windows().AllInstances()) {
      instance->counts->AddOne(instance->start, 3, 1);
      instance->modified = 1;
      instance->saved = 0;
      instance->percentage = 5;
    }
    const auto ask = [&](bool on) {
      for (std::uint32_t option = 1; option <= 4; ++option) person.world.options.state[option] = on;
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
  Interrupt([](Person& p) {
    while (p.View() != nullptr && !p.View()->Windows().Windows().empty()) {
      p.View()->CloseChild(p.View()->Windows().Windows().front()->Frame(), 0);
    }
  });
}

TEST(Reentry, FramesAreDestroyedWhileSomethingIsOpen) {
  Interrupt([](Person& p) {
    for (auto& frame : p.world.window.frames) frame->Destroy();
  });
}

TEST(Reentry, AProgramIsDownloadedWhileSomethingIsOpen) {
  Interrupt([](Person& p) { p.component->OnDebugEvent(&qal::event::kDownload); });
}

TEST(Reentry, ASessionIsOpenedWhileSomethingIsOpen) {
  Interrupt([](Person& p) {
    const platform::Wide text("a");
    for (auto* client : p.world.host.Registered<qal::IQWorkSpaceClient2>(qal::iid::kWorkSpaceClient2)) {
      client->OnSessionOpened(text.get(), text.get(), text.get(), text.get());
    }
  });
}

TEST(Reentry, AnotherInstanceGoesWhileSomethingIsOpen) {
  Interrupt([](Person& p) { p.EndOther(); });
}

TEST(Reentry, TheComponentEndsWhileSomethingIsOpen) {
  Interrupt([](Person& p) { p.component->Uninitialize(qal::kTrue); });
}

}  // namespace
}  // namespace coverage
