#include <gtest/gtest.h>

#include "tiny_ide.h"

// What the view registers with the IDE beside its commands: workspace, format view and test client.
namespace stranger {
namespace {

void* const kKey = reinterpret_cast<void*>(4);

struct Clients : testing::Test {
  Clients() {
    ide.Start(kKey);
    workspace = ide.Registered("{453547D2-008B-44A3-BDF4-48B86CBCFB44}");
    format = ide.Registered("{F4B80273-DE68-4433-B25A-774FB15B2676}");
    test = ide.Registered("{7E75765A-6BE4-4EC5-99B1-DB0B95E0E40B}");
    ide.TakeLog();
  }
  ~Clients() override { ide.Stop(kKey); }

  TinyIde ide;
  void* workspace = nullptr;
  void* format = nullptr;
  void* test = nullptr;
};

TEST_F(Clients, TheWorkspaceClientAnswersEveryNotification) {
  ASSERT_NE(workspace, nullptr);
  EXPECT_EQ(workspace, ide.Registered("{56836F34-D734-11D4-BE83-00C04F794B59}"));
  for (int slot = 3; slot <= 48; ++slot) {
    std::uint32_t value[4] = {};
    if (slot == 44 || slot == 48) continue;  // these two take texts
    EXPECT_EQ(Call(workspace, slot, &value[0], &value[1], &value[2], &value[3]), kOk) << slot;
  }
  std::uint32_t value = 5;
  const std::uintptr_t none = 0;
  EXPECT_EQ(Call(workspace, 49, none, none, none, &value), kOk);
  EXPECT_EQ(value, 0u);
}

TEST_F(Clients, ASessionIsOpenedAndSaved) {
  const In a("a"), b("b"), c("c"), d("d");
  EXPECT_EQ(Call(workspace, 44, a.get(), b.get(), c.get(), d.get()), kOk);
  EXPECT_EQ(ide.TakeLog("data"), "data opened\ndata closed\n");
  Call(workspace, 44, a.get(), b.get(), c.get(), d.get());
  EXPECT_EQ(ide.TakeLog("project"), "project text a b d\n");
  EXPECT_EQ(Call(workspace, 48, a.get(), b.get(), c.get()), kOk);
  EXPECT_EQ(ide.TakeLog("data"), "data opened\ndata closed\n");
  EXPECT_EQ(ide.sessionNumbers,
            (std::map<std::string, std::uint32_t>{
                {"CoverageCtrlViews", 0}, {"CoverageCtrlViewsFromDiffFile", 0}, {"CoverageFileName", 0}}));
  EXPECT_EQ(ide.sessionTexts, (std::map<std::string, std::string>{{"JepCov_Cov_SL", ""},
                                                                  {"JepCov_Open_End", ""},
                                                                  {"JepCov_Open_Start", ""},
                                                                  {"JepCov_Src_Open", ""}}));
  ide.active = false;
  EXPECT_EQ(Call(workspace, 48, a.get(), b.get(), c.get()), kOk);
  EXPECT_EQ(ide.TakeLog("data"), "") << "another session is saved";
}

TEST_F(Clients, TheViewAnswersWithItsWorkspaceClient) {
  const struct {
    const char* id;
    bool known;
  } rows[] = {{"{00000000-0000-0000-C000-000000000046}", true},
              {"{56836F34-D734-11D4-BE83-00C04F794B59}", true},
              {"{453547D2-008B-44A3-BDF4-48B86CBCFB44}", true},
              {"{F4B80273-DE68-4433-B25A-774FB15B2676}", false},
              {"{F522876D-2102-4D08-BF62-3DC10C23575B}", false}};
  for (void* from : {workspace, format, ide.Registered("{034370CE-79FB-470B-A6E7-2A0BFEAA4C58}")}) {
    for (const auto& row : rows) {
      EXPECT_EQ(Ask(from, row.id), row.known ? workspace : nullptr) << row.id;
    }
    EXPECT_EQ(Call<std::uint32_t>(from, 1), 1u);
    EXPECT_EQ(Call<std::uint32_t>(from, 2), 0u);
  }
}

TEST_F(Clients, TheFormatViewGivesAndTakesFontAndColours) {
  Out face;
  std::uint32_t size = 0;
  EXPECT_EQ(Call(format, 8, face.put(), &size), kOk);
  EXPECT_EQ(face.str() + " " + std::to_string(size), "Courier New 11");

  const In lower("text");
  const auto colours = [&](const char* category) {
    std::uint32_t fore = 77, back = 77;
    EXPECT_EQ(Call(format, 15, In(category).get(), &fore, &back), kOk);
    return fore * 100 + back;
  };
  EXPECT_EQ(colours("Text"), 1717u);
  EXPECT_EQ(colours("Selected Text"), 1818u);
  EXPECT_EQ(colours("text"), 7777u);
  EXPECT_EQ(Call(format, 12, 3u, 4u), kOk);
  EXPECT_EQ(colours("Text"), 304u);
  std::uint32_t fore = 77, back = 77;
  EXPECT_EQ(Call(format, 7, &fore, &back), kOk);
  EXPECT_EQ(fore * 100 + back, 304u) << "the category that was set last is the current one";
  EXPECT_EQ(Call(format, 9, lower.get(), 1u, 2u), kOk);
  fore = back = 77;
  EXPECT_EQ(Call(format, 7, &fore, &back), kOk);
  EXPECT_EQ(fore * 100 + back, 7777u) << "the current category is none of the two";

  OutValue categories;
  EXPECT_EQ(Call(format, 6, &categories), kOk);
  EXPECT_EQ(categories.tag, 0x2008);
  ASSERT_EQ(categories.array()->count, 1u);
  EXPECT_EQ(Read(static_cast<char16_t*>(categories.array()->elements[0].pointer)), "Text");
  EXPECT_EQ(Call(format, 4), kOk);
  EXPECT_EQ(Call(format, 5, std::uintptr_t{1}), kOk);
  EXPECT_EQ(Call(format, 14), kOk);
}

TEST_F(Clients, TheTestClientDescribesItself) {
  Out name, version;
  Id client;
  void* component = nullptr;
  std::uint32_t number = 0;
  EXPECT_EQ(Call(test, 3, name.put(), &client, &component, &number, version.put()), kOk);
  EXPECT_EQ(name.str() + " " + std::to_string(number) + " " + version.str(), "Coverage 17 1.0");
  EXPECT_TRUE(client == MakeId("{344B5690-6D1E-11DA-8CD6-0800200C9A66}"));
  EXPECT_EQ(component, ide.QueryInterface2(kKey, "{417F1D27-B5E8-498F-9CDC-19F84900B111}"));

  void* const names = Ask(test, "{06BC04ED-EF77-4D34-877E-B23BC5F0774F}");
  ASSERT_NE(names, nullptr);
  void* const context = Ask(names, "{703C74EA-9CFB-4045-AB43-083596F2B5DA}");
  ASSERT_NE(context, nullptr);
  Out display, clientName, contextText, none;
  EXPECT_EQ(Call(names, 3, display.put()), kOk);
  EXPECT_EQ(Call(names, 4, clientName.put()), kOk);
  EXPECT_EQ(display.str() + ", " + clientName.str(), "Coverage test client, TectClientCoverage");
  EXPECT_EQ(Call(names, 5, std::uintptr_t{0}), 1);
  EXPECT_EQ(Call(names, 6, std::uintptr_t{0}, std::uintptr_t{0}), 1);
  EXPECT_EQ(Call(context, 3, contextText.put()), kOk);
  EXPECT_EQ(contextText.str(), "context");
  EXPECT_EQ(Call(context, 4), kOk);
  ide.TakeAway("project");
  EXPECT_EQ(Call(context, 3, none.put()), kFailure);
}

TEST_F(Clients, TheTestClientKeepsASelection) {
  Out before, copy, unknown;
  EXPECT_EQ(Call(test, 11, before.put()), kOk);
  EXPECT_EQ(before.str(), "1.003");
  std::int16_t flag = 9;
  const In empty(""), open("1.003(Range"), text("any text");
  EXPECT_EQ(Call(test, 5, empty.get(), &flag), kOk);
  EXPECT_EQ(flag, 9);
  EXPECT_EQ(Call(test, 5, open.get(), &flag), kOk);
  EXPECT_EQ(flag, 9) << "a bracket is open";
  EXPECT_EQ(Call(test, 9, text.get(), 1u, copy.put()), kOk);
  EXPECT_EQ(copy.str(), "any text");
  EXPECT_EQ(Call(test, 9, text.get(), 64u, unknown.put()), 1);
  EXPECT_EQ(Call(test, 9, empty.get(), 1u, unknown.put()), 1);
  EXPECT_FALSE(unknown.given());
  const std::uintptr_t none = 0;
  EXPECT_EQ(Call(test, 13, none, none), 1);
  EXPECT_EQ(Call(test, 16, open.get()), kOk);
}

/// "status runStatus resultName messages" of a comparison by slot; its last three arguments are the outs.
template <class... Arguments>
std::string Judged(void* client, int slot, Arguments... arguments) {
  Out resultName, messages;
  std::uint32_t runStatus = 0;
  const Result status = Call(client, slot, arguments..., resultName.put(), messages.put(), &runStatus);
  return std::to_string(status) + " " + std::to_string(runStatus) + " " + resultName.str() + " " +
         messages.str();
}

TEST_F(Clients, ImagesAreWrittenVerifiedAndCompared) {
  Out image, current;
  const In selected("1.015(rng+0x1000 - 0x1003)"), any("any");
  EXPECT_EQ(Call(test, 10, selected.get()), kOk);
  EXPECT_EQ(Call(test, 4, image.put()), kOk);
  EXPECT_EQ(Call(test, 12, current.put()), kOk);
  EXPECT_EQ(image.str() + " " + current.str(), "1.015 1.015") << "the range is not open";
  const In written(image.str());
  EXPECT_EQ(Judged(test, 6, written.get()), "0 0  ");
  EXPECT_EQ(Judged(test, 14, written.get(), any.get()), "0 0  ");

  const In once("1.015(rng+0x1000 - 0x1003)~1000 1003~1000 1 - 1002 2 T ");
  const In twice("1.015(rng+0x1000 - 0x1003)~1000 1003~1000 1 - 1002 3 T ");
  const std::string gone = "0 1 Range not found Range 0x1000 - 0x1003:&not found in current system.&&";
  EXPECT_EQ(Judged(test, 6, once.get()), gone);
  EXPECT_EQ(Judged(test, 14, once.get(), any.get()), gone);
  const std::string differs =
      "0 1 Instruction execution time mismatch Range 0x1000 - 0x1003:&Instruction Execution Time mismatch at "
      "address 0x1002. Image_1: 2   Image_2: 3&&";
  EXPECT_EQ(Judged(test, 7, once.get(), once.get()), "0 0  ");
  EXPECT_EQ(Judged(test, 7, once.get(), twice.get()), differs);
  EXPECT_EQ(Judged(test, 15, once.get(), any.get(), twice.get(), any.get()), differs);
}

}  // namespace
}  // namespace stranger
