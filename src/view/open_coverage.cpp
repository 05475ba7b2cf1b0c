#include "view/open_coverage.h"

#include <algorithm>

#include "commands/command_paths.h"
#include "platform/file_dialog.h"
#include "platform/paths.h"
#include "util/placeholder_resolver.h"
#include "util/texts.h"

namespace coverage {

void OpenCoverage::RecordRangeWindow(std::uint32_t start, std::uint32_t end) {
  services_.macro.RecordRangeWindow(start, end);
}

void OpenCoverage::RecordFileWindow(const std::string& typedPath, const std::string& fullPath) {
  services_.macro.RecordFileWindow(typedPath, fullPath);
}

void OpenCoverage::LoadRecentFile(const std::string& path) {
  // The files of the session are kept with placeholders.
  loader_.LoadChosen(PlaceholderResolver(services_.host).ExpandPlaceholders(path));
}

std::vector<std::string> OpenCoverage::RecentFiles() const {
  const auto& saved = services_.history.recentCoverageFiles;
  std::vector<std::string> files(saved.rbegin(), saved.rend());
  for (const std::string& file : services_.history.sessionCoverageFiles) {
    if (std::find(files.begin(), files.end(), file) == files.end()) files.push_back(file);
  }
  return files;
}

void OpenCoverage::Run() {
  using Result = CoverageSettingDialog::Result;
  DialogHistory& history = services_.history;
  CoverageSettingDialog dialog(services_.host,
                               {{history.starts, history.ends}, RecentFiles(), history.lastSourceFile},
                               history.lastTexts, *this);
  const auto answer = dialog.Ask(&services_.sink);
  // The IDE may have ended the component while the person was looking.
  if (!answer || !services_.sink.Exists()) return;
  if (answer->result == Result::kNewFromRange) {
    if (CoverageWindow* const window = services_.model.FirstRangeWindow()) {
      opener_.AddRange(*window, answer->range.start, answer->range.end);
    } else {
      opener_.NewRangeWindow(answer->range.start, answer->range.end);
    }
  } else if (answer->result == Result::kNewFromFile) {
    history.sourcePath = platform::DirectoryPart(answer->sourceFile);
    opener_.NewFileWindow(answer->sourceFile, answer->typedSourceFile);
  } else if (answer->result == Result::kAnother) {
    OpenAnotherFile();
  }
}

void OpenCoverage::OpenAnotherFile() {
  platform::FileDialogRequest request;
  request.defaultExtension = "COV";
  request.filter = Text(strings::kCoverageFilter);
  request.directory = platform::DirectoryPart(services_.history.coveragePath);
  if (request.directory.empty())
    request.directory = PlaceholderResolver(services_.host).ExpandPlaceholders("$(CONFIGDIR)");
  const auto path = platform::AskForFile(request);
  if (!path || !services_.sink.Exists()) return;
  if (!HasExtension(*path, ".COV")) return services_.reporter.Inform(strings::kInvalidLoadFileName);
  loader_.LoadChosen(*path);
}

}  // namespace coverage
