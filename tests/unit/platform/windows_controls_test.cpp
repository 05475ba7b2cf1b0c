#include <gtest/gtest.h>

#include "platform/combo_box.h"
#include "platform/controls.h"
#include "platform/edit.h"
#include "platform/picture.h"
#include "platform/text.h"
#include "unit/platform/windows_fixture.h"

namespace platform {
namespace {

struct Controls : testing::Test {
  void SetUp() override { ASSERT_TRUE(frame.Open()); }
  std::string TakeNews() { return std::exchange(frame.own, {}); }
  LogWindow frame;
};

TEST_F(Controls, EditTakesWhatAPersonTypes) {
  struct Row {
    const char* what;
    const char* text;
    std::size_t start, end;
    const char* typed;
    const char* result;
    std::size_t caret;
  };
  const Row rows[] = {
      {"at the caret", "abc", 1, 1, "X", "aXbc", 2},
      {"over the selection", "abcdef", 1, 4, "XY", "aXYef", 3},
      {"nothing deletes the selection", "abcdef", 1, 4, "", "aef", 1},
      {"refused characters are left out", "ab", 2, 2, "c;d*e", "abcde", 5},
      {"refused altogether keeps the selection", "abc", 0, 3, "*?", "abc", 3},
      {"line ends and tabs are left out", "", 0, 0, "a\r\n\tb", "ab", 2},
      {"selection beyond the end", "abc", 99, 99, "d", "abcd", 4},
      {"several bytes are one character", "\xC3\xA4", 2, 2, "\xC3\xB6", "\xC3\xA4\xC3\xB6", 4},
  };
  Edit edit;
  ASSERT_TRUE(edit.Create(frame, 5));
  edit.SetRefusedChars(";*?");
  for (const Row& row : rows) {
    edit.SetText(row.text);
    edit.Select(row.start, row.end);
    EXPECT_TRUE(edit.Type(row.typed)) << row.what;
    EXPECT_EQ(edit.Text(), row.result) << row.what;
    EXPECT_EQ(edit.SelectionEnd(), row.caret) << row.what;
  }
}

TEST_F(Controls, EditNeverSplitsACharacterNorRefusesItsSecondByte) {
  SetCodePage(kShiftJis);
  Edit edit;
  ASSERT_TRUE(edit.Create(frame, 5));
  edit.SetRefusedChars("|\\");
  edit.Type("\x83\x7C\x83\x5C|");  // two characters whose second bytes are a bar and a backslash, and a bar
  EXPECT_EQ(edit.Text(), "\x83\x7C\x83\x5C");
  edit.Send(message::kKeyDown, key::kLeft);
  EXPECT_EQ(edit.SelectionStart(), 2u);
  edit.Send(message::kKeyDown, key::kDelete);
  edit.Send(message::kKeyDown, key::kBack);
  EXPECT_EQ(edit.Text(), "");
  edit.SetLimit(3);
  edit.Type("a\x83\x7C\x83\x5C");
  EXPECT_EQ(edit.Text(), "a\x83\x7C");
  SetCodePage(kUtf8);
}

TEST_F(Controls, ComboBoxChoosesTypesAndRemembers) {
  ComboBox combo;
  ASSERT_TRUE(combo.Create(frame, 204));
  combo.SetItems({"1000", "2000"});
  TakeNews();
  EXPECT_FALSE(combo.Choose("3000"));
  EXPECT_TRUE(combo.Choose("2000"));
  EXPECT_EQ(combo.Selected(), 1);
  EXPECT_TRUE(combo.TypeOver("main"));
  EXPECT_EQ(combo.Selected(), -1);
  EXPECT_EQ(TakeNews(), "notify 204 code 1 row 1\nnotify 204 code 768\n");
  combo.Select(1, 3);
  EXPECT_EQ(combo.SelectionStart(), 1u);
  EXPECT_EQ(combo.SelectionEnd(), 3u);
  combo.Type("*");
  EXPECT_EQ(Picture(combo), ">    204 combo  [m*n] items: 1000, 2000\n");

  for (int i = 0; i < 12; ++i) combo.AddToHistory(std::to_string(i));
  combo.AddToHistory("7");
  std::string items;
  for (const std::string& item : combo.Items()) items += item + " ";
  EXPECT_EQ(items, "7 11 10 9 8 6 5 4 3 2 ");
}

TEST_F(Controls, DropDownListTakesItsItemsOnly) {
  ComboBox list(ControlKind::kDropDownList);
  ASSERT_TRUE(list.Create(frame, 7));
  list.SetItems({"a.cov", "b.cov"});
  EXPECT_FALSE(list.Type("c.cov"));
  list.SetText("c.cov");
  EXPECT_EQ(list.Selected(), -1);
  list.SetText("b.cov");
  EXPECT_EQ(list.Selected(), 1);
  list.Send(message::kKeyDown, key::kUp);
  EXPECT_EQ(list.Text(), "a.cov");
  list.ClearItems();
  EXPECT_EQ(list.Text(), "");
}

TEST_F(Controls, ButtonsPressLikeButtons) {
  Button push, check(ControlKind::kCheckBox), group(ControlKind::kGroup), one(ControlKind::kRadioButton),
      two(ControlKind::kRadioButton), other(ControlKind::kRadioButton);
  ASSERT_TRUE(push.Create(frame, 1, "Go"));
  ASSERT_TRUE(check.Create(frame, 2, "Save"));
  ASSERT_TRUE(group.Create(frame, 3, "Options"));
  one.SetGroup(1), two.SetGroup(1), other.SetGroup(2);
  ASSERT_TRUE(one.Create(frame, 4, "One"));
  ASSERT_TRUE(two.Create(frame, 5, "Two"));
  ASSERT_TRUE(other.Create(frame, 6, "Other"));
  TakeNews();
  EXPECT_TRUE(push.Press());
  EXPECT_TRUE(check.Press());
  EXPECT_FALSE(group.Press());
  one.Press();
  other.Press();
  two.Press();
  push.Enable(false);
  EXPECT_FALSE(push.Press());
  EXPECT_EQ(TakeNews(), "command 1\ncommand 2\ncommand 4\ncommand 6\ncommand 5\n");
  check.Send(message::kKeyDown, key::kSpace);
  EXPECT_EQ(Picture(frame),
            "window \"\"\n"
            "         1 button \"Go\" (disabled)\n"
            "  >      2 check  [ ] \"Save\"\n"
            "         3 group  \"Options\"\n"
            "         4 radio  ( ) \"One\"\n"
            "         5 radio  (*) \"Two\"\n"
            "         6 radio  (*) \"Other\"\n");
}

}  // namespace
}  // namespace platform
