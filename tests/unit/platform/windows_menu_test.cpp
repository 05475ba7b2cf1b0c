#include <gtest/gtest.h>

#include <array>

#include "platform/menu.h"
#include "platform/picture.h"
#include "unit/platform/windows_fixture.h"

namespace platform {
namespace {

constexpr MenuItemTemplate kItems[] = {
    {MenuItemKind::kPopup, 0, 0, "&Coverage"},
    {MenuItemKind::kCommand, 1, 32804, "E&nable All"},
    {MenuItemKind::kSeparator, 1, 0, ""},
    {MenuItemKind::kPopup, 1, 0, "More"},
    {MenuItemKind::kCommand, 2, 32805, "Clear &All"},
    {MenuItemKind::kCommand, 1, 32769, "Hide"},
    {MenuItemKind::kCommand, 0, 32770, "C&overage...\tShift+Ctrl+O"},
};
constexpr MenuTemplate kMenu = {202, kItems, std::size(kItems)};

class Commands : public LogWindow {
 public:
  void OnCommand() {}
  void OnUpdateAll(CommandUpdate& update) { update.SetCheck(true), update.SetText("Disable All"); }

 protected:
  LResult OnMessage(const Message& message) override;
};

constexpr auto kRoutes = std::to_array<Route<Commands>>({
    {message::kUpdateCommand, 32804, &Commands::OnUpdateAll},
    {message::kCommand, 32770, &Commands::OnCommand},
});

LResult Commands::OnMessage(const Message& message) {
  if (message.id == message::kUpdateCommand) {
    if (const auto answer = Dispatch(*this, kRoutes, message)) return *answer;
  }
  return LogWindow::OnMessage(message);
}

TEST(Menus, ComeFromTemplatesAndFollowTheirTarget) {
  Menu menu(kMenu);
  EXPECT_EQ(menu.TextAt(0), "&Coverage");
  EXPECT_EQ(menu.TextAt(9), "");
  Commands target;
  ASSERT_TRUE(target.Open());
  menu.Update(target);
  EXPECT_EQ(Picture(menu),
            "        &Coverage\n"
            "  32804 x Disable All\n"
            "          --\n"
            "          More\n"
            "    32805   Clear &All (disabled)\n"
            "  32769   Hide (disabled)\n"
            "32770   C&overage...\\tShift+Ctrl+O\n");
}

TEST(Menus, PopUpAndSendTheirCommand) {
  struct Row {
    const char* line;
    const char* sent;
    const char* shown;
  };
  const Row rows[] = {
      {"menu 0", "command 0\n", ""},
      {"menu pass & times", "command 1\n", ""},
      {"menu cancel", "", ""},
      {"menu 2", "", "error: the menu's command 2 is disabled\n"},
      {"menu 7", "", "error: the menu has no command '7'\n"},
      {"row 1", "", "error: the menu waits for: menu ID, or menu cancel\n"},
  };
  for (const Row& row : rows) {
    Menu menu;
    menu.Append(0, "Times", true);
    menu.Append(1, "&Pass && Times");
    menu.AppendSeparator();
    menu.Append(2, "Source", false, false);
    LogWindow owner;
    ASSERT_TRUE(owner.Open());
    owner.own.clear();
    Script script{row.line};
    TrackPopupMenu(menu, {1, 2}, owner);
    EXPECT_EQ(owner.own, row.sent) << row.line;
    EXPECT_EQ(script.shown, row.shown) << row.line;
  }
}

TEST(Accelerators, TranslateKeyAndModifiersTogether) {
  static constexpr Accelerator kEntries[] = {{key_modifier::kShift | key_modifier::kControl, 'O', 32770},
                                             {0, static_cast<std::uint16_t>(key::kDelete), 5}};
  constexpr AcceleratorTable kTable = {9000, kEntries, std::size(kEntries)};
  EXPECT_EQ(Translate(kTable, 'O', key_modifier::kShift | key_modifier::kControl), 32770u);
  EXPECT_EQ(Translate(kTable, 'O', key_modifier::kControl), std::nullopt);
  EXPECT_EQ(Translate(kTable, key::kDelete, 0), 5u);
}

}  // namespace
}  // namespace platform
