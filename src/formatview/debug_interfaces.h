#pragma once

#include "qal/coverage_services.h"
#include "qal/host.h"
#include "qal/program_services.h"

namespace coverage {

/// The eight debugger interfaces that every debugger-aware object keeps: looked up once, when it is bound to
/// the host; a missing one stays null. Borrowed; UI thread only.
class CDebugInterfaces {
 public:
  CDebugInterfaces() = default;
  /// Binds when there is a host.
  explicit CDebugInterfaces(qal::IQHost* host) { BindDebugger(host); }
  virtual ~CDebugInterfaces() = default;

  void BindDebugger(qal::IQHost* host);
  void UnbindDebugger();

  /// False while a program runs, and when nobody can tell.
  bool ExecutionHalted() const;

 protected:
  qal::IQExecutionState* executionState = nullptr;
  qal::IQUnknown* debugger2 = nullptr;
  qal::IQMemory* memory = nullptr;
  qal::IQUnknown* debugger4 = nullptr;
  qal::IQUnknown* debugger5 = nullptr;
  qal::IQUnknown* debugger6 = nullptr;
  qal::IQTraceStart* traceStart = nullptr;
  qal::IQUnknown* debugger8 = nullptr;
};

}  // namespace coverage
