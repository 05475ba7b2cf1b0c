#include "commands/coverage_command.h"

#include "commands/address_words.h"
#include "commands/coverage_commands.h"
#include "model/services.h"
#include "platform/text.h"
#include "util/texts.h"

namespace coverage {

CCoverageCommand::CCoverageCommand(CommandHost& owner, const char* fullName, const char* shortName,
                                   std::uint32_t syntaxText)
    : CCmd(owner.Host(), 1, fullName, shortName, {}, {}),
      host(owner.Host()),
      view(owner),
      syntaxText_(syntaxText) {
  auto* registry = FindService<qal::IQCommandRegistry>(host, qal::iid::kCommandRegistry);
  if (registry == nullptr) return;
  const platform::Wide syntax(Text(syntaxText_));
  for (std::size_t i = 0; i < names.size(); ++i) {
    registry->AddCommand(platform::Wide(names[i]).get(), syntax.get(), i == 0 ? 0 : 1);
  }
}

CCoverageCommand::~CCoverageCommand() {
  auto* registry = FindService<qal::IQCommandRegistry>(host, qal::iid::kCommandRegistry);
  if (registry == nullptr) return;
  const platform::Wide syntax(Text(syntaxText_));
  for (const std::string& name : names) registry->RemoveCommand(platform::Wide(name).get(), syntax.get());
}

qal::Status CCoverageCommand::Fail(std::string& result, std::uint32_t text) {
  result = Text(text);
  return qal::kFail;
}

std::string CCoverageCommand::NameOf(const CommandEntry& entry) const {
  return AddressWords(host).NameOf(entry.functionName, entry.counts->start(), entry.counts->end());
}

std::vector<std::unique_ptr<CCoverageCommand>> MakeCoverageCommands(CommandHost& owner) {
  std::vector<std::unique_ptr<CCoverageCommand>> commands;
  commands.push_back(std::make_unique<CStateCommand>(owner));
  commands.push_back(std::make_unique<CRangeCommand>(owner));
  commands.push_back(std::make_unique<CDisplayCommand>(owner));
  commands.push_back(std::make_unique<CSaveCommand>(owner));
  commands.push_back(std::make_unique<CLoadCommand>(owner));
  return commands;
}

}  // namespace coverage
