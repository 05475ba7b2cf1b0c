#include <gtest/gtest.h>

#include <array>
#include <memory>

#include "doubles/scratch_disk.h"
#include "platform/clock.h"
#include "platform/dialog.h"
#include "platform/file_dialog.h"
#include "platform/message_box.h"
#include "platform/picture.h"
#include "platform/queue.h"
#include "platform/text_presenter.h"
#include "unit/platform/windows_fixture.h"

namespace platform {
namespace {

constexpr std::uint32_t kFirstRadio = 1 << control_style::kRadioGroupShift;

constexpr ControlTemplate kControls[] = {
    {ControlKind::kLabel, 10, "&Name:", 0, 0, 40, 8, 0},
    {ControlKind::kEdit, 11, "", 40, 0, 80, 12, control_style::kFileName},
    {ControlKind::kComboBox, 12, "", 40, 16, 80, 12, 0},
    {ControlKind::kRadioButton, 13, "&Range", 0, 32, 40, 8, kFirstRadio},
    {ControlKind::kRadioButton, 14, "&File", 40, 32, 40, 8, kFirstRadio},
    {ControlKind::kCheckBox, 15, "&Save", 0, 48, 40, 8, 0},
    {ControlKind::kPushButton, 16, "Browse&...", 0, 64, 40, 14, control_style::kDisabled},
    {ControlKind::kList, 17, "", 0, 80, 40, 40, 0},
    {ControlKind::kDefaultButton, 9021, "&OK", 0, 128, 40, 14, 0},
    {ControlKind::kPushButton, 9022, "&Cancel", 48, 128, 40, 14, 0},
};
constexpr DialogTemplate kTemplate = {500, "Settings", 120, 150, kControls, std::size(kControls)};

class SettingsDialog : public Dialog {
 public:
  SettingsDialog() : Dialog(kTemplate) {}
  ~SettingsDialog() override { Destroy(); }
  void OnAccept() {
    if (ItemText(11).empty()) {
      ShowMessageBox("A name is missing.", Icon::kInformation);
      FocusItem(11);
      return;
    }
    accepted = ItemText(11) + " " + ItemText(12);
    OnOK();
  }
  void OnInitDialog() override {
    Item<ComboBox>(12)->SetItems({"1000", "2000"});
    CheckRadio({13, 14}, 13);
    auto* list = Item<ListView>(17);
    list->InsertColumn(0, "Item", ColumnFormat::kLeft, 40);
    list->InsertRow(0, "first");
    list->InsertRow(1, "second");
    if (init) init(*this);
  }
  using Dialog::OnCancel;

  std::string accepted;
  std::function<void(SettingsDialog&)> init;
  std::function<LResult(const Message&)> react;

 protected:
  LResult OnMessage(const Message& message) override;
};

constexpr auto kRoutes = std::to_array<Route<SettingsDialog>>({
    {message::kCommand, 9021, &SettingsDialog::OnAccept},
    {message::kCommand, 9022, &SettingsDialog::OnCancel},
});

LResult SettingsDialog::OnMessage(const Message& message) {
  if (react) react(message);
  if (const auto answer = Dispatch(*this, kRoutes, message)) return *answer;
  return Dialog::OnMessage(message);
}

TEST(Dialogs, EndAsThePersonEndsThem) {
  struct Row {
    std::vector<std::string> lines;
    int result;
  };
  const Row rows[] = {
      {{"type 11 x", "click 9021"}, 1},
      {{"type 11 x", "key enter"}, 1},
      {{"type 11 x", "click 9022"}, 2},
      {{"key escape"}, 2},
      {{"close"}, 2},
      {{}, 2},
      {{"type 11 x", "focus 9022", "key enter"}, 2},
  };
  for (const Row& row : rows) {
    std::size_t next = 0;
    ScriptPresenter presenter(
        [&]() -> std::optional<std::string> {
          return next < row.lines.size() ? std::optional(row.lines[next++]) : std::nullopt;
        },
        {});
    const PresenterScope scope(presenter);
    SettingsDialog dialog;
    EXPECT_EQ(dialog.DoModal(), row.result) << (row.lines.empty() ? "no lines" : row.lines.back());
    EXPECT_EQ(presenter.Errors(), 0);
  }
}

TEST(Dialogs, AScriptPointsAtWhatItActsOn) {
  Script script{"type 11 x", "row 1", "check 15 on", "key enter"};
  SettingsDialog dialog;
  std::string places;
  dialog.react = [&](const Message& message) {
    if (message.id != message::kCommand && message.id != message::kNotify) return LResult{0};
    for (const Window* child : dialog.Children()) {
      const std::string id = std::to_string(child->Id()) + ' ';
      if (child->ScreenRect().Contains(CursorPosition()) && !places.ends_with(id)) places += id;
    }
    return LResult{0};
  };
  dialog.DoModal();
  EXPECT_EQ(places, "11 17 15 ") << "a key moves nothing";
}

TEST(Dialogs, ReportWhatCannotBeDoneAndGoOn) {
  struct Row {
    const char* line;
    const char* error;
  };
  const Row rows[] = {
      {"type 99 x", "the dialog has no control '99'"},
      {"type 10 x", "nothing can be typed into control 10"},
      {"click 16", "control 16 is disabled"},
      {"choose 12 9000", "control 12 does not offer '9000'"},
      {"check 15 maybe", "on or off expected, not 'maybe'"},
      {"check 13 off", "choose another button to clear 13"},
      {"check 11 on", "control 11 cannot be checked"},
      {"list 11 row 0", "control 11 is no list"},
      {"click", "which control? say: click ID"},
      {"answer ok", "the dialog 'Settings' is open, no message box"},
      {"close 1", "a dialog is open; close alone closes it"},
      {"jump", "no word 'jump' for a dialog"},
      {"wait long", "milliseconds up to an hour expected, not 'long'"},
  };
  for (const Row& row : rows) {
    Script script{row.line, "type 11 x", "click 9021"};
    SettingsDialog dialog;
    EXPECT_EQ(dialog.DoModal(), static_cast<int>(kIdOk));
    EXPECT_EQ(script.shown, "error: " + std::string(row.error) + "\n");
    EXPECT_EQ(script.presenter.Errors(), 1);
  }
}

TEST(Dialogs, DisableTheirOwnerAndGiveTheFocusBack) {
  LogWindow frame, pane;
  ASSERT_TRUE(frame.Open());
  ASSERT_TRUE(pane.Create(frame.Handle(), 1, "", kShownChild));
  pane.SetFocus();
  Script script{"type 11 x", "click OK"};
  SettingsDialog dialog;
  std::string inside;
  dialog.init = [&](SettingsDialog& d) {
    inside =
        std::string(frame.IsEnabled() ? "enabled" : "disabled") + (d.CanBeUsed() ? ", usable" : ", unusable");
  };
  EXPECT_EQ(dialog.DoModal(&pane), static_cast<int>(kIdOk));
  EXPECT_EQ(inside, "disabled, usable");
  EXPECT_TRUE(frame.IsEnabled());
  EXPECT_TRUE(pane.HasFocus());
}

TEST(Dialogs, MoveTheFocusWithTab) {
  Script script{"key tab", "key tab", "key tab", "key tab", "key tab", "key tab", "key shift+tab", "dialog"};
  SettingsDialog dialog;
  dialog.DoModal();
  EXPECT_NE(script.shown.find(">     17 list"), std::string::npos) << script.shown;
}

TEST(Dialogs, TheirTimersRunWhileAPersonThinks) {
  ManualClock clock;
  InstallClock(&clock);
  Script script{"type 11 x", "wait 1000", "dialog"};
  SettingsDialog dialog;
  int ticks = 0;
  dialog.init = [](SettingsDialog& d) { d.SetTimer(4097, std::chrono::milliseconds(100)); };
  dialog.react = [&](const Message& message) -> LResult {
    if (message.id == message::kTimer && ++ticks == 8) dialog.EnableItem(16, true);
    return 0;
  };
  dialog.DoModal();
  EXPECT_GE(ticks, 10);
  EXPECT_EQ(script.shown.find("(disabled)"), std::string::npos);
  EXPECT_EQ(TimerCount(), 0u);
  InstallClock(nullptr);
}

TEST(Dialogs, GoWithTheWindowThatOpenedThem) {
  auto frame = std::make_unique<LogWindow>();
  ASSERT_TRUE(frame->Open());
  Script script{"check 15 on", "click 9021"};
  SettingsDialog dialog;
  dialog.react = [&](const Message& message) -> LResult {
    if (message.id == message::kCommand && message.CommandId() == 15) DeleteLater(std::move(frame));
    return 0;
  };
  EXPECT_EQ(dialog.DoModal(frame.get()), static_cast<int>(kIdCancel));
  EXPECT_EQ(frame, nullptr);
  EXPECT_EQ(script.LinesLeft(), 1u) << "the line behind is for whoever comes next";
}

TEST(Dialogs, NestAndEndEachOther) {
  Script script{"check 15 on", "type 11 inner", "click 9021", "click 9021"};
  SettingsDialog outer, inner;
  int innerResult = -7;
  outer.react = [&](const Message& message) -> LResult {
    if (message.id == message::kCommand && message.CommandId() == 15) innerResult = inner.DoModal(&outer);
    return 0;
  };
  inner.react = [&](const Message& message) -> LResult {
    if (message.id == message::kCommand && message.CommandId() == 9021) outer.EndDialog(42);
    return 0;
  };
  EXPECT_EQ(outer.DoModal(), 42);
  EXPECT_EQ(innerResult, static_cast<int>(kIdOk));
  EXPECT_EQ(inner.accepted, "inner ");
  EXPECT_EQ(script.LinesLeft(), 1u);
}

TEST(FileDialogs, CompleteWhatThePersonGives) {
  const doubles::ScratchDisk disk;
  struct Row {
    const char* line;
    const char* extension;
    const char* path;
  };
  const Row rows[] = {
      {"file result", "cov", "C:\\work\\result.cov"},
      {"file sub\\result.txt", "cov", "C:\\work\\sub\\result.txt"},
      {"file C:\\other\\x", "", "C:\\other\\x"},
      {"file cancel", "cov", "cancelled"},
      {"answer ok", "cov", "cancelled"},
  };
  for (const Row& row : rows) {
    Script script{row.line};
    FileDialogRequest request;
    request.save = true;
    request.flags = FileDialogRequest::kOverwritePrompt;
    request.directory = "C:\\work";
    request.defaultExtension = row.extension;
    EXPECT_EQ(AskForFile(request).value_or("cancelled"), row.path) << row.line;
  }
}

}  // namespace
}  // namespace platform
