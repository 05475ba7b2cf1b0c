#include "persist/cov_file.h"

#include "model/services.h"
#include "platform/text.h"

namespace coverage {

ProjectNames CurrentProjectNames(qal::IQHost* host, ProjectKeys& keys) {
  ProjectNames names;
  auto* project = FindService<qal::IQProject>(host, qal::iid::kProject);
  if (project == nullptr) return names;
  const auto fetch = [project](std::string& key, qal::Status (qal::IQProject::*ask)(char16_t**)) {
    platform::WideOut text;
    if (key.empty() && qal::Succeeded((project->*ask)(text.put()))) key = text.str();
  };
  fetch(keys.configuration, &qal::IQProject::GetConfigurationKey);
  fetch(keys.project, &qal::IQProject::GetProjectKey);
  fetch(keys.workspace, &qal::IQProject::GetWorkspaceKey);

  const platform::Wide workspaceKey(keys.workspace);
  const platform::Wide projectKey(keys.project);
  const platform::Wide configurationKey(keys.configuration);
  platform::WideOut text;
  if (qal::Succeeded(project->GetConfigurationName(workspaceKey.get(), projectKey.get(),
                                                   configurationKey.get(), text.put()))) {
    names.configuration = text.str();
  }
  if (qal::Succeeded(project->GetProjectName(workspaceKey.get(), projectKey.get(), text.put()))) {
    names.project = text.str();
  }
  return names;
}

ProjectMatch CompareProject(const CovHeader& header, const ProjectNames& current) {
  if (header.project != current.project) return ProjectMatch::kProjectDiffers;
  if (header.configuration != current.configuration) return ProjectMatch::kConfigurationDiffers;
  return ProjectMatch::kSame;
}

}  // namespace coverage
