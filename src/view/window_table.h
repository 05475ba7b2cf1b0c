#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "formatview/command_sink.h"
#include "panes/data_pane.h"
#include "panes/statistics_pane.h"
#include "view/data_questions.h"
#include "view/line_marks.h"
#include "view/view_services.h"

namespace coverage {

/// The open coverage windows with their panes: each is known by its statistics pane, in the order of opening.
/// Closes them. UI thread only.
class WindowTable {
 public:
  using StatisticsPane = CJepCoverageInstanceCtrlStatData;
  using DataPane = CJepCoverageInstanceCtrlCovData;

  /// `owner` keeps the panes; everything is borrowed.
  WindowTable(const ViewServices& services, CUiCommandSink& owner, DataQuestions& questions,
              LineMarks& marks);

  /// Makes a pane, which the control owns.
  DataPane& NewPane(const PaneServices& services, CoverageModel::InstancePtr instance);
  /// Makes the window's statistics pane and enters the window here and in the model.
  StatisticsPane& Open(const PaneServices& services, const CoverageModel::WindowPtr& window, DataPane& first);
  /// Destroys a pane's window; the object is deleted when no handler runs any more.
  void Retire(CUiChildWindow& pane) { owner_.RemoveChild(pane); }

  /// Null when the window is not, or no longer, here.
  StatisticsPane* PaneOf(const CoverageWindow& window) const;
  std::vector<StatisticsPane*> Panes() const;
  /// Statistics and data panes of all windows.
  std::size_t PaneCount() const;

  /// Asks before data go and empties the window. False when the person keeps it.
  bool CloseWindow(CoverageWindow& window);
  /// A pane's window, or the frame of a coverage window. True when the handle belonged to one of the windows,
  /// whether it was closed or not.
  bool CloseByHandle(qal::WindowHandle handle);
  /// Closes every window without a question.
  void CloseAll();
  /// Gives the frame the state of one whose window is closed.
  void CloseFrame(qal::WindowHandle frame) const;

  /// Windows that the model has closed, whose panes are still there.
  bool HoldsClosed() const;
  void DisposeClosed();

 private:
  struct Entry {
    CoverageModel::WindowPtr window;
    StatisticsPane* pane;
  };

  void Dispose(const Entry& entry);

  const ViewServices& services_;
  CUiCommandSink& owner_;
  DataQuestions& questions_;
  LineMarks& marks_;
  std::vector<Entry> entries_;
};

}  // namespace coverage
