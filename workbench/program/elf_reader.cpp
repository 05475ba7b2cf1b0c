#include "workbench/program/elf_reader.h"

#include <algorithm>
#include <cstring>

#include "workbench/program/names.h"

namespace workbench {
namespace {

constexpr std::size_t kSegmentsMost = 256;
constexpr std::uint64_t kLoadedMost = 64u << 20;

}  // namespace

ElfReader::ElfReader(std::string name, std::span<const std::uint8_t> bytes)
    : name_(std::move(name)), bytes_(bytes) {}

void ElfReader::Fail(const std::string& what) const { throw ProgramError(name_ + ": " + what); }

template <typename T>
T ElfReader::At(std::uint64_t offset, const char* what) const {
  T value;
  if (offset > bytes_.size() || bytes_.size() - offset < sizeof value)
    Fail(std::string("the file is cut short or damaged: ") + what + " lies beyond its end.");
  std::memcpy(&value, bytes_.data() + offset, sizeof value);
  return value;
}

void ElfReader::ReadInto(Program& program) {
  ReadHeader();
  program.entry_ = header_.e_entry & ~1u;
  ReadSegments(program);
  ReadSections();
  ReadCode(program);
  ReadSymbols(program);
  MarkData(program);
}

void ElfReader::ReadHeader() {
  if (bytes_.size() < SELFMAG || std::memcmp(bytes_.data(), ELFMAG, SELFMAG) != 0) Fail("not an ELF file.");
  if (bytes_.size() < EI_NIDENT) Fail("the file is cut short: it ends inside the ELF header.");
  if (bytes_[EI_CLASS] != ELFCLASS32) Fail("not a 32-bit ELF file; the target is a 32-bit ARM.");
  if (bytes_[EI_DATA] != ELFDATA2LSB) Fail("not a little-endian ELF file; the target is little-endian.");
  header_ = At<Elf32_Ehdr>(0, "the ELF header");
  if (header_.e_machine != EM_ARM)
    Fail("built for another machine (ELF machine " + std::to_string(header_.e_machine) +
         "); the target is an ARM.");
  if (header_.e_type != ET_EXEC && header_.e_type != ET_DYN)
    Fail(header_.e_type == ET_REL
             ? "an object file that is not linked; link it into a program first."
             : "not an executable program (ELF type " + std::to_string(header_.e_type) + ").");
}

void ElfReader::ReadSegments(Program& program) const {
  if (header_.e_phnum != 0 && header_.e_phentsize != sizeof(Elf32_Phdr))
    Fail("damaged: its program headers have " + std::to_string(header_.e_phentsize) + " bytes instead of " +
         std::to_string(sizeof(Elf32_Phdr)) + ".");
  std::uint64_t total = 0;
  for (std::uint32_t i = 0; i < header_.e_phnum; ++i) {
    const auto row =
        At<Elf32_Phdr>(std::uint64_t{header_.e_phoff} + i * sizeof(Elf32_Phdr), "a program header");
    if (row.p_type != PT_LOAD || (row.p_filesz == 0 && row.p_memsz == 0)) continue;
    const std::string which = "segment " + std::to_string(i);
    if (row.p_offset > bytes_.size() || row.p_filesz > bytes_.size() - row.p_offset)
      Fail("the file is cut short or damaged: " + which + " lies beyond its end.");
    if (row.p_memsz < row.p_filesz) Fail("damaged: " + which + " has more bytes in the file than in memory.");
    if (std::uint64_t{row.p_paddr} + row.p_filesz > (std::uint64_t{1} << 32) ||
        std::uint64_t{row.p_vaddr} + row.p_memsz > (std::uint64_t{1} << 32))
      Fail("damaged: " + which + " reaches beyond the 32-bit address space.");
    total += row.p_filesz;
    if (total > kLoadedMost || program.segments_.size() >= kSegmentsMost)
      Fail("too large for the target: more than " + std::to_string(kLoadedMost >> 20) + " MiB or " +
           std::to_string(kSegmentsMost) + " segments to load.");
    Segment segment;
    segment.address = row.p_paddr;
    segment.virtualAddress = row.p_vaddr;
    segment.memorySize = row.p_memsz;
    segment.writable = (row.p_flags & PF_W) != 0;
    segment.executable = (row.p_flags & PF_X) != 0;
    const auto first = bytes_.begin() + row.p_offset;
    segment.bytes.assign(first, first + row.p_filesz);
    program.segments_.push_back(std::move(segment));
  }
  auto& segments = program.segments_;
  if (std::none_of(segments.begin(), segments.end(), [](const Segment& s) { return !s.bytes.empty(); }))
    Fail("nothing to load: it has no segment with bytes.");
  std::stable_sort(segments.begin(), segments.end(),
                   [](const Segment& a, const Segment& b) { return a.address < b.address; });
  const Segment* before = nullptr;
  for (const Segment& segment : segments) {
    if (segment.bytes.empty()) continue;
    if (before != nullptr && segment.address - before->address < before->bytes.size())
      Fail("damaged: two segments are loaded to address " + HexText(segment.address) + ".");
    before = &segment;
  }
}

void ElfReader::ReadSections() {
  if (header_.e_shoff == 0) return;
  std::uint32_t count = header_.e_shnum;
  if (header_.e_shentsize != sizeof(Elf32_Shdr))
    Fail("damaged: its section headers have " + std::to_string(header_.e_shentsize) + " bytes instead of " +
         std::to_string(sizeof(Elf32_Shdr)) + ".");
  for (std::uint32_t i = 0; i < count; ++i) {
    const auto row =
        At<Elf32_Shdr>(std::uint64_t{header_.e_shoff} + i * sizeof(Elf32_Shdr), "a section header");
    if (row.sh_type != SHT_NOBITS && row.sh_type != SHT_NULL &&
        (row.sh_offset > bytes_.size() || row.sh_size > bytes_.size() - row.sh_offset))
      Fail("the file is cut short or damaged: section " + std::to_string(i) + " lies beyond its end.");
    sections_.push_back(row);
  }
}

void ElfReader::ReadCode(Program& program) const {
  std::vector<AddressRange> ranges;
  const auto add = [&](std::uint32_t start, std::uint32_t size) {
    if (size != 0 && size - 1 <= 0xffffffff - start) ranges.push_back({start, start + (size - 1)});
  };
  for (const Elf32_Shdr& section : sections_) {
    constexpr std::uint32_t kWanted = SHF_ALLOC | SHF_EXECINSTR;
    if (section.sh_type == SHT_PROGBITS && (section.sh_flags & kWanted) == kWanted)
      add(section.sh_addr, section.sh_size);
  }
  if (ranges.empty()) {
    for (const Segment& segment : program.segments_)
      if (segment.executable) add(segment.virtualAddress, static_cast<std::uint32_t>(segment.bytes.size()));
  }
  std::sort(ranges.begin(), ranges.end(),
            [](const AddressRange& a, const AddressRange& b) { return a.start < b.start; });
  for (const AddressRange& range : ranges) {
    if (!program.code_.empty() && range.start <= program.code_.back().last)
      program.code_.back().last = std::max(program.code_.back().last, range.last);
    else
      program.code_.push_back(range);
  }
}

std::string_view ElfReader::Text(const Elf32_Shdr& table, std::uint32_t offset) const {
  if (table.sh_type != SHT_STRTAB || offset >= table.sh_size) return {};
  const char* text = reinterpret_cast<const char*>(bytes_.data()) + table.sh_offset + offset;
  const std::size_t most = table.sh_size - offset;
  const std::size_t length = strnlen(text, most);
  return length == most ? std::string_view() : std::string_view(text, length);
}

void ElfReader::ReadSymbols(Program& program) {
  for (const Elf32_Shdr& section : sections_) {
    if (section.sh_type != SHT_SYMTAB) continue;
    if (section.sh_entsize != sizeof(Elf32_Sym) || section.sh_link >= sections_.size()) {
      program.warnings_.push_back(name_ + ": the symbol table is damaged and was left out.");
      continue;
    }
    const Elf32_Shdr& names = sections_[section.sh_link];
    for (std::uint32_t at = 0; section.sh_size - at >= sizeof(Elf32_Sym); at += sizeof(Elf32_Sym)) {
      const auto row = At<Elf32_Sym>(std::uint64_t{section.sh_offset} + at, "a symbol");
      const std::string_view name = Text(names, row.st_name);
      if (row.st_shndx == SHN_UNDEF || name.empty()) continue;
      const unsigned type = ELF32_ST_TYPE(row.st_info);
      if (name.front() == '$') {
        if (name.size() > 1 && (name.size() == 2 || name[2] == '.') && std::strchr("atd", name[1]) != nullptr)
          mappings_.push_back({row.st_value, name[1] == 'd'});
        continue;
      }
      if (type != STT_FUNC && type != STT_OBJECT && type != STT_NOTYPE) continue;
      Symbol symbol;
      symbol.name = Demangled(name);
      symbol.kind = type == STT_FUNC     ? Symbol::Kind::kFunction
                    : type == STT_OBJECT ? Symbol::Kind::kObject
                                         : Symbol::Kind::kLabel;
      symbol.address = type == STT_FUNC ? row.st_value & ~1u : row.st_value;
      symbol.size = row.st_size;
      symbol.global = ELF32_ST_BIND(row.st_info) != STB_LOCAL;
      program.symbols_.push_back(std::move(symbol));
    }
  }
  std::stable_sort(program.symbols_.begin(), program.symbols_.end(),
                   [](const Symbol& a, const Symbol& b) { return a.address < b.address; });
}

void ElfReader::MarkData(Program& program) const {
  std::vector<Mapping> sorted = mappings_;
  std::stable_sort(sorted.begin(), sorted.end(),
                   [](const Mapping& a, const Mapping& b) { return a.address < b.address; });
  for (const AddressRange& code : program.code_) {
    auto at = std::lower_bound(sorted.begin(), sorted.end(), code.start,
                               [](const Mapping& m, std::uint32_t address) { return m.address < address; });
    for (; at != sorted.end() && at->address <= code.last; ++at) {
      const auto next = at + 1;
      const bool nextInside = next != sorted.end() && next->address <= code.last;
      if (!at->data || (nextInside && next->address == at->address)) continue;
      const std::uint32_t last = nextInside ? next->address - 1 : code.last;
      if (!program.data_.empty() && program.data_.back().last + 1 == at->address)
        program.data_.back().last = last;
      else
        program.data_.push_back({at->address, last});
    }
  }
}

}  // namespace workbench
