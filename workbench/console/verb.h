#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "workbench/console/words.h"

namespace workbench {

class Console;

/// One verb of the console. The tables of verbs, one for each group, are all that `help` and the dispatch
/// know.
struct Verb {
  std::string_view name;
  std::string_view usage;  ///< what stands behind the name; several forms are divided by line breaks
  std::string_view help;   ///< one sentence
  void (*handler)(Console& console, Words& words);
  bool recorded = false;  ///< the line becomes part of a macro that is being recorded
};

/// The groups, each in a file of its own. A handler throws VerbError when the verb cannot be carried out.
std::span<const Verb> ProgramVerbs();
std::span<const Verb> DebuggerVerbs();
std::span<const Verb> CommandVerbs();
std::span<const Verb> WindowVerbs();
std::span<const Verb> MenuVerbs();
std::span<const Verb> DialogVerbs();
std::span<const Verb> EditorVerbs();
std::span<const Verb> SettingVerbs();
std::span<const Verb> TestVerbs();
std::span<const Verb> GeneralVerbs();

struct VerbGroup {
  std::string_view title;
  std::span<const Verb> verbs;
};
/// All of them, in the order in which help shows them.
std::vector<VerbGroup> AllVerbs();
/// By name, case ignored; null when there is none.
const Verb* FindVerb(std::string_view name);

}  // namespace workbench
