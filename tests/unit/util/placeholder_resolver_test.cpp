#include "util/placeholder_resolver.h"

#include <gtest/gtest.h>

#include "doubles/host.h"
#include "doubles/project_services.h"
#include "platform/text.h"

namespace coverage {
namespace {

class PlaceholderResolverTest : public testing::Test {
 protected:
  PlaceholderResolverTest() {
    host.Offer(workspace);
    host.Offer(custom);
    workspace.projectDirectory = "C:\\Work\\Proj";
    workspace.configurationDirectory = "C:\\Work\\Proj\\Debug";
    workspace.workspaceDirectory = "C:\\Work";
    custom.application = {"Board", "the board",         "kit7", "Empty", "no value", "", "Both",
                          "",      "of the application"};
    custom.project = {"Empty", "", "from project", "Both", "", "of the project", "Own", "", "mine"};
  }
  ~PlaceholderResolverTest() override { platform::SetCodePage(platform::kUtf8); }

  std::string Expand(std::string_view text) const {
    return PlaceholderResolver(&resolverHost()).ExpandPlaceholders(text);
  }
  doubles::HostDouble& resolverHost() const { return const_cast<doubles::HostDouble&>(host); }

  doubles::HostDouble host;
  doubles::StubWorkspace workspace;
  doubles::StubCustomPlaceholders custom;
};

TEST_F(PlaceholderResolverTest, Expands) {
  const struct {
    const char* text;
    const char* expanded;
  } kRows[] = {
      {"$(PROJDIR)\\src\\main.c", "C:\\Work\\Proj\\src\\main.c"},
      {"$(PD)\\src\\main.c", "C:\\Work\\Proj\\src\\main.c"},
      {"$(projdir)\\a", "C:\\Work\\Proj\\a"},
      {"$(NOSUCH)\\a.c", "\\a.c"},
      {"$$(PROJDIR)", "$$(PROJDIR)"},
      {"$$(PROJDIR)$(WORKSPNAME)", "$$(PROJDIR)space"},
      {"$(TCINSTALL)\\bin", "$(TCINSTALL)\\bin"},
      {"$(USERINPUT_Name)", "$(USERINPUT_Name)"},
      {"$(TD)|$(PN)", "C:\\temp|demo"},
      {"$(QD)|$(QALDIR)|$(CN)", "C:\\qal|C:\\qal|Debug"},
      {"$(FILENAME)|$(EX)", "$(FILENAME)|$(EXTENSION)"},
      {"$(ERROR)x", "x"},
      {"$()", "$()"},
      {"a$()b", "ab"},
      {"$(PROJDIR", "$(PROJDIR"},
      {"x$(A$(PD)y", "xy"},
      {"$(Board) $(board) $(Empty) $(Both) $(Own)", "kit7  from project of the application mine"},
  };
  for (const auto& row : kRows) EXPECT_EQ(Expand(row.text), row.expanded) << row.text;
}

TEST_F(PlaceholderResolverTest, AValueIsNotScannedAgain) {
  custom.application = {"Loop", "", "$(Loop)$(PD)", "Dollar", "", "$"};
  EXPECT_EQ(Expand("$(Loop)!"), "$(Loop)$(PD)!");
  EXPECT_EQ(Expand("$(Dollar)$(PN)"), "$$(PN)") << "the value's dollar stands directly before the next one";
}

TEST_F(PlaceholderResolverTest, StopsAfter9999) {
  std::string text;
  for (int i = 0; i < 10001; ++i) text += "$(CN)";
  const std::string expanded = Expand(text);
  EXPECT_EQ(expanded.size(), 9999u * 5 + 2 * 5);
  EXPECT_TRUE(expanded.ends_with("Debug$(CN)$(CN)"));
}

TEST_F(PlaceholderResolverTest, ResolvesTheFileThatIsGiven) {
  const struct {
    const char* path;
    const char* values;  ///< of indexes 1 to 5
  } kRows[] = {
      {"C:\\w\\main.test.c", "C:\\w\\main.test.c|main.test.c|main.test|C:\\w|c"},
      {"C:main.c", "C:main.c|main.c|main||c"},
      {"C:\\w.d\\main", "C:\\w.d\\main|main|main|C:\\w.d|"},
  };
  const PlaceholderResolver resolver(&host);
  for (const auto& row : kRows) {
    std::string values;
    for (int index = 1; index <= 5; ++index) {
      std::string value;
      const bool resolved = resolver.ResolveIndex(index, value, row.path);
      EXPECT_EQ(resolved, !value.empty());
      values += (index > 1 ? "|" : "") + value;
    }
    EXPECT_EQ(values, row.values);
  }
}

TEST_F(PlaceholderResolverTest, CollapsesTheFirstOccurrenceOfEachValueInOrder) {
  const PlaceholderResolver resolver(&host);
  const struct {
    const char* path;
    const char* collapsed;
  } kRows[] = {
      {"c:\\work\\proj\\debug\\a.cov", "$(CONFIGDIR)\\a.cov"},
      {"c:\\work\\proj\\release\\a.cov", "$(PROJDIR)\\release\\a.cov"},
      {"C:\\WORK\\other\\c:\\work", "$(WORKSPDIR)\\other\\c:\\work"},
      {"D:\\elsewhere", "D:\\elsewhere"},
      {"", ""},
  };
  for (const auto& row : kRows) EXPECT_EQ(resolver.CollapsePlaceholders(row.path), row.collapsed);
}

TEST_F(PlaceholderResolverTest, SecondBytesAreNoBackslashesAndNoMatches) {
  platform::SetCodePage(platform::kShiftJis);
  // 0x83 0x5C is one character whose second byte is a backslash.
  std::string value;
  const PlaceholderResolver resolver(&host);
  resolver.ResolveIndex(placeholder::kFileName, value,
                        "C:\\w\\a\x83\x5c"
                        "b.c");
  EXPECT_EQ(value,
            "a\x83\x5c"
            "b.c");
  workspace.configurationDirectory = "\\b";
  workspace.projectDirectory = "D:\\";
  EXPECT_EQ(resolver.CollapsePlaceholders("\x83\x5c"
                                          "b\\b"),
            "\x83\x5c"
            "b$(CONFIGDIR)");
}

TEST_F(PlaceholderResolverTest, MissingKeysAndServices) {
  struct NoKeys final : doubles::StubWorkspace {
    qal::Status GetProjectKey(char16_t** key) override { return doubles::Give(qal::kFail, key, {}); }
  } noProject;
  host.Offer(noProject);
  EXPECT_EQ(Expand("$(PROJDIR)|$(WORKSPDIR)|$(CONFIGDIR)"), "$(PROJDIR)|C:\\space|$(CONFIGDIR)");
  std::string value;
  EXPECT_TRUE(PlaceholderResolver(&host).ResolveIndex(placeholder::kProjectDir, value, {}, {"", "own", ""}));
  EXPECT_EQ(value, "C:\\space\\demo");
  workspace.projectOpen = false;
  host.Offer(workspace);
  EXPECT_EQ(Expand("$(Own)|$(Board)"), "|kit7") << "no project, no definitions of it";
  host.Withdraw(qal::iid::kWorkspace);
  host.Withdraw(qal::iid::kCustomPlaceholders);
  EXPECT_EQ(Expand("$(PROJDIR)|$(Board)|$(TEMPDIR)"), "||");
  EXPECT_EQ(PlaceholderResolver(nullptr).ExpandPlaceholders("$(PD)a"), "a");
}

TEST_F(PlaceholderResolverTest, ListsCustomPlaceholdersOnce) {
  std::string names;
  for (const auto& each : PlaceholderResolver(&host).ListCustomPlaceholders())
    names += each.name + '=' + each.value + ' ';
  EXPECT_EQ(names, "Board=kit7 Empty= Both=of the application Own=mine ");
}

}  // namespace
}  // namespace coverage
