#pragma once

#include <string>
#include <vector>

#include "dialogs/coverage_setting_dialog.h"
#include "view/window_loader.h"
#include "view/window_opener.h"

namespace coverage {

/// The flow of the command "Coverage...": asks what to open, and opens it. UI thread only.
class OpenCoverage final : public CoverageSettingHooks {
 public:
  /// All borrowed.
  OpenCoverage(const ViewServices& services, WindowOpener& opener, WindowLoader& loader)
      : services_(services), opener_(opener), loader_(loader) {}

  void Run();

  // While the dialog is still open.
  void RecordRangeWindow(std::uint32_t start, std::uint32_t end) override;
  void RecordFileWindow(const std::string& typedPath, const std::string& fullPath) override;
  void LoadRecentFile(const std::string& path) override;

 private:
  std::vector<std::string> RecentFiles() const;
  void OpenAnotherFile();

  const ViewServices& services_;
  WindowOpener& opener_;
  WindowLoader& loader_;
};

}  // namespace coverage
