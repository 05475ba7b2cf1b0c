#include <gtest/gtest.h>

#include "dialogs/coverage_range_dialog.h"
#include "dialogs/coverage_setting_dialog.h"
#include "dialogs/file_name_dialog.h"
#include "dialogs/small_dialogs.h"
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
  EXPECT_EQ(world.starts.texts(), (std::vector<std::string>{"main"}))
      << "one address, spelled as it was last";
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

TEST(CoverageSetting, OffersEachRecentFileOnce) {
  struct Nothing final : CoverageSettingHooks {
    void RecordRangeWindow(std::uint32_t, std::uint32_t) override {}
    void RecordFileWindow(const std::string&, const std::string&) override {}
    void LoadRecentFile(const std::string& path) override { loaded += path + ' '; }
    std::string loaded;
  } hooks;
  DialogWorld world;
  CoverageSettingDialog::LastTexts last;
  const std::vector<std::string> files = {"C:\\SPACE\\demo\\a.cov",
                                          "$(PROJDIR)\\a.cov",
                                          "$(PROJDIR)\\b.cov",
                                          "C:\\space\\demo\\.\\B.cov",
                                          "c.cov",
                                          "d.cov",
                                          "e.cov"};
  for (const std::string& file : files) {
    world.Act("click 9061;choose 9007 " + file + ";click 9029;click 9030", [&] {
      CoverageSettingDialog(&world.host, {world.recent(), files, {}}, last, hooks).Ask(nullptr);
    });
  }
  // A file that is not offered leaves the first one chosen.
  EXPECT_EQ(hooks.loaded,
            files[0] + ' ' + files[0] + ' ' + files[2] + ' ' + files[0] + " c.cov d.cov " + files[0] + ' ');
}

TEST(RecentList, KeepsTheTenLatest) {
  RecentList list;
  for (std::uint64_t address = 0; address < 12; ++address) list.Note(std::to_string(address), address);
  list.Note("0x5", 5);
  EXPECT_EQ(list.texts(), (std::vector<std::string>{"0x5", "11", "10", "9", "8", "7", "6", "4", "3", "2"}));
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

TEST(CoverageFileNames, LoadDataFindsWhatSaveDataWrote) {
  DialogWorld world;
  const doubles::ScratchDisk disk;
  disk.Put("space/demo/Debug/a", "");
  platform::SetCurrentDirectory("C:\\space");
  const auto save = [&](const std::string& name) {
    std::string result = "none";
    world.Act("type 9035 " + name + ";click 9037", [&] {
      const auto answer = SaveDataDialog(&world.host, "").Ask(nullptr);
      if (answer) result = answer->path + (answer->resolved ? "" : " unresolved");
    });
    return result;
  };
  const auto load = [&](const std::string& name, const std::string& current) {
    std::optional<std::string> path;
    world.Act("type 9014 " + name + ";click 9027",
              [&] { path = LoadDataDialog(&world.host, current).Ask(nullptr); });
    return path.value_or("none");
  };
  const std::string configuration = "C:\\space\\demo\\Debug\\", last = "C:\\last\\";
  const struct {
    std::string name, saved, loaded, loadedBesideLast;
  } rows[] = {
      {"name", "C:\\space\\name.cov", configuration + "name.cov", last + "name.cov"},
      {"demo\\.\\n.COV", "C:\\space\\demo\\n.COV", configuration + "demo\\n.COV", last + "demo\\n.COV"},
      {"$(CD)\\..\\n", "C:\\space\\demo\\n.cov", "C:\\space\\demo\\n.cov", "C:\\space\\demo\\n.cov"},
      {"$(NOSUCH)\\n", "C:\\space\\demo\\n.cov unresolved", "C:\\space\\demo\\n.cov",
       "C:\\space\\demo\\n.cov"},
      {"\\n", "\\n.cov", "\\n.cov", "\\n.cov"},
      {"C:n", "C:\\n.cov", "C:\\n.cov", "C:\\n.cov"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(save(row.name), row.saved) << row.name;
    EXPECT_EQ(load(row.name, ""), row.loaded) << row.name;
    EXPECT_EQ(load(row.name, last + "x.cov"), row.loadedBesideLast) << row.name;
  }
  world.host.Withdraw(qal::iid::kWorkspace);
  EXPECT_EQ(save("$(PROJDIR)\\n"), "C:\\space\\n.cov unresolved") << "never the root of the disk";
}

TEST(SavePrompt, OffersAllOnlyWhereThereAreMore) {
  DialogWorld world;
  const std::string shown = world.Act("click 9013;click 9032", [&] {
    const auto choice = SavePromptDialog(&world.host, "Address range: 0 - 1", false).Ask(nullptr);
    EXPECT_EQ(choice, SavePromptDialog::Choice::kNo);
  });
  EXPECT_NE(shown, "") << "the button is disabled";
}

}  // namespace
}  // namespace coverage
