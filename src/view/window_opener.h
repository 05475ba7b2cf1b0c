#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>

#include "formatview/format_view_ctrl.h"
#include "model/file_functions.h"
#include "view/view_services.h"
#include "view/window_table.h"

namespace coverage {

/// A range as a session keeps it.
struct SavedRange {
  std::uint32_t start = 0;
  std::uint32_t end = 0;
  std::uint32_t enableStatus = 0;
};

/// Opens coverage windows over ranges and over the functions of source files, and fills them again. UI thread
/// only.
class WindowOpener {
 public:
  /// Gives a window's list the font and colours that the person chose.
  using ApplyDisplay = std::function<void(DisplayClient&)>;

  /// At this many windows, ranges can only be added to a range window.
  static constexpr std::size_t kMostWindows = 10;

  /// All borrowed.
  WindowOpener(const ViewServices& services, const PaneServices& panes, WindowTable& table,
               ApplyDisplay applyDisplay);

  bool CommandEnabled() const;
  /// Whether windows are filled just now.
  bool Filling() const { return filling_; }

  // Each gives the window, or null when there is none: no frame, a refused range, no functions.
  /// An even end of more than one address is lowered to the last byte of its step.
  CoverageWindow* NewRangeWindow(std::uint32_t start, std::uint32_t end);
  /// `viewKey` is the window's place in the IDE's layout, empty for a new one.
  CoverageWindow* NewFileWindow(const std::string& sourceFile, const std::string& typed,
                                const std::string& viewKey = {});

  /// The new instance, also when its range was refused: it is then disabled. Null when `onlyOnce` and the
  /// window has the range already.
  CoverageInstance* AddRange(CoverageWindow& window, std::uint32_t start, std::uint32_t end,
                             bool onlyOnce = true);
  /// The same without asking the debugger: for a range that is too long for anybody.
  CoverageInstance& AddUnregistered(CoverageWindow& window, std::uint32_t start, std::uint32_t end);
  /// After ranges were added: displays one that is registered, and lays the lists out.
  void ShowRanges(CoverageWindow& window);
  /// While the action runs, windows are filled: lists are laid out and the switch is sent when it is over.
  void Fill(const std::function<void()>& action);

  /// The ranges of a session, all into the first range window, which is opened at `viewKey` when there is
  /// none. When one of them is refused, the window is closed later on, with the question that a close asks.
  void RestoreRanges(std::span<const SavedRange> ranges, const std::string& viewKey);
  /// Fills a file window, which was closed but is still there, with the functions that the file has now. When
  /// they cannot be listed the person has been told, and none of its functions is registered.
  void FillAgain(CoverageWindow& window);

 private:
  using StatisticsPane = WindowTable::StatisticsPane;
  using DataPane = WindowTable::DataPane;

  CoverageModel::WindowPtr NewFrame(WindowKind kind, const std::string& viewKey) const;
  void FinishFrame(qal::WindowHandle frame) const;
  StatisticsPane& OpenWindow(const CoverageModel::WindowPtr& window, DataPane& first);
  CoverageInstance& AddInstance(CoverageWindow& window, std::uint32_t start, std::uint32_t end,
                                const std::string& name);
  void ShowWindow(CoverageWindow& window);
  FileFunctions List(const std::string& sourceFile);

  const ViewServices& services_;
  const PaneServices& panes_;
  CoverageModel& model_;
  WindowTable& table_;
  ApplyDisplay applyDisplay_;
  bool filling_ = false;
};

}  // namespace coverage
