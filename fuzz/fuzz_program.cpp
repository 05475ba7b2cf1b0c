#include <cstdint>
#include <vector>

#include "workbench/disassembly/disassembler.h"
#include "workbench/program/program.h"

/// A program file that says whatever the input says. It loads or is refused with a text; what loads must
/// answer every question about every function and symbol, and decode.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::shared_ptr<const workbench::Program> program;
  try {
    program = workbench::Program::FromBytes("input", std::vector<std::uint8_t>(data, data + size));
  } catch (const workbench::ProgramError&) {
    return 0;
  }
  const workbench::Disassembler disassembler(program);
  for (const std::string& file : program->SourceFiles()) {
    for (const workbench::Function& function : program->FunctionsOf(file)) {
      if (function.end < function.start || program->IsDataInCode(function.start)) __builtin_trap();
      if (program->FunctionAt(function.start) == nullptr) __builtin_trap();
      disassembler.At(function.start);
      const auto line = program->LineOf(function.end);
      if (!line) continue;
      const auto first = program->AddressOf(line->file, line->line);
      if (!first || program->LineOf(*first)->line != line->line) __builtin_trap();
    }
  }
  for (const workbench::Symbol& symbol : program->Symbols()) {
    if (program->FindSymbol(symbol.name) == nullptr) __builtin_trap();
    program->SymbolAt(symbol.address);
    disassembler.Before(symbol.address);
  }
  return 0;
}
