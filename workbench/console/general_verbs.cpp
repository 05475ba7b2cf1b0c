#include "workbench/console/console.h"

namespace workbench {
namespace {

/// "name form" for each form of the usage.
std::vector<std::string> Forms(const Verb& verb) {
  std::vector<std::string> forms;
  std::string_view usage = verb.usage;
  for (;;) {
    const std::size_t end = usage.find('\n');
    const std::string_view form = usage.substr(0, end);
    forms.push_back(std::string(verb.name) + (form.empty() ? "" : " ") + std::string(form));
    if (end == std::string_view::npos) return forms;
    usage.remove_prefix(end + 1);
  }
}

void OnHelp(Console& console, Words& words) {
  if (!words.Empty()) {
    const std::string name = words.Take("the verb");
    words.End();
    const Verb* verb = FindVerb(name);
    if (!verb) throw VerbError("there is no verb " + name);
    for (const std::string& form : Forms(*verb)) console.Print(form);
    return console.Print("  " + std::string(verb->help));
  }
  for (const VerbGroup& group : AllVerbs()) {
    console.Print(std::string(group.title) + ":");
    for (const Verb& verb : group.verbs) {
      std::string line = "  " + std::string(verb.name);
      line.resize(std::max<std::size_t>(line.size() + 1, 16), ' ');
      console.Print(line + std::string(verb.help));
    }
  }
  console.Print("A line that begins with the name of a command goes to that command; commands lists them.");
}

void OnRestart(Console& console, Words& words) {
  words.End();
  for (const std::string& left : console.ide().EndComponent()) console.Print("left behind: " + left);
  console.ide().StartComponent();
  console.Print("a new " + console.ide().RunningComponent()->Name() + " has started");
}

void OnComponent(Console& console, Words& words) {
  words.End();
  const Component* running = console.ide().RunningComponent();
  if (!running) throw VerbError("no component is running");
  console.Print(running->Name() + " " + running->Version() + " " + GuidText(running->ClassId()));
}

void OnQuit(Console& console, Words& words) {
  words.End();
  console.Quit();
}

constexpr Verb kVerbs[] = {
    {"component", "", "Shows what the component's library says of itself.", OnComponent},
    {"restart", "", "Ends the component and starts a fresh instance of it.", OnRestart},
    {"help", "[VERB]", "Lists the verbs, or shows one.", OnHelp},
    {"quit", "", "Ends the workbench.", OnQuit},
};

}  // namespace

std::span<const Verb> GeneralVerbs() { return kVerbs; }

}  // namespace workbench
