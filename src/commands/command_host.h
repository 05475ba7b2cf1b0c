// What commands and the automation interface need of the object that owns them.
#pragma once

#include "model/command_model.h"
#include "persist/cov_file.h"
#include "qal/host.h"

namespace coverage {

/// Implemented by the view control. UI thread only, outlives the commands.
class CommandHost {
 public:
  virtual qal::IQHost* Host() = 0;
  virtual CommandModel& Model() = 0;
  /// The owner's cache of the IDE's key texts.
  virtual ProjectKeys& Keys() = 0;
  /// Redraws the windows.
  virtual void RefreshViews() = 0;
  /// Recomputes and redraws everything that shows coverage, the editor columns included.
  virtual void BringUpToDate() = 0;
  /// Tells the debugger whether any coverage is wanted.
  virtual void UpdateCoverageSwitch() = 0;

 protected:
  ~CommandHost() = default;
};

}  // namespace coverage
