// Reads functions and source lines from an image's debug information. Damage costs what cannot be read and
// leaves a warning; it never costs the load, and no amount of it makes the reading endless.
#pragma once

#include <elfutils/libdw.h>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "workbench/program/program.h"

namespace workbench {

class DwarfReader {
 public:
  /// `image` is the whole file, already checked by ElfReader; libelf wants to be able to write to it.
  DwarfReader(Program& program, std::vector<std::uint8_t>& image, const ProgramOptions& options);

  void Read();

 private:
  struct Row {
    std::uint64_t start;
    std::uint64_t end;  // exclusive
    std::uint32_t file;
    std::uint32_t line;
  };
  struct FoundFunction {
    Function function;
    std::int64_t file;  // -1 when unknown
  };

  void ReadUnit(Dwarf_Die& unit);
  void ReadLines(Dwarf_Die& unit);
  void ReadFunctions(Dwarf_Die& parent, unsigned depth);
  void ReadFunction(Dwarf_Die& die);
  void AddSymbolFunctions();
  void FinishLines();
  void FinishFunctions();
  bool IsReal(std::uint64_t start, std::uint64_t end) const;
  std::uint32_t FileOf(const char* recorded);
  void Warn(const char* what);

  Program& program_;
  std::vector<std::uint8_t>& image_;
  const ProgramOptions& options_;
  std::string directory_;
  std::map<std::string, std::uint32_t> files_;  // by recorded name
  std::vector<std::string> located_;
  std::vector<Row> rows_;
  std::vector<FoundFunction> found_;
  std::uint64_t entriesLeft_ = 0;
};

}  // namespace workbench
