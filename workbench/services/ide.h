#pragma once

#include <memory>
#include <string>
#include <vector>

#include "qal/view_client.h"
#include "workbench/services/columns.h"
#include "workbench/services/command_services.h"
#include "workbench/services/component.h"
#include "workbench/services/debug_session.h"
#include "workbench/services/host.h"
#include "workbench/services/ide_services.h"
#include "workbench/services/ide_user.h"
#include "workbench/services/open_files.h"
#include "workbench/services/project.h"
#include "workbench/services/settings.h"
#include "workbench/services/window_service.h"

namespace workbench {

/// Where an IDE keeps its things; product paths.
struct IdePlaces {
  std::string project;    ///< the project's directory
  std::string state;      ///< settings and sessions; empty keeps them in memory only
  std::string component;  ///< the component's library
};

/// The reference IDE: project, debugger, every service, and the component that uses them. Main thread.
class Ide final : private DebugListener {
 public:
  /// Opens the project, makes its directory the current one of the product, and makes the services; `user`
  /// must outlive the IDE. The component is not loaded yet.
  Ide(IdePlaces places, IdeUser& user);
  /// Ends the component.
  ~Ide() override;
  Ide(const Ide&) = delete;
  Ide& operator=(const Ide&) = delete;

  const Project& OpenProject() const { return project_; }
  SettingsFile& Settings() { return settings_; }
  DebugSession& Debugger() { return debugger_; }
  Host& Services() { return host_; }
  CommandRegistry& Commands() { return commands_; }
  Columns& EditorColumns() { return columns_; }
  OpenFiles& Editors() { return openFiles_; }
  WindowService& Windows() { return windows_; }
  MessageOptions& Options() { return options_; }
  MacroRecorder& Macro() { return macro_; }

  /// Loads the component's library when it is not loaded, and starts an instance. Throws ComponentError.
  void StartComponent();
  /// Ends the instance. Gives what it left registered, one line each; the IDE has forgotten it.
  std::vector<std::string> EndComponent();
  /// Null while there is no instance.
  Component* RunningComponent();

  /// Loads an image (a product path, or one relative to the project or the current directory) and downloads
  /// it. Throws ProgramError or TargetError.
  void LoadProgram(const std::string& path);
  void Download();
  /// Opens an editor for a source file of the program (a product path) unless one shows it. False when the
  /// file cannot be read.
  bool OpenEditor(const std::string& file);

  /// Sends an event to the component.
  void Signal(const qal::Guid& event);
  /// Registered automation interface, or null.
  qal::ICoverageAutomation* Automation();
  std::string ErrorTextOf(qal::Status status);

  /// Sessions are files of the state directory. `name` is one word of letters, digits, "-" and "_"; others
  /// throw std::invalid_argument. Give the reason of a failure, or an empty text.
  std::string SaveSession(const std::string& name);
  std::string OpenSession(const std::string& name);
  /// Names of the sessions that are there.
  std::vector<std::string> Sessions() const;

  /// A path as a person gives it, as an absolute product path: below the project when it is there, else below
  /// the directory that the workbench was started in.
  std::string PathFor(const std::string& typed) const;

 private:
  struct Services_;

  void OnRunBegins() override;
  void OnRunEnds() override;
  void OnCoverageAvailable() override;
  void OnRedraw() override;
  void OnSymbolsChanged() override;
  void OnTargetReset() override;
  void OfferServices();
  std::string SessionFile(const std::string& name) const;

  IdePlaces places_;
  std::string startDirectory_;  // current before the project was opened
  IdeUser& user_;
  Project project_;
  std::string warning_;  // of the settings file
  SettingsFile settings_;
  DebugSession debugger_;
  Host host_;
  CommandRegistry commands_;
  Columns columns_;
  OpenFiles openFiles_;
  WindowService windows_;
  MessageOptions options_;
  MacroRecorder macro_;
  std::unique_ptr<Services_> services_;  // those that only the component calls
  std::unique_ptr<Component> component_;
};

}  // namespace workbench
