#include <gtest/gtest.h>

#include "platform/text.h"
#include "unit/view/view_test.h"
#include "view/active_session.h"
#include "view/display_settings.h"
#include "view/message_options.h"

namespace coverage {
namespace {

TEST(MessageOptions, AskAsThePersonSetThemAndNeverWhenTheyWereRefused) {
  ViewWorld world;
  world.log.FailCall(2, "options.RegisterOption");
  MessageOptions options;
  options.Register(&world.options);
  world.options.state[2] = true;
  EXPECT_FALSE(options.Asks(MessageOption::kClearDataAtClosing));
  world.options.state[4] = true;
  world.options.answer[5] = false;
  EXPECT_TRUE(options.Asks(MessageOption::kSaveAgain));
  EXPECT_TRUE(options.Ask(MessageOption::kSaveAgain, "again?"));
  EXPECT_FALSE(options.Ask(MessageOption::kMacroLimitation, "this one?"));
  world.log.FailCall(1, "options.AskOption");
  EXPECT_FALSE(options.Ask(MessageOption::kSaveAgain, "again?"));
  world.log.Clear();
  options.Withdraw();
  EXPECT_EQ(world.log.Count("options.WithdrawOption"), 4);
}

TEST(DisplaySettings, APairIsTakenOnlyWhole) {
  for (const char* missing : {"JEP_COVERAGE_FONT_SIZE", "JEP_COVERAGE_BKCOLOUR"}) {
    doubles::StubSettings settings;
    settings.texts = {{"JEP_COVERAGE_FONT_NAME", "Terminus"}};
    settings.numbers = {
        {"JEP_COVERAGE_FONT_SIZE", 9}, {"JEP_COVERAGE_FGCOLOUR", 3}, {"JEP_COVERAGE_BKCOLOUR", 4}};
    settings.numbers.erase(missing);
    DisplayFont font;
    std::int32_t fore = 17;
    std::int32_t back = 17;
    ReadDisplayFont(&settings, font);
    ReadDisplayColours(&settings, fore, back);
    const bool noSize = std::string(missing) == "JEP_COVERAGE_FONT_SIZE";
    EXPECT_EQ(font.size, noSize ? 11 : 9);
    EXPECT_EQ(font.face == u"Courier New", noSize);
    EXPECT_EQ(fore * 100 + back, noSize ? 304 : 1717);
  }
}

TEST_F(ViewTest, FontAndColoursGoToTheStoreAndToEveryWindow) {
  auto* window = Open().NewRangeWindow(0x2000, 0x20FF);
  qal::IQFormatViewClient2& format = *view;
  EXPECT_EQ(format.ChangeFont(platform::Wide("Terminus").get(), 12), qal::kOk);
  EXPECT_EQ(format.SetTextColours(3, 4), qal::kOk);
  EXPECT_EQ(format.SetSelectedTextColours(1, 2), qal::kOk);  // for this time only
  EXPECT_EQ(window->List().CurrentFont().face, "Terminus");
  EXPECT_EQ(world.settings.texts["JEP_COVERAGE_FONT_NAME"], "Terminus");
  EXPECT_EQ(world.settings.numbers,
            (std::map<std::string, std::uint32_t>{
                {"JEP_COVERAGE_FONT_SIZE", 12}, {"JEP_COVERAGE_FGCOLOUR", 3}, {"JEP_COVERAGE_BKCOLOUR", 4}}));
}

TEST_F(ViewTest, OptionsAreRegisteredWhenTheServicesAreKnown) {
  world.host.logLookups = true;
  world.log.Clear();
  const CJepCoverageCtrl other(&world.host, &customizer);
  std::string calls = world.log.Text();
  calls.erase(0, calls.find("host.Advise(format)"));
  calls.erase(calls.find("options.RegisterOption"));
  std::string lookups;
  for (std::size_t at = calls.find("GetService"); at != std::string::npos;
       at = calls.find("GetService", at + 1)) {
    lookups += calls.substr(at, calls.find('\n', at) - at) + ' ';
  }
  EXPECT_EQ(lookups, "GetService(options) GetService(source) GetService(columns) ");
}

TEST(ComponentActive, FollowsTheSessionState) {
  ViewWorld world;
  EXPECT_TRUE(ComponentActive(&world.host));
  world.session.current = false;
  EXPECT_FALSE(ComponentActive(&world.host));
  world.session.name = "";
  EXPECT_TRUE(ComponentActive(&world.host));
  world.log.FailCall(1, "session.GetName");
  EXPECT_FALSE(ComponentActive(&world.host));
  world.host.Withdraw(qal::iid::kSessionState);
  EXPECT_FALSE(ComponentActive(&world.host));
}

}  // namespace
}  // namespace coverage
