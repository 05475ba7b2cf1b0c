#pragma once

#include "qal/program_services.h"
#include "workbench/services/debug_session.h"
#include "workbench/services/ide_user.h"
#include "workbench/services/service.h"

namespace workbench {

/// Hands requests to show a place on to whoever sits in front of the IDE. Main thread.
class Editor final : public Service<qal::IQEditor, qal::iid::kEditor> {
 public:
  Editor(IdeUser& user, DebugSession& debugger) : user_(user), debugger_(debugger) {}
  /// The file name is completed to the path under which the program knows it; fails for a file that it does
  /// not have.
  qal::Status ShowSourceLine(std::uint32_t* unset, std::uint32_t line, char16_t** file) override;
  qal::Status ShowAddress(std::uint32_t address, std::uint32_t one) override;

 private:
  IdeUser& user_;
  DebugSession& debugger_;
};

}  // namespace workbench
