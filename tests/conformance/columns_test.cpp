#include <gtest/gtest.h>

#include "tiny_ide.h"

// The editors' side of the two coverage columns.
namespace stranger {
namespace {

constexpr std::uint32_t kSource = 0;
constexpr std::uint32_t kAsm = 1;
void* const kKey = reinterpret_cast<void*>(3);

struct Columns : testing::Test {
  void Start() {
    ide.Start(kKey);
    client = ide.QueryInterface2(kKey, "{EFC5B7E3-AB99-4175-B2F4-DC7681A620A8}");
    ide.TakeLog();
  }
  ~Columns() override { ide.Stop(kKey); }

  TinyIde ide;
  void* client = nullptr;
  In file{"\\SRC\\Main.c"};
};

TEST_F(Columns, ColumnsThatAreThereAlreadyAreTakenOver) {
  ide.columns = {{"QALCoverageColumnKey", 21}, {"QALCoverageAsmColumnKey", 22}};
  ide.columnStates = {{21, 4}};
  ide.Start(kKey);
  const std::string log = ide.TakeLog();
  EXPECT_EQ(log.find("RegisterColumn"), std::string::npos);
  EXPECT_NE(log.find("AttachClient 21\nSetState all 21 4\nShowColumn 21\nAttachClient 22\nSetState all 22 "
                     "1\nShowColumn 22\n"),
            std::string::npos)
      << log;
}

TEST_F(Columns, FilesAreAnnouncedRefreshedAndForgotten) {
  Start();
  const struct {
    int slot;
    std::uint32_t column;
    const char* log;
  } rows[] = {
      {3, kSource, "AddFile \\src\\main.c 11 1 1\n"},
      {3, kAsm, "AddFile \\SRC\\Main.c 12 1 1\n"},
      {3, 2, ""},
      {5, kSource, "RefreshLines \\src\\main.c 11 1 -1\n"},
      {5, kAsm, "RefreshLines \\src\\main.c 12 1 -1\n"},
      {5, 2, ""},
      {6, kSource, "RefreshLines \\src\\main.c 11 5 -1\n"},
      {6, kAsm, "RefreshLines \\src\\main.c 12 5 -1\n"},
      {7, kSource, "RefreshLines \\src\\main.c 11 5 -1\n"},
      {7, 2, ""},
      {4, kAsm, ""},
      {4, 2, ""},
      {4, kSource, "RemoveFile \\src\\main.c 11\n"},
  };
  for (const auto& row : rows) {
    const Result result = row.slot < 5 ? Call(client, row.slot, file.get(), row.column)
                                       : Call(client, row.slot, file.get(), row.column, 5u, 2u);
    EXPECT_EQ(result, kOk) << row.slot << ' ' << row.column;
    EXPECT_EQ(ide.TakeLog(), row.log) << row.slot << ' ' << row.column;
  }
}

TEST_F(Columns, AStateForEveryFileReachesTheOpenOnesAndTheFrame) {
  Start();
  Call(client, 3, file.get(), kSource);
  Call(client, 3, file.get(), kSource);
  ide.TakeLog();
  EXPECT_EQ(Call(client, 9, kSource, 3u), kOk);
  EXPECT_EQ(ide.TakeLog(), "SetState all 11 3\nRefreshFile \\src\\main.c 11 1 -1\n");
  EXPECT_EQ(ide.columnStates[11], 3u);
  EXPECT_EQ(Call(client, 10, file.get(), kSource, 2u), kOk);
  EXPECT_EQ(Call(client, 11, kAsm, 2u), kOk);
  EXPECT_EQ(Call(client, 12, file.get(), kAsm, 5u), kOk);
  EXPECT_EQ(ide.TakeLog(), "SetState \\SRC\\Main.c 11 2\nSetMode all 12 2\nSetMode \\SRC\\Main.c 12 5\n");
  EXPECT_EQ(Call(client, 9, 7u, 3u), kOk);
  EXPECT_EQ(ide.TakeLog(), "") << "no column has the id 7";
}

TEST_F(Columns, PicturesBelongToTheDisassembly) {
  Start();
  const struct {
    std::int32_t index;
    std::uint32_t column;
    Result result;
    bool picture;
  } rows[] = {{1, kAsm, kOk, true},   {3, kAsm, kOk, true},       {0, kAsm, kOk, false},
              {-1, kAsm, kOk, false}, {4, kAsm, kFailure, false}, {1, kSource, kFailure, false},
              {1, 2, kFailure, false}};
  for (const auto& row : rows) {
    OutValue image, mask;
    std::uint32_t size = 4711;
    EXPECT_EQ(Call(client, 13, row.index, 2u, row.column, &image, &mask, &size), row.result) << row.index;
    if (row.column != kAsm) {
      EXPECT_EQ(size, 4711u) << "left as it was";
      continue;
    }
    EXPECT_EQ(size > 0, row.picture) << row.index;
    EXPECT_TRUE(!row.picture || image.array()->count == size);
  }
}

TEST_F(Columns, LinesOfACommandRangeAreMarkedUntilTheyMove) {
  Start();
  EXPECT_EQ(ide.Run("cvr 0x1000 0x100f").substr(0, 3), "ok:");
  ide.path = {0x1002, 0x1040};
  const Id report = MakeId("{6FBF8260-37F3-11D5-A5D8-0000E2257DCD}");
  Call(ide.QueryInterface2(kKey, "{A8495747-DE13-11D3-8AF5-00AA0026624A}"), 3, &report);
  OutValue image, mask;
  std::uint32_t size = 0;
  EXPECT_EQ(Call(client, 13, 1, 7u, kAsm, &image, &mask, &size), kOk);
  const auto shown = [&](std::uint32_t line) {
    ide.TakeLog();
    Out text;
    std::int32_t width = 0;
    std::uint32_t bits = 0;
    const Result result = Call(client, 16, text.put(), &width, file.get(), kAsm, line);
    const Result marked = Call(client, 14, line, file.get(), kAsm, &bits);
    return "'" + text.str() + "' " + std::to_string(width) + ' ' + std::to_string(result) + ' ' +
           (marked == kOk ? std::to_string(bits) : "none") + '\n' + ide.TakeLog();
  };
  EXPECT_EQ(shown(0x1000), "'*' 6 0 none\nRefreshLines \\src\\main.c 12 4096 4096\n");
  EXPECT_EQ(shown(0x1002), "'T' 6 0 128\nRefreshLines \\src\\main.c 12 4098 4098\n");
  EXPECT_EQ(shown(0x1004), "'-' 6 0 none\nRefreshLines \\src\\main.c 12 4100 4100\n");
  EXPECT_EQ(shown(0x1010), "'' -1 1 none\n");
  EXPECT_EQ(Call(client, 6, file.get(), kAsm, 0x1000u, 0x100u), kOk);
  EXPECT_EQ(shown(0x1102), "'T' 6 0 128\n") << "kept, and moved with its line";
  EXPECT_EQ(Call(client, 7, file.get(), kAsm, 0x1000u, 0x100u), kOk);
  EXPECT_EQ(shown(0x1002), "'T' 6 0 128\n");
}

TEST_F(Columns, TitlesGoByHandle) {
  Start();
  const struct {
    std::uint32_t handle;
    const char* title;
  } rows[] = {{11, "Coverage"}, {12, "Coverage - ASM"}, {0, ""}};
  for (const auto& row : rows) {
    Out title;
    EXPECT_EQ(Call(client, 17, &row.handle, title.put(), std::uintptr_t{0}), kOk);
    EXPECT_EQ(title.str(), row.title);
  }
  std::uint32_t a = 9, b = 9;
  const std::uintptr_t none = 0;
  EXPECT_EQ(Call(client, 15, &a, &b, none, none, none), 1);
  EXPECT_EQ(a, 0u);
  EXPECT_EQ(b, 4u);
  EXPECT_EQ(Call(client, 8, none, none, none, none, none, none, none), kFailure);
}

TEST_F(Columns, NothingHappensWhileAnotherSessionIsCurrent) {
  Start();
  ide.active = false;
  for (const int slot : {3, 4, 5, 6, 7, 9, 10, 11, 12}) {
    EXPECT_EQ(Call(client, slot, file.get(), kSource, 1u, 1u), kFailure) << slot;
  }
  OutValue image, mask;
  std::uint32_t a = 5, b = 5;
  const std::uintptr_t none = 0;
  EXPECT_EQ(Call(client, 13, 1, 1u, kAsm, &image, &mask, &a), kFailure);
  EXPECT_EQ(Call(client, 14, 1u, file.get(), kAsm, &a), kFailure);
  EXPECT_EQ(Call(client, 15, &a, &b, none, none, none), kFailure);
  EXPECT_EQ(a + b, 10u) << "nothing is written";
  const std::uint32_t handle = 11;
  Out title, text;
  std::int32_t width = 5;
  EXPECT_EQ(Call(client, 16, text.put(), &width, file.get(), kSource, 1u), kFailure);
  EXPECT_EQ(Call(client, 17, &handle, title.put(), std::uintptr_t{0}), kOk);
  EXPECT_FALSE(title.given());
  ide.TakeAway("session");
  EXPECT_EQ(Call(client, 3, file.get(), kSource), kFailure);
  EXPECT_EQ(ide.TakeLog(), "");
}

}  // namespace
}  // namespace stranger
