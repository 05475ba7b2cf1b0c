// What commands and the automation interface need of the object that owns them.
#pragma once

#include "model/command_model.h"
#include "model/reporter.h"
#include "persist/cov_file.h"
#include "qal/host.h"
#include "util/entry.h"

namespace coverage {

/// Implemented by the view control. UI thread only, outlives the commands.
class CommandHost {
 public:
  virtual qal::IQHost* Host() = 0;
  virtual CommandModel& Model() = 0;
  /// The owner's cache of the IDE's key texts.
  virtual ProjectKeys& Keys() = 0;
  /// Where messages that come up while a command works are shown.
  virtual Reporter& Messages() = 0;
  /// What a command's execution goes through; may be null.
  virtual EntryListener* Entries() = 0;
  /// Redraws the windows.
  virtual void RefreshViews() = 0;
  /// Recomputes and redraws everything that shows coverage, the editor columns included.
  virtual void BringUpToDate() = 0;

 protected:
  ~CommandHost() = default;
};

}  // namespace coverage
