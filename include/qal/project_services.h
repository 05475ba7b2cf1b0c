#pragma once

#include "qal/reserve.h"

/// The IDE's session, project and workspace. Texts given out are new; paths are in the product's form. What
/// the three keys denote is the IDE's affair.
namespace qal {

/// Reached with QueryInterface of the host object.
struct IQSessionState : Reserve<IQUnknown, 3, 30> {
  /// Non-zero when the component's session is the current one.
  virtual Status IsCurrent() = 0;               // slot 31
  virtual Status GetName(char16_t** name) = 0;  // slot 32
};

struct ProjectTo12 : Reserve<IQUnknown, 3, 9> {
  virtual Status GetConfigurationKey(char16_t** key) = 0;  // slot 10
  virtual Status GetProjectKey(char16_t** key) = 0;        // slot 11
  virtual Status GetWorkspaceKey(char16_t** key) = 0;      // slot 12
};
struct ProjectTo20 : Reserve<ProjectTo12, 13, 18> {
  virtual Status GetConfigurationName(WideText workspace, WideText project, WideText configuration,
                                      char16_t** name) = 0;                                  // slot 19
  virtual Status GetProjectName(WideText workspace, WideText project, char16_t** name) = 0;  // slot 20
};
struct ProjectTo40 : Reserve<ProjectTo20, 21, 39> {
  /// Handed on by the test client.
  virtual Status GetContextText(char16_t** text) = 0;  // slot 40
};
struct IQProject : Reserve<ProjectTo40, 41, 41> {
  /// A part of the session key, from three of the texts that a session was opened with.
  virtual Status GetSessionText(WideText first, WideText second, WideText third,
                                char16_t** text) = 0;  // slot 42
};

struct WorkspaceTo6 : Reserve<IQUnknown, 3, 4> {
  virtual Status GetInstallationDirectory(char16_t** directory) = 0;  // slot 5
  virtual Status GetTemporaryDirectory(char16_t** directory) = 0;     // slot 6
};
struct WorkspaceTo12 : Reserve<WorkspaceTo6, 7, 9> {
  virtual Status GetConfigurationKey(char16_t** key) = 0;  // slot 10
  virtual Status GetProjectKey(char16_t** key) = 0;        // slot 11
  virtual Status GetWorkspaceKey(char16_t** key) = 0;      // slot 12
};
struct WorkspaceTo24 : Reserve<WorkspaceTo12, 13, 18> {
  virtual Status GetConfigurationName(WideText workspace, WideText project, WideText configuration,
                                      char16_t** name) = 0;                                  // slot 19
  virtual Status GetProjectName(WideText workspace, WideText project, char16_t** name) = 0;  // slot 20
  virtual Status GetWorkspaceName(WideText workspace, char16_t** name) = 0;                  // slot 21
  virtual Status GetConfigurationDirectory(WideText workspace, WideText project, WideText configuration,
                                           char16_t** directory) = 0;  // slot 22
  virtual Status GetProjectDirectory(WideText workspace, WideText project,
                                     char16_t** directory) = 0;                        // slot 23
  virtual Status GetWorkspaceDirectory(WideText workspace, char16_t** directory) = 0;  // slot 24
};
struct IQWorkspace : Reserve<WorkspaceTo24, 25, 34> {
  /// 1 when a project is open.
  virtual Status IsProjectOpen(std::uint32_t* open) = 0;  // slot 35
};

struct CustomPlaceholdersTo43 : Reserve<IQUnknown, 3, 42> {
  virtual Status GetApplicationPlaceholders(VariantArray** definitions) = 0;  // slot 43
};
/// Placeholders that the user defined: new arrays of text variants, three for each definition: name,
/// description, value. The receiver frees them.
struct IQCustomPlaceholders : Reserve<CustomPlaceholdersTo43, 44, 185> {
  virtual Status GetProjectPlaceholders(WideText workspace, VariantArray** definitions) = 0;  // slot 186
};

/// Named texts and numbers of the IDE's session, between Open and Close. A missing key reads as the default.
struct IQSessionData : IQUnknown {
  virtual Status Open(const Guid* session) = 0;                                                     // slot 3
  virtual Status Close() = 0;                                                                       // slot 4
  virtual Status SetSessionText(WideText key, WideText value) = 0;                                  // slot 5
  virtual Status GetSessionText(WideText key, WideText fallback, char16_t** value) = 0;             // slot 6
  virtual Status SetSessionNumber(WideText key, std::uint32_t value) = 0;                           // slot 7
  virtual Status GetSessionNumber(WideText key, std::uint32_t fallback, std::uint32_t* value) = 0;  // slot 8
};

}  // namespace qal
