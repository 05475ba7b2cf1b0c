#pragma once

#include <cstdint>
#include <string>

#include "qal/project_services.h"
#include "view/view_services.h"
#include "view/window_opener.h"
#include "view/window_saver.h"

namespace coverage {

/// Keeps the open coverage windows in the IDE's session: their ranges, source files and enable states, and
/// what the dialogs remember; the counters stay behind, after an offer to save them to files. Lives for one
/// saving or restoring. UI thread only.
class SessionStore {
 public:
  /// Everything borrowed; `data` is open.
  SessionStore(const ViewServices& services, const WindowTable& table, WindowOpener& opener,
               WindowSaver& saver, qal::IQSessionData& data);

  void Save();
  void Restore();

 private:
  void SetText(const std::string& key, const std::string& value);
  void SetNumber(const std::string& key, std::uint32_t value);
  std::string GetText(const std::string& key);
  std::uint32_t GetNumber(const std::string& key);
  SavedRange GetInstance(const std::string& key);

  void SaveInstance(const std::string& key, const CoverageInstance& instance);
  std::uint32_t SaveRangeWindows();
  std::uint32_t SaveFileWindows();
  void OfferToSave();
  void RestoreRangeWindows();
  void RestoreFileWindow(std::uint32_t index);
  std::string Collapse(const std::string& path) const;
  std::string Expand(const std::string& path) const;

  const ViewServices& services_;
  const WindowTable& table_;
  WindowOpener& opener_;
  WindowSaver& saver_;
  qal::IQSessionData& data_;
};

}  // namespace coverage
