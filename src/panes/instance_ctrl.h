#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "formatview/child_window.h"
#include "formatview/report_list.h"
#include "panes/pane_host.h"

namespace coverage {

/// A column of a pane; the width counts one and a half average characters.
struct PaneColumn {
  std::uint32_t headingId;
  int widthUnits;
};

/// Base of the two panes of a coverage window: a window with a list, registered with the IDE's menus and
/// toolbars, and the commands for the frame that holds it. UI thread only.
class CJepDebugInstanceDataCtrl : public CUiChildWindow {
 public:
  static constexpr std::uint32_t kListId = 200;

  /// Creates the pane's window in a frame. False when it was refused.
  bool CreatePane(qal::WindowHandle frame);
  qal::WindowHandle Frame() const { return ParentHandle(); }
  CCoverageListCtrl& List() { return list_; }
  const CCoverageListCtrl& List() const { return list_; }

 protected:
  /// `className` is what the column widths are kept under; it must outlive the pane.
  CJepDebugInstanceDataCtrl(const PaneServices& services, const char* className);

  /// Every message is an entry into the component; what it means is OnEntered's.
  platform::LResult OnMessage(const platform::Message& message) final;
  virtual platform::LResult OnEntered(const platform::Message& message);
  virtual std::span<const PaneColumn> Columns() const = 0;
  /// The window is there, with its list and columns.
  virtual void OnPaneCreated() = 0;
  /// The list has got another size.
  virtual void OnResized() {}
  /// The window is about to go.
  virtual void OnPaneDestroyed() {}

  CoverageModel& model() const { return services_.model; }
  MacroRecorder& macro() const { return services_.macro; }
  const PaneServices& services() const { return services_; }
  PaneHost& above() const { return services_.above; }
  void FitColumns();
  void SetFrameTitle(const std::string& title);

 private:
  platform::LResult OnCreate(const platform::Message& message);
  platform::LResult OnSize(const platform::Message& message);
  platform::LResult OnDestroy(const platform::Message& message);
  void OnToolbarDisplay();
  void OnUpdateToolbarDisplay(platform::CommandUpdate& update);
  void OnCustomizeToolbar();
  void OnUpdateCustomizeToolbar(platform::CommandUpdate& update);
  void OnAllowDocking();
  void OnUpdateAllowDocking(platform::CommandUpdate& update);
  void OnHide();
  void Register();
  void BuildColumns();

  const PaneServices& services_;
  const char* className_;
  CCoverageListCtrl list_;
};

}  // namespace coverage
