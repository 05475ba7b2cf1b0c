// What the five coverage commands have in common: their names in the IDE's command registry and the objects
// they act on. UI thread only.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "commands/command.h"
#include "commands/command_host.h"

namespace coverage {

class CCoverageCommand : public CCmd {
 public:
  /// `syntaxText` identifies the syntax text that the IDE shows. `owner` outlives the command.
  CCoverageCommand(CommandHost& owner, const char* fullName, const char* shortName, std::uint32_t syntaxText);
  ~CCoverageCommand() override;

 protected:
  EntryListener* Entries() override { return view.Entries(); }
  CommandModel& model() const { return view.Model(); }
  /// Sets the result and fails.
  static qal::Status Fail(std::string& result, std::uint32_t text);
  /// Function name of a window, or "start-end".
  std::string NameOf(const CommandEntry& entry) const;

  qal::IQHost* host;
  CommandHost& view;

 private:
  std::uint32_t syntaxText_;
};

/// Makes the five commands, in the order in which they are registered: "coverage", "coverage_range",
/// "coverage_display", "coverage_save", "coverage_load". Destroy them before the model: the display command's
/// threads read it and end with the command.
std::vector<std::unique_ptr<CCoverageCommand>> MakeCoverageCommands(CommandHost& owner);

}  // namespace coverage
