// Damaged and hostile program files: a clear error or a program with warnings, never a crash, never a hang.
#include <elf.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstring>
#include <functional>
#include <random>

#include "unit/workbench/elf_builder.h"
#include "workbench/disassembly/disassembler.h"
#include "workbench/program/program.h"
#include "workbench/target/simulator.h"

namespace workbench_test {
namespace {

using workbench::Program;
using workbench::ProgramError;
using Bytes = std::vector<std::uint8_t>;

std::string LoadError(const std::string& path) {
  try {
    Program::Load(path);
  } catch (const ProgramError& error) {
    return error.what();
  }
  return "loaded";
}

// The error after the file's name and ": ".
std::string ErrorOf(const Bytes& bytes) {
  const TemporaryFile file(bytes);
  const std::string text = LoadError(file.Path());
  if (text == "loaded") return text;
  EXPECT_EQ(text.substr(0, file.Path().size() + 2), file.Path() + ": ");
  return text.substr(file.Path().size() + 2);
}

// Asks everything of a program that loaded in spite of its damage.
void Use(const Program& program) {
  std::uint64_t sum = 0;
  for (const std::string& file : program.SourceFiles()) {
    for (const auto& function : program.FunctionsOf(file)) sum += program.ExtentOf(function).last;
    sum += program.LineText(file, 3).value_or("").size();
    sum += program.AddressOf(file, 20).value_or(0);
  }
  for (const auto& symbol : program.Symbols()) {
    const auto line = program.LineOf(symbol.address);
    sum += line ? line->line : 0;
    sum += program.FunctionAt(symbol.address) != nullptr;
    sum += program.SymbolAt(symbol.address) != nullptr;
  }
  EXPECT_GE(sum, 0u);
}

// With `run`, executes it too.
bool LoadAndUse(const Bytes& bytes, bool run) {
  try {
    const auto program = Program::FromBytes("image.elf", bytes);
    Use(*program);
    if (!run) return true;
    try {
      workbench::Simulator simulator(program);
      simulator.SetRecording(workbench::RecordMode::kBoth);
      simulator.Run(2000);
      workbench::Disassembler disassembler(program);
      disassembler.At(simulator.Where());
    } catch (const workbench::TargetError& error) {
      EXPECT_NE(std::string(error.what()), "");
    }
    return true;
  } catch (const ProgramError& error) {
    EXPECT_EQ(std::string(error.what()).substr(0, 11), "image.elf: ");
    return false;
  }
}

template <typename T>
T& FieldAt(Bytes& bytes, std::size_t offset) {
  return *reinterpret_cast<T*>(bytes.data() + offset);
}
Elf32_Ehdr& Header(Bytes& bytes) { return FieldAt<Elf32_Ehdr>(bytes, 0); }
Elf32_Phdr& Segment(Bytes& bytes) { return FieldAt<Elf32_Phdr>(bytes, sizeof(Elf32_Ehdr)); }
Elf32_Shdr& Section(Bytes& bytes, unsigned index) {
  return FieldAt<Elf32_Shdr>(bytes, Header(bytes).e_shoff + index * sizeof(Elf32_Shdr));
}

TEST(HostileProgram, EachDamageIsNamed) {
  ElfBuilder builder;
  builder.code = {0xbf00, 0xe7fe};
  const Bytes sound = builder.Build();
  EXPECT_EQ(ErrorOf(sound), "loaded");
  const struct {
    const char* text;
    std::function<void(Bytes&)> damage;
  } rows[] = {
      {"not an ELF file.", [](Bytes& b) { b[1] = 'F'; }},
      {"not an ELF file.", [](Bytes& b) { b.clear(); }},
      {"the file is cut short: it ends inside the ELF header.", [](Bytes& b) { b.resize(9); }},
      {"the file is cut short or damaged: the ELF header lies beyond its end.",
       [](Bytes& b) { b.resize(40); }},
      {"not a 32-bit ELF file; the target is a 32-bit ARM.", [](Bytes& b) { b[EI_CLASS] = ELFCLASS64; }},
      {"not a little-endian ELF file; the target is little-endian.",
       [](Bytes& b) { b[EI_DATA] = ELFDATA2MSB; }},
      {"built for another machine (ELF machine 62); the target is an ARM.",
       [](Bytes& b) { Header(b).e_machine = EM_X86_64; }},
      {"an object file that is not linked; link it into a program first.",
       [](Bytes& b) { Header(b).e_type = ET_REL; }},
      {"not an executable program (ELF type 4).", [](Bytes& b) { Header(b).e_type = ET_CORE; }},
      {"damaged: its program headers have 31 bytes instead of 32.",
       [](Bytes& b) { Header(b).e_phentsize = 31; }},
      {"the file is cut short or damaged: a program header lies beyond its end.",
       [](Bytes& b) { Header(b).e_phoff = 0xfffffff0; }},
      {"nothing to load: it has no segment with bytes.", [](Bytes& b) { Header(b).e_phnum = 0; }},
      {"the file is cut short or damaged: segment 0 lies beyond its end.",
       [](Bytes& b) { Segment(b).p_offset = 0xffffffff; }},
      {"damaged: segment 0 has more bytes in the file than in memory.",
       [](Bytes& b) { Segment(b).p_memsz = 1; }},
      {"damaged: segment 0 reaches beyond the 32-bit address space.",
       [](Bytes& b) { Segment(b).p_paddr = 0xfffffff0; }},
      {"damaged: its section headers have 39 bytes instead of 40.",
       [](Bytes& b) { Header(b).e_shentsize = 39; }},
      {"the file is cut short or damaged: a section header lies beyond its end.",
       [](Bytes& b) { Header(b).e_shnum = 60000; }},
      {"the file is cut short or damaged: section 2 lies beyond its end.",
       [](Bytes& b) { Section(b, 2).sh_size = 0x7fffffff; }},
  };
  for (const auto& row : rows) {
    Bytes bytes = sound;
    row.damage(bytes);
    EXPECT_EQ(ErrorOf(bytes), row.text);
  }
}

TEST(HostileProgram, TwoSegmentsAtOneAddressAreRefused) {
  Bytes bytes = ReadFile(FirmwarePath());
  const std::size_t second = Header(bytes).e_phoff + sizeof(Elf32_Phdr);
  FieldAt<Elf32_Phdr>(bytes, second).p_paddr = 0x100;
  EXPECT_EQ(ErrorOf(bytes), "damaged: two segments are loaded to address 0x00000100.");
}

TEST(HostileProgram, MissingFilesAndDirectories) {
  EXPECT_NE(LoadError("/nowhere/at/all.elf").find("/nowhere/at/all.elf: cannot be read: No such file"),
            std::string::npos);
  EXPECT_EQ(LoadError("/"), "/: a directory, not a program.");
}

TEST(HostileProgram, MemoryBeyondTheTargetIsRefused) {
  ElfBuilder builder;
  builder.code = {0xe7fe};
  Bytes bytes = builder.Build();
  Segment(bytes).p_memsz = 0x7fffffff;
  const auto program = LoadBytes(bytes);
  try {
    workbench::Simulator simulator(program);
    FAIL() << "2 GiB were laid out";
  } catch (const workbench::TargetError& error) {
    EXPECT_STREQ(error.what(), "The image needs 2048 MiB of target memory; the target has at most 64 MiB.");
  }
}

TEST(HostileProgram, StrippedProgramsHaveNeitherLinesNorFunctions) {
  Bytes bytes = ReadFile(FirmwarePath());
  Header(bytes).e_shoff = 0;
  Header(bytes).e_shnum = 0;
  Header(bytes).e_shstrndx = 0;
  const auto program = LoadBytes(bytes);
  EXPECT_TRUE(program->SourceFiles().empty());
  EXPECT_TRUE(program->Symbols().empty());
  EXPECT_FALSE(program->CodeRanges().empty()) << "the executable segment stands in for its sections";
  ASSERT_EQ(program->Warnings().size(), 1u);
  EXPECT_NE(program->Warnings()[0].find("no debug information"), std::string::npos);
}

TEST(HostileProgram, CutShortAnywhere) {
  const Bytes whole = ReadFile(FirmwarePath());
  for (std::size_t size = 0; size < whole.size(); size += size < 200 ? 1 : 97) {
    SCOPED_TRACE(size);
    // The section table stands at the end of the file: whatever is missing, something lies beyond it.
    EXPECT_FALSE(LoadAndUse(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)), false));
  }
}

TEST(HostileProgram, BytesTurnedOverAtRandom) {
  const Bytes whole = ReadFile(FirmwarePath());
  Bytes copy = whole;
  const std::size_t debugAt =
      Section(copy, 7).sh_offset;  // .debug_info, and the rest of the debug information behind
  const struct {
    const char* what;
    std::size_t from;
    std::size_t to;
    int flips;
  } areas[] = {{"header", 0, 128, 3},
               {"debug information", debugAt, whole.size(), 20},
               {"anything", 0, whole.size(), 200}};
  for (const auto& area : areas) {
    int loaded = 0;
    for (unsigned seed = 1; seed <= 150; ++seed) {
      SCOPED_TRACE(std::string(area.what) + " " + std::to_string(seed));
      std::mt19937 random(seed);
      Bytes bytes = whole;
      for (int i = 0; i < area.flips; ++i)
        bytes[area.from + random() % (area.to - area.from)] ^= static_cast<std::uint8_t>(1u << random() % 8);
      loaded += LoadAndUse(bytes, seed % 10 == 0) ? 1 : 0;
    }
    EXPECT_GT(loaded, 0) << area.what << ": the damage never came past the header";
  }
}

}  // namespace
}  // namespace workbench_test
