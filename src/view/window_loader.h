#pragma once

#include <string>

#include "view/view_services.h"
#include "view/window_opener.h"

namespace coverage {

/// Loads ".COV" files into coverage windows. UI thread only.
class WindowLoader {
 public:
  /// Both are borrowed.
  WindowLoader(const ViewServices& services, WindowOpener& opener) : services_(services), opener_(opener) {}

  /// A file that the person chose: noted for a macro and for the dialogs, then loaded. False when not
  /// everything was.
  bool LoadChosen(const std::string& path);
  /// What "Load Data" of a pane does. A file window that was opened takes the place of the instance's window.
  void LoadData(CoverageInstance& instance);

 private:
  class Target;

  bool Load(const std::string& path);

  const ViewServices& services_;
  WindowOpener& opener_;
};

}  // namespace coverage
