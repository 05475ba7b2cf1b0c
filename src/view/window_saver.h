#pragma once

#include <optional>
#include <string>
#include <vector>

#include "view/view_services.h"

namespace coverage {

/// Saves coverage windows to ".COV" files that the person names. Each gives true when the data are saved,
/// also when they were already and the person sees no need to save them again. A save that is cancelled or
/// fails leaves every instance as it was. UI thread only.
class WindowSaver {
 public:
  /// Borrowed.
  explicit WindowSaver(const ViewServices& services) : services_(services) {}

  bool SaveWindow(CoverageWindow& window);
  /// All range windows into one file, or this one only. A file window goes to SaveWindow.
  bool SaveRangeWindows(CoverageWindow& window, bool individual);
  /// What "Save Data" of a pane does: asks first when the data are already saved. The whole window of the
  /// instance is written.
  bool SaveData(CoverageInstance& instance);
  /// What the person is asked before a window is saved.
  std::string SaveQuestion(const CoverageWindow& window) const;

 private:
  using Windows = std::vector<CoverageModel::WindowPtr>;

  std::optional<std::string> AskPath(bool* resolved);
  bool Write(const std::string& path, const Windows& saved, WindowKind type, bool withFileLine);

  const ViewServices& services_;
};

}  // namespace coverage
