#pragma once

#include "view/view_services.h"
#include "view/window_opener.h"
#include "view/window_saver.h"
#include "view/window_table.h"

namespace coverage {

/// What becomes of the coverage windows when a program is downloaded or the target is reset. UI thread only.
class WindowReload {
 public:
  /// All borrowed.
  WindowReload(const ViewServices& services, WindowTable& table, WindowOpener& opener, WindowSaver& saver,
               LineMarks& marks)
      : services_(services), table_(table), opener_(opener), saver_(saver), marks_(marks) {}

  /// Offers every window with unsaved data to be saved.
  void PromptSaveWindows();
  /// Clears every window, registers the displayed ranges again and fills the file windows anew.
  void AfterProgramReload(bool forceZero);
  /// Fills the file windows again that a reload had to leave as they were: the component was inactive, or the
  /// program's symbols were not there yet.
  void RebuildPendingFileWindows();

 private:
  void RebuildFileWindows();

  const ViewServices& services_;
  WindowTable& table_;
  WindowOpener& opener_;
  WindowSaver& saver_;
  LineMarks& marks_;
  bool reopenPending_ = false;  ///< file windows wait for the symbols of the program
};

}  // namespace coverage
