#include "view/session_store.h"

#include <algorithm>
#include <map>

#include "dialogs/small_dialogs.h"
#include "model/coverage_cell.h"
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
constexpr std::uint32_t kMostWindows = 1000;
constexpr std::uint32_t kMostInstances = 20000;

/// What the keys of a file window's functions begin with.
std::string FunctionKey(std::uint32_t window) {
  std::string key = kFunctionWindow;
  key += std::to_string(window);
  key += kFunction;
  return key;
}

}  // namespace

SessionStore::SessionStore(qal::IQHost* host, CoverageWindows& windows, MessageOptions& options,
                           platform::Window& sink, qal::IQSessionData& data)
    : host_(host), windows_(windows), options_(options), sink_(sink), data_(data) {}

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
  return PlaceholderResolver(host_).CollapsePlaceholders(path);
}

std::string SessionStore::Expand(const std::string& path) const {
  return PlaceholderResolver(host_).ExpandPlaceholders(path);
}

// Saving.

void SessionStore::SaveInstance(const std::string& key, const CoverageInstance& instance) {
  SetNumber(key + kEnable, instance.enableStatus);
  SetNumber(key + kStart, instance.start);
  SetNumber(key + kEnd, instance.end);
  if (!instance.functionName.empty()) SetText(key + kFunctionName, instance.functionName);
}

std::uint32_t SessionStore::SaveRangeWindows() {
  std::vector<const StatisticsPane*> ranges;
  for (const StatisticsPane* window : windows_.Windows()) {
    if (window->Record().kind == WindowKind::kRange) ranges.push_back(window);
  }
  SetNumber(kWindows, static_cast<std::uint32_t>(ranges.size()));
  std::uint32_t unsaved = 0;
  std::size_t global = 0;
  for (std::size_t i = 0; i < ranges.size(); ++i) {
    const auto& instances = ranges[i]->Record().instances;
    SetNumber(kWindows + std::to_string(i), static_cast<std::uint32_t>(instances.size()));
    for (const auto& [number, instance] : instances) {
      SaveInstance(kInstance + std::to_string(global), *instance);
      SetText(kViewKey + std::to_string(global), windows_.ViewKeyOf(*ranges[i]));
      unsaved += instance->modified == 1;
      ++global;
    }
  }
  return unsaved;
}

std::uint32_t SessionStore::SaveFileWindows() {
  std::vector<const StatisticsPane*> files;
  for (const StatisticsPane* window : windows_.Windows()) {
    if (window->Record().kind == WindowKind::kFile) files.push_back(window);
  }
  SetNumber(kFileWindows, static_cast<std::uint32_t>(files.size()));
  std::uint32_t unsaved = 0;
  for (std::size_t i = 0; i < files.size(); ++i) {
    const std::string key = kFileWindow + std::to_string(i);
    const auto& instances = files[i]->Record().instances;
    SetNumber(key, static_cast<std::uint32_t>(instances.size()));
    SetText(key + kSourceFile, Collapse(files[i]->Record().sourceFile));
    SetText(key + kViewKey + std::to_string(i), windows_.ViewKeyOf(*files[i]));
    const std::string functionKey = FunctionKey(i);
    for (const auto& [number, instance] : instances) {
      SaveInstance(functionKey + std::to_string(number - 1), *instance);
      unsaved += instance->modified == 1;
    }
  }
  return unsaved;
}

void SessionStore::OfferToSave() {
  if (!options_.Asks(MessageOption::kSaveAtSessionSaving)) return;
  const std::vector<StatisticsPane*> offered = windows_.Windows();
  for (StatisticsPane* window : offered) {
    const auto& instances = window->Record().instances;
    const auto enabled = [](const auto& each) { return each.second->enableStatus == 1; };
    const bool isFile = window->Record().kind == WindowKind::kFile;
    const auto last = isFile || instances.empty() ? instances.end() : std::next(instances.begin());
    if (std::none_of(instances.begin(), last, enabled)) continue;
    using Choice = SavePromptDialog::Choice;
    const Choice choice = SavePromptDialog(host_, windows_.SaveQuestion(*window), true).Ask(&sink_);
    if (choice == Choice::kNoToAll) return;
    if (choice == Choice::kNo) continue;
    windows_.SaveRangeWindows(*window, choice == Choice::kYes);
    if (choice == Choice::kYesToAll) return;
  }
}

void SessionStore::Save() {
  const CoverageWindows::Remembered& memory = windows_.Memory();
  SetText(kLastStart, memory.lastTexts.start);
  SetText(kLastEnd, memory.lastTexts.end);
  SetText(kCoveragePath, Collapse(memory.coveragePath));
  SetText(kSourcePath, Collapse(memory.sourcePath));
  const std::uint32_t ranges = SaveRangeWindows();
  const std::uint32_t functions = SaveFileWindows();
  if (ranges + functions > 0) OfferToSave();

  const auto& files = windows_.Memory().recentCoverageFiles;
  const std::size_t count = std::min(files.size(), kMostFiles);
  SetNumber(kFileCount, static_cast<std::uint32_t>(count));
  for (std::size_t i = 0; i < count; ++i) {
    SetText(kFile + std::to_string(i), Collapse(files[files.size() - 1 - i]));
  }
}

// Restoring.

SessionStore::SavedInstance SessionStore::GetInstance(const std::string& key) {
  SavedInstance saved;
  saved.enableStatus = GetNumber(key + kEnable);
  saved.start = GetNumber(key + kStart);
  saved.end = GetNumber(key + kEnd);
  if (saved.end != 0 && saved.end % 2 == 0) --saved.end;
  return saved;
}

void SessionStore::RestoreRange(std::uint32_t number, const std::string& viewKey) {
  const SavedInstance saved = GetInstance(kInstance + std::to_string(number));
  if (saved.start > saved.end || saved.end - saved.start > kMaxRangeSpan) return;
  StatisticsPane* window = windows_.FirstRangeWindow();
  CoverageWindows::DataPane* pane = nullptr;
  if (window == nullptr) {
    window = windows_.NewRangeWindow(saved.start, saved.end, viewKey);
    if (window != nullptr) pane = window->Pane(1);
  } else {
    pane = windows_.AddRange(*window, saved.start, saved.end, false);
  }
  if (pane == nullptr) return;
  windows_.Memory().starts.Note(platform::Format("%08x", saved.start));
  windows_.Memory().ends.Note(platform::Format("%08x", saved.end));
  if (pane->Instance().rangeSet == 0) {
    sink_.Post(sink_message::kCloseChild, window->Frame());
    return;
  }
  pane->SetEnabled(saved.enableStatus != 0 ? 1 : 0);
  window->RefreshFromDebugger();
}

void SessionStore::RestoreRangeWindows() {
  const std::uint32_t count = std::min(GetNumber(kWindows), kMostWindows);
  const std::string viewKey = count == 0 ? std::string{} : GetText(kViewKey + "0");
  std::uint32_t global = 0;
  for (std::uint32_t i = 0; i < count; ++i) {
    const std::uint32_t instances = std::max(GetNumber(kWindows + std::to_string(i)), 1u);
    for (std::uint32_t k = 0; k < instances && global < kMostInstances; ++k) RestoreRange(global++, viewKey);
  }
}

void SessionStore::RestoreFileWindow(const std::string& key, const std::string& functionKey,
                                     std::uint32_t index) {
  const std::uint32_t count = std::min(GetNumber(key), kMostInstances);
  const std::string typed = GetText(key + kSourceFile);
  const std::string viewKey = GetText(key + kViewKey + std::to_string(index));
  std::map<std::string, std::uint32_t> enabled;
  for (std::uint32_t k = 0; k < count; ++k) {
    const std::string function = functionKey + std::to_string(k);
    enabled[GetText(function + kFunctionName)] = GetNumber(function + kEnable);
  }
  if (typed.empty()) return;
  StatisticsPane* const window = windows_.NewFileWindow(Expand(typed), typed, viewKey);
  if (window == nullptr) return;
  for (const auto& [number, instance] : window->Record().instances) {
    const auto state = enabled.find(instance->functionName);
    if (state != enabled.end() && instance->rangeSet != 0) instance->SetEnabled(state->second != 0 ? 1 : 0);
  }
  window->RefreshFromDebugger();
}

void SessionStore::Restore() {
  CoverageWindows::Remembered& memory = windows_.Memory();
  memory.lastTexts.start = GetText(kLastStart);
  memory.lastTexts.end = GetText(kLastEnd);
  memory.coveragePath = Expand(GetText(kCoveragePath));
  memory.sourcePath = Expand(GetText(kSourcePath));
  RestoreRangeWindows();
  const std::uint32_t files = std::min(GetNumber(kFileWindows), kMostWindows);
  for (std::uint32_t i = 0; i < files; ++i) {
    RestoreFileWindow(kFileWindow + std::to_string(i), FunctionKey(i), i);
  }
  const std::uint32_t named = std::min(GetNumber(kFileCount), static_cast<std::uint32_t>(kMostFiles));
  for (std::uint32_t i = 0; i < named; ++i) {
    const std::string file = GetText(kFile + std::to_string(i));
    if (!file.empty()) memory.sessionCoverageFiles.push_back(file);
  }
}

}  // namespace coverage
