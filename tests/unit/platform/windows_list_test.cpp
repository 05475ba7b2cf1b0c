#include <gtest/gtest.h>

#include <limits>
#include <utility>

#include "platform/list_view.h"
#include "platform/picture.h"
#include "platform/script_presenter.h"
#include "platform/text_presenter.h"
#include "unit/platform/windows_fixture.h"

namespace platform {
namespace {

struct Lists : testing::Test {
  void SetUp() override {
    ASSERT_TRUE(frame.Open());
    ASSERT_TRUE(list.Create(frame, 200, "", 0x5000040D));
    frame.own.clear();
  }

  /// `rows` rows with their numbers as text, `page` of which can be seen.
  void Fill(int rows, int page) {
    list.InsertColumn(0, "Row", ColumnFormat::kLeft, 60);
    list.SetRowCount(rows);
    for (int row = 0; row < rows; ++row) list.SetItemText(row, 0, std::to_string(row));
    list.Resize(page);
    frame.own.clear();
  }
  std::string State() const {
    return "top " + std::to_string(list.TopRow()) + " focus " + std::to_string(list.FocusRow()) +
           " selected " + std::to_string(list.SelectedRow());
  }
  std::string TakeNews() { return std::exchange(frame.own, {}); }

  LogWindow frame;
  ListView list;
};

TEST_F(Lists, ShowColumnsInTheirOrder) {
  list.InsertColumn(0, "Times", ColumnFormat::kRight, 40);
  list.InsertColumn(1, "Address", ColumnFormat::kLeft, 80);
  list.InsertColumn(2, "Source", ColumnFormat::kLeft, 90);
  list.InsertRow(0);
  list.InsertRow(1);
  list.SetItemText(0, 0, "12");
  list.SetItemText(0, 1, "1000");
  list.SetItemText(1, 2, "a = b;");
  list.Resize(4);
  list.Click(1);
  EXPECT_EQ(Picture(list),
            "   Times | Address | Source\n"
            "      12 | 1000    |\n"
            ">*       |         | a = b;\n");
  EXPECT_TRUE(list.DragColumnOrder(2, 0));
  EXPECT_TRUE(list.DragColumnWidth(1, 0));
  EXPECT_EQ(Picture(list),
            "   Source | Times\n"
            "          |    12\n"
            ">* a = b; |\n");
  // A column before others takes its place in texts, too.
  list.InsertColumn(1, "Pass", ColumnFormat::kLeft, 30);
  EXPECT_EQ(list.ItemText(0, 2), "1000");
  EXPECT_EQ(list.Header().Order(), (std::vector<int>{3, 1, 0, 2}));
  EXPECT_TRUE(list.DeleteColumn(0));
  EXPECT_EQ(list.ItemText(0, 1), "1000");
  EXPECT_EQ(list.Header().Order(), (std::vector<int>{2, 0, 1}));
  EXPECT_EQ(list.Header().ItemCount(), 3);
  EXPECT_FALSE(list.SetColumnOrder({0, 0, 1}));
}

TEST_F(Lists, RefuseWhatIsNotThere) {
  list.InsertColumn(0, "A", ColumnFormat::kLeft, 10);
  list.InsertRow(0, "x");
  EXPECT_EQ(list.InsertRow(-1), -1);
  EXPECT_EQ(list.InsertRow(99), 1);
  EXPECT_FALSE(list.SetItemText(2, 0, "y"));
  EXPECT_FALSE(list.SetItemText(0, 1, "y"));
  EXPECT_FALSE(list.SetItemText(-1, 0, "y"));
  EXPECT_FALSE(list.DeleteRow(2));
  EXPECT_FALSE(list.EnsureVisible(2));
  EXPECT_EQ(list.ItemText(0, 5) + list.ItemText(-1, 0), "");
  EXPECT_EQ(list.ColumnWidth(1), 0);
  EXPECT_FALSE(list.ClickHeader(1));
  list.SetRowCount(std::numeric_limits<int>::max());
  EXPECT_EQ(list.RowCount(), ListRows::kMaxRows);
  list.SelectRow(ListRows::kMaxRows);
  EXPECT_EQ(list.SelectedRow(), -1);
}

TEST_F(Lists, MoveWithKeysAsTheDesktopDoes) {
  Fill(100, 10);
  struct Row {
    const char* key;
    const char* state;
  };
  const Row rows[] = {
      {"up", "top 0 focus 0 selected 0"},           {"down", "top 0 focus 1 selected 1"},
      {"page-down", "top 0 focus 9 selected 9"},    {"page-down", "top 9 focus 18 selected 18"},
      {"down", "top 10 focus 19 selected 19"},      {"page-up", "top 10 focus 10 selected 10"},
      {"page-up", "top 1 focus 1 selected 1"},      {"end", "top 90 focus 99 selected 99"},
      {"page-down", "top 90 focus 99 selected 99"}, {"home", "top 0 focus 0 selected 0"},
      {"left", "top 0 focus 0 selected 0"},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(ActOnList(list, std::string("key ") + row.key), std::nullopt);
    EXPECT_EQ(State(), row.state) << row.key;
  }
}

TEST_F(Lists, TellTheParentWhatAPersonDid) {
  Fill(20, 5);
  struct Row {
    const char* action;
    const char* news;
  };
  const Row rows[] = {
      {"row 2", "no focus?"},
      {"row 2", "notify 200 code -2 row 2\n"},
      {"double-click 2", "notify 200 code -2 row 2\nnotify 200 code -3 row 2\n"},
      {"drag 3", "notify 200 code -101 row 3\nnotify 200 code -101 row 3\nnotify 200 code -109 row 3\n"},
      {"header 0", "notify 200 code -108 column 0\n"},
      {"key enter",
       "notify 200 code -155 row 3 key 13\nnotify 200 code -4 row 3\nnotify 200 code -156 row 3 key 13\n"},
      {"key down",
       "notify 200 code -155 row 3 key 40\nnotify 200 code -101 row 4\nnotify 200 code -101 row 4\n"
       "notify 200 code -156 row 4 key 40\n"},
      {"deselect", "notify 200 code -101 row 4\nnotify 200 code -2\n"},
      {"key space",
       "notify 200 code -155 row 4 key 32\nnotify 200 code -101 row 4\nnotify 200 code -156 row 4 key 32\n"},
      {"scroll 2", ""},
  };
  ActOnList(list, rows[0].action);
  TakeNews();
  for (std::size_t i = 1; i < std::size(rows); ++i) {
    EXPECT_EQ(ActOnList(list, rows[i].action), std::nullopt) << rows[i].action;
    EXPECT_EQ(TakeNews(), rows[i].news) << rows[i].action;
  }
}

/// A person's scrolling is a message that the list's own class may see; the program's is not.
TEST(ListMessages, ScrollingBringsOneMessageEach) {
  struct Watched : ListView {
    ~Watched() override { Destroy(); }
    LResult OnMessage(const Message& message) override {
      if (message.id == message::kVScroll) {
        log += std::to_string(message.ScrollCode()) + ":" + std::to_string(HighWord(message.w)) + " ";
      }
      if (message.id == message::kMouseWheel) log += "wheel ";
      return ListView::OnMessage(message);
    }
    std::string log;
  };
  LogWindow frame;
  ASSERT_TRUE(frame.Open());
  Watched list;
  ASSERT_TRUE(list.Create(frame, 200, "", 0x5000040D));
  list.InsertColumn(0, "A", ColumnFormat::kLeft, 10);
  list.SetRowCount(1'000'000);
  list.Resize(10);
  list.ScrollLines(1);
  list.ScrollLines(-1);
  list.ScrollLines(10);
  list.ScrollLines(700'000);
  EXPECT_EQ(list.TopRow(), 700'010);
  list.Wheel(-1);
  list.Scroll(5);
  list.EnsureVisible(0);
  EXPECT_EQ(list.log, "1:0 0:0 3:0 4:" + std::to_string(700'010 & 0xFFFF) + " wheel ");
}

TEST_F(Lists, SelectionStaysWithItsRow) {
  Fill(10, 5);
  list.Click(4);
  struct Row {
    const char* what;
    std::function<void()> act;
    const char* state;
  };
  const Row rows[] = {
      {"insert before", [&] { list.InsertRow(2); }, "top 0 focus 5 selected 5"},
      {"insert behind", [&] { list.InsertRow(8); }, "top 0 focus 5 selected 5"},
      {"delete before", [&] { list.DeleteRow(0); }, "top 0 focus 4 selected 4"},
      {"delete it", [&] { list.DeleteRow(4); }, "top 0 focus 4 selected -1"},
      {"cut off", [&] { list.SetRowCount(3); }, "top 0 focus 2 selected -1"},
  };
  for (const Row& row : rows) {
    row.act();
    EXPECT_EQ(State(), row.state) << row.what;
  }
}

TEST_F(Lists, ContextMenuSaysWhereItWasAsked) {
  Fill(10, 5);
  list.InsertColumn(1, "Wide", ColumnFormat::kLeft, 100);
  list.Move({30, 40, 230, 200});
  std::string asked;
  frame.react = [&](const Message& message) {
    if (message.id != message::kContextMenu) return LResult{0};
    const Rect header = list.Header().ScreenRect();
    asked = message.w == list.Header().Handle() ? "header" : message.w == list.Handle() ? "list" : "?";
    if (header.Contains(UnpackPoint(message.l))) asked += ", on the header";
    return LResult{0};
  };
  EXPECT_TRUE(list.ContextMenuOnHeader(1));
  EXPECT_EQ(asked, "header, on the header");
  list.SetColumnWidth(0, 0);
  list.SetColumnWidth(1, 0);
  list.Move({30, 40, 30, 200});
  EXPECT_TRUE(list.ContextMenuOnHeader(0));
  EXPECT_EQ(asked, "header, on the header") << "with every column hidden";
  EXPECT_TRUE(list.ContextMenuOnRow(3));
  EXPECT_EQ(asked, "list");
  EXPECT_EQ(list.SelectedRow(), 3);
}

TEST_F(Lists, FitTheirColumnsToWhatTheyShow) {
  list.InsertColumn(0, "Source", ColumnFormat::kLeft, 5);
  list.InsertColumn(1, "Hidden", ColumnFormat::kLeft, 0);
  list.InsertColumn(2, "A", ColumnFormat::kLeft, 5);
  list.InsertColumn(3, "Heading", ColumnFormat::kLeft, 5);
  list.SetColumnOrder({2, 3, 0, 1});
  list.SetRowCount(20);
  list.SetItemText(1, 2, "eleven long");
  list.SetItemText(1, 0, std::string(100, 's'));
  list.SetItemText(19, 2, std::string(50, 'o'));
  const int unit = Measure(list.CurrentFont()).averageWidth;
  const int margin = unit * 3 / 2;
  const auto widths = [&] {
    list.FitColumns();
    std::vector<int> all;
    for (int column = 0; column < 4; ++column) all.push_back(list.ColumnWidth(column));
    return all;
  };
  EXPECT_EQ(widths(), (std::vector<int>{5, 0, 5, 5})) << "without a size";
  const int text = 11 * unit + margin;
  const int heading = 7 * unit + margin;
  list.Move({0, 0, 1000, 100});
  EXPECT_EQ(widths(), (std::vector<int>{1000 - text - heading, 0, text, heading}));
  list.Move({0, 0, text + heading + 1, 100});
  EXPECT_EQ(widths(), (std::vector<int>{6 * unit + margin, 0, text, heading})) << "no room for the last";
  list.Scroll(20);
  EXPECT_EQ(widths()[2], 50 * unit + margin) << "other rows are shown";
}

TEST_F(Lists, DrawTheirRowsThemselves) {
  Fill(3, 2);
  list.SetColumnWidth(0, 20);
  list.Click(1);
  RecordingDrawContext context;
  list.Draw(context);
  EXPECT_EQ(context.Log(),
            "fill 0,17,20,31 ffffff\ntext 0,17,20,31 000000 \"0\"\n"
            "fill 0,31,20,45 000080\ntext 0,31,20,45 ffffff \"1\"\nfocus 0,31,20,45\n");
  context.Clear();
  list.Move({0, 0, 20, 46});  // one pixel of the third row shows
  frame.SetFocus();
  list.Draw(context);
  EXPECT_NE(context.Log().find("text 0,45,20,59 000000 \"2\""), std::string::npos);
  EXPECT_EQ(context.Log().find("focus"), std::string::npos);
}

TEST_F(Lists, ChangesAreCollectedInRanges) {
  int told = 0;
  struct Counter : TextPresenter {
    explicit Counter(int& count) : TextPresenter({}), count_(count) {}
    void WindowChanged(Window&, Change what) override { count_ += what == Change::kContent; }
    int& count_;
  } presenter(told);
  const PresenterScope scope(presenter);
  list.InsertColumn(0, "A", ColumnFormat::kLeft, 10);
  list.TakeChanges();
  told = 0;
  list.SetRowCount(1000);
  for (int row = 100; row < 1000; ++row) list.SetItemText(row, 0, "x");
  EXPECT_EQ(told, 1);
  ListChanges changes = list.TakeChanges();
  EXPECT_TRUE(changes.rowCount);
  EXPECT_FALSE(changes.columns);
  list.SetItemText(7, 0, "y");
  list.SetItemText(5, 0, "y");
  list.SetItemText(6, 0, "");
  changes = list.TakeChanges();
  EXPECT_EQ(std::make_pair(changes.firstRow, changes.lastRow), std::make_pair(5, 7));
  EXPECT_FALSE(changes.rowCount);
  EXPECT_FALSE(list.TakeChanges().Rows());
  EXPECT_EQ(told, 2);
}

TEST_F(Lists, MayGoInTheMiddleOfAnAction) {
  for (const int code :
       {notify::kItemChanged, notify::kClick, notify::kKeyDown, notify::kReturn, notify::kBeginDrag}) {
    for (const char* action : {"row 1", "double-click 1", "drag 1", "key down", "key enter", "context 1"}) {
      auto doomed = std::make_unique<ListView>();
      ASSERT_TRUE(doomed->Create(frame, 300, "", 0x5000040D));
      doomed->InsertColumn(0, "A", ColumnFormat::kLeft, 10);
      doomed->SetRowCount(5);
      doomed->Resize(3);
      frame.react = [&](const Message& message) {
        if (message.id == message::kNotify && message.AsNotification().code == code)
          DeleteLater(std::move(doomed));
        return LResult{0};
      };
      ActOnList(*doomed, action);
      frame.react = nullptr;
    }
  }
  EXPECT_EQ(frame.Children().size(), 1u);
}

}  // namespace
}  // namespace platform
