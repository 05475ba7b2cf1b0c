#include <algorithm>

#include "platform/files.h"
#include "platform/paths.h"
#include "platform/text.h"
#include "workbench/console/console.h"
#include "workbench/services/program_services.h"

namespace workbench {
namespace {

constexpr std::size_t kLargestShownFile = 64u << 20;
constexpr std::uint64_t kMostShownLines = 1'000'000;

const Program& NeedProgram(Console& console, std::shared_ptr<const Debuggee>& held) {
  held = console.ide().Debugger().Current();
  if (!held) throw VerbError("no program is loaded; program load FILE loads one");
  return *held->program;
}

void PrintFunctions(Console& console, const std::vector<Function>& functions) {
  for (const Function& function : functions) {
    console.Print(platform::Format("%08x-%08x  %s", function.start, function.end, function.name.c_str()));
  }
  console.Print(Counted(functions.size(), "function"));
}

void PrintInfo(Console& console) {
  std::shared_ptr<const Debuggee> held;
  const Program& program = NeedProgram(console, held);
  console.Print("image: " + platform::FilePart(ProductSourcePath(program.File())));
  console.Print(platform::Format("entry: %08x", program.Entry()));
  for (const Segment& segment : program.Segments()) {
    const auto size = static_cast<std::uint32_t>(segment.bytes.size());
    console.Print(platform::Format("segment: %08x-%08x%s%s", segment.address, segment.address + size - 1,
                                   segment.executable ? " code" : "", segment.writable ? " writable" : ""));
  }
  for (const std::string& file : program.SourceFiles()) {
    console.Print("source: " + platform::FilePart(ProductSourcePath(file)) + ", " +
                  Counted(program.FunctionsOf(file).size(), "function"));
  }
  for (const std::string& warning : program.Warnings()) console.Print("warning: " + warning);
}

void OnProgram(Console& console, Words& words) {
  const std::string what = words.Take("load, info or functions");
  if (SameWord(what, "load")) {
    const std::string file = words.Rest();
    if (file.empty()) throw VerbError("the file is missing");
    console.ide().LoadProgram(file);
    console.Print("loaded " + platform::FilePart(platform::FullPath(file)));
  } else if (SameWord(what, "info")) {
    words.End();
    PrintInfo(console);
  } else if (SameWord(what, "functions")) {
    std::shared_ptr<const Debuggee> held;
    const Program& program = NeedProgram(console, held);
    const std::string file = words.Rest();
    if (file.empty()) return PrintFunctions(console, program.Functions());
    const std::string found = program.FindSourceFile(NativeSourcePath(file));
    if (found.empty()) throw VerbError("the program has no source file " + file + ", or several");
    PrintFunctions(console, program.FunctionsOf(found));
  } else {
    throw VerbError("program " + what + " is not known: load, info or functions");
  }
}

void OnDownload(Console& console, Words& words) {
  words.End();
  console.ide().Download();
  console.Print("downloaded");
}

/// Symbol, function, source line and address of a place in the program.
std::string Place(Console& console, std::uint32_t address) {
  std::string place = platform::Format("%08x", address);
  const auto debuggee = console.ide().Debugger().Current();
  if (const Function* function = debuggee->program->FunctionAt(address)) {
    place += " in " + function->name;
    if (address != function->start) place += platform::Format("+0x%x", address - function->start);
  }
  if (const auto line = debuggee->program->LineOf(address)) {
    place += " (" + platform::FilePart(ProductSourcePath(line->file)) + " line " +
             std::to_string(line->line) + ")";
  }
  return place;
}

void PrintStop(Console& console, const StopReport& report) {
  const std::string executed = Counted(report.executed, "instruction");
  switch (report.reason) {
    case StopReason::kEndOfProgram:
      return console.Print("end of the program after " + executed);
    case StopReason::kBreakpoint:
    case StopReason::kCount:
      return console.Print("stopped at " + Place(console, report.address) + " after " + executed);
    case StopReason::kRequest:
      return console.Print("interrupted at " + Place(console, report.address) + " after " + executed);
    case StopReason::kRecordFull:
      return console.Print("stopped at " + Place(console, report.address) + ": the record is full");
    case StopReason::kFault:
      throw VerbError("the target cannot go on: " + report.text);
  }
}

void OnRun(Console& console, Words& words) {
  std::shared_ptr<const Debuggee> held;
  NeedProgram(console, held);
  const InterruptScope interrupts;
  if (words.TakeIf("to")) {
    const std::string place = words.Rest();
    if (place.empty()) throw VerbError("the symbol or address is missing");
    return PrintStop(console, console.ide().Debugger().RunTo(console.AddressOf(place)));
  }
  std::uint64_t count = Simulator::kNoLimit;
  if (!words.Empty()) count = words.TakeNumber("the number of instructions", Simulator::kNoLimit);
  words.End();
  if (count == 0) throw VerbError("the number of instructions must be above 0");
  PrintStop(console, console.ide().Debugger().Run(count));
}

void OnReset(Console& console, Words& words) {
  words.End();
  std::shared_ptr<const Debuggee> held;
  NeedProgram(console, held);
  console.ide().Debugger().Reset();
  console.Print("reset, at " + Place(console, held->simulator->Where()));
}

void OnWhere(Console& console, Words& words) {
  words.End();
  std::shared_ptr<const Debuggee> held;
  NeedProgram(console, held);
  console.Print(Place(console, held->simulator->Where()));
}

void OnEvaluate(Console& console, Words& words) {
  const std::string text = words.Rest();
  if (text.empty()) throw VerbError("the expression is missing");
  console.Print(platform::Format("%08x", console.AddressOf(text)));
}

void OnCat(Console& console, Words& words) {
  const std::string file = words.Take("the file");
  std::uint64_t most = kMostShownLines;
  if (!words.Empty()) most = words.TakeNumber("the number of lines", kMostShownLines);
  words.End();
  const auto text = platform::ReadFile(console.ide().PathFor(file), kLargestShownFile);
  if (!text) throw VerbError(file + " cannot be read");
  std::uint64_t shown = 0;
  for (std::size_t at = 0; at < text->size() && shown < most; ++shown) {
    std::size_t end = text->find('\n', at);
    if (end == std::string::npos) end = text->size();
    std::string line = text->substr(at, end - at);
    while (!line.empty() && line.back() == '\r') line.pop_back();
    console.Print(line);
    at = end + 1;
  }
}

void OnMove(Console& console, Words& words) {
  const std::string from = words.Take("the file");
  const std::string to = words.Take("its new name");
  words.End();
  if (platform::PathExists(console.ide().PathFor(to))) throw VerbError("there is a file " + to + " already");
  std::string error;
  if (!platform::MoveFile(console.ide().PathFor(from), console.ide().PathFor(to), &error))
    throw VerbError(from + ": " + error);
}

void OnSame(Console& console, Words& words) {
  const std::string first = words.Take("the first file");
  const std::string second = words.Take("the second file");
  words.End();
  const auto read = [&](const std::string& file) {
    auto text = platform::ReadFile(console.ide().PathFor(file), kLargestShownFile);
    if (!text) throw VerbError(file + " cannot be read");
    return std::move(*text);
  };
  const std::string a = read(first);
  const std::string b = read(second);
  if (a == b) return console.Print("the files are the same");
  const auto [difference, other] = std::mismatch(a.begin(), a.end(), b.begin(), b.end());
  console.Print("the files differ from line " + std::to_string(1 + std::count(a.begin(), difference, '\n')) +
                " on");
}

constexpr Verb kVerbs[] = {
    {"program", "load FILE\ninfo\nfunctions [FILE]", "Loads an image, or shows what it holds.", OnProgram},
    {"download", "", "Loads the image again, as a debugger does after a build.", OnDownload, true},
    {"run", "[COUNT]\nto SYMBOL|ADDRESS", "Runs to the end, for COUNT instructions, or to a place.", OnRun,
     true},
    {"reset", "", "Puts the target back to its start.", OnReset, true},
    {"where", "", "Shows where the target stands.", OnWhere},
    {"evaluate", "EXPRESSION", "Shows the address that an expression gives; numbers are hexadecimal.",
     OnEvaluate},
    {"same", "FILE FILE", "Says whether two files are the same, or where they begin to differ.", OnSame},
    {"move", "FILE FILE", "Gives a file of the project another name.", OnMove},
    {"cat", "FILE [LINES]", "Prints a text file of the project.", OnCat},
};

}  // namespace

std::span<const Verb> ProgramVerbs() { return kVerbs; }

}  // namespace workbench
