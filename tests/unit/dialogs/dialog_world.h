#pragma once

#include <deque>
#include <sstream>
#include <string>

#include "dialogs/range_input_dialog.h"
#include "doubles/host.h"
#include "doubles/project_services.h"
#include "doubles/scratch_disk.h"
#include "doubles/target.h"
#include "platform/script_presenter.h"

namespace coverage {

/// A person who fills in dialogs from lines separated by ";", in front of a debugger with a downloaded
/// program.
class DialogWorld {
 public:
  DialogWorld() {
    target.Function("C:\\space\\demo\\main.c", "main", 0x1000, 0x10ff);
    target.OfferTo(host);
    host.Offer(workspace);
    host.Offer(placeholders);
  }

  /// Runs `dialog` with the lines as the person, and gives what was shown besides dialogs: boxes and errors.
  template <class Action>
  std::string Act(const std::string& lines, Action dialog) {
    std::istringstream input(lines);
    std::string shown;
    platform::ScriptPresenter person(
        [&input]() -> std::optional<std::string> {
          std::string line;
          if (!std::getline(input, line, ';')) return std::nullopt;
          return line;
        },
        [&shown](std::string_view line) {
          if (line.starts_with("[") || line.starts_with("error")) shown.append(line).push_back('\n');
        });
    const platform::PresenterScope scope(person);
    dialog();
    return shown;
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
