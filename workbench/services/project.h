#pragma once

#include <string>
#include <vector>

namespace workbench {

/// A placeholder that the user defined.
struct PlaceholderDefinition {
  std::string name;
  std::string description;
  std::string value;
};

/// The open project: a directory, with a name and a configuration. Product paths. Read-only after `Open`, so
/// that any thread may ask.
///
/// The directory may hold "project.json" with any of: "name", "configuration", "placeholders" (a list of
/// objects with "name", "description", "value"). Without it the project bears its directory's name and the
/// configuration "Debug".
class Project {
 public:
  static constexpr char kFileName[] = "project.json";

  /// `warning` says what was wrong with the project file; the rest of it is used.
  static Project Open(const std::string& directory, std::string& warning);

  const std::string& Directory() const { return directory_; }
  const std::string& Name() const { return name_; }
  const std::string& Configuration() const { return configuration_; }
  /// A directory of the configuration's name in the project; it need not exist.
  std::string ConfigurationDirectory() const;
  const std::vector<PlaceholderDefinition>& Placeholders() const { return placeholders_; }

  /// `path` seen from the project directory when it lies below, else as it stands: for texts that people
  /// compare.
  std::string Shown(const std::string& path) const;

 private:
  std::string directory_;
  std::string name_;
  std::string configuration_ = "Debug";
  std::vector<PlaceholderDefinition> placeholders_;
};

}  // namespace workbench
