#pragma once

#include "panes/pane_host.h"
#include "view/view_services.h"
#include "view/window_saver.h"

namespace coverage {

/// The one question before data go: "Coverage data will be cleared.", with a check box that saves them first.
/// When it is asked, about what, and what follows from the answers stands in one table. UI thread only.
class DataQuestions {
 public:
  /// Both are borrowed.
  DataQuestions(const ViewServices& services, WindowSaver& saver) : services_(services), saver_(saver) {}

  /// Whether the operation on the instance goes on. False, and nothing has changed, when the person
  /// cancelled, the wanted save was cancelled or failed, or the instance went away meanwhile. For an
  /// operation on a whole window any of its instances will do, but for kClearAll the first that is modified
  /// and not saved.
  bool MayLose(DataLoss loss, CoverageInstance& instance);

 private:
  const ViewServices& services_;
  WindowSaver& saver_;
};

}  // namespace coverage
