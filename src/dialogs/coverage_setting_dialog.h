#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "dialogs/range_input_dialog.h"

namespace coverage {

/// What the dialog has done while it is still open: recorded for a macro, or loaded.
class CoverageSettingHooks {
 public:
  virtual void RecordRangeWindow(std::uint32_t start, std::uint32_t end) = 0;
  virtual void RecordFileWindow(const std::string& typedPath, const std::string& fullPath) = 0;
  /// Loads a recent coverage file and shows what it holds.
  virtual void LoadRecentFile(const std::string& path) = 0;

 protected:
  ~CoverageSettingHooks() = default;
};

/// "Coverage Setting": what to open next.
class CoverageSettingDialog final : public RangeInputDialog {
 public:
  static constexpr std::size_t kMostRecentFiles = 4;

  /// Texts last accepted in this dialog; shown again and replaced on OK.
  struct LastTexts {
    std::string start;
    std::string end;
  };
  struct Request {
    RecentRanges recent;
    /// Newest first, with or without placeholders; the first kMostRecentFiles, each once however its path is
    /// written, are offered.
    std::vector<std::string> recentFiles;
    std::string lastSourceFile;
  };
  enum class Result : std::uint8_t { kNewFromRange, kNewFromFile, kRecent, kAnother };
  struct Answer {
    Result result = Result::kNewFromRange;
    AddressRange range;           ///< of kNewFromRange
    std::string typedSourceFile;  ///< of kNewFromFile
    std::string sourceFile;       ///< of kNewFromFile: expanded
  };

  CoverageSettingDialog(qal::IQHost* host, Request request, LastTexts& last, CoverageSettingHooks& hooks);
  std::optional<Answer> Ask(platform::Window* owner);

 protected:
  void OnInitDialog() override;
  void OnOK() override;
  platform::LResult OnMessage(const platform::Message& message) override;

 private:
  void OnFileChoice();
  void OnBrowse() { BrowseForSource(); }
  void OnLabel(std::uint32_t buttonId);
  std::vector<std::string> OfferedFiles() const;
  void EnableControls();
  bool ProgramDownloaded() const;

  Request request_;
  LastTexts& last_;
  CoverageSettingHooks& hooks_;
  Answer answer_;
};

}  // namespace coverage
