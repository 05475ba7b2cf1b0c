#include "workbench/program/dwarf_reader.h"

#include <dwarf.h>
#include <libelf.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <set>

#include "workbench/program/names.h"

namespace workbench {
namespace {

constexpr unsigned kDepthMost = 32;
constexpr std::size_t kUnitsMost = 100'000;
constexpr std::size_t kRowsMost = 10'000'000;

struct CloseElf {
  void operator()(Elf* elf) const { elf_end(elf); }
};
struct CloseDwarf {
  void operator()(Dwarf* dwarf) const { dwarf_end(dwarf); }
};

}  // namespace

DwarfReader::DwarfReader(Program& program, std::vector<std::uint8_t>& image, const ProgramOptions& options)
    : program_(program),
      image_(image),
      options_(options),
      directory_(std::filesystem::path(program.file_).parent_path().string()) {}

void DwarfReader::Warn(const char* what) {
  std::string text = program_.file_ + ": " + what;
  if (std::find(program_.warnings_.begin(), program_.warnings_.end(), text) == program_.warnings_.end())
    program_.warnings_.push_back(std::move(text));
}

void DwarfReader::Read() {
  elf_version(EV_CURRENT);
  const std::unique_ptr<Elf, CloseElf> elf(elf_memory(reinterpret_cast<char*>(image_.data()), image_.size()));
  const std::unique_ptr<Dwarf, CloseDwarf> dwarf(elf ? dwarf_begin_elf(elf.get(), DWARF_C_READ, nullptr)
                                                     : nullptr);
  if (dwarf == nullptr) {
    Warn("no debug information; functions come from the symbol table and there are no source lines.");
  } else {
    // Every entry takes a byte or more: a walk that meets more of them goes in circles.
    entriesLeft_ = image_.size();
    Dwarf_CU* unit = nullptr;
    Dwarf_CU* next = nullptr;
    Dwarf_Half version = 0;
    std::uint8_t type = 0;
    Dwarf_Die die;
    int result = 0;
    std::size_t units = 0;
    while ((result = dwarf_get_units(dwarf.get(), unit, &next, &version, &type, &die, nullptr)) == 0) {
      if (++units > kUnitsMost) break;
      if (type == DW_UT_compile) ReadUnit(die);
      unit = next;
    }
    if (result != 1) Warn("the debug information is damaged; a part of it was left out.");
  }
  FinishLines();
  AddSymbolFunctions();
  FinishFunctions();
}

void DwarfReader::ReadUnit(Dwarf_Die& unit) {
  ReadLines(unit);
  ReadFunctions(unit, 0);
}

// Code that the linker dropped stands at address 0 in the debug information.
bool DwarfReader::IsReal(std::uint64_t start, std::uint64_t end) const {
  if (start >= end || end > (std::uint64_t{1} << 32)) return false;
  const auto address = static_cast<std::uint32_t>(start);
  if (!program_.IsInCode(address) || !program_.IsInCode(static_cast<std::uint32_t>(end - 1))) return false;
  if (address != 0) return true;
  const Symbol* symbol = program_.SymbolAt(0);
  return symbol != nullptr && symbol->address == 0 && symbol->kind == Symbol::Kind::kFunction;
}

std::uint32_t DwarfReader::FileOf(const char* recorded) {
  const auto [place, added] = files_.try_emplace(recorded, 0);
  if (added) {
    const std::string located = LocateSource(recorded, directory_, options_);
    const auto known = std::find(located_.begin(), located_.end(), located);
    place->second = static_cast<std::uint32_t>(known - located_.begin());
    if (known == located_.end()) located_.push_back(located);
  }
  return place->second;
}

void DwarfReader::ReadLines(Dwarf_Die& unit) {
  Dwarf_Lines* lines = nullptr;
  std::size_t count = 0;
  if (dwarf_getsrclines(&unit, &lines, &count) != 0) {
    if (dwarf_hasattr(&unit, DW_AT_stmt_list)) Warn("the line table of a unit is damaged and was left out.");
    return;
  }
  const auto isEnd = [](Dwarf_Line* line) {
    bool end = true;
    dwarf_lineendsequence(line, &end);
    return end;
  };
  Row open{0, 0, 0, 0};  // the statement whose code goes on; line 0 is none
  const auto close = [&](std::uint64_t end) {
    open.end = end;
    if (open.line != 0 && IsReal(open.start & ~std::uint64_t{1}, end) && rows_.size() < kRowsMost)
      rows_.push_back({open.start & ~std::uint64_t{1}, end, open.file, open.line});
    open.line = 0;
  };
  for (std::size_t i = 0; i < count; ++i) {
    Dwarf_Line* line = dwarf_onesrcline(lines, i);
    Dwarf_Addr address = 0;
    int number = 0;
    bool statement = false;
    if (line == nullptr || dwarf_lineaddr(line, &address) != 0 || dwarf_lineno(line, &number) != 0) continue;
    dwarf_linebeginstatement(line, &statement);
    if (isEnd(line)) {
      close(address);
      continue;
    }
    if (!statement) continue;
    close(address);
    const char* file = dwarf_linesrc(line, nullptr, nullptr);
    if (file == nullptr || number <= 0 || file[0] == '<') continue;
    open = {address, 0, FileOf(file), static_cast<std::uint32_t>(number)};
  }
}

void DwarfReader::ReadFunctions(Dwarf_Die& parent, unsigned depth) {
  Dwarf_Die die;
  if (depth > kDepthMost || dwarf_child(&parent, &die) != 0) return;
  int result = 0;
  do {
    if (entriesLeft_ == 0) return;
    if (--entriesLeft_ == 0) {
      Warn("the debug information goes in circles; a part of it was left out.");
      return;
    }
    switch (dwarf_tag(&die)) {
      case DW_TAG_subprogram:
        ReadFunction(die);
        break;
      case DW_TAG_namespace:
      case DW_TAG_module:
      case DW_TAG_class_type:
      case DW_TAG_structure_type:
      case DW_TAG_union_type:
        ReadFunctions(die, depth + 1);
        break;
      default:
        break;
    }
  } while ((result = dwarf_siblingof(&die, &die)) == 0);
  if (result < 0) Warn("the debug information is damaged; a part of it was left out.");
}

void DwarfReader::ReadFunction(Dwarf_Die& die) {
  Dwarf_Addr entry = 0;
  if (dwarf_entrypc(&die, &entry) != 0) return;
  Dwarf_Addr base = 0;
  Dwarf_Addr start = 0;
  Dwarf_Addr end = 0;
  bool found = false;
  std::ptrdiff_t at = 0;
  // A function in several pieces is reported as the piece that it is entered by.
  for (unsigned pieces = 0; pieces < 1000 && (at = dwarf_ranges(&die, at, &base, &start, &end)) > 0;
       ++pieces) {
    if (entry < start || entry >= end) continue;
    found = true;
    break;
  }
  entry &= ~Dwarf_Addr{1};
  if (!found || !IsReal(entry, end)) return;

  Dwarf_Attribute attribute;
  const char* name = nullptr;
  if (dwarf_attr_integrate(&die, DW_AT_linkage_name, &attribute) != nullptr)
    name = dwarf_formstring(&attribute);
  if (name == nullptr && dwarf_attr_integrate(&die, DW_AT_MIPS_linkage_name, &attribute) != nullptr)
    name = dwarf_formstring(&attribute);
  if (name == nullptr && dwarf_attr_integrate(&die, DW_AT_name, &attribute) != nullptr)
    name = dwarf_formstring(&attribute);

  FoundFunction function;
  function.function.name = name != nullptr ? Demangled(name) : "";
  function.function.start = static_cast<std::uint32_t>(entry);
  function.function.end = static_cast<std::uint32_t>(end - 1);
  int line = 0;
  if (dwarf_decl_line(&die, &line) == 0 && line > 0)
    function.function.line = static_cast<std::uint32_t>(line);
  const char* file = dwarf_decl_file(&die);
  function.file = file != nullptr && file[0] != '<' ? static_cast<std::int64_t>(FileOf(file)) : -1;
  found_.push_back(std::move(function));
}

// Functions without debug information: assembler code, the compiler's helpers.
void DwarfReader::AddSymbolFunctions() {
  std::set<std::uint32_t> known;
  for (const FoundFunction& found : found_) known.insert(found.function.start);
  for (const Symbol& symbol : program_.symbols_) {
    if (symbol.kind != Symbol::Kind::kFunction || !program_.IsInCode(symbol.address)) continue;
    if (!known.insert(symbol.address).second) continue;
    FoundFunction function{{symbol.name, symbol.address, symbol.address, 0}, -1};
    if (symbol.size > 1 && symbol.size - 1 <= 0xffffffff - symbol.address)
      function.function.end = symbol.address + (symbol.size - 1);
    found_.push_back(std::move(function));
  }
}

void DwarfReader::FinishLines() {
  std::stable_sort(rows_.begin(), rows_.end(), [](const Row& a, const Row& b) { return a.start < b.start; });
  // Files in alphabetical order, only those with code.
  std::set<std::string> used;
  for (const Row& row : rows_) used.insert(located_[row.file]);
  for (const FoundFunction& found : found_)
    if (found.file >= 0) used.insert(located_[static_cast<std::size_t>(found.file)]);
  program_.sourceFiles_.assign(used.begin(), used.end());
  std::vector<std::uint32_t> renumbered(located_.size());
  for (std::size_t i = 0; i < located_.size(); ++i)
    renumbered[i] = static_cast<std::uint32_t>(std::distance(used.begin(), used.lower_bound(located_[i])));

  auto& lines = program_.lines_;
  for (const Row& row : rows_) {
    std::uint64_t start = row.start;
    if (!lines.empty() && start <= lines.back().last) start = std::uint64_t{lines.back().last} + 1;
    if (start >= row.end) continue;  // another unit's copy of the same code
    const std::uint32_t file = renumbered[row.file];
    if (!lines.empty() && lines.back().file == file && lines.back().line == row.line &&
        lines.back().last + 1 == start)
      lines.back().last = static_cast<std::uint32_t>(row.end - 1);
    else
      lines.push_back(
          {static_cast<std::uint32_t>(start), static_cast<std::uint32_t>(row.end - 1), file, row.line});
  }
  for (FoundFunction& found : found_)
    if (found.file >= 0) found.file = renumbered[static_cast<std::size_t>(found.file)];

  program_.addressByLine_.resize(program_.sourceFiles_.size());
  for (const Program::LineRow& row : lines)
    program_.addressByLine_[row.file].push_back({row.line, row.start});
  for (auto& places : program_.addressByLine_) {
    std::stable_sort(places.begin(), places.end(),
                     [](const auto& a, const auto& b) { return a.line < b.line; });
    places.erase(std::unique(places.begin(), places.end(),
                             [](const auto& a, const auto& b) { return a.line == b.line; }),
                 places.end());
  }
}

void DwarfReader::FinishFunctions() {
  std::stable_sort(found_.begin(), found_.end(), [](const FoundFunction& a, const FoundFunction& b) {
    return a.function.start < b.function.start;
  });
  program_.functionsByFile_.resize(program_.sourceFiles_.size());
  for (std::size_t i = 0; i < found_.size(); ++i) {
    Function function = found_[i].function;
    if (!program_.functions_.empty() && program_.functions_.back().start == function.start) continue;
    std::size_t next = i + 1;
    while (next < found_.size() && found_[next].function.start == function.start) ++next;
    if (next < found_.size()) function.end = std::min(function.end, found_[next].function.start - 1);
    // Literal pools behind the code.
    for (auto data = program_.data_.rbegin(); data != program_.data_.rend(); ++data) {
      if (data->last < function.end) break;
      if (data->start <= function.end && data->start > function.start) function.end = data->start - 1;
    }
    if (program_.IsDataInCode(function.start)) continue;
    const Program::LineRow* row = program_.RowAt(function.start);
    // Code of unnamed namespaces has its full name in the symbol table only.
    const Symbol* symbol = program_.SymbolAt(function.start);
    if (symbol != nullptr && symbol->address == function.start &&
        (function.name.empty() || symbol->name.ends_with("::" + function.name)))
      function.name = symbol->name;
    if (function.name.empty()) function.name = HexText(function.start);
    if (function.line == 0 && row != nullptr) function.line = row->line;
    const std::int64_t file = row != nullptr ? static_cast<std::int64_t>(row->file) : found_[i].file;
    program_.functions_.push_back(function);
    if (file >= 0) program_.functionsByFile_[static_cast<std::size_t>(file)].push_back(function);
  }
}

}  // namespace workbench
