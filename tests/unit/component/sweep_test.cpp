#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "string_ids.h"
#include "unit/component/long_story.h"
#include "util/texts.h"

// One long story is told again and again, each time with one service that is missing or with one call that
// fails. Nothing may be left behind, and nobody is told what nobody planned to tell.

namespace coverage {
namespace {

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
