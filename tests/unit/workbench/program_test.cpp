#include "workbench/program/program.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <set>

#include "unit/workbench/elf_builder.h"
#include "workbench/program/names.h"

namespace workbench_test {
namespace {

using workbench::AddressRange;
using workbench::Function;
using workbench::Program;
using workbench::Symbol;

TEST(Program, FunctionsEndWithTheirCodeAndNeverOverlap) {
  const auto program = Firmware();
  std::uint64_t before = 0;
  EXPECT_GE(program->Functions().size(), 45u);
  for (const Function& function : program->Functions()) {
    SCOPED_TRACE(function.name);
    EXPECT_GE(function.start, before);
    EXPECT_GT(function.end, function.start);
    EXPECT_EQ(function.end % 2, 1u);
    EXPECT_FALSE(program->IsDataInCode(function.start));
    EXPECT_FALSE(program->IsDataInCode(function.end));
    const Symbol* symbol = program->SymbolAt(function.start);
    ASSERT_NE(symbol, nullptr);
    EXPECT_EQ(symbol->address, function.start);
    EXPECT_LT(function.end - function.start, symbol->size);
    // Whatever the symbol's size holds behind the code is a literal pool, padding before it aside.
    const AddressRange extent = program->ExtentOf(function);
    EXPECT_EQ(extent.start, function.start);
    EXPECT_GE(extent.last, function.end);
    const auto line = program->LineOf(function.start);
    ASSERT_TRUE(line);
    EXPECT_TRUE(program->LineText(line->file, line->line));
    EXPECT_EQ(program->FunctionAt(function.end), &function);
    before = std::uint64_t{function.end} + 1;
  }
  const Function* parser = program->FunctionAt(program->FindSymbol("CommandRun")->address);
  EXPECT_TRUE(program->IsDataInCode(parser->end + 1)) << "a literal pool stands behind the code";
  EXPECT_EQ(program->FunctionAt(parser->end + 1), parser);
}

TEST(Program, LinesMapBackToTheirLowestAddress) {
  const auto program = Firmware();
  std::set<std::pair<std::string, std::uint32_t>> lines;
  for (const AddressRange& code : program->CodeRanges()) {
    for (std::uint32_t address = code.start; address < code.last; address += 2) {
      const auto line = program->LineOf(address);
      if (!line) continue;
      const auto first = program->AddressOf(line->file, line->line);
      ASSERT_TRUE(first);
      EXPECT_LE(*first, address);
      const auto again = program->LineOf(*first);
      ASSERT_TRUE(again);
      EXPECT_EQ(again->line, line->line);
      EXPECT_EQ(again->file, line->file);
      lines.emplace(line->file, line->line);
    }
  }
  EXPECT_GT(lines.size(), 200u);
  EXPECT_FALSE(program->LineOf(0x20000000));
  EXPECT_FALSE(program->AddressOf("main.c", 1)) << "a comment has no code";
}

TEST(Program, FilesAreFoundByAnyUnambiguousName) {
  const auto program = Firmware();
  const std::string crc = program->FindSourceFile("crc.c");
  ASSERT_FALSE(crc.empty());
  std::string product = crc;
  for (char& c : product)
    if (c == '/') c = '\\';
  const struct {
    std::string name;
    std::string found;
  } rows[] = {{crc, crc},       {product, crc},      {"C:" + product, crc},    {"firmware/crc.c", crc},
              {"./crc.c", crc}, {"CRC.C", crc},      {"firmware\\crc.c", crc}, {"c.c", ""},
              {"", ""},         {"other/crc.c", ""}, {"/elsewhere/crc.c", ""}};
  for (const auto& row : rows) EXPECT_EQ(program->FindSourceFile(row.name), row.found) << row.name;
}

TEST(Program, SymbolsByNameAndAddress) {
  const auto program = Firmware();
  const Symbol* main = program->FindSymbol("main");
  ASSERT_NE(main, nullptr);
  EXPECT_EQ(main->address % 2, 0u) << "without the Thumb bit";
  EXPECT_EQ(program->SymbolAt(main->address + 6)->name, "main");
  EXPECT_EQ(program->FindSymbol("$t"), nullptr);
  EXPECT_EQ(program->FindSymbol("nothing"), nullptr);
  EXPECT_EQ(program->SymbolAt(0xf0000000), nullptr);
}

TEST(Program, SourcesAreLookedForInTheMappedDirectoriesFirst) {
  namespace fs = std::filesystem;
  const fs::path root = fs::temp_directory_path() / "qal-sources-test";
  fs::remove_all(root);
  for (const char* directory : {"moved", "image/lib", "project"}) fs::create_directories(root / directory);
  for (const char* file : {"moved/a.c", "image/a.c", "image/lib/b.c", "project/c.c"})
    std::ofstream(root / file) << "x\n";
  workbench::ProgramOptions options;
  options.projectDirectory = (root / "project").string();
  options.sourcePaths.push_back({"/build/src", (root / "moved").string()});
  const std::string image = (root / "image").string();
  const struct {
    const char* recorded;
    std::string found;
  } rows[] = {{"/build/src/a.c", (root / "moved/a.c").string()},
              {"./a.c", (root / "image/a.c").string()},
              {"/gone/lib/b.c", (root / "image/lib/b.c").string()},
              {"C:\\gone\\c.c", (root / "project/c.c").string()},
              {"/gone/d.c", "/gone/d.c"},
              {"../../etc/./d.c", "../../etc/d.c"}};
  for (const auto& row : rows) EXPECT_EQ(workbench::LocateSource(row.recorded, image, options), row.found);
  fs::remove_all(root);
}

TEST(Program, NamesLoseTheirParameters) {
  const struct {
    const char* symbol;
    const char* name;
  } rows[] = {{"main", "main"},
              {"_ZN3foo3barEi", "foo::bar"},
              {"_ZN12_GLOBAL__N_13barEv", "(anonymous namespace)::bar"},
              {"_ZN1AclEv", "A::operator()"},
              {"_ZNK1A3getEPFivE", "A::get"},
              {"_Zbroken", "_Zbroken"}};
  for (const auto& row : rows) EXPECT_EQ(workbench::Demangled(row.symbol), row.name);
}

}  // namespace
}  // namespace workbench_test
