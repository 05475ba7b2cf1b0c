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
#include "commands/message_reporter.h"
#include "formatview/debug_command_sink.h"
#include "macro/coverage_images.h"
#include "macro/macro_recorder.h"
#include "model/coverage_model.h"
#include "persist/cov_file.h"
#include "qal/all.h"
#include "view/control_commands.h"
#include "view/delivery.h"
#include "view/display_settings.h"
#include "view/message_options.h"
#include "view/open_coverage.h"
#include "view/source_change.h"
#include "view/window_reload.h"
#include "view/workspace_client.h"

namespace coverage {

/// The one object behind the coverage windows and the marks of the editor columns. Owns what is counted, the
/// panes that show it, the commands of the command line, and everything that opens, fills, saves and closes
/// windows; borrows the services. UI thread only, but for the reading operations of the command stores.
class CJepCoverageCtrl : public CUiDebugCommandSink,
                         public CWSClient2,
                         public qal::ICoverageAutomation,
                         public CommandHost,
                         public PaneHost,
                         public ImageWindows,
                         public MacroRecorderHost {
 public:
  /// Registers the control, its options and its commands with the IDE. The window is created later.
  CJepCoverageCtrl(qal::IQHost* host, CUiCustomizer* customizer);
  ~CJepCoverageCtrl() override;
  /// Closes every window and withdraws everything from the IDE, which is not called from then on. The second
  /// time nothing happens.
  void End();

  /// The column service's handles of the two editor columns.
  void SetColumn(EditorColumn column, std::uint32_t handle) { marks->SetColumn(column, handle); }
  LineMarks& Marks() { return *marks; }
  CoverageModel& Coverage() { return records; }
  WindowTable& Windows() { return *table; }
  WindowOpener& Opener() { return *opener; }
  DialogHistory& History() { return history; }
  ImageWindows& Images() { return *this; }
  /// What every call of the IDE and every message goes through.
  EntryListener* Entries() override { return delivery.get(); }

  // What the debugger's events ask for.
  /// Every window takes in the debugger's report; then, while no program runs, the panes list themselves
  /// anew.
  void CollectCoverage();
  /// A program was downloaded: caches dropped, windows saved if wanted and filled anew, counters cleared.
  /// While the component is inactive the clear waits for the next reset.
  void OnDownload();
  /// The target was reset: caches dropped, a clear that waits is carried out, the columns are refreshed.
  void OnReset();
  /// Recomputes every percentage and writes every list and row again.
  void RefreshAllStatistics();
  /// The marks of the editors first, then the panes with their percentages.
  void OnActivityEnd();

  // CommandHost
  qal::IQHost* Host() override { return host; }
  CommandModel& Model() override { return records.Commands(); }
  ProjectKeys& Keys() override { return projectKeys; }
  Reporter& Messages() override { return reporter; }
  void RefreshViews() override { records.MarkRows(); }
  void BringUpToDate() override;

  // PaneHost
  bool MayLose(DataLoss loss, CoverageInstance& instance) override {
    return questions.MayLose(loss, instance);
  }
  void SaveData(CoverageInstance& instance) override { saver.SaveData(instance); }
  void LoadData(CoverageInstance& instance) override { loader->LoadData(instance); }
  void OpenCoverage() override { opening->Run(); }
  void ChangeSource(CoverageInstance& instance) override { sourceChange->Request(instance); }
  void DropLineMarks() override { marks->DropLineMarks(); }
  bool LoadingWindows() const override { return opener->Filling(); }
  void Retire(CUiChildWindow& pane) override { RemoveChild(pane); }

  // ImageWindows
  std::vector<const CoverageWindow*> OpenWindows() override;
  DisassemblyCache& Instructions() override { return records.Instructions(); }

  // MacroRecorderHost
  std::uint32_t StartMacroTimer(std::uint32_t id, std::uint32_t milliseconds) override;
  void StopMacroTimer(std::uint32_t id) override;
  bool AskMacroQuestion(const std::string& question) override;
  std::string LoadPath() const override { return history.loadPath; }

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
  platform::LResult OnEntered(const platform::Message& message);
  platform::LResult OnCreate(const platform::Message& message);
  void OnOpenCoverage() { opening->Run(); }
  void OnChangeSourceFile() { sourceChange->ChangeSourceFile(); }
  void OnUpdateOpenCoverage(platform::CommandUpdate& update);
  platform::LResult OnTimer(const platform::Message& message);
  void ApplyDisplaySettings(DisplayClient& display) const;

  CoverageModel records;
  MessageReporter reporter;
  DisplayFont displayFont;
  MessageOptions options;
  std::uint32_t sessionValue = 0;
  std::uint32_t clearPending = 0;
  bool ended = false;
  ProjectKeys projectKeys;
  DialogHistory history;
  CoverageAutomation automation;
  std::vector<std::unique_ptr<CCoverageCommand>> commands;
  MacroRecorder macro;
  std::unique_ptr<LineMarks> marks;

  ViewServices services;
  WindowSaver saver{services};
  DataQuestions questions{services, saver};
  std::unique_ptr<WindowTable> table;
  std::unique_ptr<PaneServices> panes;
  std::unique_ptr<WindowOpener> opener;
  std::unique_ptr<WindowLoader> loader;
  std::unique_ptr<coverage::OpenCoverage> opening;
  std::unique_ptr<WindowReload> reload;
  std::unique_ptr<SourceChange> sourceChange;
  std::unique_ptr<Delivery> delivery;
};

}  // namespace coverage
