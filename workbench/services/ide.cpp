#include "workbench/services/ide.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "platform/files.h"
#include "platform/paths.h"
#include "platform/text.h"
#include "workbench/services/coverage_services.h"
#include "workbench/services/editor_service.h"
#include "workbench/services/program_services.h"
#include "workbench/services/project_services.h"
#include "workbench/services/session_file.h"

namespace workbench {
namespace {

constexpr char kSettingsFile[] = "settings.json";
constexpr char kSessions[] = "sessions";

std::string InState(const IdePlaces& places, const char* name) {
  return places.state.empty() ? std::string() : platform::JoinPath(places.state, name);
}

Project OpenProjectFor(const IdePlaces& places, IdeUser& user) {
  std::string warning;
  auto project = Project::Open(places.project, warning);
  if (!warning.empty()) user.Notice("warning: " + warning);
  return project;
}

std::string Installation() {
  const auto self = platform::ModulePath(reinterpret_cast<const void*>(&Installation));
  return self ? platform::DirectoryPart(*self) : std::string("\\");
}

/// An interface as GetService and QueryInterface give it.
template <class Interface>
void* Pointer(Interface& service) {
  return &service;
}

}  // namespace

struct Ide::Services_ {
  explicit Services_(Ide& ide)
      : path(ide.debugger_),
        counts(ide.debugger_),
        traceStart(ide.debugger_),
        execution(ide.debugger_),
        limits(ide.debugger_),
        source(ide.debugger_, ide.openFiles_),
        addressText(ide.debugger_),
        target(ide.debugger_),
        memory(ide.debugger_),
        expression(ide.debugger_),
        modules(ide.debugger_),
        editor(ide.user_, ide.debugger_),
        project(ide.project_),
        workspace(ide.project_, Installation()),
        placeholders(ide.project_),
        settings(ide.settings_),
        frame(ide.settings_,
              [&columns = ide.columns_](std::uint32_t column) { return columns.KeyOf(column); }) {}

  PathCoverage path;
  CountCoverage counts;
  TraceStart traceStart;
  ExecutionState execution;
  AddressLimits limits;
  Source source;
  AddressText addressText;
  TargetInformation target;
  Memory memory;
  Expression expression;
  Modules modules;
  Editor editor;
  SessionState sessionState;
  ProjectService project;
  WorkspaceService workspace;
  CustomPlaceholders placeholders;
  SettingsStore settings;
  ErrorText errorText;
  Frame frame;
  SessionData sessionData;
  CommandOutputService commandOutput;
};

Ide::Ide(IdePlaces places, IdeUser& user)
    : places_(std::move(places)),
      startDirectory_(platform::CurrentDirectory()),
      user_(user),
      project_(OpenProjectFor(places_, user_)),
      settings_(InState(places_, kSettingsFile), warning_),
      commands_(host_),
      openFiles_(columns_),
      windows_(settings_),
      options_(settings_),
      services_(std::make_unique<Services_>(*this)) {
  if (!warning_.empty()) user_.Notice("warning: " + warning_);
  platform::SetCurrentDirectory(project_.Directory());
  debugger_.SetListener(this);
  debugger_.SetStopQuestion([this] { return user_.StopAsked(); });
  OfferServices();
}

Ide::~Ide() {
  debugger_.SetListener(nullptr);
  if (component_) component_->End();
  windows_.Forget();
  platform::SetCurrentDirectory(startDirectory_);
}

void Ide::OfferServices() {
  Services_& s = *services_;
  const auto offers = [this](CoverageOffer offer) {
    return [this, offer] { return debugger_.Offer() == offer; };
  };
  host_.Offer("path-coverage", qal::iid::kPathCoverage, Pointer<qal::IQPathCoverage>(s.path),
              offers(CoverageOffer::kPath));
  host_.Offer("count-coverage", qal::iid::kCountCoverage, Pointer<qal::IQCountCoverage>(s.counts),
              offers(CoverageOffer::kCounts));
  host_.Offer("trace-start", qal::iid::kTraceStart, Pointer<qal::IQTraceStart>(s.traceStart));
  host_.Offer("execution-state", qal::iid::kExecutionState, Pointer<qal::IQExecutionState>(s.execution));
  host_.Offer("address-limits", qal::iid::kAddressLimits, Pointer<qal::IQAddressLimits>(s.limits));
  host_.Offer("source", qal::iid::kSource, Pointer<qal::IQSource>(s.source));
  host_.Offer("address-text", qal::iid::kAddressText, Pointer<qal::IQAddressText>(s.addressText));
  host_.Offer("target-information", qal::iid::kTargetInformation,
              Pointer<qal::IQTargetInformation>(s.target));
  host_.Offer("memory", qal::iid::kMemory, Pointer<qal::IQMemory>(s.memory));
  host_.Offer("expression", qal::iid::kExpression, Pointer<qal::IQExpression>(s.expression));
  host_.Offer("modules", qal::iid::kModules, Pointer<qal::IQModules>(s.modules));
  host_.Offer("editor", qal::iid::kEditor, Pointer<qal::IQEditor>(s.editor));
  host_.Offer("editor", qal::iid::kDataPaneEditor, Pointer<qal::IQEditor>(s.editor));
  host_.Offer("columns", qal::iid::kColumnService, Pointer<qal::IQColumnService>(columns_));
  host_.OfferInterface("session-state", qal::iid::kSessionState,
                       Pointer<qal::IQSessionState>(s.sessionState));
  host_.OfferInterface("host", qal::iid::kHostAux, Pointer<qal::IQHost>(host_));
  host_.Offer("session-data", qal::iid::kSessionData, Pointer<qal::IQSessionData>(s.sessionData));
  host_.Offer("project", qal::iid::kProject, Pointer<qal::IQProject>(s.project));
  host_.Offer("workspace", qal::iid::kWorkspace, Pointer<qal::IQWorkspace>(s.workspace));
  host_.Offer("placeholders", qal::iid::kCustomPlaceholders,
              Pointer<qal::IQCustomPlaceholders>(s.placeholders));
  host_.Offer("settings", qal::iid::kSettings, Pointer<qal::IQSettings>(s.settings));
  host_.Offer("message-options", qal::iid::kMessageOptions, Pointer<qal::IQMessageOptions>(options_));
  host_.Offer("macro-recorder", qal::iid::kMacroRecorder, Pointer<qal::IQMacroRecorder>(macro_));
  host_.Offer("error-text", qal::iid::kErrorText, Pointer<qal::IQErrorText>(s.errorText));
  host_.Offer("command-registry", qal::iid::kCommandRegistry, Pointer<qal::IQCommandRegistry>(commands_));
  host_.Offer("command-output", qal::iid::kCommandOutputService, Pointer<qal::IQUnknown>(s.commandOutput));
  host_.Offer("frame", qal::iid::kFrame, Pointer<qal::IQFrame>(s.frame));
  host_.Offer("window-1", qal::iid::kWindowService1, Pointer<qal::IQWindowService4>(windows_));
  host_.Offer("window-2", qal::iid::kWindowService2, Pointer<qal::IQWindowService4>(windows_));
  host_.Offer("window-3", qal::iid::kWindowService3, Pointer<qal::IQWindowService4>(windows_));
  host_.Offer("window-4", qal::iid::kWindowService4, Pointer<qal::IQWindowService4>(windows_));
}

void Ide::StartComponent() {
  if (!component_) {
    if (places_.component.empty())
      throw ComponentError("JepCoverage.dll is not installed beside this program");
    component_ = std::make_unique<Component>(places_.component);
  }
  debugger_.SetCollection(true);
  component_->Start(host_);
  openFiles_.Announce();
}

std::vector<std::string> Ide::EndComponent() {
  std::vector<std::string> left;
  if (!component_ || !component_->Instance()) return left;
  component_->End();
  const auto note = [&](std::size_t count, const char* what) {
    if (count > 0) left.push_back(std::to_string(count) + " " + what);
  };
  note(host_.RegistrationCount(), "sinks or providers");
  note(commands_.Commands().size(), "command names");
  note(columns_.Shown().size(), "columns");
  note(windows_.RegistrationCount(), "window registrations");
  note(options_.Options().size(), "message options");
  note(debugger_.Ranges().size(), "address ranges");
  host_.ForgetRegistrations();
  commands_.Forget();
  columns_.Forget();
  windows_.Forget();
  options_.Forget();
  debugger_.ForgetRanges();
  return left;
}

Component* Ide::RunningComponent() {
  return component_ && component_->Instance() ? component_.get() : nullptr;
}

std::string Ide::PathFor(const std::string& typed) const {
  if (platform::IsAbsolutePath(typed)) return platform::FullPath(typed);
  std::string inProject = platform::FullPath(typed, project_.Directory());
  if (platform::PathExists(inProject)) return inProject;
  const std::string here = platform::FullPath(typed, startDirectory_);
  return platform::PathExists(here) ? here : inProject;
}

void Ide::LoadProgram(const std::string& path) {
  debugger_.Load(platform::ToNative(PathFor(path)), platform::ToNative(project_.Directory()));
}

void Ide::Download() { debugger_.Download(platform::ToNative(project_.Directory())); }

bool Ide::OpenEditor(const std::string& file) {
  if (openFiles_.IsOpen(file)) return true;
  const auto debuggee = debugger_.Current();
  if (!debuggee) return false;
  const std::string native = NativeSourcePath(file);
  std::vector<std::string> lines(debuggee->program->LineCount(native));
  for (std::uint32_t i = 0; i < lines.size(); ++i) {
    lines[i] = platform::FromUtf8(debuggee->program->LineText(native, i + 1).value_or(std::string()));
  }
  if (lines.empty()) return false;
  openFiles_.Open(file, lines);
  return true;
}

void Ide::Signal(const qal::Guid& event) {
  if (auto* running = RunningComponent()) running->Instance()->OnDebugEvent(&event);
}

void Ide::OnRunBegins() {
  for (auto* sink : host_.SinksAs<qal::IQDebugActivitySink>(qal::iid::kDebugActivitySink))
    sink->OnActivityBegin(0, 0);
}

void Ide::OnRunEnds() {
  for (auto* sink : host_.SinksAs<qal::IQDebugActivitySink>(qal::iid::kDebugActivitySink))
    sink->OnActivityEnd();
}

void Ide::OnCoverageAvailable() { Signal(qal::event::kCoverage); }
void Ide::OnRedraw() { Signal(qal::event::kRedraw); }
void Ide::OnSymbolsChanged() { Signal(qal::event::kDownload); }
void Ide::OnTargetReset() { Signal(qal::event::kReset); }

qal::ICoverageAutomation* Ide::Automation() {
  return static_cast<qal::ICoverageAutomation*>(host_.Provider(qal::iid::kCoverageAutomation));
}

std::string Ide::ErrorTextOf(qal::Status status) {
  platform::WideOut text;
  services_->errorText.GetErrorText(status, text.put());
  return text.str();
}

std::string Ide::SessionFile(const std::string& name) const {
  const bool good = !name.empty() && name.size() <= 64 && std::all_of(name.begin(), name.end(), [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' || c == '_';
  });
  if (!good) throw std::invalid_argument("a session's name is made of letters, digits, - and _");
  if (places_.state.empty()) throw std::invalid_argument("there is no state directory for sessions");
  return platform::JoinPath(platform::JoinPath(places_.state, kSessions), name + ".json");
}

std::string Ide::SaveSession(const std::string& name) {
  const std::string file = SessionFile(name);
  services_->sessionData.Values() = nlohmann::json::object();
  const platform::Wide workspace("workspace");
  const platform::Wide project(project_.Name());
  const platform::Wide session(name);
  for (auto* client : host_.SinksAs<qal::IQWorkSpaceClient2>(qal::iid::kWorkSpaceClient2)) {
    client->OnSessionSaving(workspace.get(), project.get(), session.get());
  }
  const nlohmann::json& values = services_->sessionData.Values();
  if (RunningComponent() && values.empty()) return "the component kept nothing; there is nothing to save";
  return WriteSessionFile(file, values);
}

std::string Ide::OpenSession(const std::string& name) {
  const std::string file = SessionFile(name);
  if (!platform::PathExists(file)) return "there is no session " + name;
  if (std::string error = ReadSessionFile(file, services_->sessionData.Values()); !error.empty())
    return error;
  const platform::Wide workspace("workspace");
  const platform::Wide project(project_.Name());
  const platform::Wide session(name);
  const platform::Wide configuration(project_.Configuration());
  for (auto* client : host_.SinksAs<qal::IQWorkSpaceClient2>(qal::iid::kWorkSpaceClient2)) {
    client->OnSessionOpened(workspace.get(), project.get(), session.get(), configuration.get());
  }
  return {};
}

std::vector<std::string> Ide::Sessions() const {
  std::vector<std::string> names;
  if (places_.state.empty()) return names;
  for (const std::string& file : platform::ListDirectory(platform::JoinPath(places_.state, kSessions))) {
    if (platform::ExtensionPart(file) == ".json") names.push_back(file.substr(0, file.size() - 5));
  }
  return names;
}

}  // namespace workbench
