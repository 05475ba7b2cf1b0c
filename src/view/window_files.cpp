#include <algorithm>

#include "commands/command_paths.h"
#include "dialogs/file_name_dialog.h"
#include "persist/cov_output.h"
#include "persist/section_writer.h"
#include "platform/files.h"
#include "platform/message_box.h"
#include "platform/paths.h"
#include "platform/text.h"
#include "util/placeholder_resolver.h"
#include "util/texts.h"
#include "view/coverage_windows.h"

// Saving coverage windows to coverage files.

namespace coverage {

std::optional<std::string> CoverageWindows::AskSavePath(bool* resolved) {
  const auto answer = SaveDataDialog(host, memory.coveragePath).Ask(&owner.SinkWindow());
  if (!answer) return std::nullopt;
  if (resolved != nullptr) *resolved = answer->resolved;
  memory.coveragePath = answer->path;
  return answer->path;
}

bool CoverageWindows::WriteWindows(const std::string& path, const std::vector<StatisticsPane*>& saved,
                                   WindowKind type, bool withFileLine) {
  platform::TextWriter file;
  const auto failed = [] {
    platform::ShowMessageBox(Text(strings::kDataCannotBeSaved), platform::Icon::kInformation);
    return false;
  };
  if (!file.Open(path)) return failed();
  const ProjectNames names = CurrentProjectNames(host, keys);
  CovHeader header{
      names.configuration, names.project, type == WindowKind::kFile ? CovType::kFile : CovType::kRange, {}};
  if (withFileLine && !saved.empty()) {
    header.fileName = PlaceholderResolver(host).CollapsePlaceholders(saved.front()->Record().sourceFile);
  }
  CovOutput out(file);
  out.Header(header, withFileLine);
  for (StatisticsPane* window : saved) {
    for (const auto& [number, instance] : window->Record().instances) {
      WriteInstanceSection(out, *instance, number, host, instructions);
    }
  }
  out.Finish();
  if (file.Close()) return true;
  // What is not in the file is not saved.
  for (StatisticsPane* window : saved) {
    for (const auto& [number, instance] : window->Record().instances) {
      instance->saved = 0;
      instance->modified = 1;
    }
  }
  return failed();
}

void CoverageWindows::NoteSaved(const std::string& path) {
  if (!HasExtension(path, ".COV")) return;
  auto& files = memory.recentCoverageFiles;
  const auto known = std::find_if(files.begin(), files.end(),
                                  [&](const std::string& file) { return platform::EqualNoCase(file, path); });
  *(known != files.end() ? known : files.emplace(known)) = path;
}

bool CoverageWindows::SaveWindow(StatisticsPane& window) {
  if (window.Record().instances.empty()) return false;
  const auto path = AskSavePath(nullptr);
  if (!path || !IsOpen(&window)) return false;
  macro.RecordSave(*path);
  if (!WriteWindows(*path, {&window}, window.Record().kind, true)) return false;
  NoteSaved(*path);
  return true;
}

bool CoverageWindows::SaveRangeWindows(StatisticsPane& window, bool individual) {
  if (window.Record().kind == WindowKind::kFile) return SaveWindow(window);
  const auto path = AskSavePath(nullptr);
  if (!path || !IsOpen(&window)) return false;
  std::vector<StatisticsPane*> saved{&window};
  if (!individual) {
    saved = windows;
    std::erase_if(saved,
                  [](const StatisticsPane* each) { return each->Record().kind != WindowKind::kRange; });
  }
  if (!WriteWindows(*path, saved, WindowKind::kRange, false)) return false;
  NoteSaved(*path);
  return true;
}

bool CoverageWindows::AlreadySaved(const DataPane& pane) const {
  const StatisticsPane& window = *pane.Statistics();
  if (window.Record().kind == WindowKind::kRange) {
    return pane.Instance().saved == 1 && pane.Instance().modified == 0;
  }
  const auto& instances = window.Record().instances;
  return std::all_of(instances.begin(), instances.end(),
                     [](const auto& each) { return each.second->saved == 1; });
}

void CoverageWindows::SavePane(DataPane& pane) {
  StatisticsPane* const window = pane.Statistics();
  if (window == nullptr) return;
  if (AlreadySaved(pane) && options.CanAsk(MessageOption::kSaveAgain) &&
      !options.Ask(MessageOption::kSaveAgain, MessageOptions::Question(MessageOption::kSaveAgain))) {
    return;
  }
  if (window->Record().kind == WindowKind::kFile) {
    SaveWindow(*window);
    return;
  }
  bool resolved = true;
  const auto path = AskSavePath(&resolved);
  if (!path) return;
  if (!resolved && platform::ShowMessageBox(Text(strings::kSaveUnderProject), platform::Icon::kQuestion,
                                            platform::Buttons::kYesNo) != platform::Answer::kYes) {
    platform::ShowMessageBox(Text(strings::kDataCannotBeSaved), platform::Icon::kInformation);
    return;
  }
  macro.RecordSave(*path);
  if (WriteWindows(*path, {window}, WindowKind::kRange, false)) NoteSaved(*path);
}

}  // namespace coverage
