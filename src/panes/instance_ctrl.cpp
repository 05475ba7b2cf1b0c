#include "panes/instance_ctrl.h"

#include <array>

#include "panes/pane_commands.h"
#include "platform/font.h"
#include "qal/ids.h"
#include "util/resource_ids.h"
#include "util/texts.h"

namespace coverage {
namespace {

/// Child, visible, report view, single selection that is always shown, drawn by the owner.
constexpr std::uint32_t kListStyle = 0x5000040D;
constexpr std::uint32_t kLastPosition = 0xFFFFFFFF;

/// States of the frame that holds a pane.
constexpr std::uint32_t kFrameDockable = 0x20;
constexpr std::uint32_t kFrameDockedBit = 0x10;
constexpr std::uint32_t kFrameFloatingBit = 0x8;

constexpr std::uint32_t kToolbarButtons[] = {pane_command::kEnableAllButton, pane_command::kEditRangeButton,
                                             pane_command::kClearDataButton, pane_command::kSaveDataButton,
                                             pane_command::kLoadDataButton};

}  // namespace

CJepDebugInstanceDataCtrl::CJepDebugInstanceDataCtrl(const PaneServices& services, const char* className)
    : CUiChildWindow(services.host, services.customizer), services_(services), className_(className) {}

bool CJepDebugInstanceDataCtrl::CreatePane(qal::WindowHandle frame) {
  const platform::Window* parent = platform::WindowFrom(frame);
  const platform::Rect bounds = parent ? parent->ClientRect() : platform::Rect{};
  if (!Create(frame, 0, {}, platform::window_style::kChild | platform::window_style::kVisible, bounds)) {
    return false;
  }
  Register();
  OnPaneCreated();
  return Exists();
}

void CJepDebugInstanceDataCtrl::Register() {
  if (!customizer) return;
  const qal::ModuleHandle module = ResourceModule();
  customizer->RegisterContextMenu(Frame(), Handle(), kLastPosition, {}, 0, 0, commandKey, qal::kClassId);
  customizer->RegisterWindowMenu(Handle(), module, resource::kMenuPane, commandKey, qal::kClassId);
  customizer->RegisterWindow(commandKey, qal::kClassId, Handle());
  customizer->RegisterResourceModule(module, commandKey, qal::kClassId);
  customizer->RegisterToolbarButtons(Frame(), module, resource::kToolbarPane, 0, commandKey, qal::kClassId,
                                     {{{}, {}, {}, {}, kToolbarButtons}});
}

void CJepDebugInstanceDataCtrl::BuildColumns() {
  const int unit = platform::Measure(list_.CurrentFont()).averageWidth * 3;
  int index = 0;
  for (const PaneColumn& column : Columns()) {
    list_.InsertColumn(index++, coverage::Text(column.headingId), platform::ColumnFormat::kLeft,
                       column.widthUnits * unit / 2);
  }
  list_.LoadColumnWidths(services_.settings, className_);
}

void CJepDebugInstanceDataCtrl::FitColumns() { list_.FitColumns(); }

void CJepDebugInstanceDataCtrl::SetFrameTitle(const std::string& title) {
  if (customizer && Exists()) customizer->SetFrameTitle(Frame(), title);
}

platform::LResult CJepDebugInstanceDataCtrl::OnCreate(const platform::Message&) {
  if (!list_.CreateList(kListStyle, ClientRect(), *this, kListId, 0)) return -1;
  BuildColumns();
  return 0;
}

platform::LResult CJepDebugInstanceDataCtrl::OnSize(const platform::Message&) {
  if (!list_.Exists()) return 0;
  list_.Move(ClientRect());
  OnResized();
  return 0;
}

platform::LResult CJepDebugInstanceDataCtrl::OnDestroy(const platform::Message&) {
  list_.SaveColumnWidths(services_.settings, className_);
  OnPaneDestroyed();
  return 0;
}

void CJepDebugInstanceDataCtrl::OnToolbarDisplay() {
  if (customizer) customizer->ShowToolbar(Frame(), customizer->IsToolbarShown(Frame()) == 0);
}

void CJepDebugInstanceDataCtrl::OnUpdateToolbarDisplay(platform::CommandUpdate& update) {
  update.SetCheck(customizer && customizer->IsToolbarShown(Frame()) != 0);
}

void CJepDebugInstanceDataCtrl::OnCustomizeToolbar() {
  if (customizer) customizer->CustomizeToolbar(Frame());
}

void CJepDebugInstanceDataCtrl::OnUpdateCustomizeToolbar(platform::CommandUpdate& update) {
  update.Enable(customizer && customizer->IsToolbarShown(Frame()) != 0);
}

void CJepDebugInstanceDataCtrl::OnAllowDocking() {
  if (customizer) customizer->SetFrameState(Frame(), kFrameDockable);
}

void CJepDebugInstanceDataCtrl::OnUpdateAllowDocking(platform::CommandUpdate& update) {
  std::uint32_t state = 0;
  if (customizer) customizer->GetFrameState(Frame(), &state);
  update.Enable(true);
  update.SetCheck((state & kFrameDockedBit) != 0 || (state & kFrameFloatingBit) == 0);
}

void CJepDebugInstanceDataCtrl::OnHide() {
  if (customizer) customizer->SetFrameState(Frame(), kFrameHidden);
}

platform::LResult CJepDebugInstanceDataCtrl::OnMessage(const platform::Message& received) {
  const platform::LResult failure = received.id == platform::message::kCreate ? -1 : 0;
  return Enter(
      &services_.entries, [&] { return OnEntered(received); }, failure);
}

platform::LResult CJepDebugInstanceDataCtrl::OnEntered(const platform::Message& received) {
  using platform::message::kCommand;
  using platform::message::kUpdateCommand;
  using Pane = CJepDebugInstanceDataCtrl;
  static constexpr auto kRoutes = std::to_array<platform::Route<Pane>>({
      {platform::message::kCreate, platform::kAny, &Pane::OnCreate},
      {platform::message::kSize, platform::kAny, &Pane::OnSize},
      {platform::message::kDestroy, platform::kAny, &Pane::OnDestroy},
      {kCommand, pane_command::kToolbarDisplay, &Pane::OnToolbarDisplay},
      {kUpdateCommand, pane_command::kToolbarDisplay, &Pane::OnUpdateToolbarDisplay},
      {kCommand, pane_command::kCustomizeToolbar, &Pane::OnCustomizeToolbar},
      {kUpdateCommand, pane_command::kCustomizeToolbar, &Pane::OnUpdateCustomizeToolbar},
      {kCommand, pane_command::kAllowDocking, &Pane::OnAllowDocking},
      {kUpdateCommand, pane_command::kAllowDocking, &Pane::OnUpdateAllowDocking},
      {kCommand, pane_command::kHide, &Pane::OnHide},
  });
  if (const auto answer = platform::Dispatch(*this, kRoutes, received)) return *answer;
  return CUiChildWindow::OnMessage(received);
}

}  // namespace coverage
