#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "commands/command_paths.h"
#include "dialogs/coverage_dialog.h"

namespace coverage {

/// Base of the dialogs with a file name: its edit field refuses what no file name may hold, and the button
/// beside it offers placeholders.
class FileNameDialog : public CoverageDialog {
 protected:
  struct FileControls {
    std::uint32_t edit;
    std::uint32_t arrow;
  };
  FileNameDialog(std::uint32_t templateId, EndButtons buttons, FileControls file, qal::IQHost* host)
      : CoverageDialog(templateId, buttons, host), editId_(file.edit), arrowId_(file.arrow) {}

  void OnInitDialog() override;
  std::unique_ptr<platform::Control> MakeControl(const platform::ControlTemplate& resource) override;

  std::string FileName() const { return TypedIn(editId_); }
  void SetFileName(std::string_view name) { SetItemText(editId_, name); }
  /// Lets the person choose a file; the chosen path replaces the field's text.
  void BrowseForSource();
  void BrowseForCoverage(bool save);
  /// What is typed as a coverage file: ".cov" is added to a name without a dot, and a relative name is taken
  /// below `directory`.
  ResolvedPath CoveragePath(std::string_view directory, std::string_view name) const;
  /// What is typed as a source file: ".c" is added to a name without a dot. Empty after a complaint.
  std::string CheckedSourceName();

 private:
  void Browse(bool save, std::string_view extension, std::uint32_t filterId, std::string_view placeholder);

  std::uint32_t editId_;
  std::uint32_t arrowId_;
};

/// "Save Data": under which name. A relative one is taken below the current directory.
class SaveDataDialog final : public FileNameDialog {
 public:
  struct Answer {
    std::string path;  ///< absolute
    bool resolved =
        true;  ///< false: not every placeholder had a value, and `path` is in the project's directory
  };

  SaveDataDialog(qal::IQHost* host, std::string currentName);
  std::optional<Answer> Ask(platform::Window* owner);

 protected:
  void OnInitDialog() override;
  void OnOK() override;
  platform::LResult OnMessage(const platform::Message& message) override;

 private:
  void OnBrowse() { BrowseForCoverage(true); }
  bool DirectoryReady(const std::string& path);

  std::string currentName_;
  Answer answer_;
};

/// "Load Data": from which file. A relative name is taken beside the current one.
class LoadDataDialog final : public FileNameDialog {
 public:
  /// Without a directory in `currentName`, relative names are taken below kCoverageFilesPlaceholder.
  LoadDataDialog(qal::IQHost* host, std::string currentName);
  /// The path, absolute.
  std::optional<std::string> Ask(platform::Window* owner);

 protected:
  void OnInitDialog() override;
  void OnOK() override;
  platform::LResult OnMessage(const platform::Message& message) override;

 private:
  void OnBrowse() { BrowseForCoverage(false); }

  std::string currentName_;
  std::string path_;
};

/// Directory of coverage files when no name tells.
inline constexpr std::string_view kCoverageFilesPlaceholder = "$(CONFIGDIR)";

}  // namespace coverage
