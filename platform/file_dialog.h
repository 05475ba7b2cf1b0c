#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/api.h"

namespace platform {

/// The platform's dialogs for choosing a file to open or to save. The request is data; the presenter brings
/// the path. Paths are in the product's form. User-interface thread.
struct FileDialogRequest {
  static constexpr std::uint32_t kHideReadOnly = 4, kOverwritePrompt = 2;

  bool save = false;
  std::string title;             ///< empty for "Open" or "Save As"
  std::string defaultExtension;  ///< without the dot; empty for none
  std::string fileName;          ///< shown first
  std::string directory;         ///< to begin in; empty for the current one
  std::string filter;            ///< "Name|*.a|Name|*.b;*.c||"
  std::uint32_t flags = 0;
};

/// Asks the presenter. A relative answer is put below the request's directory; a name without an extension
/// gets the default one. Saving over a file that exists asks yes or no when kOverwritePrompt is set; no asks
/// for another file. Nothing when the person cancels, or there is no presenter.
PLATFORM_API std::optional<std::string> AskForFile(const FileDialogRequest& request);

/// Names and patterns of a filter text; a name without a pattern is left out.
PLATFORM_API std::vector<std::pair<std::string, std::string>> FilterEntries(std::string_view filter);

}  // namespace platform
