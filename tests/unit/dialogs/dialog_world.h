#pragma once

#include <functional>
#include <string>

#include "dialogs/range_input_dialog.h"
#include "doubles/host.h"
#include "doubles/project_services.h"
#include "doubles/scratch_disk.h"
#include "doubles/script.h"
#include "doubles/target.h"

namespace coverage {

/// A person who fills in dialogs from lines separated by ";", in front of a debugger with a downloaded
/// program.
class DialogWorld {
 public:
  DialogWorld() {
    target.Function("C:\\space\\demo\\main.c", "main", 0x1000, 0x10ff);
    target.OfferTo(host);
    host.OfferAll(workspace, placeholders);
  }

  /// What was shown besides dialogs: boxes and errors.
  std::string Act(const std::string& lines, const std::function<void()>& dialog) {
    return doubles::Script(lines).Run(dialog).shown;
  }

  RecentRanges recent() { return {starts, ends}; }
  RecentList starts;
  RecentList ends;
  doubles::HostDouble host;
  doubles::TargetDouble target;
  doubles::StubWorkspace workspace;
  doubles::StubCustomPlaceholders placeholders;
};

}  // namespace coverage
