#pragma once

#include <functional>
#include <string>
#include <vector>

#include "unit/component/story.h"

namespace coverage {

struct Step {
  const char* name;
  std::function<void(Person&)> act;
};

template <class Interface>
Interface* First(Person& person, const qal::Guid& id) {
  const auto found = person.world.host.Registered<Interface>(id);
  return found.empty() ? nullptr : found.front();
}

inline void Editors(Person& person) {
  qal::IQColumnClient& client = *person.component;
  const platform::Wide file(ViewWorld::kSource);
  client.FileOpened(file.get(), 0);
  client.FileOpened(file.get(), 1);
  for (std::uint32_t line : {3u, 4u, 9u, 20u}) {
    platform::WideOut text;
    std::int32_t width = 0;
    client.GetLineText(text.put(), &width, file.get(), 0, line);
  }
  client.LinesInserted(file.get(), 0, 4, 2);
  client.LinesDeleted(file.get(), 0, 4, 2);
  client.SetColumnState(0, 2);
  client.FileClosed(file.get(), 0);
  client.FileClosed(file.get(), 1);
}

inline void Display(Person& person) {
  auto* format = First<qal::IQFormatViewClient2>(person, qal::iid::kFormatViewSink);
  if (format == nullptr) return;
  format->ChangeFont(platform::Wide("Terminus").get(), 12);
  format->SetTextColours(3, 4);
  format->SetSelectedTextColours(5, 6);
}

inline void Automation(Person& person) {
  auto* model = First<qal::ICoverageAutomation>(person, qal::iid::kCoverageAutomation);
  if (model == nullptr) return;
  const platform::Wide path("C:\\space\\demo\\auto.cov");
  std::uint32_t start = 0;
  std::uint32_t end = 0;
  model->SetRange(0x1000, 0x101F);
  model->GetRange(&start, &end);
  model->Save(path.get());
  model->Load(path.get());
  model->Disable();
  model->Enable();
  model->Clear();
}

inline void Images(Person& person) {
  auto* client = First<qal::IQCoverageTestClient>(person, qal::iid::kCoverageTestClient);
  if (client == nullptr) return;
  person.Do("list 2214 row 0;click 2215;check 2221 on;click 2234", [&] { client->EditSelection(); });
  platform::WideOut image;
  platform::WideOut name;
  platform::WideOut messages;
  std::uint32_t status = 0;
  client->GetImage(image.put());
  client->Verify(image.get(), name.put(), messages.put(), &status);
}

inline void Session(Person& person) {
  auto* client = First<qal::IQWorkSpaceClient2>(person, qal::iid::kWorkSpaceClient2);
  if (client == nullptr) return;
  const platform::Wide text("a");
  client->OnSessionSaving(text.get(), text.get(), text.get());
  if (person.View() != nullptr) OpenWindows(*person.View()).CloseAll();
  client->OnSessionOpened(text.get(), text.get(), text.get(), text.get());
  platform::PumpPosted();
}

inline void Report(Person& person) {
  person.world.Ran(0x1000, {{0x107E, 0x1000}, {0x1004, 0x1010}});
  person.component->OnDebugEvent(&qal::event::kCoverage);
  person.component->OnDebugEvent(&qal::event::kRedraw);
}

inline std::function<void(Person&)> OnData(WindowKind kind, std::uint32_t command, const std::string& lines) {
  return [=](Person& person) { person.Choose(person.Data(kind), command, lines); };
}
inline std::function<void(Person&)> OnStatistics(WindowKind kind, std::uint32_t command, const char* before) {
  return [=](Person& person) {
    person.OnList(person.Window(kind), before);
    person.Choose(person.Window(kind), command);
  };
}
inline std::function<void(Person&)> Types(const std::string& line) {
  return [=](Person& person) { person.world.boxes.texts.push_back(person.Type(line)); };
}
inline std::function<void(Person&)> Event(const qal::Guid& event) {
  return [event](Person& person) { person.Do("", [&] { person.component->OnDebugEvent(&event); }); };
}

/// One long story: everything that a person, the debugger and the IDE do with the component, once.
inline const std::vector<Step>& Steps() {
  using namespace pane_command;
  constexpr auto kRange = WindowKind::kRange;
  constexpr auto kFile = WindowKind::kFile;
  static const std::vector<Step> steps = {
      {"begin", [](Person& p) { p.Begin(); }},
      {"open range", [](Person& p) { p.OpenRange(); }},
      {"open file", [](Person& p) { p.OpenFile(); }},
      {"add range", OnData(kRange, kAddRange, "type 9005 0x2000;type 9006 0x20ff;click 9029")},
      {"report", Report},
      {"sort", [](Person& p) { p.OnList(p.Window(kFile), "header 1"); }},
      {"go to", OnData(kRange, kGoToAddress, "type 8999 0x1010;click 9024")},
      {"view source", OnData(kRange, kViewSource, "")},
      {"view function", OnStatistics(kFile, kViewSource, "row 1")},
      {"edit range", OnData(kRange, kEditRange, "type 204 0x1000;type 205 0x11ff;click 9021")},
      {"delete range", OnStatistics(kRange, kDeleteRange, "row 1")},
      {"enable all", OnStatistics(kFile, kEnableAll, "row 0")},
      {"enable", OnStatistics(kFile, kEnable, "row 0")},
      {"second report", Report},
      {"lock", OnData(kRange, kLockRefresh, "")},
      {"save", OnData(kRange, kSaveData, "type 9035 C:\\space\\demo\\out;click 9037")},
      {"save file", OnData(kFile, kSaveData, "type 9035 $(PROJDIR)\\file;click 9037")},
      {"save text", OnData(kFile, kSaveData, "type 9035 C:\\space\\demo\\out.txt;click 9037")},
      {"load", OnData(kRange, kLoadData, "type 9014 C:\\space\\demo\\out.cov;click 9027")},
      {"load file", OnData(kFile, kLoadData, "type 9014 $(PROJDIR)\\file.cov;click 9027")},
      {"other source", OnData(kFile, kEditRange, "type 9046 $(PROJDIR)\\main.c;click 9021")},
      {"columns", Editors},
      {"download", Event(qal::event::kDownload)},
      {"reset", Event(qal::event::kReset)},
      {"clear", OnStatistics(kRange, kClearAll, "row 0")},
      {"display", Display},
      {"cvr", Types("cvr 0x1000 0x101f")},
      {"cvr file", Types("cvr C:\\space\\demo\\main.c")},
      {"cv", Types("cv 1 disable")},
      {"cvd", Types("cvd")},
      {"cvs", Types("cvs C:\\space\\demo\\line.cov")},
      {"cvl", Types("cvl C:\\space\\demo\\line.cov")},
      {"automation", Automation},
      {"images", Images},
      {"record", [](Person& p) { p.world.recorder.recording = true; }},
      {"recorded open", [](Person& p) { p.OpenFile(); }},
      {"recorded clear", OnData(kFile, kClearData, "")},
      {"recorded end",
       [](Person& p) {
         p.world.recorder.recording = false;
         platform::PassTime(std::chrono::seconds(1));
       }},
      {"other session",
       [](Person& p) {
         p.world.session.current = false;
         p.component->OnDebugEvent(&qal::event::kDownload);
         p.world.session.current = true;
         p.component->OnDebugEvent(&qal::event::kReset);
       }},
      {"session", Session},
      {"close",
       [](Person& p) {
         p.world.options.state[2] = true;
         if (auto* window = p.Window(kFile)) {
           const qal::WindowHandle frame = window->Frame();
           p.Do("check 9059 off;click 9017", [&] { p.View()->CloseChild(frame, 0); });
         }
       }},
  };
  return steps;
}

}  // namespace coverage
