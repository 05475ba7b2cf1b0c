#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "macro/macro_recorder.h"
#include "model/coverage_instance.h"
#include "model/disassembly_cache.h"
#include "qal/ide_services.h"

namespace coverage {

class CJepCoverageInstanceCtrlCovData;
class CJepCoverageInstanceCtrlStatData;

/// What the panes need of the object that owns them: the caches, the dialogs and files that stand above the
/// panes, and what concerns more than one window. Implemented by the view control. UI thread only.
class PaneHost {
 public:
  enum class Confirmation : std::uint8_t { kCancelled, kGoOn, kSaveFirst };

  virtual DisassemblyCache& Instructions() = 0;
  virtual MacroRecorder& Macro() = 0;
  virtual qal::IQSettings* Settings() = 0;
  /// Whether a coverage file is being loaded into windows.
  virtual bool LoadingWindows() const = 0;

  /// Forgets the disassembly.
  virtual void DropCaches() = 0;
  virtual void DropLineMarks() = 0;
  virtual void UpdateCoverageSwitch() = 0;
  virtual void RedrawPanes() = 0;

  /// Whether the option asks before data are cleared, and before a window or range is closed.
  virtual bool ClearAsks() = 0;
  virtual bool ClosingAsks() = 0;
  /// "Coverage data will be cleared."
  virtual Confirmation ConfirmClear() = 0;
  /// For an instance of a file window: asks when it has to, and saves the window first when the person wants
  /// it. False when the clear was cancelled.
  virtual bool MayClearFunction(CJepCoverageInstanceCtrlCovData& pane) = 0;

  /// Files. Saving before a clear is recorded for a macro like any other.
  virtual void SavePane(CJepCoverageInstanceCtrlCovData& pane) = 0;
  virtual void LoadPane(CJepCoverageInstanceCtrlCovData& pane) = 0;

  /// Dialogs.
  virtual std::optional<std::uint32_t> AskAddress(CJepCoverageInstanceCtrlCovData& pane,
                                                  const std::string& addressText) = 0;
  virtual std::optional<std::pair<std::uint32_t, std::uint32_t>> AskRange(
      CJepCoverageInstanceCtrlCovData& pane) = 0;
  /// The flow that opens another window or adds a range.
  virtual void OpenCoverage() = 0;
  /// The pane of a file window asks for another source file; the answer comes later.
  virtual void RequestSourceChange(CJepCoverageInstanceCtrlCovData& pane) = 0;

  /// Whether a range window other than the pane's has exactly this range.
  virtual bool RangeShownElsewhere(const CJepCoverageInstanceCtrlCovData& pane, std::uint32_t start,
                                   std::uint32_t end) = 0;
  /// Puts a range to the front of the recent ones.
  virtual void NoteRecentRange(std::uint32_t start, std::uint32_t end) = 0;
  /// The direction of the next sort by a column; it alternates, for all windows together.
  virtual bool NextSortAscending(int column) = 0;
  /// Takes a pane out of the list of panes and deletes it when no handler runs any more.
  virtual void DeletePane(CJepCoverageInstanceCtrlCovData& pane) = 0;

 protected:
  ~PaneHost() = default;
};

}  // namespace coverage
