#include "unit/workbench/elf_builder.h"

#include <elf.h>
#include <unistd.h>

#include <atomic>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace workbench_test {
namespace {

constexpr std::uint32_t kCodeStart = 0x40;

template <typename T>
void Append(std::vector<std::uint8_t>& bytes, const T& value) {
  const auto* raw = reinterpret_cast<const std::uint8_t*>(&value);
  bytes.insert(bytes.end(), raw, raw + sizeof value);
}

}  // namespace

std::vector<std::uint8_t> ElfBuilder::Build() const {
  std::vector<std::uint8_t> flash(kCodeStart, 0);
  const std::uint32_t vectors[2] = {0x20001000, kCodeStart | 1};
  std::memcpy(flash.data(), vectors, sizeof vectors);
  for (const std::uint16_t halfword : code) Append(flash, halfword);
  const auto end = static_cast<std::uint32_t>(flash.size());

  std::string names("\0.text\0.symtab\0.strtab\0", 23);
  std::vector<Elf32_Sym> table(1);
  auto all = symbols;
  all.push_back({"firmware_end", end - 2});
  for (const NamedAddress& symbol : all) {
    Elf32_Sym row{};
    row.st_name = static_cast<Elf32_Word>(names.size());
    row.st_value = symbol.address | (symbol.function ? 1 : 0);
    row.st_info = ELF32_ST_INFO(STB_GLOBAL, symbol.function ? STT_FUNC : STT_NOTYPE);
    row.st_shndx = 1;
    table.push_back(row);
    names += symbol.name + '\0';
  }

  const std::uint32_t flashAt = sizeof(Elf32_Ehdr) + sizeof(Elf32_Phdr);
  const std::uint32_t tableAt = flashAt + end;
  const auto tableSize = static_cast<std::uint32_t>(table.size() * sizeof(Elf32_Sym));
  const std::uint32_t namesAt = tableAt + tableSize;
  Elf32_Ehdr header{};
  std::memcpy(header.e_ident, ELFMAG, SELFMAG);
  header.e_ident[EI_CLASS] = ELFCLASS32;
  header.e_ident[EI_DATA] = ELFDATA2LSB;
  header.e_ident[EI_VERSION] = EV_CURRENT;
  header.e_type = ET_EXEC;
  header.e_machine = EM_ARM;
  header.e_version = EV_CURRENT;
  header.e_entry = kCodeStart | 1;
  header.e_phoff = sizeof(Elf32_Ehdr);
  header.e_shoff = static_cast<Elf32_Off>(namesAt + names.size());
  header.e_ehsize = sizeof(Elf32_Ehdr);
  header.e_phentsize = sizeof(Elf32_Phdr);
  header.e_phnum = 1;
  header.e_shentsize = sizeof(Elf32_Shdr);
  header.e_shnum = 4;
  header.e_shstrndx = 3;
  const Elf32_Phdr segment{PT_LOAD, flashAt, 0, 0, end, end, PF_R | PF_X, 4};
  const Elf32_Shdr sections[4] = {
      {},
      {1, SHT_PROGBITS, SHF_ALLOC | SHF_EXECINSTR, kCodeStart, flashAt + kCodeStart, end - kCodeStart, 0, 0,
       4, 0},
      {7, SHT_SYMTAB, 0, 0, tableAt, tableSize, 3, 1, 4, sizeof(Elf32_Sym)},
      {15, SHT_STRTAB, 0, 0, namesAt, static_cast<Elf32_Word>(names.size()), 0, 0, 1, 0}};

  std::vector<std::uint8_t> bytes;
  Append(bytes, header);
  Append(bytes, segment);
  bytes.insert(bytes.end(), flash.begin(), flash.end());
  for (const Elf32_Sym& row : table) Append(bytes, row);
  bytes.insert(bytes.end(), names.begin(), names.end());
  for (const Elf32_Shdr& section : sections) Append(bytes, section);
  return bytes;
}

TemporaryFile::TemporaryFile(const std::vector<std::uint8_t>& bytes) {
  static std::atomic<int> number{0};
  path_ = (std::filesystem::temp_directory_path() /
           ("qal-program-" + std::to_string(getpid()) + "-" + std::to_string(number++) + ".elf"))
              .string();
  std::ofstream(path_, std::ios::binary)
      .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

TemporaryFile::~TemporaryFile() {
  std::error_code error;
  std::filesystem::remove(path_, error);
}

std::vector<std::uint8_t> ReadFile(const std::string& path) {
  std::ifstream stream(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

std::shared_ptr<const workbench::Program> LoadBytes(const std::vector<std::uint8_t>& bytes) {
  const TemporaryFile file(bytes);
  return workbench::Program::Load(file.Path());
}

std::shared_ptr<const workbench::Program> LoadCode(const std::vector<std::uint16_t>& code) {
  ElfBuilder builder;
  builder.code = code;
  return LoadBytes(builder.Build());
}

std::string FirmwarePath() { return QAL_EXAMPLES_DIR "/firmware/firmware.elf"; }

std::shared_ptr<const workbench::Program> Firmware() {
  static const auto program = workbench::Program::Load(FirmwarePath());
  return program;
}

}  // namespace workbench_test
