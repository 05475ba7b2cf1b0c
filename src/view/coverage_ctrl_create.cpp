#include <utility>

#include "model/services.h"
#include "util/resource_ids.h"
#include "view/coverage_ctrl.h"

// The control's beginning and end, and what it registers with the IDE in between.

namespace coverage {
namespace {

constexpr char kToolbarKey[] = "{WK_TB00000014_CODE}";
constexpr platform::LResult kCreationRefused = -1;

}  // namespace

CJepCoverageCtrl::CJepCoverageCtrl(qal::IQHost* hostObject, CUiCustomizer* customizerObject)
    : CUiDebugCommandSink(hostObject, customizerObject),
      records(hostObject),
      reporter(hostObject),
      automation(*this),
      macro(hostObject, *this),
      services{host, customizer, records, options, macro, projectKeys, history, reporter, *this} {
  const platform::ResourceScope scope(Resources());
  if (host != nullptr) {
    host->Advise(&qal::iid::kWorkSpaceClient, static_cast<qal::IQWorkSpaceClient2*>(this));
    host->Advise(&qal::iid::kWorkSpaceClient2, static_cast<qal::IQWorkSpaceClient2*>(this));
    host->Advise(&qal::iid::kFormatViewSink, static_cast<qal::IQFormatViewClient2*>(this));
  }
  ReadDisplayFont(settings, displayFont);
  ReadDisplayColours(settings, textFore, textBack);

  auto* const messageOptions = FindService<qal::IQMessageOptions>(host, qal::iid::kMessageOptions);
  auto* const source = FindService<qal::IQSource>(host, qal::iid::kSource);
  auto* const columns = FindService<qal::IQColumnService>(host, qal::iid::kColumnService);
  options.Register(messageOptions);

  marks = std::make_unique<LineMarks>(records, source, columns);
  table = std::make_unique<WindowTable>(services, *this, questions, *marks);
  delivery = std::make_unique<Delivery>(records, *table, *marks);
  panes = std::make_unique<PaneServices>(
      PaneServices{host, customizer, settings, records, macro, history, reporter, *delivery, *this, *this});
  opener = std::make_unique<WindowOpener>(services, *panes, *table,
                                          [this](DisplayClient& display) { ApplyDisplaySettings(display); });
  loader = std::make_unique<WindowLoader>(services, *opener);
  opening = std::make_unique<coverage::OpenCoverage>(services, *opener, *loader);
  reload = std::make_unique<WindowReload>(services, *table, *opener, saver, *marks);
  sourceChange = std::make_unique<SourceChange>(services, *opener, questions, *marks);
  commands = MakeCoverageCommands(*this);

  if (host != nullptr) {
    host->RegisterProvider(&qal::iid::kCoverageAutomation, static_cast<qal::ICoverageAutomation*>(this));
  }
  macro.ResetMacroState();
}

CJepCoverageCtrl::~CJepCoverageCtrl() { End(); }

void CJepCoverageCtrl::End() {
  if (std::exchange(ended, true)) return;
  const platform::ResourceScope scope(Resources());
  delivery->Stop();
  options.Withdraw();
  macro.End();
  // The listings of "coverage_display" read the model: they end with their command, before the model goes.
  while (!commands.empty()) commands.erase(commands.begin());
  records.Commands().Withdraw();
  if (host != nullptr) {
    host->Unadvise(&qal::iid::kWorkSpaceClient, static_cast<qal::IQWorkSpaceClient2*>(this));
    host->Unadvise(&qal::iid::kWorkSpaceClient2, static_cast<qal::IQWorkSpaceClient2*>(this));
    host->Unadvise(&qal::iid::kFormatViewSink, static_cast<qal::IQFormatViewClient2*>(this));
    host->UnregisterProvider(&qal::iid::kCoverageAutomation, static_cast<qal::ICoverageAutomation*>(this));
  }
  DestroySinkWindow();
}

void CJepCoverageCtrl::DestroyChildren() {
  table->CloseAll();
  CUiDebugCommandSink::DestroyChildren();
}

platform::LResult CJepCoverageCtrl::OnCreate(const platform::Message& message) {
  if (CUiDebugCommandSink::OnMessage(message) == kCreationRefused) return kCreationRefused;
  if (customizer == nullptr) return 0;
  const qal::ModuleHandle module = ResourceModule();
  customizer->RegisterMenu(module, resource::kMenuControl, commandKey, qal::kClassId);
  customizer->RegisterWindow(commandKey, qal::kClassId, Handle());
  customizer->RegisterResourceModule(module, commandKey, qal::kClassId);
  customizer->RegisterToolbar(kToolbarKey, coverage::Text(strings::kCode), module, resource::kToolbarCode, 0,
                              commandKey, qal::kClassId);
  customizer->RegisterAccelerators(module, resource::kAccelerators, commandKey, qal::kClassId);
  return 0;
}

}  // namespace coverage
