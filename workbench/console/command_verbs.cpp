#include "platform/text.h"
#include "workbench/console/console.h"

namespace workbench {
namespace {

constexpr std::uint64_t kMostShownLines = 1'000'000;

void OnHead(Console& console, Words& words) {
  const std::uint64_t count = words.TakeNumber("the number of lines", kMostShownLines);
  const std::string line = words.Rest();
  if (line.empty()) throw VerbError("the command is missing");
  console.RunCommand(line, static_cast<std::size_t>(count));
}

void OnCommands(Console& console, Words& words) {
  words.End();
  for (const auto& command : console.ide().Commands().Commands()) {
    const std::string syntax = platform::Trim(command.syntax);
    console.Print(command.name + (syntax.empty() ? "" : " " + syntax));
  }
}

void PrintStatus(Console& console, qal::Status status) {
  if (qal::Failed(status)) {
    console.Print(platform::Format("failed: 0x%08X", static_cast<std::uint32_t>(status)));
  } else {
    console.Print("ok");
  }
}

void OnAutomation(Console& console, Words& words) {
  auto* automation = console.ide().Automation();
  if (!automation) throw VerbError("the component offers no automation");
  const std::string what = words.Take("the operation");
  const auto is = [&](const char* name) { return SameWord(what, name); };
  if (is("set-range")) {
    const std::uint32_t start = console.AddressOf(words.Take("the first address"));
    const std::uint32_t end = console.AddressOf(words.Take("the last address"));
    words.End();
    return PrintStatus(console, automation->SetRange(start, end));
  }
  if (is("load") || is("save")) {
    const platform::Wide path(words.Rest());
    return PrintStatus(console, is("load") ? automation->Load(path.get()) : automation->Save(path.get()));
  }
  words.End();
  if (is("get-range")) {
    std::uint32_t start = 0;
    std::uint32_t end = 0;
    const qal::Status status = automation->GetRange(&start, &end);
    if (qal::Failed(status)) return PrintStatus(console, status);
    return console.Print(platform::Format("%08x-%08x", start, end));
  }
  if (is("is-enabled")) {
    qal::Flag enabled = qal::kFalse;
    const qal::Status status = automation->IsEnabled(&enabled);
    if (qal::Failed(status)) return PrintStatus(console, status);
    return console.Print(enabled != qal::kFalse ? "enabled" : "disabled");
  }
  if (is("enable")) return PrintStatus(console, automation->Enable());
  if (is("disable")) return PrintStatus(console, automation->Disable());
  if (is("clear")) return PrintStatus(console, automation->Clear());
  throw VerbError("automation " + what + " is not known");
}

constexpr Verb kVerbs[] = {
    {"commands", "", "Lists the commands that components have registered.", OnCommands},
    {"head", "LINES COMMAND", "Runs a command and shows the first lines of its output.", OnHead},
    {"automation", "set-range START END\nget-range\nenable\ndisable\nclear\nis-enabled\nload FILE\nsave FILE",
     "Calls the component's automation interface.", OnAutomation},
};

}  // namespace

std::span<const Verb> CommandVerbs() { return kVerbs; }

}  // namespace workbench
