#include <algorithm>

#include "platform/files.h"
#include "platform/text.h"
#include "platform/variant.h"
#include "workbench/console/console.h"

namespace workbench {
namespace {

using platform::Wide;
using platform::WideOut;

constexpr std::size_t kLargestMacro = 1u << 20;
constexpr std::uint64_t kHighestSize = 1000;
constexpr std::uint64_t kHighestColour = 19;

std::vector<qal::IQFormatViewClient2*> FormatClients(Console& console) {
  auto clients = console.ide().Services().SinksAs<qal::IQFormatViewClient2>(qal::iid::kFormatViewSink);
  if (clients.empty()) throw VerbError("no view has a font or colours");
  return clients;
}

void OnFont(Console& console, Words& words) {
  const auto clients = FormatClients(console);
  if (!words.Empty()) {
    const std::string face = words.Take("the font");
    const auto size = static_cast<std::uint32_t>(words.TakeNumber("the size", kHighestSize));
    words.End();
    for (auto* client : clients) {
      if (qal::Failed(client->SetFont(Wide(face).get(), size))) throw VerbError("the view refuses the font");
    }
  }
  for (auto* client : clients) {
    WideOut face;
    WideOut name;
    std::uint32_t size = 0;
    client->GetFormatName(name.put());
    const bool known = client->GetFont(face.put(), &size) == qal::kOk;
    console.Print(name.str() + ": " +
                  (known ? face.str() + " " + std::to_string(size) : std::string("no font")));
  }
}

void OnColours(Console& console, Words& words) {
  const auto clients = FormatClients(console);
  if (!words.Empty()) {
    const std::string category = words.Take("the category");
    const auto fore = static_cast<std::uint32_t>(words.TakeNumber("the text colour", kHighestColour));
    const auto back = static_cast<std::uint32_t>(words.TakeNumber("the background colour", kHighestColour));
    words.End();
    for (auto* client : clients) client->SetColours(Wide(category).get(), fore, back);
  }
  for (auto* client : clients) {
    platform::OwnedVariant list;
    if (qal::Failed(client->GetCategories(list.put()))) continue;
    for (const std::string& category :
         platform::TextListOf(list.get()).value_or(std::vector<std::string>())) {
      std::uint32_t fore = 0;
      std::uint32_t back = 0;
      client->GetColours(Wide(category).get(), &fore, &back);
      console.Print(category + ": " + std::to_string(fore) + " on " + std::to_string(back));
    }
  }
}

void OnOptions(Console& console, Words& words) {
  words.End();
  std::size_t number = 0;
  for (const auto& option : console.ide().Options().Options()) {
    console.Print(std::to_string(++number) + "  " + (option.on ? "on   " : "off  ") + option.label);
  }
}

void OnOption(Console& console, Words& words) {
  const std::string name = words.Take("the option");
  const bool on = words.TakeSwitch("the option");
  words.End();
  if (!console.ide().Options().Switch(name, on)) throw VerbError("there is no option " + name);
}

std::string MacroText(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + "\n";
  return text;
}

std::vector<std::string> ReadMacro(const std::string& file, const std::string& path) {
  auto text = platform::ReadFile(path, kLargestMacro);
  if (!text) throw VerbError(file + " cannot be read");
  std::vector<std::string> lines;
  for (std::size_t at = 0; at < text->size();) {
    const std::size_t end = std::min(text->find('\n', at), text->size());
    const std::string line = platform::Trim(text->substr(at, end - at));
    if (!line.empty()) lines.push_back(line);
    at = end + 1;
  }
  return lines;
}

void OnMacro(Console& console, Words& words) {
  MacroRecorder& macro = console.ide().Macro();
  const std::string what = words.Take("start, stop, show, save or play");
  const bool play = SameWord(what, "play");
  const bool save = SameWord(what, "save");
  const bool start = SameWord(what, "start");
  if (macro.Recording() && (play || save || start))
    throw VerbError("the macro is being recorded; macro stop ends that");
  if (play || save) {
    const std::string file = words.Rest();
    const std::string path = file.empty() ? file : console.ide().PathFor(file);
    if (play) return console.Play(file.empty() ? macro.Lines() : ReadMacro(file, path));
    if (file.empty()) throw VerbError("the file is missing");
    std::string error;
    if (!platform::ReplaceFile(path, MacroText(macro.Lines()), &error)) throw VerbError(file + ": " + error);
    return;
  }
  words.End();
  if (start) {
    macro.Start();
  } else if (SameWord(what, "stop")) {
    macro.Stop();
  } else if (SameWord(what, "show")) {
    for (const std::string& line : macro.Lines()) console.Print(line);
    console.Print(Counted(macro.Lines().size(), "line") + (macro.Recording() ? ", recording" : ""));
  } else {
    throw VerbError("macro " + what + " is not known: start, stop, show, save or play");
  }
}

void OnSession(Console& console, Words& words) {
  const std::string what = words.Take("save, open or list");
  if (SameWord(what, "list")) {
    words.End();
    for (const std::string& name : console.ide().Sessions()) console.Print(name);
    return;
  }
  const bool save = SameWord(what, "save");
  if (!save && !SameWord(what, "open"))
    throw VerbError("session " + what + " is not known: save, open or list");
  const std::string name = words.Take("the session's name");
  words.End();
  const std::string reason = save ? console.ide().SaveSession(name) : console.ide().OpenSession(name);
  if (!reason.empty()) throw VerbError(reason);
  console.Print("session " + name + (save ? " saved" : " opened"));
}

constexpr Verb kVerbs[] = {
    {"font", "[NAME SIZE]", "Shows or sets the font of the coverage windows.", OnFont},
    {"colours", "[CATEGORY FORE BACK]", "Shows or sets their colours, by index.", OnColours},
    {"options", "", "Lists the questions that can be switched off.", OnOptions},
    {"option", "NAME|NUMBER on|off", "Switches a question.", OnOption},
    {"macro", "start|stop|show\nsave FILE\nplay [FILE]",
     "Records what is done in windows, and the runs between, as lines that can be played again.", OnMacro},
    {"session", "save NAME\nopen NAME\nlist", "Saves or restores the open windows.", OnSession},
};

}  // namespace

std::span<const Verb> SettingVerbs() { return kVerbs; }

}  // namespace workbench
