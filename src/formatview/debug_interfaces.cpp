#include "formatview/debug_interfaces.h"

#include "model/services.h"
#include "qal/ids.h"

namespace coverage {

void CDebugInterfaces::BindDebugger(qal::IQHost* host) {
  if (host == nullptr) return;
  const auto& ids = qal::iid::kDebuggerInterfaces;
  executionState = FindService<qal::IQExecutionState>(host, ids[0]);
  debugger2 = FindService<qal::IQUnknown>(host, ids[1]);
  memory = FindService<qal::IQMemory>(host, ids[2]);
  debugger4 = FindService<qal::IQUnknown>(host, ids[3]);
  debugger5 = FindService<qal::IQUnknown>(host, ids[4]);
  debugger6 = FindService<qal::IQUnknown>(host, ids[5]);
  traceStart = FindService<qal::IQTraceStart>(host, ids[6]);
  debugger8 = FindService<qal::IQUnknown>(host, ids[7]);
}

void CDebugInterfaces::UnbindDebugger() {
  executionState = nullptr;
  memory = nullptr;
  traceStart = nullptr;
  debugger2 = debugger4 = debugger5 = debugger6 = debugger8 = nullptr;
}

bool CDebugInterfaces::ExecutionHalted() const {
  return executionState != nullptr && qal::Succeeded(executionState->IsHalted());
}

}  // namespace coverage
