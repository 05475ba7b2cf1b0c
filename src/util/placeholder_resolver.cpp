#include "util/placeholder_resolver.h"

#include <algorithm>
#include <array>
#include <ctime>

#include "platform/paths.h"
#include "platform/text.h"
#include "platform/variant.h"
#include "qal/ids.h"
#include "qal/variant.h"
#include "util/texts.h"

namespace coverage {
namespace {

struct Names {
  std::string_view name;
  std::string_view shortName;
};

constexpr std::array<Names, placeholder::kLast + 1> kNames = {{
    {"ERROR", "ERROR"},   {"FULLFILE", "FF"},   {"FILENAME", "FN"},        {"FILELEAF", "FL"},
    {"FILEDIR", "FD"},    {"EXTENSION", "EX"},  {"QALDIR", "QD"},          {"TEMPDIR", "TD"},
    {"WORKSPDIR", "WD"},  {"WORKSPNAME", "WN"}, {"PROJDIR", "PD"},         {"PROJECTNAME", "PN"},
    {"CONFIGNAME", "CN"}, {"CONFIGDIR", "CD"},  {"TCINSTALL", "TI"},       {"EXEDIR", "ED"},
    {"EXENAME", "EN"},    {"WINDIR", "WR"},     {"WINSYSDIR", "WS"},       {"LINE", "LN"},
    {"TOOLDIR", "TD"},    {"QAL_HWND", "QH"},   {"QAL_ID", "QI"},          {"TIME", "TM"},
    {"DATE_TEXT", "DT"},  {"DATE_DMY", "DD"},   {"DATE_MDY", "DM"},        {"DATE_YMD", "DY"},
    {"USER", "UR"},       {"CURSOR", "CU"},     {"PAGENO", "PN"},          {"LEFT", "LT"},
    {"CENTRE", "CR"},     {"RIGHT", "RT"},      {"USERINPUT***", "UI***"}, {"DEVICEDETAILS", "DV"},
}};

constexpr std::uint32_t kFirstDescription = 50004;
constexpr int kLastDescribed = 33;
constexpr std::size_t kLongestUserName = 200;

std::string Delimited(std::string_view name) { return "$(" + std::string(name) + ")"; }

bool Matches(std::string_view pattern, std::string_view name) {
  constexpr std::string_view kAnyEnd = "***";
  if (!pattern.ends_with(kAnyEnd)) return platform::EqualNoCase(pattern, name);
  pattern.remove_suffix(kAnyEnd.size());
  return name.size() >= pattern.size() && platform::EqualNoCase(pattern, name.substr(0, pattern.size()));
}

/// Index of a name, long names first; -1 when it is none of them.
int IndexOfName(std::string_view name) {
  for (const auto member : {&Names::name, &Names::shortName}) {
    for (std::size_t i = 0; i < kNames.size(); ++i) {
      if (Matches(kNames[i].*member, name)) return static_cast<int>(i);
    }
  }
  return -1;
}

std::string FilePlaceholder(int index, std::string_view path) {
  if (index == placeholder::kFullFile) return std::string(path);
  if (index == placeholder::kFileDir) return platform::DirectoryPart(path);
  const std::size_t slash = platform::FindLastBackslash(path);
  const std::size_t colon = platform::FindLastChar(path, ':');
  const std::size_t behind = slash != std::string_view::npos ? slash : colon;
  const std::string_view file = behind == std::string_view::npos ? path : path.substr(behind + 1);
  const std::size_t dot = platform::FindLastChar(file, '.');
  if (index == placeholder::kFileName) return std::string(file);
  if (index == placeholder::kFileLeaf) return std::string(file.substr(0, dot));
  return dot == std::string_view::npos ? std::string() : std::string(file.substr(dot + 1));
}

std::string LocalTime(const char* format) {
  const std::time_t now = std::time(nullptr);
  std::tm parts{};
  localtime_r(&now, &parts);
  char text[64];
  return std::string(text, std::strftime(text, sizeof text, format, &parts));
}

std::vector<CustomPlaceholder> Definitions(qal::VariantArray* array) {
  const std::vector<std::string> texts = platform::TextsOf(array);
  qal::FreeVariantArray(array);
  std::vector<CustomPlaceholder> found;
  for (std::size_t i = 0; i + 2 < texts.size(); i += 3)
    found.push_back({texts[i], texts[i + 1], texts[i + 2]});
  return found;
}

struct FoundPlaceholder {
  std::size_t at;      ///< of its "$"
  std::size_t behind;  ///< its ")"
  std::string_view name;
};

/// The next placeholder of `text` from `position` on. `before` is the character in front of `text`.
std::optional<FoundPlaceholder> NextPlaceholder(std::string_view text, std::size_t position, char before) {
  for (;;) {
    const std::size_t at = platform::FindText(text, "$(", position);
    if (at == std::string_view::npos || text.size() - at < 4) return std::nullopt;
    if ((at == 0 ? before : text[at - 1]) == '$') {
      position = at + 1;
      continue;
    }
    const std::size_t close = platform::FindChar(text, ')', at + 2);
    if (close == std::string_view::npos) return std::nullopt;
    return FoundPlaceholder{at, close + 1, text.substr(at + 2, close - at - 2)};
  }
}

}  // namespace

PlaceholderResolver::PlaceholderResolver(qal::IQHost* host) : workspace_(nullptr), custom_(nullptr) {
  if (host == nullptr) return;
  void* found = nullptr;
  if (qal::Succeeded(host->GetService(&qal::iid::kWorkspace, &found))) {
    workspace_ = static_cast<qal::IQWorkspace*>(found);
  }
  found = nullptr;
  if (qal::Succeeded(host->GetService(&qal::iid::kCustomPlaceholders, &found))) {
    custom_ = static_cast<qal::IQCustomPlaceholders*>(found);
  }
}

std::string PlaceholderResolver::PlaceholderName(int index, bool withDelimiters) {
  if (index < 1 || index > placeholder::kLast) return "ERROR";
  const std::string_view name = kNames[static_cast<std::size_t>(index)].name;
  return withDelimiters ? Delimited(name) : std::string(name);
}

std::string PlaceholderResolver::PlaceholderDescription(int index) {
  const bool described = index >= 0 && index <= kLastDescribed;
  return Text(kFirstDescription + static_cast<std::uint32_t>(described ? index : 0));
}

std::string PlaceholderResolver::WorkspaceValue(int index, const PlaceholderKeys& given) const {
  if (workspace_ == nullptr) return {};
  platform::WideOut text;
  const auto value = [&text](qal::Status status) {
    return qal::Succeeded(status) ? text.str() : std::string();
  };
  if (index == placeholder::kQalDir) return value(workspace_->GetInstallationDirectory(text.put()));
  if (index == placeholder::kTempDir) return value(workspace_->GetTemporaryDirectory(text.put()));

  const auto key = [&](const std::string& own, qal::Status (qal::IQWorkspace::*ask)(char16_t**)) {
    return own.empty() ? value((workspace_->*ask)(text.put())) : own;
  };
  std::string itself = PlaceholderName(index, true);
  const bool needsProject = index >= placeholder::kProjectDir;
  const bool needsConfiguration = index == placeholder::kConfigName || index == placeholder::kConfigDir;
  const std::string workspaceKey = key(given.workspace, &qal::IQWorkspace::GetWorkspaceKey);
  if (workspaceKey.empty()) return itself;
  const platform::Wide workspace(workspaceKey);
  if (index == placeholder::kWorkspaceDir) {
    return value(workspace_->GetWorkspaceDirectory(workspace.get(), text.put()));
  }
  if (index == placeholder::kWorkspaceName)
    return value(workspace_->GetWorkspaceName(workspace.get(), text.put()));

  const std::string projectKey =
      needsProject ? key(given.project, &qal::IQWorkspace::GetProjectKey) : std::string();
  if (projectKey.empty()) return itself;
  const platform::Wide project(projectKey);
  if (index == placeholder::kProjectDir) {
    return value(workspace_->GetProjectDirectory(workspace.get(), project.get(), text.put()));
  }
  if (index == placeholder::kProjectName) {
    return value(workspace_->GetProjectName(workspace.get(), project.get(), text.put()));
  }

  const std::string configurationKey =
      needsConfiguration ? key(given.configuration, &qal::IQWorkspace::GetConfigurationKey) : std::string();
  if (configurationKey.empty()) return itself;
  const platform::Wide configuration(configurationKey);
  return value(
      index == placeholder::kConfigName
          ? workspace_->GetConfigurationName(workspace.get(), project.get(), configuration.get(), text.put())
          : workspace_->GetConfigurationDirectory(workspace.get(), project.get(), configuration.get(),
                                                  text.put()));
}

bool PlaceholderResolver::ResolveIndex(int index, std::string& value,
                                       std::optional<std::string_view> filePath,
                                       const PlaceholderKeys& keys) const {
  value.clear();
  if (index < 1 || index > placeholder::kLast) return false;
  if (index <= placeholder::kExtension) {
    value = filePath ? FilePlaceholder(index, *filePath) : PlaceholderName(index, true);
  } else if (index <= placeholder::kConfigDir) {
    value = WorkspaceValue(index, keys);
  } else {
    switch (index) {
      case placeholder::kWindowsDir:
        value = platform::WindowsDirectory();
        break;
      case placeholder::kSystemDir:
        value = platform::SystemDirectory();
        break;
      case placeholder::kTime:
        value = LocalTime("%H:%M:%S");
        break;
      case placeholder::kDateText:
        value = LocalTime("%B %d, %Y");
        break;
      case placeholder::kDateDmy:
        value = LocalTime("%d/%m/%Y");
        break;
      case placeholder::kDateMdy:
        value = LocalTime("%m/%d/%Y");
        break;
      case placeholder::kDateYmd:
        value = LocalTime("%Y/%m/%d");
        break;
      case placeholder::kUser:
        value = platform::CutToBytes(platform::UserName(), kLongestUserName);
        break;
      case placeholder::kUserInput:
        value = "$(ERROR)";
        break;
      default:
        value = PlaceholderName(index, true);
    }
  }
  return !value.empty();
}

bool PlaceholderResolver::ResolveName(std::string_view name, std::string& value,
                                      std::optional<std::string_view> filePath) const {
  const int index = IndexOfName(name);
  if (index < 0) return ResolveCustom(name, value);
  if (index != placeholder::kUserInput) return ResolveIndex(index, value, filePath);
  value = Delimited(name);
  return true;
}

bool PlaceholderResolver::ResolveCustom(std::string_view name, std::string& value) const {
  value.clear();
  bool found = false;
  for (const auto list :
       {&PlaceholderResolver::ApplicationPlaceholders, &PlaceholderResolver::ProjectPlaceholders}) {
    for (const CustomPlaceholder& definition : (this->*list)()) {
      if (definition.name != name) continue;
      found = true;
      value = definition.value;
      break;
    }
    if (!value.empty()) break;
  }
  return found;
}

std::string PlaceholderResolver::ExpandPlaceholders(std::string_view text,
                                                    std::optional<std::string_view> filePath,
                                                    bool* allResolved) const {
  if (allResolved != nullptr) *allResolved = true;
  std::string expanded;
  std::string value;
  for (int count = 0; count < kMostExpanded; ++count) {
    const auto found = NextPlaceholder(text, 0, expanded.empty() ? '\0' : expanded.back());
    if (!found) break;
    expanded.append(text.substr(0, found->at));
    if (ResolveName(found->name, value, filePath)) {
      expanded.append(value);
    } else if (allResolved != nullptr) {
      *allResolved = false;
    }
    text.remove_prefix(found->behind);
  }
  return expanded.append(text);
}

std::string PlaceholderResolver::CollapsePlaceholders(std::string_view path,
                                                      std::span<const int> indexes) const {
  std::string collapsed(path);
  std::string value;
  for (const int index : indexes) {
    if (!ResolveIndex(index, value)) continue;
    const std::size_t at = platform::FindText(platform::ToUpper(collapsed), platform::ToUpper(value));
    if (at != std::string::npos) collapsed.replace(at, value.size(), PlaceholderName(index, true));
  }
  return collapsed;
}

std::vector<CustomPlaceholder> PlaceholderResolver::ApplicationPlaceholders() const {
  qal::VariantArray* array = nullptr;
  if (custom_ == nullptr || qal::Failed(custom_->GetApplicationPlaceholders(&array))) return {};
  return Definitions(array);
}

std::vector<CustomPlaceholder> PlaceholderResolver::ProjectPlaceholders() const {
  std::uint32_t open = 0;
  if (custom_ == nullptr || workspace_ == nullptr || qal::Failed(workspace_->IsProjectOpen(&open)) ||
      open != 1) {
    return {};
  }
  platform::WideOut key;
  if (qal::Failed(workspace_->GetWorkspaceKey(key.put()))) return {};
  qal::VariantArray* array = nullptr;
  if (qal::Failed(custom_->GetProjectPlaceholders(key.get(), &array))) return {};
  return Definitions(array);
}

std::vector<CustomPlaceholder> PlaceholderResolver::ListCustomPlaceholders() const {
  std::vector<CustomPlaceholder> all = ApplicationPlaceholders();
  const auto ownEnd = static_cast<std::ptrdiff_t>(all.size());
  for (CustomPlaceholder& definition : ProjectPlaceholders()) {
    const auto sameName = [&](const CustomPlaceholder& other) { return other.name == definition.name; };
    if (std::none_of(all.begin(), all.begin() + ownEnd, sameName)) all.push_back(std::move(definition));
  }
  return all;
}

}  // namespace coverage
