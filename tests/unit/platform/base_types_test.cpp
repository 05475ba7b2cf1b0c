#include <gtest/gtest.h>

#include "platform/clock.h"
#include "platform/variant.h"

namespace platform {
namespace {

TEST(Variants, ListsCrossAsArraysOfVariants) {
  const std::vector<std::uint32_t> ids{32770, 0xFFFFFFFF, 0};
  const OwnedVariant list(IdListVariant(ids));
  ASSERT_EQ(list.get()->tag, 0x2017);
  ASSERT_EQ(list.get()->array->count, 3u);
  EXPECT_EQ(list.get()->array->elements[1].tag, 0x17);
  EXPECT_EQ(IdListOf(list.get()), ids);
  EXPECT_EQ(TextListOf(list.get()), std::nullopt);

  const std::vector<std::uint8_t> bytes{0, 255, 7};
  const OwnedVariant image(BytesVariant(bytes));
  EXPECT_EQ(image.get()->tag, 0x2011);
  EXPECT_EQ(image.get()->array->elements[1].tag, 0x11);
  EXPECT_EQ(BytesOf(image.get()), bytes);

  const std::vector<std::string> texts{"Text", "", "表"};
  const OwnedVariant categories(TextListVariant(texts));
  EXPECT_EQ(categories.get()->tag, 0x2008);
  EXPECT_EQ(TextListOf(categories.get()), texts);
}

TEST(Clocks, TheInstalledClockRulesTimersAndTexts) {
  ManualClock manual(86400 * 365);
  ASSERT_EQ(InstallClock(&manual), nullptr);
  const auto before = CurrentClock().Now();
  const std::string year = FormatLocalTime("%Y");
  manual.Advance(std::chrono::hours(24 * 366));
  EXPECT_EQ(CurrentClock().Now() - before, std::chrono::hours(24 * 366));
  EXPECT_NE(FormatLocalTime("%Y"), year);
  EXPECT_EQ(InstallClock(nullptr), &manual);
  EXPECT_NE(CurrentClock().Calendar(), manual.Calendar());
}

}  // namespace
}  // namespace platform
