#include "workbench/services/project.h"

#include <nlohmann/json.hpp>

#include "platform/paths.h"
#include "platform/text.h"
#include "workbench/services/json_file.h"

namespace workbench {

Project Project::Open(const std::string& directory, std::string& warning) {
  Project project;
  project.directory_ = platform::WithoutTrailingSeparator(platform::FullPath(directory));
  project.name_ = platform::FilePart(project.directory_);
  if (project.name_.empty()) project.name_ = "project";
  const auto value = ReadJsonFile(platform::JoinPath(project.directory_, kFileName), warning);
  project.name_ = TextOf(value, "name", project.name_);
  project.configuration_ = TextOf(value, "configuration", project.configuration_);
  const auto list = value.find("placeholders");
  if (list != value.end() && list->is_array()) {
    for (const auto& entry : *list) {
      if (!entry.is_object() || TextOf(entry, "name").empty()) {
        warning = "project.json: a placeholder without a name is left out";
        continue;
      }
      project.placeholders_.push_back(
          {TextOf(entry, "name"), TextOf(entry, "description"), TextOf(entry, "value")});
    }
  }
  return project;
}

std::string Project::ConfigurationDirectory() const { return platform::JoinPath(directory_, configuration_); }

std::string Project::Shown(const std::string& path) const {
  if (path.size() > directory_.size() + 1 && path[directory_.size()] == '\\' &&
      platform::EqualNoCase(std::string_view(path).substr(0, directory_.size()), directory_)) {
    return path.substr(directory_.size() + 1);
  }
  return path;
}

}  // namespace workbench
