#pragma once

#include <cstdint>

#include "dialogs/dialog_history.h"
#include "formatview/child_window.h"
#include "formatview/customizer.h"
#include "macro/macro_recorder.h"
#include "model/coverage_model.h"
#include "model/reporter.h"
#include "platform/window.h"
#include "qal/host.h"
#include "qal/ide_services.h"
#include "util/entry.h"

namespace coverage {

/// Operations after which a person's data are gone.
enum class DataLoss : std::uint8_t {
  kCloseRangeWindow,
  kCloseFileWindow,
  kClearRange,
  kClearFunction,
  kClearAll,
  kDeleteRange,
  kEditRange,
  kChangeSource,
};

/// What a pane asks of the floor above it: questions and files, which concern more than the pane, and the
/// life of panes and windows. Implemented by the view control. UI thread only.
class PaneHost {
 public:
  /// Asks, and saves first, where the operation on the instance calls for it. False when it is not to go on:
  /// the person cancelled, the wanted save was cancelled or failed, or the instance went away meanwhile. Then
  /// nothing has changed.
  virtual bool MayLose(DataLoss loss, CoverageInstance& instance) = 0;
  virtual void SaveData(CoverageInstance& instance) = 0;
  virtual void LoadData(CoverageInstance& instance) = 0;
  /// The flow that opens another window or adds a range.
  virtual void OpenCoverage() = 0;
  /// The window of the instance is to cover another source file; the person is asked later on.
  virtual void ChangeSource(CoverageInstance& instance) = 0;
  virtual void DropLineMarks() = 0;
  /// Whether windows are filled: the coverage switch then waits for the last instance.
  virtual bool LoadingWindows() const = 0;
  /// Destroys the pane's window; the object is deleted when no handler runs any more.
  virtual void Retire(CUiChildWindow& pane) = 0;

 protected:
  ~PaneHost() = default;
};

/// What both panes work with. Borrowed; everything outlives the panes' windows.
struct PaneServices {
  qal::IQHost* host;
  CUiCustomizer* customizer;
  qal::IQSettings* settings;
  CoverageModel& model;
  MacroRecorder& macro;
  DialogHistory& history;
  Reporter& reporter;
  EntryListener& entries;
  platform::Window& sink;  ///< dialogs open over it
  PaneHost& above;
};

}  // namespace coverage
