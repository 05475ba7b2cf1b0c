// Placeholders such as "$(PROJDIR)" in paths: their names, their values, expanding and collapsing. Texts are
// in the system code page and a double-byte character is never split. UI thread only.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "qal/host.h"
#include "qal/project_services.h"

namespace coverage {

namespace placeholder {
inline constexpr int kFullFile = 1;
inline constexpr int kFileName = 2;
inline constexpr int kFileLeaf = 3;
inline constexpr int kFileDir = 4;
inline constexpr int kExtension = 5;
inline constexpr int kQalDir = 6;
inline constexpr int kTempDir = 7;
inline constexpr int kWorkspaceDir = 8;
inline constexpr int kWorkspaceName = 9;
inline constexpr int kProjectDir = 10;
inline constexpr int kProjectName = 11;
inline constexpr int kConfigName = 12;
inline constexpr int kConfigDir = 13;
inline constexpr int kWindowsDir = 17;
inline constexpr int kSystemDir = 18;
inline constexpr int kTime = 23;
inline constexpr int kDateText = 24;
inline constexpr int kDateDmy = 25;
inline constexpr int kDateMdy = 26;
inline constexpr int kDateYmd = 27;
inline constexpr int kUser = 28;
inline constexpr int kUserInput = 34;
inline constexpr int kLast = 35;

/// What stored paths are collapsed into, in the order in which they are tried.
inline constexpr int kStoredPathIndexes[] = {kConfigDir, kProjectDir, kWorkspaceDir};
}  // namespace placeholder

struct CustomPlaceholder {
  std::string name;
  std::string description;
  std::string value;
};

/// By which keys workspace, project and configuration are asked; one that is empty is taken from the IDE.
struct PlaceholderKeys {
  std::string workspace;
  std::string project;
  std::string configuration;
};

/// Looks its two services up when it is made and keeps nothing else. What a missing service would have given
/// is an empty value, which counts as not resolved.
class PlaceholderResolver {
 public:
  /// At most this many placeholders of a text are expanded.
  static constexpr int kMostExpanded = 9999;

  /// `host` may be none.
  explicit PlaceholderResolver(qal::IQHost* host);

  /// Name of an index from 1 to 35, as "$(NAME)" with delimiters; "ERROR" for any other.
  static std::string PlaceholderName(int index, bool withDelimiters);
  /// Text that menus show for an index.
  static std::string PlaceholderDescription(int index);

  /// True when the value is not empty. Without a file path the file's placeholders stand for themselves.
  bool ResolveIndex(int index, std::string& value, std::optional<std::string_view> filePath = {},
                    const PlaceholderKeys& keys = {}) const;
  /// Long names, then short ones, case aside; then the user's own, exactly as written, which may resolve to
  /// an empty value.
  bool ResolveName(std::string_view name, std::string& value,
                   std::optional<std::string_view> filePath = {}) const;

  /// Every placeholder is replaced by its value, or dropped when it has none; `allResolved` tells whether
  /// that happened.
  std::string ExpandPlaceholders(std::string_view text, std::optional<std::string_view> filePath = {},
                                 bool* allResolved = nullptr) const;
  /// Puts "$(NAME)" in the place of the first occurrence, case aside, of each listed placeholder's value.
  std::string CollapsePlaceholders(std::string_view path,
                                   std::span<const int> indexes = placeholder::kStoredPathIndexes) const;

  /// The application's definitions, then those of the project with other names.
  std::vector<CustomPlaceholder> ListCustomPlaceholders() const;

 private:
  std::vector<CustomPlaceholder> ApplicationPlaceholders() const;
  std::vector<CustomPlaceholder> ProjectPlaceholders() const;
  bool ResolveCustom(std::string_view name, std::string& value) const;
  std::string WorkspaceValue(int index, const PlaceholderKeys& given) const;

  qal::IQWorkspace* workspace_;
  qal::IQCustomPlaceholders* custom_;
};

}  // namespace coverage
