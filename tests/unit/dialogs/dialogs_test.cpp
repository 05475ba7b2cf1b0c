#include <gtest/gtest.h>

#include "dialogs/coverage_range_dialog.h"
#include "dialogs/file_name_dialog.h"
#include "dialogs/small_dialogs.h"
#include "platform/files.h"
#include "unit/dialogs/dialog_world.h"

namespace coverage {
namespace {

std::string Range(const std::optional<AddressRange>& range) {
  return range ? platform::Format("%x-%x", range->start, range->end) : "cancelled";
}

TEST(CoverageRange, ChecksARangeInItsOrderAndStaysOpen) {
  DialogWorld world;
  world.target.limits.lowest = 0x100;
  world.target.limits.highest = 0x7fffff;
  const struct {
    const char *start, *end, *said, *result;
  } rows[] = {
      {"1000", "1fff", "", "1000-1fff"},
      {"2000", "1000", "[information] The start address is exceeded than the end address. (ok)\n",
       "cancelled"},
      {"1000", "1000", "[information] There is no range. (ok)\n", "cancelled"},
      {"1000", "201000", "[information] The range is too large. (ok)\n", "cancelled"},
      {"1000", "200fff", "", "1000-200fff"},
      {"1001", "1fff", "[information] Please enter a start address of even value (ok)\n", "cancelled"},
      {"10", "1fff", "[information] The address is out of range.  (ok)\n", "cancelled"},
      {"7ffffe", "800001", "[information] The address is out of range.  (ok)\n", "cancelled"},
      {"", "1fff", "[exclamation] Syntax error (ok)\n", "cancelled"},
      {"main", "1fff", "", "1000-1fff"},
  };
  for (const auto& row : rows) {
    std::string result;
    const std::string said = world.Act(
        std::string("type 204 ") + row.start + ";type 205 " + row.end + ";click 9021;answer ok;click 9022",
        [&] {
          CoverageRangeDialog dialog(&world.host, world.recent());
          result = Range(dialog.AskRange(nullptr, {0x1000, 0x10ff}));
        });
    EXPECT_EQ(said, row.said) << row.start << ' ' << row.end;
    EXPECT_EQ(result, row.result) << row.start << ' ' << row.end;
  }
  EXPECT_EQ(world.starts.texts(), (std::vector<std::string>{"main", "1000"}));
  EXPECT_EQ(world.ends.texts(), (std::vector<std::string>{"1fff", "200fff"}));
}

TEST(CoverageRange, OffersTheFunctionsWhereTheProgramStands) {
  DialogWorld world;
  world.target.Line(0x1000, "C:\\space\\demo\\main.c", 1, "");
  world.target.traceStart.address = 0x1004;
  EXPECT_EQ(world.Act("type 204 nowhere;click 9049;menu main;click 9022",
                      [&] {
                        CoverageRangeDialog(&world.host, world.recent()).AskRange(nullptr, {0, 1});
                      }),
            "");
}

TEST(GoToAddress, StaysInsideThePane) {
  DialogWorld world;
  const struct {
    const char *lines, *result;
  } rows[] = {
      {"type 8999 1fff;click 9024", "1fff"},
      {"type 8999 2000;click 9024;answer ok;click 9025", "none"},
      {"type 8999 fff;click 9024;answer ok;type 8999 1000;click 9024", "1000"},
      {"type 8999 ?;click 9024;answer ok;click 9025", "none"},
  };
  RecentList history;
  for (const auto& row : rows) {
    std::string result = "none";
    world.Act(row.lines, [&] {
      const auto address = GoToAddressDialog(&world.host, 0x1000, 0x1fff, "1000", history).Ask(nullptr);
      if (address) result = platform::Format("%x", *address);
    });
    EXPECT_EQ(result, row.result) << row.lines;
  }
  EXPECT_EQ(history.texts(), (std::vector<std::string>{"1000", "1fff"}));
}

TEST(SavePrompt, OffersAllOnlyWhereThereAreMore) {
  DialogWorld world;
  using Choice = SavePromptDialog::Choice;
  const struct {
    const char* lines;
    bool more, refused;
    Choice choice;
  } rows[] = {{"click 9013", true, false, Choice::kYesToAll},
              {"close", true, false, Choice::kNoToAll},
              {"click 9013;click 9032", false, true, Choice::kNo}};
  for (const auto& row : rows) {
    const std::string shown = world.Act(row.lines, [&] {
      EXPECT_EQ(SavePromptDialog(&world.host, "Address range: 0 - 1", row.more).Ask(nullptr), row.choice);
    });
    EXPECT_EQ(!shown.empty(), row.refused) << row.lines;
  }
}

TEST(FileNames, AreCheckedExpandedAndGivenADirectory) {
  doubles::ScratchDisk disk;
  DialogWorld world;
  world.workspace.projectDirectory = platform::CurrentDirectory();
  const auto in = [](std::string_view name) {
    return platform::JoinPath(platform::CurrentDirectory(), name);
  };
  const struct {
    std::string lines, said, result;
  } rows[] = {
      {"type 9035 result;click 9037", "", in("result.cov")},
      {"type 9035 result.txt;click 9037", "", in("result.txt")},
      {"type 9035 $(PROJDIR)\\a.COV;click 9037", "", in("a.COV")},
      {"type 9035 result.doc;click 9037;answer ok;click 9038",
       "[information] Invalid file name, the file format must be .COV or .TXT (ok)\n", "cancelled"},
      {"type 9035 no\\a.cov;click 9037;answer cancel;click 9038",
       "[exclamation] Directory does not exist. Create new directory? (ok, cancel)\n", "cancelled"},
      {"type 9035 new\\a.cov;click 9037;answer ok",
       "[exclamation] Directory does not exist. Create new directory? (ok, cancel)\n", in("new\\a.cov")},
      {"type 9035 ;click 9037;click 9037", "", in("old.COV")},
  };
  for (const auto& row : rows) {
    std::string result = "cancelled";
    const std::string said = world.Act(row.lines, [&] {
      if (const auto answer = SaveDataDialog(&world.host, "old.COV").Ask(nullptr)) result = answer->path;
    });
    EXPECT_EQ(said, row.said) << row.lines;
    EXPECT_EQ(result, row.result) << row.lines;
  }
  EXPECT_TRUE(platform::IsDirectory(in("new")));

  const std::pair<const char*, const char*> loads[] = {
      {"type 9014 data;click 9027", "data"},
      {"type 9014 data.cov;click 9027", "data.cov"},
      {"type 9014 data.txt;click 9027;answer ok;click 9028", "cancelled"}};
  for (const auto& [lines, wanted] : loads) {
    world.Act(lines, [&, name = std::string(wanted)] {
      EXPECT_EQ(LoadDataDialog(&world.host, "").Ask(nullptr).value_or("cancelled"), name);
    });
  }
}

}  // namespace
}  // namespace coverage
