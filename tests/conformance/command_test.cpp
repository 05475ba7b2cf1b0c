#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "tiny_ide.h"

// The command line and the automation interface over a small target.
namespace stranger {
namespace {

void* const kKey = reinterpret_cast<void*>(5);

constexpr char kRows[] =
    "       2   -\tfirst\tshort\t\n"
    "       2   T\t0x1002\tshort\t\n"
    "       1   -\t0x1004\tshort\t\n"
    "       1   T\t0x1006\tshort\t\n"
    "       0   -\t0x1008\tlong\t\n"
    "       0   -\t0x100c\tshort\t\n"
    "       0   -\t0x100e\tshort\t\n";

constexpr char kFile[] =
    "Configuration name= Debug of wpc\r\n"
    "Project name= demo of wp\r\n"
    "Type= Range\r\n"
    "[Coverage Window 1]\r\n"
    "Start Address= 00001000\r\n"
    "End Address= 0000100f\r\n"
    "Enable_status= 00000001\r\n"
    "Percentage= 00000057\r\n"
    "Function_name= \r\n"
    " (Times)\t(Pass)\t(Address)\r\n"
    "00000002\t-\t00001000\r\n"
    "00000002\tT\t00001002\r\n"
    "00000001\t-\t00001004\r\n"
    "00000001\tT\t00001006\r\n"
    "00000000\t-\t00001008\r\n"
    "00000000\t-\t0000100c\r\n"
    "00000000\t-\t0000100e";

struct CommandLine : testing::Test {
  CommandLine()
      : directory(std::filesystem::temp_directory_path() / ("conformance-" + std::to_string(::getpid()))) {
    std::filesystem::create_directory(directory);
    component = ide.Start(kKey);
    automation = ide.Registered("{034370CE-79FB-470B-A6E7-2A0BFEAA4C58}");
    ide.TakeLog();
  }
  ~CommandLine() override {
    ide.Stop(kKey);
    std::filesystem::remove_all(directory);
  }

  /// The debugger reports one run: 0x1000 to 0x1006, 0x1010 to 0x1014, 0x1000 to 0x1002.
  void Report() {
    ide.path = {0x1006, 0x1010, 0x1014, 0x1000, 0x1002, 0x1040};
    const Id event = MakeId("{6FBF8260-37F3-11D5-A5D8-0000E2257DCD}");
    EXPECT_EQ(Call(component, 3, &event), kOk);
  }
  /// A name in the scratch directory, as the product writes paths.
  std::string Path(const std::string& name) const {
    std::string path = (directory / name).string();
    std::replace(path.begin(), path.end(), '/', '\\');
    return path;
  }
  std::string Content(const std::string& name) const {
    std::ifstream file(directory / name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  /// The status of an operation of the automation interface.
  template <class... Arguments>
  std::uint32_t Automate(int slot, Arguments... arguments) {
    return static_cast<std::uint32_t>(Call(automation, slot, arguments...));
  }

  TinyIde ide;
  std::filesystem::path directory;
  void* component = nullptr;
  void* automation = nullptr;
};

TEST_F(CommandLine, CommandsAnswerOnlyForWhatTheyAre) {
  void* client = ide.Command("cvd");
  ASSERT_NE(client, nullptr);
  EXPECT_EQ(ide.Command("coverage_display"), client);
  for (const char* id : {"{00000000-0000-0000-C000-000000000046}", "{0CEE2458-E2FC-45C4-AD14-9338AC377F2B}",
                         "{76FDAC8B-D0C3-4365-BB64-56412E74A430}"}) {
    EXPECT_EQ(Ask(client, id), client) << id;
  }
  EXPECT_EQ(Ask(client, "{A8495747-DE13-11D3-8AF5-00AA0026624A}"), nullptr);
  ValueArray* names = nullptr;
  std::int32_t id = 0;
  EXPECT_EQ(Call(client, 6, &names, &id), kOk);
  EXPECT_EQ(id, -1);
  ASSERT_EQ(names->count, 2u);
  EXPECT_EQ(names->elements[0].tag, 8);
  EXPECT_EQ(Read(static_cast<char16_t*>(names->elements[0].pointer)), "coverage_display");
  FreeArray(names);
  EXPECT_EQ(Call(client, 5), kOk) << "nothing to cancel";
}

TEST_F(CommandLine, AnswersAsAPersonExpects) {
  const struct {
    const char* line;
    const char* answer;
  } rows[] = {
      {"cv", "ok: Coverage Enabled\n"},
      {"cv disable", "ok: \n"},
      {"coverage", "ok: Coverage Disabled\n"},
      {"cv enable", "ok: \n"},
      {"cv enable 1", "failed: Invalid parameter\n"},
      {"cv 1", "failed: Invalid parameter\n"},
      {"cvd now", "failed: Invalid parameter\n"},
      {"cvd", "ok: \nCan not display the coverage information."},
      {"cvs \\tmp\\x.cov", "failed: Cannot save the coverage information\n"},
      {"cvr 0x1000", "failed: Invalid parameter\n"},
      {"cvl", "failed: Invalid parameter\n"},
      {"cvr 0x1000 0x1010", "ok: \n"},
      {"cvr", "ok: Coverage Range :first - 0x100f\n"},
  };
  for (const auto& row : rows) EXPECT_EQ(ide.Run(row.line), row.answer) << row.line;
  EXPECT_EQ(ide.TakeLog("AddRange"), "AddRange 0x1000 0x100f\n");
}

TEST_F(CommandLine, ShowsWhatTheDebuggerReports) {
  ide.Run("cvr 0x1000 0x1010");
  Report();
  EXPECT_EQ(ide.Run("cvd"), std::string("ok: \n") + kRows);
  ide.Run("cv reset");
  EXPECT_NE(ide.Run("cvd").find("       0   -\tfirst\tshort\t\n"), std::string::npos);
}

TEST_F(CommandLine, SavesAndLoadsTheSameContent) {
  ide.Run("cvr 0x1000 0x1010");
  Report();
  EXPECT_EQ(ide.Run("cvs " + Path("out")), "ok: \n");
  EXPECT_EQ(Content("out.cov"), kFile);
  EXPECT_EQ(ide.Run("cvs " + Path("out.txt")), "ok: \n");
  EXPECT_EQ(Content("out.txt"), kFile);
  ide.Run("cvr 0x1040 0x1050");
  EXPECT_EQ(ide.Run("cvl " + Path("out.cov")), "ok: \n");
  EXPECT_EQ(ide.Run("cvd"), std::string("ok: \n\trange 1: first-0x100f\n") + kRows);
}

TEST_F(CommandLine, AutomationAnswersWithCodes) {
  ide.lowest = 0x100;
  ide.highest = 0xFFFFFF;
  const struct {
    std::uint32_t start, end, code;
  } rows[] = {
      {0xFFFFFFFF, 0, 0x80040A01},     {0x10, 0x1000, 0x80040A02},
      {0x1000, 0x1000000, 0x80040A02}, {0x1000, 0, 0x80040A01},
      {0x2000, 0x1000, 0x80040A03},    {0x1000, 0x1000, 0x80040A04},
      {0x1000, 0x201000, 0x80040A05},  {0x1001, 0x2000, 0x80040A06},
      {0x1000, 0x200FFF, 0},           {0x1000, 0x2000, 0},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Automate(3, row.start, row.end), row.code) << row.start << ' ' << row.end;
  }
  std::uint32_t start = 0, end = 0;
  EXPECT_EQ(Call(automation, 4, &start, &end), kOk);
  EXPECT_EQ(start, 0x1000u);
  EXPECT_EQ(end, 0x1FFFu);
  ide.addRangeAnswer = kFailure;
  EXPECT_EQ(Automate(3, 0x4000u, 0x5000u), 0x80040A07u);
  ide.addRangeAnswer = kOk;
  Call(automation, 4, &start, &end);
  EXPECT_EQ(start, 0x1000u) << "a refused range leaves the one before";
}

TEST_F(CommandLine, AutomationSwitchesClearsSavesAndLoads) {
  std::int16_t enabled = 0;
  EXPECT_EQ(Automate(5), 0u);
  EXPECT_EQ(Automate(8, &enabled), 0u);
  EXPECT_EQ(enabled, 0);
  EXPECT_EQ(Automate(6), 0u);
  Automate(8, &enabled);
  EXPECT_EQ(enabled, -1);
  const auto file = [&](int slot, const std::string& path) { return Automate(slot, In(path).get()); };
  EXPECT_EQ(file(10, Path("empty")), 0x80040A01u) << "there is no range";
  Automate(3, 0x1000u, 0x1010u);
  Report();
  EXPECT_EQ(file(10, ""), 0x80040A08u);
  EXPECT_EQ(file(10, "$(NOSUCH)\\a"), 0x80040A08u);
  EXPECT_EQ(file(10, Path("saved.doc")), 0x80040A0Cu);
  EXPECT_EQ(file(10, Path("none\\saved")), 0x80040A0Du);
  EXPECT_EQ(file(10, Path("saved")), 0u);
  EXPECT_EQ(Content("saved.cov"), kFile);
  EXPECT_EQ(Automate(7), 0u);
  EXPECT_NE(ide.Run("cvd").find("       0   -\tfirst"), std::string::npos);
  EXPECT_EQ(file(9, Path("missing")), 0x80040A0Au);
  EXPECT_EQ(file(9, Path("saved.txt")), 0x80040A0Cu);
  EXPECT_EQ(file(9, Path("saved.cov")), 0u);
  EXPECT_EQ(ide.Run("cvd"), std::string("ok: \n\trange 1: first-0x100f\n") + kRows);
}

}  // namespace
}  // namespace stranger
