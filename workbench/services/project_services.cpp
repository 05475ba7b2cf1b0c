#include "workbench/services/project_services.h"

#include "platform/paths.h"
#include "platform/text.h"
#include "platform/variant.h"

namespace workbench {
namespace {

constexpr char kWorkspaceKey[] = "workspace";

qal::Status Give(std::string_view text, char16_t** out) {
  if (!out) return qal::kFail;
  *out = platform::NewWide(text);
  return *out ? qal::kOk : qal::kFail;
}

/// Gives `text` when every key given is the right one. Null for a key means that the operation has none.
struct Keys {
  const Project& project;
  bool Fits(qal::WideText workspace) const { return platform::Narrow(workspace) == kWorkspaceKey; }
  bool Fits(qal::WideText workspace, qal::WideText name) const {
    return Fits(workspace) && platform::Narrow(name) == project.Name();
  }
  bool Fits(qal::WideText workspace, qal::WideText name, qal::WideText configuration) const {
    return Fits(workspace, name) && platform::Narrow(configuration) == project.Configuration();
  }
};

template <class... Texts>
qal::Status GiveFor(const Project& project, std::string_view text, char16_t** out, Texts... keys) {
  if (!out) return qal::kFail;
  *out = nullptr;
  return Guarded([&] { return Keys{project}.Fits(keys...) ? Give(text, out) : qal::kFail; });
}

}  // namespace

qal::Status ProjectService::GetConfigurationKey(char16_t** key) {
  return Give(project_.Configuration(), key);
}
qal::Status ProjectService::GetProjectKey(char16_t** key) { return Give(project_.Name(), key); }
qal::Status ProjectService::GetWorkspaceKey(char16_t** key) { return Give(kWorkspaceKey, key); }

qal::Status ProjectService::GetConfigurationName(qal::WideText workspace, qal::WideText project,
                                                 qal::WideText configuration, char16_t** name) {
  return GiveFor(project_, project_.Configuration(), name, workspace, project, configuration);
}

qal::Status ProjectService::GetProjectName(qal::WideText workspace, qal::WideText project, char16_t** name) {
  return GiveFor(project_, project_.Name(), name, workspace, project);
}

qal::Status ProjectService::GetContextText(char16_t** text) {
  return Give(project_.Name() + "/" + project_.Configuration(), text);
}

qal::Status ProjectService::GetSessionText(qal::WideText, qal::WideText second, qal::WideText third,
                                           char16_t** text) {
  return Give(platform::Narrow(second) + "/" + platform::Narrow(third), text);
}

qal::Status WorkspaceService::GetInstallationDirectory(char16_t** directory) {
  return Give(installation_, directory);
}
qal::Status WorkspaceService::GetTemporaryDirectory(char16_t** directory) {
  return Give(platform::TempDirectory(), directory);
}
qal::Status WorkspaceService::GetConfigurationKey(char16_t** key) {
  return Give(project_.Configuration(), key);
}
qal::Status WorkspaceService::GetProjectKey(char16_t** key) { return Give(project_.Name(), key); }
qal::Status WorkspaceService::GetWorkspaceKey(char16_t** key) { return Give(kWorkspaceKey, key); }

qal::Status WorkspaceService::GetConfigurationName(qal::WideText workspace, qal::WideText project,
                                                   qal::WideText configuration, char16_t** name) {
  return GiveFor(project_, project_.Configuration(), name, workspace, project, configuration);
}

qal::Status WorkspaceService::GetProjectName(qal::WideText workspace, qal::WideText project,
                                             char16_t** name) {
  return GiveFor(project_, project_.Name(), name, workspace, project);
}

qal::Status WorkspaceService::GetWorkspaceName(qal::WideText workspace, char16_t** name) {
  return GiveFor(project_, project_.Name(), name, workspace);
}

qal::Status WorkspaceService::GetConfigurationDirectory(qal::WideText workspace, qal::WideText project,
                                                        qal::WideText configuration, char16_t** directory) {
  return GiveFor(project_, project_.ConfigurationDirectory(), directory, workspace, project, configuration);
}

qal::Status WorkspaceService::GetProjectDirectory(qal::WideText workspace, qal::WideText project,
                                                  char16_t** directory) {
  return GiveFor(project_, project_.Directory(), directory, workspace, project);
}

qal::Status WorkspaceService::GetWorkspaceDirectory(qal::WideText workspace, char16_t** directory) {
  return GiveFor(project_, project_.Directory(), directory, workspace);
}

qal::Status WorkspaceService::IsProjectOpen(std::uint32_t* open) {
  if (!open) return qal::kFail;
  *open = 1;
  return qal::kOk;
}

qal::Status SessionState::GetName(char16_t** name) { return Give({}, name); }

qal::Status CustomPlaceholders::GetApplicationPlaceholders(qal::VariantArray** definitions) {
  if (!definitions) return qal::kFail;
  *definitions = platform::NewTextArray({});
  return *definitions ? qal::kOk : qal::kFail;
}

qal::Status CustomPlaceholders::GetProjectPlaceholders(qal::WideText workspace,
                                                       qal::VariantArray** definitions) {
  if (!definitions) return qal::kFail;
  *definitions = nullptr;
  return Guarded([&]() -> qal::Status {
    if (!Keys{project_}.Fits(workspace)) return qal::kFail;
    std::vector<std::string> texts;
    for (const PlaceholderDefinition& placeholder : project_.Placeholders()) {
      texts.insert(texts.end(), {placeholder.name, placeholder.description, placeholder.value});
    }
    *definitions = platform::NewTextArray(texts);
    return *definitions ? qal::kOk : qal::kFail;
  });
}

}  // namespace workbench
