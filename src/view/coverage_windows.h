#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "dialogs/coverage_setting_dialog.h"
#include "formatview/child_window.h"
#include "formatview/customizer.h"
#include "formatview/format_view_ctrl.h"
#include "macro/coverage_images.h"
#include "macro/macro_recorder.h"
#include "model/command_model.h"
#include "model/file_functions.h"
#include "panes/data_pane.h"
#include "panes/pane_host.h"
#include "panes/statistics_pane.h"
#include "persist/cov_file.h"
#include "util/recent_list.h"
#include "view/line_marks.h"
#include "view/message_options.h"

namespace coverage {

/// What the coverage windows need of the control that they belong to.
class WindowOwner {
 public:
  virtual platform::Window& SinkWindow() = 0;
  /// The control owns the panes, in the order in which they are added.
  virtual void AdoptPane(std::unique_ptr<CUiChildWindow> pane) = 0;
  /// Destroys the pane's window now; the object lives on until no handler runs.
  virtual void DisposePane(CUiChildWindow& pane) = 0;
  virtual void SwitchCoverage() = 0;
  /// Font and colours that the user chose.
  virtual void ApplyDisplaySettings(DisplayClient& display) const = 0;

 protected:
  ~WindowOwner() = default;
};

/// A range as a session keeps it.
struct SavedRange {
  std::uint32_t start = 0;
  std::uint32_t end = 0;
  std::uint32_t enableStatus = 0;
};

/// The open coverage windows and everything that opens, fills, loads, saves and closes them. A window is
/// identified by its statistics pane. UI thread only.
class CoverageWindows final : public PaneHost,
                              public ImageWindows,
                              public CoveredInstances,
                              public CoverageSettingHooks {
 public:
  using StatisticsPane = CJepCoverageInstanceCtrlStatData;
  using DataPane = CJepCoverageInstanceCtrlCovData;

  /// At this many windows, ranges can only be added to a range window.
  static constexpr std::size_t kMostWindows = 10;

  /// Everything borrowed; services may be null.
  struct Parts {
    qal::IQHost* host;
    CUiCustomizer* customizer;
    qal::IQSettings* settings;
    MessageOptions& options;
    MacroRecorder& macro;
    ProjectKeys& keys;
  };
  CoverageWindows(WindowOwner& owner, const Parts& parts, CommandModel& model, qal::IQSource* source,
                  qal::IQColumnService* columns);

  LineMarks& Marks() { return marks; }
  const std::vector<StatisticsPane*>& Windows() const { return windows; }
  bool OpenCommandEnabled() const;

  // Opening. Each gives the window, or null when there is none: no frame, a refused range, no functions.
  /// An even end of more than one address is lowered to the last byte of its step.
  StatisticsPane* NewRangeWindow(std::uint32_t start, std::uint32_t end);
  /// The new instance, also when its range was refused: it is then disabled. Null when `onlyOnce` and the
  /// window has the range already.
  DataPane* AddRange(StatisticsPane& window, std::uint32_t start, std::uint32_t end, bool onlyOnce = true);
  /// `viewKey` is the window's place in the IDE's layout, empty for a new one.
  StatisticsPane* NewFileWindow(const std::string& sourceFile, const std::string& typed,
                                const std::string& viewKey = {});
  StatisticsPane* FirstRangeWindow() const;
  /// The ranges of a session, all into the first range window, which is opened at `viewKey` when there is
  /// none. When one of them is refused, the window is closed later on, with the question that a close asks.
  void RestoreRanges(std::span<const SavedRange> ranges, const std::string& viewKey);
  bool IsOpen(const StatisticsPane* window) const;
  /// Statistics and data panes of all windows.
  std::size_t PaneCount() const;
  /// Key under which the IDE keeps the window in its layout; empty when there is none.
  std::string ViewKeyOf(const StatisticsPane& window) const;

  // Bringing up to date.
  void RefreshPanes();
  void RefreshAllStatistics();
  void AfterProgramReload(bool forceZero);
  /// Fills the file windows again that a reload had to leave as they were: the component was inactive, or the
  /// program's symbols were not there yet.
  void RebuildPendingFileWindows();
  void PromptSaveWindows();
  /// What the person is asked before a window is saved.
  std::string SaveQuestion(const StatisticsPane& window) const;
  void ChangeSourceFile();

  // Closing.
  /// False when the person keeps the window open.
  bool CloseWindow(StatisticsPane& window);
  /// A pane's window, or the frame of a coverage window. True when the handle belonged to one of the windows,
  /// whether it was closed or not.
  bool CloseByHandle(qal::WindowHandle handle);
  /// Closes every window without a question.
  void CloseAll();

  // Files.
  bool SaveWindow(StatisticsPane& window);
  /// All range windows into one file, or this one only. A file window goes to SaveWindow.
  bool SaveRangeWindows(StatisticsPane& window, bool individual);
  bool LoadFile(const std::string& path);

  // PaneHost
  DisassemblyCache& Instructions() override { return instructions; }
  MacroRecorder& Macro() override { return macro; }
  qal::IQSettings* Settings() override { return settings; }
  bool LoadingWindows() const override { return loading; }
  void DropCaches() override { instructions.Drop(); }
  void DropLineMarks() override { marks.DropLineMarks(); }
  void UpdateCoverageSwitch() override { owner.SwitchCoverage(); }
  void RedrawPanes() override;
  bool ClearAsks() override { return options.Asks(MessageOption::kClearData); }
  bool ClosingAsks() override { return options.Asks(MessageOption::kClearDataAtClosing); }
  Confirmation ConfirmClear() override;
  bool MayClearFunction(DataPane& pane) override;
  void SavePane(DataPane& pane) override;
  void LoadPane(DataPane& pane) override;
  std::optional<std::uint32_t> AskAddress(DataPane& pane, const std::string& addressText) override;
  std::optional<std::pair<std::uint32_t, std::uint32_t>> AskRange(DataPane& pane) override;
  void OpenCoverage() override;
  void RequestSourceChange(DataPane& pane) override;
  bool RangeShownElsewhere(const DataPane& pane, std::uint32_t start, std::uint32_t end) override;
  void NoteRecentRange(std::uint32_t start, std::uint32_t end) override;
  bool NextSortAscending(int column) override;
  void DeletePane(DataPane& pane) override;

  // ImageWindows, CoveredInstances
  std::vector<const CoverageWindow*> OpenWindows() override;
  std::vector<CoverageInstance*> AllInstances() override;

  // CoverageSettingHooks
  void RecordRangeWindow(std::uint32_t start, std::uint32_t end) override;
  void RecordFileWindow(const std::string& typedPath, const std::string& fullPath) override;
  void LoadRecentFile(const std::string& path) override;

  /// Remembered from one dialog, or one session, to the next.
  struct Remembered {
    RecentList starts;
    RecentList ends;
    CoverageSettingDialog::LastTexts lastTexts;
    std::string coveragePath;                      ///< last used to save or load
    std::string sourcePath;                        ///< directory last used to open a source file
    std::string lastSourceFile;                    ///< of the last file window
    std::vector<std::string> recentCoverageFiles;  ///< saved in this session, oldest first
    std::vector<std::string> sessionCoverageFiles;
    RecentList addresses;  ///< typed into Go To Address
  };
  Remembered& Memory() { return memory; }
  const std::string& LoadPath() const { return loadPath; }

 private:
  class RangeSections;
  class FunctionSections;

  struct Frame {
    qal::WindowHandle window = 0;
    std::string viewKey;
  };
  Frame NewFrame(const std::string& viewKey) const;
  void FinishFrame(const Frame& frame) const;
  DataPane& NewPane(std::uint32_t start, std::uint32_t end, const std::string& name, std::uint32_t shown);
  StatisticsPane* NewWindow(const Frame& frame, WindowKind kind, std::uint32_t start, std::uint32_t end,
                            DataPane& first);
  void RegisterPane(DataPane& pane);
  void ShowWindow(StatisticsPane& window);
  /// After ranges were added: a file adds many before they are shown.
  void ShowRanges(StatisticsPane& window);
  void RebuildFileWindows();
  void FillAgain(StatisticsPane& window);
  FileFunctions List(const std::string& sourceFile);
  void Forget(StatisticsPane& window);
  StatisticsPane* WindowOfFrame(qal::WindowHandle frame) const;
  bool HasUnsavedData(const StatisticsPane& window) const;
  std::string AddressTextOf(std::uint32_t address) const;
  void OpenAnotherFile();
  std::vector<std::string> RecentFiles() const;

  std::optional<std::string> AskSavePath(bool* resolved);
  bool WriteWindows(const std::string& path, const std::vector<StatisticsPane*>& saved, WindowKind type,
                    bool withFileLine);
  void NoteSaved(const std::string& path);
  bool AlreadySaved(const DataPane& pane) const;
  bool MayLoad(const CovHeader& header);

  WindowOwner& owner;
  qal::IQHost* host;
  CUiCustomizer* customizer;
  qal::IQSettings* settings;
  MessageOptions& options;
  MacroRecorder& macro;
  ProjectKeys& keys;
  LineMarks marks;
  DisassemblyCache instructions;
  std::vector<StatisticsPane*> windows;                   ///< in the order in which they were opened
  std::map<const StatisticsPane*, std::string> viewKeys;  ///< where the IDE keeps a window in its layout
  Remembered memory;
  std::string loadPath;  ///< the file that the person chose to load last
  DataPane* changingSource = nullptr;
  std::array<bool, 3> sortedAscending{};
  bool loading = false;
  bool reopenPending = false;  ///< file windows wait for the symbols of the program
};

}  // namespace coverage
