#include "formatview/customizer.h"

#include <gtest/gtest.h>

#include "doubles/host.h"
#include "doubles/window_service.h"
#include "formatview/command_ids.h"
#include "platform/resources.h"
#include "util/texts.h"

namespace coverage {
namespace {

constexpr qal::ModuleHandle kModule = 0x77;

/// A module of its own: menu 1 with a submenu, toolbars 2 (version 1), 3 (version 2) and 4 (cut short),
/// accelerators 5.
class TestResources {
 public:
  TestResources() { platform::RegisterResourceTable(kModule, &table_); }
  ~TestResources() { platform::RegisterResourceTable(kModule, nullptr); }

 private:
  using Kind = platform::MenuItemKind;
  static constexpr platform::MenuItemTemplate kItems[] = {
      {Kind::kPopup, 0, 0, "Sub"},          {Kind::kCommand, 1, 0x7000, "first"},
      {Kind::kSeparator, 1, 0, ""},         {Kind::kCommand, 1, 0xEFFF, "last"},
      {Kind::kCommand, 0, 0x6FFF, "below"}, {Kind::kCommand, 0, 0xF000, "above"},
      {Kind::kCommand, 0, 0x8000, ""},
  };
  static constexpr platform::MenuTemplate kMenus[] = {{1, kItems, std::size(kItems)}};
  static constexpr platform::Accelerator kKeys[] = {{0, 'A', 32770}, {1, 'B', 40}, {0, 'C', 32770}};
  static constexpr platform::AcceleratorTable kTables[] = {{5, kKeys, std::size(kKeys)}};
  static constexpr std::uint8_t kGood[] = {1, 0, 16, 0, 15, 0, 3, 0, 0x02, 0x80, 0, 0, 0x03, 0x80};
  static constexpr std::uint8_t kOther[] = {2, 0, 16, 0, 15, 0, 1, 0, 0x02, 0x80};
  static constexpr std::uint8_t kShort[] = {1, 0, 16, 0, 15, 0, 9, 0, 0x02, 0x80, 0x03};
  static constexpr platform::ToolbarResource kToolbars[] = {
      {2, kGood, sizeof(kGood)}, {3, kOther, sizeof(kOther)}, {4, kShort, sizeof(kShort)}};
  platform::ResourceTable table_{.version = platform::kResourceTableVersion,
                                 .menuCount = 1,
                                 .acceleratorCount = 1,
                                 .toolbarCount = 3,
                                 .menus = kMenus,
                                 .accelerators = kTables,
                                 .toolbars = kToolbars};
};

TEST(CommandIds, AreReadInTheirOrder) {
  const TestResources resources;
  EXPECT_EQ(ReadMenuCommands(kModule, 1), (CommandIds{0x7000, 0xEFFF}));
  EXPECT_EQ(ReadAcceleratorCommands(kModule, 5), (CommandIds{32770, 40, 32770}));
  EXPECT_EQ(ReadToolbarCommands(kModule, 2, 0), (CommandIds{32770, 32771}));
  EXPECT_EQ(ReadToolbarCommands(kModule, 0, 2), (CommandIds{32770, 32771}));
  EXPECT_EQ(ReadToolbarCommands(kModule, 3, 0), CommandIds{});
  EXPECT_EQ(ReadToolbarCommands(kModule, 4, 0), CommandIds{32770});
  EXPECT_EQ(ReadMenuCommands(kModule, 9), std::nullopt);
  EXPECT_EQ(ReadAcceleratorCommands(kModule, 9), std::nullopt);
  EXPECT_EQ(ReadToolbarCommands(kModule, 9, 0), std::nullopt);
}

class Customizer : public testing::Test {
 protected:
  Customizer() {
    window.OfferTo(host);
    customizer = std::make_unique<CUiCustomizer>(&host);
  }

  const TestResources resources;
  doubles::CallLog log;
  doubles::HostDouble host;
  doubles::StubWindowService window{log};
  std::unique_ptr<CUiCustomizer> customizer;
};

TEST_F(Customizer, WithdrawsOneKindAfterTheOther) {
  customizer->RegisterWindow(7, qal::kClassId, 10);
  customizer->RegisterResourceModule(kModule, 7, qal::kClassId);
  customizer->RegisterToolbar("id", "name", kModule, 2, 0, 7, qal::kClassId);
  customizer->RegisterAccelerators(kModule, 5, 7, qal::kClassId);
  customizer->RegisterMenu(kModule, 1, 7, qal::kClassId);
  customizer->RegisterWindowMenu(10, kModule, 1, 7, qal::kClassId);
  customizer->RegisterContextMenu(11, 10, 0xFFFFFFFF, "", 0, 3, 7, qal::kClassId);
  customizer->RegisterWindow(8, qal::kClassId, 12);
  customizer->RegisterWindow(7, qal::kClassId, 10);  // the same window again
  log.Clear();
  customizer->UnregisterAll(9);
  EXPECT_EQ(log.Take(), "");
  customizer->UnregisterAll(7);
  EXPECT_EQ(log.Take(),
            "window.UnregisterContextMenu(3, 7)\nwindow.GetContextMenuCount()\n"
            "window.UnregisterContextParent()\n"
            "window.UnregisterWindowMenu(1, 7)\nwindow.UnregisterMenu(1, 7)\n"
            "window.UnregisterAccelerators(5, 7)\nwindow.UnregisterToolbar(2, 0, 7)\n"
            "window.UnregisterResourceModule(7)\nwindow.UnregisterWindow(7)\n");
}

TEST_F(Customizer, LeavesAContextMenusParentThatIsStillUsed) {
  struct Row {
    qal::WindowHandle parent;
    std::uint32_t left;
    const char* withdrawn;
  };
  for (const Row& row : {Row{11, 1, "window.UnregisterContextMenu(0, 7)\nwindow.GetContextMenuCount()\n"},
                         Row{11, 0,
                             "window.UnregisterContextMenu(0, 7)\nwindow.GetContextMenuCount()\n"
                             "window.UnregisterContextParent()\n"},
                         Row{0, 0, "window.UnregisterContextMenu(0, 7)\n"}}) {
    customizer = std::make_unique<CUiCustomizer>(&host);
    customizer->RegisterContextMenu(row.parent, 10, 0, "", 0, 0, 7, qal::kClassId);
    window.contextMenusLeft = row.left;
    log.Clear();
    customizer->UnregisterAll(7);
    EXPECT_EQ(log.Take(), row.withdrawn) << row.parent << ' ' << row.left;
  }
}

TEST_F(Customizer, NeverWithdrawsWhatTheIdeRefused) {
  log.FailCall(1, "window.RegisterMenu");
  EXPECT_EQ(customizer->RegisterMenu(kModule, 1, 7, qal::kClassId), qal::kFail);
  log.FailCall(1, "window.RegisterToolbar");
  EXPECT_EQ(customizer->RegisterToolbar("id", "name", kModule, 2, 0, 7, qal::kClassId), qal::kFail);
  log.Clear();
  customizer->UnregisterAll(7);
  EXPECT_EQ(log.Take(), "");
}

TEST_F(Customizer, DoesNotCallTheIdeWithoutAResource) {
  EXPECT_EQ(customizer->RegisterMenu(kModule, 9, 7, qal::kClassId), 1);
  EXPECT_EQ(customizer->RegisterWindowMenu(10, kModule, 9, 7, qal::kClassId), 1);
  EXPECT_EQ(customizer->RegisterAccelerators(kModule, 9, 7, qal::kClassId), 1);
  EXPECT_EQ(customizer->RegisterToolbar("id", "name", kModule, 9, 0, 7, qal::kClassId), qal::kFail);
  EXPECT_EQ(log.Take(), "");
}

}  // namespace
}  // namespace coverage
