#include "view/session_store.h"

#include <algorithm>
#include <map>
#include <utility>

#include "dialogs/small_dialogs.h"
#include "persist/cov_reader.h"
#include "platform/text.h"
#include "util/placeholder_resolver.h"

namespace coverage {
namespace {

// Keys are put together from these words and numbers.
const std::string kWindows = "CoverageCtrlViews";
const std::string kFileWindows = "CoverageCtrlViewsFromDiffFile";
const std::string kFileWindow = "CoverageCtrlViewsFile";
const std::string kSourceFile = "SourceFile";
const std::string kInstance = "CoverageWnd";
const std::string kFunctionWindow = "CoverageWndFile";
const std::string kFunction = "Func";
const std::string kViewKey = "CoverageWndInstanceKey";
const std::string kEnable = "Enable";
const std::string kStart = "StartAddr";
const std::string kEnd = "EndAddr";
const std::string kFunctionName = "FuncName";
const std::string kFileCount = "CoverageFileName";
const std::string kFile = "FileName";

const std::string kLastStart = "JepCov_Open_Start";
const std::string kLastEnd = "JepCov_Open_End";
const std::string kCoveragePath = "JepCov_Cov_SL";
const std::string kSourcePath = "JepCov_Src_Open";

constexpr std::size_t kMostFiles = 4;
// A session is somebody else's data: no number in it makes the views run on for ever.
constexpr std::uint32_t kMostFileWindows = 100;
constexpr std::uint32_t kMostRanges = 10'000;
constexpr std::uint32_t kMostFunctions = 100'000;  ///< of one file

/// What the keys of a file window's functions begin with.
std::string FunctionKey(std::uint32_t window) {
  std::string key = kFunctionWindow;
  key += std::to_string(window);
  key += kFunction;
  return key;
}

}  // namespace

SessionStore::SessionStore(const ViewServices& services, const WindowTable& table, WindowOpener& opener,
                           WindowSaver& saver, qal::IQSessionData& data)
    : services_(services), table_(table), opener_(opener), saver_(saver), data_(data) {}

void SessionStore::SetText(const std::string& key, const std::string& value) {
  data_.SetSessionText(platform::Wide(key).get(), platform::Wide(value).get());
}

void SessionStore::SetNumber(const std::string& key, std::uint32_t value) {
  data_.SetSessionNumber(platform::Wide(key).get(), value);
}

std::string SessionStore::GetText(const std::string& key) {
  platform::WideOut value;
  const bool got =
      qal::Succeeded(data_.GetSessionText(platform::Wide(key).get(), platform::Wide("").get(), value.put()));
  return got ? value.str() : std::string{};
}

std::uint32_t SessionStore::GetNumber(const std::string& key) {
  std::uint32_t value = 0;
  return qal::Succeeded(data_.GetSessionNumber(platform::Wide(key).get(), 0, &value)) ? value : 0;
}

std::string SessionStore::Collapse(const std::string& path) const {
  return PlaceholderResolver(services_.host).CollapsePlaceholders(path);
}

std::string SessionStore::Expand(const std::string& path) const {
  return PlaceholderResolver(services_.host).ExpandPlaceholders(path);
}

// Saving.

void SessionStore::SaveInstance(const std::string& key, const CoverageInstance& instance) {
  SetNumber(key + kEnable, instance.enableStatus);
  SetNumber(key + kStart, instance.start);
  SetNumber(key + kEnd, instance.end);
  if (!instance.functionName.empty()) SetText(key + kFunctionName, instance.functionName);
}

std::uint32_t SessionStore::SaveRangeWindows() {
  std::vector<CoverageModel::WindowPtr> ranges = services_.model.Windows();
  std::erase_if(ranges, [](const auto& window) { return window->isFile(); });
  SetNumber(kWindows, static_cast<std::uint32_t>(ranges.size()));
  std::uint32_t unsaved = 0;
  std::size_t global = 0;
  for (std::size_t i = 0; i < ranges.size(); ++i) {
    const auto& instances = ranges[i]->instances;
    SetNumber(kWindows + std::to_string(i), static_cast<std::uint32_t>(instances.size()));
    for (const auto& [number, instance] : instances) {
      SaveInstance(kInstance + std::to_string(global), *instance);
      SetText(kViewKey + std::to_string(global), ranges[i]->viewKey);
      unsaved += instance->modified == 1;
      ++global;
    }
  }
  return unsaved;
}

std::uint32_t SessionStore::SaveFileWindows() {
  std::vector<CoverageModel::WindowPtr> files = services_.model.Windows();
  std::erase_if(files, [](const auto& window) { return !window->isFile(); });
  SetNumber(kFileWindows, static_cast<std::uint32_t>(files.size()));
  std::uint32_t unsaved = 0;
  for (std::size_t i = 0; i < files.size(); ++i) {
    const std::string key = kFileWindow + std::to_string(i);
    const auto& instances = files[i]->instances;
    SetNumber(key, static_cast<std::uint32_t>(instances.size()));
    SetText(key + kSourceFile, Collapse(files[i]->sourceFile));
    SetText(key + kViewKey + std::to_string(i), files[i]->viewKey);
    const std::string functionKey = FunctionKey(i);
    for (const auto& [number, instance] : instances) {
      SaveInstance(functionKey + std::to_string(number - 1), *instance);
      unsaved += instance->modified == 1;
    }
  }
  return unsaved;
}

void SessionStore::OfferToSave() {
  if (!services_.options.Asks(MessageOption::kSaveAtSessionSaving)) return;
  const auto offered = services_.model.Windows();
  for (const auto& window : offered) {
    // While a question is open the IDE may close windows.
    if (!window->open) continue;
    const auto& instances = window->instances;
    const auto enabled = [](const auto& each) { return each.second->enableStatus == 1; };
    const auto last = window->isFile() || instances.empty() ? instances.end() : std::next(instances.begin());
    if (std::none_of(instances.begin(), last, enabled)) continue;
    using Choice = SavePromptDialog::Choice;
    const Choice choice =
        SavePromptDialog(services_.host, saver_.SaveQuestion(*window), true).Ask(&services_.sink);
    if (choice == Choice::kNoToAll) return;
    if (choice == Choice::kNo || !window->open) continue;
    saver_.SaveRangeWindows(*window, choice == Choice::kYes);
    if (choice == Choice::kYesToAll) return;
  }
}

void SessionStore::Save() {
  const DialogHistory& memory = services_.history;
  SetText(kLastStart, memory.lastTexts.start);
  SetText(kLastEnd, memory.lastTexts.end);
  SetText(kCoveragePath, Collapse(memory.coveragePath));
  SetText(kSourcePath, Collapse(memory.sourcePath));
  const std::uint32_t ranges = SaveRangeWindows();
  const std::uint32_t functions = SaveFileWindows();
  if (ranges + functions > 0) OfferToSave();

  const auto& files = memory.recentCoverageFiles;
  const std::size_t count = std::min(files.size(), kMostFiles);
  SetNumber(kFileCount, static_cast<std::uint32_t>(count));
  for (std::size_t i = 0; i < count; ++i) {
    SetText(kFile + std::to_string(i), Collapse(files[files.size() - 1 - i]));
  }
}

// Restoring.

SavedRange SessionStore::GetInstance(const std::string& key) {
  SavedRange saved;
  saved.enableStatus = GetNumber(key + kEnable);
  saved.start = GetNumber(key + kStart);
  saved.end = GetNumber(key + kEnd);
  if (saved.start > saved.end) std::swap(saved.start, saved.end);
  // A range ends on the last byte of a step; a single address stays as it is.
  if (saved.end != saved.start && saved.end != 0 && saved.end % 2 == 0) --saved.end;
  return saved;
}

void SessionStore::RestoreRangeWindows() {
  const std::uint32_t count = GetNumber(kWindows);
  const std::size_t panes = table_.PaneCount();
  std::vector<SavedRange> ranges;
  CellBudget budget;
  std::uint32_t global = 0;
  for (std::uint32_t i = 0; i < count && global < kMostRanges; ++i) {
    const std::uint32_t instances = std::max(GetNumber(kWindows + std::to_string(i)), 1u);
    for (std::uint32_t k = 0; k < instances && global < kMostRanges; ++k, ++global) {
      const SavedRange saved = GetInstance(kInstance + std::to_string(global));
      if (!budget.Take(saved.start, saved.end)) continue;
      // From 0 to 0 is no range: the next one takes its place.
      if (!ranges.empty() && ranges.back().start == 0 && ranges.back().end == 0) ranges.pop_back();
      ranges.push_back(saved);
    }
  }
  opener_.RestoreRanges(ranges, panes < count ? GetText(kViewKey + std::to_string(panes)) : std::string{});
}

void SessionStore::RestoreFileWindow(std::uint32_t index) {
  const std::string key = kFileWindow + std::to_string(index);
  const std::uint32_t count = std::min(GetNumber(key), kMostFunctions);
  const std::string typed = GetText(key + kSourceFile);
  const std::string viewKey = GetText(key + kViewKey + std::to_string(index));
  std::multimap<std::string, SavedRange> functions;
  for (std::uint32_t k = 0; k < count; ++k) {
    const std::string function = FunctionKey(index) + std::to_string(k);
    const std::string name = GetText(function + kFunctionName);
    if (name.empty()) continue;
    functions.emplace(name, GetInstance(function));
  }
  if (typed.empty()) return;
  CoverageWindow* const window = opener_.NewFileWindow(Expand(typed), typed, viewKey);
  if (window == nullptr) return;
  // By name, since the program may have changed; functions of one name by their place.
  for (const auto& [number, instance] : window->instances) {
    const auto [first, end] = functions.equal_range(instance->functionName);
    if (first == end) continue;
    const auto same = std::find_if(
        first, end, [start = instance->start](const auto& each) { return each.second.start == start; });
    services_.model.Enable(*instance, (same == end ? first : same)->second.enableStatus != 0);
  }
}

void SessionStore::Restore() {
  DialogHistory& memory = services_.history;
  memory.lastTexts.start = GetText(kLastStart);
  memory.lastTexts.end = GetText(kLastEnd);
  memory.coveragePath = Expand(GetText(kCoveragePath));
  memory.sourcePath = Expand(GetText(kSourcePath));
  RestoreRangeWindows();
  const std::uint32_t files = std::min(GetNumber(kFileWindows), kMostFileWindows);
  for (std::uint32_t i = 0; i < files; ++i) RestoreFileWindow(i);
  const std::uint32_t named = std::min(GetNumber(kFileCount), static_cast<std::uint32_t>(kMostFiles));
  for (std::uint32_t i = 0; i < named; ++i) {
    const std::string file = GetText(kFile + std::to_string(i));
    if (!file.empty()) memory.sessionCoverageFiles.push_back(file);
  }
}

}  // namespace coverage
