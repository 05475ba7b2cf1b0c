#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "commands/command_host.h"
#include "commands/coverage_automation.h"
#include "commands/coverage_command.h"
#include "formatview/debug_command_sink.h"
#include "macro/macro_recorder.h"
#include "model/command_model.h"
#include "model/report_collector.h"
#include "persist/cov_file.h"
#include "qal/all.h"
#include "view/coverage_windows.h"
#include "view/display_settings.h"
#include "view/message_options.h"
#include "view/workspace_client.h"

namespace coverage {

/// Commands that reach the control through its window.
namespace control_command {
inline constexpr std::uint32_t kOpenCoverage = 32770;
/// Posted by the data pane of a file window that asks for another source file.
inline constexpr std::uint32_t kChangeSourceFile = 4097;
}  // namespace control_command

/// The one object behind the coverage windows and the marks of the editor columns. Owns the windows through
/// their panes, the commands of the command line and what they work on, and the caches; borrows the services.
/// UI thread only, but for the reading operations of the command model.
class CJepCoverageCtrl : public CUiDebugCommandSink,
                         public CWSClient2,
                         public qal::ICoverageAutomation,
                         public CommandHost,
                         public WindowOwner,
                         public MacroRecorderHost {
 public:
  /// Registers the control, its options and its commands with the IDE. The window is created later.
  CJepCoverageCtrl(qal::IQHost* host, CUiCustomizer* customizer);
  ~CJepCoverageCtrl() override;
  /// Closes every window and withdraws everything from the IDE, which is not called from then on. The second
  /// time nothing happens.
  void End();

  /// The column service's handles of the two editor columns.
  void SetColumn(EditorColumn column, std::uint32_t handle) { Marks().SetColumn(column, handle); }
  LineMarks& Marks() { return windows->Marks(); }
  CoverageWindows& Windows() { return *windows; }
  ImageWindows& Images() { return *windows; }

  // What the debugger's events ask for.
  /// Every window takes in the debugger's report; then, while no program runs, the panes list themselves
  /// anew.
  void CollectCoverage();
  /// A program was downloaded: caches dropped, windows saved if wanted and filled anew, counters cleared.
  /// While the component is inactive the clear waits for the next reset.
  void OnDownload();
  /// The target was reset: caches dropped, a clear that waits is carried out, the columns are refreshed.
  void OnReset();
  /// Recomputes every percentage and redraws every pane.
  void RefreshAllStatistics() { windows->RefreshAllStatistics(); }
  void RedrawPanes() { windows->RedrawPanes(); }

  // CommandHost
  qal::IQHost* Host() override { return host; }
  CommandModel& Model() override { return *model; }
  ProjectKeys& Keys() override { return projectKeys; }
  void RefreshViews() override { RedrawPanes(); }
  void BringUpToDate() override;
  void UpdateCoverageSwitch() override;

  // WindowOwner
  platform::Window& SinkWindow() override { return *this; }
  void AdoptPane(std::unique_ptr<CUiChildWindow> pane) override { AddChild(std::move(pane)); }
  void DisposePane(CUiChildWindow& pane) override { RemoveChild(pane); }
  void SwitchCoverage() override { UpdateCoverageSwitch(); }
  void ApplyDisplaySettings(DisplayClient& display) const override;

  // MacroRecorderHost
  std::uint32_t StartMacroTimer(std::uint32_t id, std::uint32_t milliseconds) override;
  void StopMacroTimer(std::uint32_t id) override;
  bool AskMacroQuestion(const std::string& question) override;
  std::string LoadPath() const override { return windows->LoadPath(); }

  // Interfaces of the IDE. The workspace client is what QueryInterface answers with.
  qal::Status QueryInterface(const qal::Guid* iid, void** out) override;
  std::uint32_t AddRef() override { return 1; }
  std::uint32_t Release() override { return 0; }

  qal::Status GetFormatName(char16_t** name) override;
  qal::Status GetFont(char16_t** face, std::uint32_t* size) override;
  qal::Status SetColours(qal::WideText category, std::uint32_t foreground, std::uint32_t background) override;
  using platform::Window::SetFont;
  qal::Status SetFont(qal::WideText face, std::uint32_t size) override;

  qal::Status OnSessionOpened(qal::WideText first, qal::WideText second, qal::WideText third,
                              qal::WideText fourth) override;
  qal::Status OnSessionSaving(qal::WideText first, qal::WideText second, qal::WideText third) override;
  qal::Status GetSessionValue(std::uintptr_t a, std::uintptr_t b, std::uintptr_t c,
                              std::uint32_t* value) override;

  qal::Status SetRange(std::uint32_t start, std::uint32_t end) override;
  qal::Status GetRange(std::uint32_t* start, std::uint32_t* end) override;
  qal::Status Disable() override;
  qal::Status Enable() override;
  qal::Status Clear() override;
  qal::Status IsEnabled(qal::Flag* enabled) override;
  qal::Status Load(qal::WideText path) override;
  qal::Status Save(qal::WideText path) override;

  void DestroyChildren() override;
  /// Also takes the frame of a coverage window, and asks before its data go.
  platform::LResult CloseChild(qal::WindowHandle window, platform::LParam second) override;

 protected:
  platform::LResult OnMessage(const platform::Message& message) override;

 private:
  platform::LResult OnCreate(const platform::Message& message);
  void OnOpenCoverage();
  void OnChangeSourceFile();
  void OnUpdateOpenCoverage(platform::CommandUpdate& update);
  platform::LResult OnTimer(const platform::Message& message);

  std::unique_ptr<CommandModel> model;
  DisplayFont displayFont;
  std::unique_ptr<MessageOptions> options;
  std::uint32_t sessionValue = 0;
  std::uint32_t clearPending = 0;
  bool ended = false;
  ProjectKeys projectKeys;
  ReportCollector collector;
  CoverageAutomation automation;
  std::vector<std::unique_ptr<CCoverageCommand>> commands;
  MacroRecorder macro;
  std::unique_ptr<CoverageWindows> windows;
};

}  // namespace coverage
