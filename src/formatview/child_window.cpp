#include "formatview/child_window.h"

namespace coverage {

CUiChildWindow::CUiChildWindow(qal::IQHost* hostObject, CUiCustomizer* customizerObject)
    : CDebugInterfaces(hostObject), host(hostObject), customizer(customizerObject) {
  if (customizer == nullptr) return;
  commandKey = customizer->NewKey();
  auxKey = customizer->NewKey();
}

void CUiChildWindow::OnRemove() {
  if (customizer == nullptr) return;
  customizer->UnregisterAll(Identity());
  customizer->UnregisterAll(commandKey);
  customizer->UnregisterAll(auxKey);
}

}  // namespace coverage
