#pragma once

#include <cstdint>

#include "formatview/customizer.h"
#include "formatview/debug_interfaces.h"
#include "platform/window.h"
#include "qal/host.h"

namespace coverage {

/// Base of the windows that a command sink creates and owns (the panes of coverage windows): made aware of
/// the debugger, registered with the IDE under two keys of its own. UI thread only.
class CUiChildWindow : public platform::Window, public CDebugInterfaces {
 public:
  /// Both are borrowed and may be null; without a customizer there are no keys (0).
  CUiChildWindow(qal::IQHost* host, CUiCustomizer* customizer);

  /// Called before the sink destroys the window: withdraws what was registered under this object and its
  /// keys.
  virtual void OnRemove();
  /// Called when the sink is asked to notify its children.
  virtual void OnNotify() {}
  /// The debugger's two pane notifications.
  virtual void OnFirstDebugNotification() {}
  virtual void OnSecondDebugNotification() {}
  /// After a collection, while no program runs.
  virtual void RefreshFromDebugger() {}

 protected:
  RegistrationKey Identity() const { return reinterpret_cast<RegistrationKey>(this); }

  qal::IQHost* host;
  CUiCustomizer* customizer;
  std::uint32_t commandKey = 0;
  std::uint32_t auxKey = 0;
};

}  // namespace coverage
