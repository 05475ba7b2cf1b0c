#pragma once

#include "formatview/debug_interfaces.h"
#include "formatview/format_view_ctrl.h"

namespace coverage {

/// A format view that is aware of the debugger and passes the debugger's pane notifications to its children.
/// UI thread only.
class CUiDebugCommandSink : public CJepFormatViewCtrl, public CDebugInterfaces {
 public:
  CUiDebugCommandSink(qal::IQHost* hostObject, CUiCustomizer* customizerObject)
      : CJepFormatViewCtrl(hostObject, customizerObject), CDebugInterfaces(hostObject) {}

  virtual void NotifyChildrenFirst() {
    ForEachChild([](CUiChildWindow& child) { child.OnFirstDebugNotification(); });
  }
  virtual void NotifyChildrenSecond() {
    ForEachChild([](CUiChildWindow& child) { child.OnSecondDebugNotification(); });
  }
};

}  // namespace coverage
