#pragma once

#include "dialogs/dialog_history.h"
#include "formatview/customizer.h"
#include "macro/macro_recorder.h"
#include "model/coverage_model.h"
#include "persist/cov_file.h"
#include "platform/window.h"
#include "qal/host.h"
#include "view/message_options.h"

namespace coverage {

/// What everything that works on coverage windows shares. Borrowed from the view control; `host` and
/// `customizer` may be null.
struct ViewServices {
  qal::IQHost* host;
  CUiCustomizer* customizer;
  CoverageModel& model;
  MessageOptions& options;
  MacroRecorder& macro;
  ProjectKeys& keys;
  DialogHistory& history;
  Reporter& reporter;
  platform::Window& sink;  ///< the control's window: dialogs open over it, deferred work is posted to it
};

}  // namespace coverage
