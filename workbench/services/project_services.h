#pragma once

#include <map>
#include <string>

#include "qal/project_services.h"
#include "workbench/services/project.h"
#include "workbench/services/service.h"

namespace workbench {

/// The three keys name the one workspace, its one project and the configuration; any other key is refused.
/// Project service. Main thread.
class ProjectService final : public Service<qal::IQProject, qal::iid::kProject> {
 public:
  explicit ProjectService(const Project& project) : project_(project) {}
  qal::Status GetConfigurationKey(char16_t** key) override;
  qal::Status GetProjectKey(char16_t** key) override;
  qal::Status GetWorkspaceKey(char16_t** key) override;
  qal::Status GetConfigurationName(qal::WideText workspace, qal::WideText project,
                                   qal::WideText configuration, char16_t** name) override;
  qal::Status GetProjectName(qal::WideText workspace, qal::WideText project, char16_t** name) override;
  qal::Status GetContextText(char16_t** text) override;
  qal::Status GetSessionText(qal::WideText first, qal::WideText second, qal::WideText third,
                             char16_t** text) override;

 private:
  const Project& project_;
};

/// Workspace service. `installation` is a product path. Main thread.
class WorkspaceService final : public Service<qal::IQWorkspace, qal::iid::kWorkspace> {
 public:
  WorkspaceService(const Project& project, std::string installation)
      : project_(project), installation_(std::move(installation)) {}
  qal::Status GetInstallationDirectory(char16_t** directory) override;
  qal::Status GetTemporaryDirectory(char16_t** directory) override;
  qal::Status GetConfigurationKey(char16_t** key) override;
  qal::Status GetProjectKey(char16_t** key) override;
  qal::Status GetWorkspaceKey(char16_t** key) override;
  qal::Status GetConfigurationName(qal::WideText workspace, qal::WideText project,
                                   qal::WideText configuration, char16_t** name) override;
  qal::Status GetProjectName(qal::WideText workspace, qal::WideText project, char16_t** name) override;
  qal::Status GetWorkspaceName(qal::WideText workspace, char16_t** name) override;
  qal::Status GetConfigurationDirectory(qal::WideText workspace, qal::WideText project,
                                        qal::WideText configuration, char16_t** directory) override;
  qal::Status GetProjectDirectory(qal::WideText workspace, qal::WideText project,
                                  char16_t** directory) override;
  qal::Status GetWorkspaceDirectory(qal::WideText workspace, char16_t** directory) override;
  qal::Status IsProjectOpen(std::uint32_t* open) override;

 private:
  const Project& project_;
  std::string installation_;
};

/// The component's session is always the current one. Main thread.
class SessionState final : public Service<qal::IQSessionState, qal::iid::kSessionState> {
 public:
  qal::Status IsCurrent() override { return 1; }
  qal::Status GetName(char16_t** name) override;
};

/// Placeholders of the project file; the application itself defines none. Main thread.
class CustomPlaceholders final : public Service<qal::IQCustomPlaceholders, qal::iid::kCustomPlaceholders> {
 public:
  explicit CustomPlaceholders(const Project& project) : project_(project) {}
  qal::Status GetApplicationPlaceholders(qal::VariantArray** definitions) override;
  qal::Status GetProjectPlaceholders(qal::WideText workspace, qal::VariantArray** definitions) override;

 private:
  const Project& project_;
};

}  // namespace workbench
