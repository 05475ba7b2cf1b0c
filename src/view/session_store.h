#pragma once

#include <cstdint>
#include <string>

#include "formatview/command_sink.h"
#include "qal/project_services.h"
#include "view/coverage_windows.h"

namespace coverage {

/// Keeps the open coverage windows in the IDE's session: their ranges, source files and enable states, and
/// what the dialogs remember; the counters stay behind, after an offer to save them to files. Lives for one
/// saving or restoring. UI thread only.
class SessionStore {
 public:
  /// Everything borrowed; `data` is open.
  SessionStore(qal::IQHost* host, CoverageWindows& windows, MessageOptions& options, platform::Window& sink,
               qal::IQSessionData& data);

  void Save();
  void Restore();

 private:
  using StatisticsPane = CoverageWindows::StatisticsPane;

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

  qal::IQHost* host_;
  CoverageWindows& windows_;
  MessageOptions& options_;
  platform::Window& sink_;
  qal::IQSessionData& data_;
};

}  // namespace coverage
