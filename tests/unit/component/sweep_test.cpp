#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "string_ids.h"
#include "unit/component/story.h"
#include "util/texts.h"

// One long story is told again and again, each time with one service that is missing or with one call that
// fails. Nothing may be left behind, and nobody is told what nobody planned to tell.

namespace coverage {
namespace {

struct Step {
  const char* name;
  std::function<void(Person&)> act;
};

template <class Interface>
Interface* First(Person& person, const qal::Guid& id) {
  const auto found = person.world.host.Registered<Interface>(id);
  return found.empty() ? nullptr : found.front();
}

void Editors(Person& person) {
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

void Display(Person& person) {
  auto* format = First<qal::IQFormatViewClient2>(person, qal::iid::kFormatViewSink);
  if (format == nullptr) return;
  format->ChangeFont(platform::Wide("Terminus").get(), 12);
  format->SetTextColours(3, 4);
  format->SetSelectedTextColours(5, 6);
}

void Automation(Person& person) {
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

void Images(Person& person) {
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

void Session(Person& person) {
  auto* client = First<qal::IQWorkSpaceClient2>(person, qal::iid::kWorkSpaceClient2);
  if (client == nullptr) return;
  const platform::Wide text("a");
  client->OnSessionSaving(text.get(), text.get(), text.get());
  if (person.View() != nullptr) OpenWindows(*person.View()).CloseAll();
  client->OnSessionOpened(text.get(), text.get(), text.get(), text.get());
  platform::PumpPosted();
}

void Report(Person& person) {
  person.world.Ran(0x1000, {{0x107E, 0x1000}, {0x1004, 0x1010}});
  person.component->OnDebugEvent(&qal::event::kCoverage);
  person.component->OnDebugEvent(&qal::event::kRedraw);
}

std::function<void(Person&)> OnData(WindowKind kind, std::uint32_t command, const std::string& lines) {
  return [=](Person& person) { person.Choose(person.Data(kind), command, lines); };
}
std::function<void(Person&)> OnStatistics(WindowKind kind, std::uint32_t command, const char* before) {
  return [=](Person& person) {
    person.OnList(person.Window(kind), before);
    person.Choose(person.Window(kind), command);
  };
}
std::function<void(Person&)> Types(const std::string& line) {
  return [=](Person& person) { person.world.boxes.texts.push_back(person.Type(line)); };
}
std::function<void(Person&)> Event(const qal::Guid& event) {
  return [event](Person& person) { person.Do("", [&] { person.component->OnDebugEvent(&event); }); };
}

const std::vector<Step>& Steps() {
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

/// How the story went.
struct Tale {
  std::vector<std::string> told;  ///< "step: text", once each
  std::string slips;
  std::string leftovers;
  std::map<std::string, int, std::less<>> calls;
};

template <class... Ids>
bool IsOneOf(const std::string& text, Ids... ids) {
  return ((Text(ids) == text) || ...);
}
/// Whether a message box or a command may say it: one of these, or the IDE's own text for a status.
bool IsPlanned(const std::string& text) {
  using namespace strings;
  return text.empty() || text.starts_with("error 0x") ||
         IsOneOf(text, kProgramNotDownloaded, kStartExceedsEnd, kNoRange, kRangeTooLarge, kStartOdd,
                 kAddressOutOfRange, kAddressNotInCoverage, kSyntaxError, kInvalidSourceFileName,
                 kRangeCannotBeSet, kInvalidCoverageFile, kFileCannotBeOpened, kDataCannotBeSaved,
                 kOtherProjectLoaded, kOtherProjectRefused, kOtherConfigurationLoaded, kInvalidLoadFileName,
                 kInvalidSaveFileName, kSaveUnderProject, kCreateDirectory, kCannotCreateDirectory,
                 kInvalidParameter, kTooManyParameters, kCannotDisplay, kCannotSaveCoverage);
}

/// What stands although everything ended. A service that was told to fail is not counted on.
std::string Leftovers(Person& person, const std::string& faulty) {
  std::string left;
  ViewWorld& world = person.world;
  if (world.host.RegistrationCount() != 0) left += "registrations\n";
  if (platform::TimerCount() != 0) left += "timers\n";
  if (platform::PostedCount() != 0) left += "messages\n";
  if (faulty != "columns" && faulty != "host" && !world.columns.columns.empty()) left += "columns\n";
  std::size_t frames = 0;
  for (const auto& frame : world.window.frames) {
    frames += frame->Exists();
    if (!frame->Children().empty()) left += "panes\n";
  }
  if (platform::TopLevelWindows().size() != frames) left += "windows\n";
  const auto pair = [&](const char* service, const std::string& begin, const std::string& end) {
    if (faulty == service || faulty == "host") return;
    const int begun = world.log.Count(begin + "(");
    const int ended = world.log.Count(end + "(");
    if (begun != ended) left += platform::Format("%s %d, ended %d\n", begin.c_str(), begun, ended);
  };
  for (const char* what : {"Menu", "WindowMenu", "Window", "ResourceModule", "Toolbar", "Accelerators"}) {
    pair("window", std::string("window.Register") + what, std::string("window.Unregister") + what);
  }
  pair("path", "path.AddRange", "path.RemoveRange");
  pair("count", "count.AddRange", "count.RemoveRange");
  pair("options", "options.RegisterOption", "options.WithdrawOption");
  pair("registry", "registry.AddCommand", "registry.RemoveCommand");
  pair("data", "data.Open", "data.Close");
  return left;
}

/// Tells the story. `before` runs before each step.
Tale Tell(const std::string& faulty, const std::function<void(Person&, std::size_t)>& before) {
  Person person;
  Tale tale;
  for (std::size_t i = 0; i < Steps().size(); ++i) {
    const Step& step = Steps()[i];
    if (before) before(person, i);
    step.act(person);
    for (const std::string& text : std::exchange(person.world.boxes.texts, {})) {
      EXPECT_TRUE(IsPlanned(text)) << faulty << ", " << step.name << ": " << text;
      const std::string line = std::string(step.name) + ": " + text;
      if (!text.empty() && std::find(tale.told.begin(), tale.told.end(), line) == tale.told.end()) {
        tale.told.push_back(line);
      }
    }
  }
  person.End();
  tale.slips = person.slips;
  tale.leftovers = Leftovers(person, faulty);
  tale.calls = person.world.log.Calls();
  return tale;
}

TEST(Sweep, ThePlainStoryTellsNothing) {
  const Tale tale = Tell("", nullptr);
  EXPECT_EQ(tale.told, std::vector<std::string>{});
  EXPECT_EQ(tale.slips, "");
  EXPECT_EQ(tale.leftovers, "");
}

TEST(Sweep, AServiceThatIsMissingIsToldOrPassedOver) {
  std::string table;
  for (const std::size_t from : {std::size_t{0}, Steps().size() / 2}) {
    for (const qal::Guid& id : Person().world.host.Services()) {
      const std::string name = doubles::Describe(id);
      const Tale tale = Tell(name, [&](Person& person, std::size_t step) {
        if (step == from) person.world.host.Withdraw(id);
      });
      EXPECT_EQ(tale.leftovers, "") << name << " from " << Steps()[from].name;
      std::string row;
      for (const std::string& line : tale.told) row += "  " + line + '\n';
      if (!row.empty()) table += name + " missing from " + Steps()[from].name + '\n' + row;
    }
  }
  EXPECT_EQ(table,
            "modules missing from begin\n  open file: Program is not downloaded!\n"
            "  recorded open: Program is not downloaded!\npath missing from begin\n"
            "  cvr: Coverage range cannot be set.\nexpression missing from begin\n"
            "  open range: error 0x80004005\n  cvr: Too many parameters\n  cv: Invalid parameter\n"
            "source missing from begin\n  open file: Program is not downloaded!\n"
            "  cvr file: Program is not downloaded!\n  cvr file: Invalid coverage file\n"
            "  cv: Invalid parameter\n  recorded open: Program is not downloaded!\n"
            "modules missing from other source\n  recorded open: Program is not downloaded!\n"
            "path missing from other source\n  cvr: Coverage range cannot be set.\n"
            "source missing from other source\n  other source: Program is not downloaded!\n"
            "  cvr file: Program is not downloaded!\n  cvr file: Invalid coverage file\n"
            "  cv: Invalid parameter\n  recorded open: Program is not downloaded!\n"
            "  session: Program is not downloaded!\n");
}

TEST(Sweep, ACallThatFailsLeavesNothingBehind) {
#ifdef __SANITIZE_ADDRESS__
  constexpr int kMostCalls = 6;
#else
  constexpr int kMostCalls = 14;
#endif
  for (const bool counters : {false, true}) {
    const auto begin = [&](const std::string& faulty, int n) {
      return Tell(faulty, [&, n](Person& person, std::size_t step) {
        if (step != 0) return;
        if (counters) person.OfferCounters();
        if (n != 0) person.world.log.FailCall(n, faulty + ".");
      });
    };
    const auto calls = begin("", 0).calls;
    ASSERT_TRUE(calls.contains(counters ? "count" : "path"));
    for (const auto& [service, count] : calls) {
      if (counters && service != "count") continue;
      for (int i = 0; i < std::min(count, kMostCalls); ++i) {
        // Every call; of very many the same sample each time.
        const int n = count <= kMostCalls
                          ? i + 1
                          : 1 + static_cast<int>(std::int64_t{count - 1} * i / (kMostCalls - 1));
        const Tale tale = begin(service, n);
        EXPECT_EQ(tale.leftovers, "") << service << ", call " << n;
      }
    }
  }
}

}  // namespace
}  // namespace coverage
