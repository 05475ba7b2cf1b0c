#include "formatview/report_list.h"

#include <gtest/gtest.h>

namespace coverage {
namespace {

/// Text colours of a cell in the system's colour, a grey one and one that was never written.
std::string TextColours(CUiReportListCtrl& list, std::uint32_t state) {
  platform::RecordingDrawContext context;
  list.DrawItem({.state = state, .rect = {0, 0, 30, 10}}, context);
  std::string colours;
  const std::string& log = context.Log();
  for (std::size_t at = log.find("text"); at != std::string::npos; at = log.find("text", at + 1)) {
    const std::size_t colour = log.find(' ', at + 5) + 1;
    colours += log.substr(colour, 6) + ' ';
  }
  return colours;
}

TEST(ReportList, ACellsOwnColourWinsOverTheLists) {
  platform::Window parent;
  parent.Create(0, 0, "", platform::window_style::kVisible, {0, 0, 100, 100});
  CUiReportListCtrl list;
  list.CreateList(0x5000040D, {0, 0, 30, 100}, parent, 200, 0);
  for (int column = 0; column < 3; ++column) {
    list.InsertColumn(column, "x", platform::ColumnFormat::kLeft, 10);
  }
  list.InsertRow(0);
  list.SetItemTextDefault(0, 0, "usual");
  list.SetItemTextColoured(0, 1, "grey", 0x808080);
  EXPECT_EQ(TextColours(list, 0), "000000 808080 000000 ");
  EXPECT_EQ(TextColours(list, platform::DrawItemInfo::kSelected), "ffffff 808080 ffffff ");
  list.SetPaneColours(0x0000FF, 0x00FF00);
  EXPECT_EQ(TextColours(list, 0), "ff0000 808080 000000 ");
  EXPECT_EQ(TextColours(list, platform::DrawItemInfo::kSelected), "ffffff 808080 ffffff ");
  list.Destroy();
  parent.Destroy();
}

}  // namespace
}  // namespace coverage
