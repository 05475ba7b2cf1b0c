#pragma once

#include <map>
#include <string>
#include <vector>

#include "doubles/double.h"
#include "qal/project_services.h"

/// One project "proj" of configuration "conf" in workspace "ws", unless a test says otherwise.
namespace doubles {

/// The component's session is the current one.
struct StubSessionState : Service<qal::IQSessionState, qal::iid::kSessionState, "session"> {
  using Service::Service;
  bool current = true;
  std::string name = "session";
  Status IsCurrent() override { return current ? 1 : 0; }
  Status GetName(char16_t** out) override { return Give(Log("GetName"), out, name); }
};

/// What a project and a workspace both tell.
template <class Interface, const Guid& kId, Name kName>
struct ProjectNames : Service<Interface, kId, kName> {
  using Service<Interface, kId, kName>::Service;
  std::string configuration = "Debug";
  std::string project = "demo";

  Status GetConfigurationKey(char16_t** key) override {
    return Give(this->Log("GetConfigurationKey"), key, "conf");
  }
  Status GetProjectKey(char16_t** key) override { return Give(this->Log("GetProjectKey"), key, "proj"); }
  Status GetWorkspaceKey(char16_t** key) override { return Give(this->Log("GetWorkspaceKey"), key, "ws"); }
  Status GetConfigurationName(WideText ws, WideText proj, WideText conf, char16_t** name) override {
    return Give(this->Log("GetConfigurationName", ws, proj, conf), name, configuration);
  }
  Status GetProjectName(WideText ws, WideText proj, char16_t** name) override {
    return Give(this->Log("GetProjectName", ws, proj), name, project);
  }
};

struct StubProject : ProjectNames<qal::IQProject, qal::iid::kProject, "project"> {
  using ProjectNames::ProjectNames;
  std::string context = "context";
  Status GetContextText(char16_t** text) override { return Give(Log("GetContextText"), text, context); }
  Status GetSessionText(WideText first, WideText second, WideText third, char16_t** text) override {
    return Give(Log("GetSessionText", first, second, third), text, "[session]");
  }
};

struct StubWorkspace : ProjectNames<qal::IQWorkspace, qal::iid::kWorkspace, "workspace"> {
  using ProjectNames::ProjectNames;
  std::string installation = "C:\\qal";
  std::string temporary = "C:\\temp";
  std::string workspace = "space";
  std::string configurationDirectory = "C:\\space\\demo\\Debug";
  std::string projectDirectory = "C:\\space\\demo";
  std::string workspaceDirectory = "C:\\space";
  bool projectOpen = true;

  Status GetInstallationDirectory(char16_t** out) override {
    return Give(Log("GetInstallationDirectory"), out, installation);
  }
  Status GetTemporaryDirectory(char16_t** out) override {
    return Give(Log("GetTemporaryDirectory"), out, temporary);
  }
  Status GetWorkspaceName(WideText ws, char16_t** name) override {
    return Give(Log("GetWorkspaceName", ws), name, workspace);
  }
  Status GetConfigurationDirectory(WideText ws, WideText proj, WideText conf, char16_t** out) override {
    return Give(Log("GetConfigurationDirectory", ws, proj, conf), out, configurationDirectory);
  }
  Status GetProjectDirectory(WideText ws, WideText proj, char16_t** out) override {
    return Give(Log("GetProjectDirectory", ws, proj), out, projectDirectory);
  }
  Status GetWorkspaceDirectory(WideText ws, char16_t** out) override {
    return Give(Log("GetWorkspaceDirectory", ws), out, workspaceDirectory);
  }
  Status IsProjectOpen(Number* open) override {
    return Give(Log("IsProjectOpen"), open, projectOpen ? 1u : 0u);
  }
};

/// Definitions are flat lists: name, description, value, name, …
struct StubCustomPlaceholders
    : Service<qal::IQCustomPlaceholders, qal::iid::kCustomPlaceholders, "placeholders"> {
  using Service::Service;
  std::vector<std::string> application;
  std::vector<std::string> project;
  Status GetApplicationPlaceholders(qal::VariantArray** out) override {
    return GiveList(Log("GetApplicationPlaceholders"), application, out);
  }
  Status GetProjectPlaceholders(WideText workspace, qal::VariantArray** out) override {
    return GiveList(Log("GetProjectPlaceholders", workspace), project, out);
  }

 private:
  static Status GiveList(Status status, const std::vector<std::string>& texts, qal::VariantArray** out) {
    *out = qal::Failed(status) ? nullptr : platform::NewTextArray(texts);
    return status;
  }
};

/// Keeps what is written in two tables.
struct StubSessionData : Service<qal::IQSessionData, qal::iid::kSessionData, "data"> {
  using Service::Service;
  std::map<std::string, std::string> texts;
  std::map<std::string, Number> numbers;

  /// Both tables, one "key = value" a line, texts quoted.
  std::string Picture() const {
    std::map<std::string, std::string> all;
    for (const auto& [key, value] : texts) all[key] = '"' + value + '"';
    for (const auto& [key, value] : numbers) all[key] = std::to_string(value);
    std::string picture;
    for (const auto& [key, value] : all) picture += key + " = " + value + '\n';
    return picture;
  }

  Status Open(const Guid* session) override { return Log("Open", session); }
  Status Close() override { return Log("Close"); }
  Status SetSessionText(WideText key, WideText value) override {
    texts[platform::Narrow(key)] = platform::Narrow(value);
    return Log("SetSessionText", key, value);
  }
  Status GetSessionText(WideText key, WideText fallback, char16_t** value) override {
    const auto found = texts.find(platform::Narrow(key));
    return Give(Log("GetSessionText", key), value,
                found == texts.end() ? platform::Narrow(fallback) : found->second);
  }
  Status SetSessionNumber(WideText key, Number value) override {
    numbers[platform::Narrow(key)] = value;
    return Log("SetSessionNumber", key, value);
  }
  Status GetSessionNumber(WideText key, Number fallback, Number* value) override {
    const auto found = numbers.find(platform::Narrow(key));
    return Give(Log("GetSessionNumber", key), value, found == numbers.end() ? fallback : found->second);
  }
};

}  // namespace doubles
