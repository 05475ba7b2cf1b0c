#pragma once

#include <map>
#include <string>
#include <vector>

#include "doubles/double.h"
#include "qal/project_services.h"

/// One project "proj" of configuration "conf" in workspace "ws", unless a test says otherwise.
namespace doubles {

/// The component's session is the current one.
class StubSessionState : public Double<qal::IQSessionState> {
 public:
  static constexpr qal::Guid kService = qal::iid::kSessionState;
  using Double::Double;
  bool current = true;
  std::string name = "session";
  qal::Status IsCurrent() override { return current ? 1 : 0; }
  qal::Status GetName(char16_t** out) override { return Give(Log("session.GetName"), out, name); }
};

class StubProject : public Double<qal::IQProject> {
 public:
  static constexpr qal::Guid kService = qal::iid::kProject;
  using Double::Double;
  std::string configuration = "Debug";
  std::string project = "demo";
  std::string context = "context";

  qal::Status GetConfigurationKey(char16_t** key) override {
    return Give(Log("project.GetConfigurationKey"), key, "conf");
  }
  qal::Status GetProjectKey(char16_t** key) override {
    return Give(Log("project.GetProjectKey"), key, "proj");
  }
  qal::Status GetWorkspaceKey(char16_t** key) override {
    return Give(Log("project.GetWorkspaceKey"), key, "ws");
  }
  qal::Status GetConfigurationName(qal::WideText workspace, qal::WideText projectKey,
                                   qal::WideText configurationKey, char16_t** name) override {
    return Give(Log("project.GetConfigurationName", workspace, projectKey, configurationKey), name,
                configuration);
  }
  qal::Status GetProjectName(qal::WideText workspace, qal::WideText projectKey, char16_t** name) override {
    return Give(Log("project.GetProjectName", workspace, projectKey), name, project);
  }
  qal::Status GetContextText(char16_t** text) override {
    return Give(Log("project.GetContextText"), text, context);
  }
  qal::Status GetSessionText(qal::WideText first, qal::WideText second, qal::WideText third,
                             char16_t** text) override {
    return Give(Log("project.GetSessionText", first, second, third), text, "[session]");
  }
};

class StubWorkspace : public Double<qal::IQWorkspace> {
 public:
  static constexpr qal::Guid kService = qal::iid::kWorkspace;
  using Double::Double;
  std::string installation = "C:\\qal";
  std::string temporary = "C:\\temp";
  std::string configuration = "Debug";
  std::string project = "demo";
  std::string workspace = "space";
  std::string configurationDirectory = "C:\\space\\demo\\Debug";
  std::string projectDirectory = "C:\\space\\demo";
  std::string workspaceDirectory = "C:\\space";
  bool projectOpen = true;

  qal::Status GetInstallationDirectory(char16_t** out) override {
    return Give(Log("workspace.GetInstallationDirectory"), out, installation);
  }
  qal::Status GetTemporaryDirectory(char16_t** out) override {
    return Give(Log("workspace.GetTemporaryDirectory"), out, temporary);
  }
  qal::Status GetConfigurationKey(char16_t** key) override {
    return Give(Log("workspace.GetConfigurationKey"), key, "conf");
  }
  qal::Status GetProjectKey(char16_t** key) override {
    return Give(Log("workspace.GetProjectKey"), key, "proj");
  }
  qal::Status GetWorkspaceKey(char16_t** key) override {
    return Give(Log("workspace.GetWorkspaceKey"), key, "ws");
  }
  qal::Status GetConfigurationName(qal::WideText workspaceKey, qal::WideText projectKey,
                                   qal::WideText configurationKey, char16_t** name) override {
    return Give(Log("workspace.GetConfigurationName", workspaceKey, projectKey, configurationKey), name,
                configuration);
  }
  qal::Status GetProjectName(qal::WideText workspaceKey, qal::WideText projectKey, char16_t** name) override {
    return Give(Log("workspace.GetProjectName", workspaceKey, projectKey), name, project);
  }
  qal::Status GetWorkspaceName(qal::WideText workspaceKey, char16_t** name) override {
    return Give(Log("workspace.GetWorkspaceName", workspaceKey), name, workspace);
  }
  qal::Status GetConfigurationDirectory(qal::WideText workspaceKey, qal::WideText projectKey,
                                        qal::WideText configurationKey, char16_t** out) override {
    return Give(Log("workspace.GetConfigurationDirectory", workspaceKey, projectKey, configurationKey), out,
                configurationDirectory);
  }
  qal::Status GetProjectDirectory(qal::WideText workspaceKey, qal::WideText projectKey,
                                  char16_t** out) override {
    return Give(Log("workspace.GetProjectDirectory", workspaceKey, projectKey), out, projectDirectory);
  }
  qal::Status GetWorkspaceDirectory(qal::WideText workspaceKey, char16_t** out) override {
    return Give(Log("workspace.GetWorkspaceDirectory", workspaceKey), out, workspaceDirectory);
  }
  qal::Status IsProjectOpen(std::uint32_t* open) override {
    return Give(Log("workspace.IsProjectOpen"), open, projectOpen ? 1u : 0u);
  }
};

/// Definitions are flat lists: name, description, value, name, …
class StubCustomPlaceholders : public Double<qal::IQCustomPlaceholders> {
 public:
  static constexpr qal::Guid kService = qal::iid::kCustomPlaceholders;
  using Double::Double;
  std::vector<std::string> application;
  std::vector<std::string> project;
  qal::Status GetApplicationPlaceholders(qal::VariantArray** out) override {
    return GiveList(Log("placeholders.GetApplicationPlaceholders"), application, out);
  }
  qal::Status GetProjectPlaceholders(qal::WideText workspace, qal::VariantArray** out) override {
    return GiveList(Log("placeholders.GetProjectPlaceholders", workspace), project, out);
  }

 private:
  static qal::Status GiveList(qal::Status status, const std::vector<std::string>& texts,
                              qal::VariantArray** out) {
    *out = qal::Failed(status) ? nullptr : platform::NewTextArray(texts);
    return status;
  }
};

/// Keeps what is written in two tables.
class StubSessionData : public Double<qal::IQSessionData> {
 public:
  static constexpr qal::Guid kService = qal::iid::kSessionData;
  using Double::Double;
  std::map<std::string, std::string> texts;
  std::map<std::string, std::uint32_t> numbers;

  /// Both tables, one "key = value" a line, texts quoted.
  std::string Picture() const {
    std::map<std::string, std::string> all;
    for (const auto& [key, value] : texts) all[key] = '"' + value + '"';
    for (const auto& [key, value] : numbers) all[key] = std::to_string(value);
    std::string picture;
    for (const auto& [key, value] : all) picture += key + " = " + value + '\n';
    return picture;
  }

  qal::Status Open(const qal::Guid* session) override { return Log("data.Open", session); }
  qal::Status Close() override { return Log("data.Close"); }
  qal::Status SetSessionText(qal::WideText key, qal::WideText value) override {
    texts[platform::Narrow(key)] = platform::Narrow(value);
    return Log("data.SetSessionText", key, value);
  }
  qal::Status GetSessionText(qal::WideText key, qal::WideText fallback, char16_t** value) override {
    const auto found = texts.find(platform::Narrow(key));
    return Give(Log("data.GetSessionText", key), value,
                found == texts.end() ? platform::Narrow(fallback) : found->second);
  }
  qal::Status SetSessionNumber(qal::WideText key, std::uint32_t value) override {
    numbers[platform::Narrow(key)] = value;
    return Log("data.SetSessionNumber", key, value);
  }
  qal::Status GetSessionNumber(qal::WideText key, std::uint32_t fallback, std::uint32_t* value) override {
    const auto found = numbers.find(platform::Narrow(key));
    return Give(Log("data.GetSessionNumber", key), value, found == numbers.end() ? fallback : found->second);
  }
};

}  // namespace doubles
