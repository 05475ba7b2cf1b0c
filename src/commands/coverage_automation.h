// What other components of the IDE can do with the command-line coverage model. Statuses instead of texts,
// never a message. UI thread only.
#pragma once

#include <cstdint>
#include <string>

#include "commands/command_host.h"
#include "qal/types.h"

namespace coverage {

/// The operations of ICoverageAutomation under their names; the owner forwards to them.
class CoverageAutomation {
 public:
  /// `owner` outlives the object.
  explicit CoverageAutomation(CommandHost& owner) : view_(owner) {}

  qal::Status SetRange(std::uint32_t start, std::uint32_t end);
  qal::Status GetRange(std::uint32_t* start, std::uint32_t* end);
  qal::Status Disable();
  qal::Status Enable();
  qal::Status Clear();
  qal::Status IsEnabled(qal::Flag* enabled);
  qal::Status Load(qal::WideText path);
  qal::Status Save(qal::WideText path);

 private:
  qal::Status SetEnabled(bool enabled);

  CommandHost& view_;
};

}  // namespace coverage
