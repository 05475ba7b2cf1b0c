// Reads the parts of an ELF file that a program needs, trusting nothing in it: every offset, size and count
// is checked against the file before use.
#pragma once

#include <elf.h>

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "workbench/program/program.h"

namespace workbench {

class ElfReader {
 public:
  /// `bytes` is the whole file and outlives the reader; `name` stands in error texts.
  ElfReader(std::string name, std::span<const std::uint8_t> bytes);

  /// Fills in segments, code and data ranges and symbols. Throws ProgramError.
  void ReadInto(Program& program);

 private:
  [[noreturn]] void Fail(const std::string& what) const;
  template <typename T>
  T At(std::uint64_t offset, const char* what) const;
  std::string_view Text(const Elf32_Shdr& table, std::uint32_t offset) const;

  void ReadHeader();
  void ReadSections();
  void ReadSegments(Program& program) const;
  void ReadCode(Program& program) const;
  void ReadSymbols(Program& program);
  void MarkData(Program& program) const;

  struct Mapping {
    std::uint32_t address;
    bool data;
  };

  std::string name_;
  std::span<const std::uint8_t> bytes_;
  Elf32_Ehdr header_{};
  std::vector<Elf32_Shdr> sections_;
  std::vector<Mapping> mappings_;
};

}  // namespace workbench
