#include "formatview/colour_table.h"

#include <gtest/gtest.h>

#include "platform/colours.h"

namespace coverage {
namespace {

TEST(ColourTable, NamesAreExact) {
  EXPECT_EQ(ColourIndexOf("WHITE"), 0);
  EXPECT_EQ(ColourIndexOf("MEDGREY"), 19);
  EXPECT_EQ(ColourIndexOf("SYSTEM"), 17);
  EXPECT_EQ(ColourIndexOf("Grey"), -1);
  EXPECT_EQ(ColourIndexOf(""), -1);
}

TEST(ColourTable, SystemPositionsHaveNoFixedColour) {
  struct Row {
    std::int32_t index;
    std::int32_t status;
    std::uint32_t colour;
  };
  for (const Row& row :
       {Row{19, 0, 0xB3B3B3}, Row{16, 0, 0xDFE1E5}, Row{4, 0, 0x0000FF}, Row{17, 1, 0xFFFFFF},
        Row{18, 1, 0xFFFFFF}, Row{20, 1, 0xFFFFFF}, Row{-1, 1, 0xFFFFFF}}) {
    std::uint32_t colour = 0x123456;
    EXPECT_EQ(ColourOf(row.index, &colour), row.status) << row.index;
    EXPECT_EQ(colour, row.colour) << row.index;
  }
}

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
