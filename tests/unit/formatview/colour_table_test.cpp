#include "formatview/colour_table.h"

#include <gtest/gtest.h>

#include "platform/colours.h"

namespace coverage {
namespace {

TEST(ColourTable, ListsDrawSystemPositionsInTheSystemsPairs) {
  using platform::SystemColour;
  EXPECT_EQ(ForegroundOf(17), platform::ColourOf(SystemColour::kWindowText));
  EXPECT_EQ(BackgroundOf(17), platform::ColourOf(SystemColour::kWindow));
  EXPECT_EQ(ForegroundOf(18), platform::ColourOf(SystemColour::kHighlightText));
  EXPECT_EQ(BackgroundOf(18), platform::ColourOf(SystemColour::kHighlight));
  EXPECT_EQ(ForegroundOf(19), 0xB3B3B3u);
  EXPECT_EQ(BackgroundOf(19), 0xB3B3B3u);
}

}  // namespace
}  // namespace coverage
