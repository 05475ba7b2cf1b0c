#include "platform/file_dialog.h"

#include "platform/files.h"
#include "platform/modal.h"
#include "platform/paths.h"
#include "platform/presenter.h"
#include "platform/text.h"

namespace platform {

std::optional<std::string> AskForFile(const FileDialogRequest& request) {
  Presenter* presenter = CurrentPresenter();
  while (presenter) {
    const auto answer = [&] {
      const ModalScope modal;
      return presenter->AskFile(request);
    }();
    if (!answer || answer->empty()) return std::nullopt;
    std::string path = FullPath(*answer, request.directory);
    if (!request.defaultExtension.empty() && ExtensionPart(path).empty())
      path += "." + request.defaultExtension;
    const bool ask =
        request.save && (request.flags & FileDialogRequest::kOverwritePrompt) != 0 && PathExists(path);
    if (!ask || ShowMessageBox(path + " already exists.\nDo you want to replace it?", Icon::kExclamation,
                               Buttons::kYesNo) == Answer::kYes) {
      return path;
    }
  }
  return std::nullopt;
}

std::vector<std::pair<std::string, std::string>> FilterEntries(std::string_view filter) {
  std::vector<std::pair<std::string, std::string>> entries;
  while (!filter.empty()) {
    const std::size_t nameEnd = FindChar(filter, '|');
    if (nameEnd == std::string_view::npos) break;
    const std::size_t patternEnd = FindChar(filter, '|', nameEnd + 1);
    if (patternEnd == std::string_view::npos) break;
    if (nameEnd > 0 && patternEnd > nameEnd + 1) {
      entries.emplace_back(Trim(filter.substr(0, nameEnd)),
                           Trim(filter.substr(nameEnd + 1, patternEnd - nameEnd - 1)));
    }
    filter.remove_prefix(patternEnd + 1);
  }
  return entries;
}

}  // namespace platform
