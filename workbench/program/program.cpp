#include "workbench/program/program.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>

#include "workbench/program/dwarf_reader.h"
#include "workbench/program/elf_reader.h"
#include "workbench/program/names.h"

namespace workbench {
namespace {

constexpr std::uintmax_t kFileMost = 256u << 20;
constexpr std::uintmax_t kTextMost = 16u << 20;

std::vector<std::uint8_t> ReadWhole(const std::string& file) {
  std::error_code error;
  if (std::filesystem::is_directory(file, error)) throw ProgramError(file + ": a directory, not a program.");
  const std::uintmax_t size = std::filesystem::file_size(file, error);
  if (error) throw ProgramError(file + ": cannot be read: " + error.message() + ".");
  if (size > kFileMost)
    throw ProgramError(file + ": too large; a program file has at most " + std::to_string(kFileMost >> 20) +
                       " MiB.");
  std::ifstream stream(file, std::ios::binary);
  std::vector<std::uint8_t> bytes(size);
  if (!stream || !stream.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(size)))
    throw ProgramError(file + ": cannot be read: " + std::strerror(errno) + ".");
  return bytes;
}

// The last of `items`, ascending by `start`, that begins at or below `address`; null when all begin above.
template <typename Items, typename Start>
auto* LastAtOrBelow(const Items& items, std::uint32_t address, Start start) {
  const auto above = std::upper_bound(items.begin(), items.end(), address,
                                      [&](std::uint32_t a, const auto& item) { return a < start(item); });
  return above == items.begin() ? nullptr : &*std::prev(above);
}

bool Contains(const std::vector<AddressRange>& ranges, std::uint32_t address) {
  const AddressRange* range = LastAtOrBelow(ranges, address, [](const AddressRange& r) { return r.start; });
  return range != nullptr && address <= range->last;
}

std::string LowerCase(std::string text) {
  for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return text;
}

bool EndsWithPath(const std::string& path, const std::string& tail) {
  if (tail.empty() || path.size() < tail.size() ||
      path.compare(path.size() - tail.size(), tail.size(), tail) != 0)
    return false;
  return path.size() == tail.size() || tail.front() == '/' || path[path.size() - tail.size() - 1] == '/';
}

}  // namespace

std::shared_ptr<const Program> Program::Load(const std::string& file, const ProgramOptions& options) {
  return FromBytes(file, ReadWhole(file), options);
}

std::shared_ptr<const Program> Program::FromBytes(const std::string& name, std::vector<std::uint8_t> bytes,
                                                  const ProgramOptions& options) {
  const std::shared_ptr<Program> program(new Program);
  std::error_code error;
  program->file_ = std::filesystem::absolute(name, error).lexically_normal().string();
  ElfReader(name, bytes).ReadInto(*program);
  for (std::size_t i = 0; i < program->symbols_.size(); ++i) {
    const auto [place, added] = program->symbolByName_.try_emplace(program->symbols_[i].name, i);
    const Symbol& known = program->symbols_[place->second];
    const Symbol& symbol = program->symbols_[i];
    const auto rank = [](const Symbol& s) { return (s.global ? 0 : 3) + static_cast<int>(s.kind); };
    if (!added && rank(symbol) < rank(known)) place->second = i;
  }
  DwarfReader(*program, bytes, options).Read();
  return program;
}

Program::~Program() = default;

bool Program::ReadImage(std::uint32_t address, void* buffer, std::uint32_t size) const {
  for (const Segment& segment : segments_) {
    for (const std::uint32_t start : {segment.address, segment.virtualAddress}) {
      const std::uint32_t offset = address - start;
      if (address < start || offset > segment.bytes.size() || size > segment.bytes.size() - offset) continue;
      if (size != 0) std::memcpy(buffer, segment.bytes.data() + offset, size);
      return true;
    }
  }
  return false;
}

bool Program::IsInCode(std::uint32_t address) const { return Contains(code_, address); }

bool Program::IsDataInCode(std::uint32_t address) const { return Contains(data_, address); }

const Symbol* Program::FindSymbol(std::string_view name) const {
  const auto place = symbolByName_.find(name);
  return place == symbolByName_.end() ? nullptr : &symbols_[place->second];
}

bool Program::InOneSegment(std::uint32_t first, std::uint32_t second) const {
  if (first == second) return true;
  return std::any_of(segments_.begin(), segments_.end(), [&](const Segment& segment) {
    return first - segment.virtualAddress < segment.memorySize &&
           second - segment.virtualAddress < segment.memorySize;
  });
}

const Symbol* Program::SymbolAt(std::uint32_t address) const {
  const auto above =
      std::upper_bound(symbols_.begin(), symbols_.end(), address,
                       [](std::uint32_t a, const Symbol& symbol) { return a < symbol.address; });
  if (above == symbols_.begin()) return nullptr;
  // Of the symbols at the closest address: a function before an object, a global before a local.
  const std::uint32_t closest = std::prev(above)->address;
  const Symbol* best = nullptr;
  for (auto at = above; at != symbols_.begin() && std::prev(at)->address == closest; --at) {
    const Symbol& symbol = *std::prev(at);
    const auto rank = [](const Symbol& s) { return 2 * static_cast<int>(s.kind) + (s.global ? 0 : 1); };
    if (symbol.size != 0 ? address - symbol.address >= symbol.size : !InOneSegment(symbol.address, address))
      continue;
    if (best == nullptr || rank(symbol) <= rank(*best)) best = &symbol;
  }
  return best;
}

const Function* Program::FunctionAt(std::uint32_t address) const {
  const Function* function = LastAtOrBelow(functions_, address, [](const Function& f) { return f.start; });
  if (function == nullptr) return nullptr;
  if (address <= function->end) return function;
  return IsDataInCode(address) && address <= ExtentOf(*function).last ? function : nullptr;
}

AddressRange Program::ExtentOf(const Function& function) const {
  AddressRange extent{function.start, function.end};
  const AddressRange* code =
      LastAtOrBelow(code_, function.start, [](const AddressRange& r) { return r.start; });
  if (code != nullptr && function.start <= code->last) extent.last = code->last;
  const auto next = std::upper_bound(functions_.begin(), functions_.end(), function.start,
                                     [](std::uint32_t a, const Function& f) { return a < f.start; });
  if (next != functions_.end()) extent.last = std::min(extent.last, next->start - 1);
  return extent;
}

int Program::FileIndex(std::string_view name) const {
  const auto exact = std::lower_bound(sourceFiles_.begin(), sourceFiles_.end(), name);
  if (exact != sourceFiles_.end() && *exact == name) return static_cast<int>(exact - sourceFiles_.begin());
  const std::string wanted = ComparablePath(name);
  if (wanted.empty()) return -1;
  for (const bool ignoreCase : {false, true}) {
    const std::string tail = ignoreCase ? LowerCase(wanted) : wanted;
    int only = -1;
    int fitting = 0;
    for (std::size_t i = 0; i < sourceFiles_.size(); ++i) {
      std::string path = ComparablePath(sourceFiles_[i]);
      if (ignoreCase) path = LowerCase(std::move(path));
      if (path == tail) return static_cast<int>(i);
      if (!EndsWithPath(path, tail)) continue;
      only = static_cast<int>(i);
      ++fitting;
    }
    if (fitting > 0) return fitting == 1 ? only : -1;
  }
  return -1;
}

std::string Program::FindSourceFile(std::string_view name) const {
  const int index = FileIndex(name);
  return index < 0 ? std::string() : sourceFiles_[static_cast<std::size_t>(index)];
}

const std::vector<Function>& Program::FunctionsOf(std::string_view file) const {
  static const std::vector<Function> kNone;
  const int index = FileIndex(file);
  return index < 0 ? kNone : functionsByFile_[static_cast<std::size_t>(index)];
}

const Program::LineRow* Program::RowAt(std::uint32_t address) const {
  const LineRow* row = LastAtOrBelow(lines_, address, [](const LineRow& r) { return r.start; });
  return row != nullptr && address <= row->last ? row : nullptr;
}

std::optional<SourceLine> Program::LineOf(std::uint32_t address) const {
  const LineRow* row = RowAt(address);
  if (row == nullptr) return std::nullopt;
  return SourceLine{sourceFiles_[row->file], row->line};
}

std::optional<std::uint32_t> Program::AddressOf(std::string_view file, std::uint32_t line) const {
  const int index = FileIndex(file);
  if (index < 0) return std::nullopt;
  const auto& places = addressByLine_[static_cast<std::size_t>(index)];
  const auto place =
      std::lower_bound(places.begin(), places.end(), line,
                       [](const LineAddress& p, std::uint32_t wanted) { return p.line < wanted; });
  if (place == places.end() || place->line != line) return std::nullopt;
  return place->address;
}

const std::vector<std::string>* Program::TextOf(int fileIndex) const {
  if (fileIndex < 0) return nullptr;
  const std::lock_guard lock(textMutex_);
  const auto [place, added] = texts_.try_emplace(fileIndex);
  if (added) {
    const std::string& file = sourceFiles_[static_cast<std::size_t>(fileIndex)];
    std::error_code error;
    const std::uintmax_t size = std::filesystem::file_size(file, error);
    std::ifstream stream;
    if (!error && size <= kTextMost) stream.open(file, std::ios::binary);
    for (std::string line; stream.is_open() && std::getline(stream, line);) {
      if (!line.empty() && line.back() == '\r') line.pop_back();
      place->second.push_back(line);
    }
  }
  return &place->second;
}

std::optional<std::string> Program::LineText(std::string_view file, std::uint32_t line) const {
  const std::vector<std::string>* text = TextOf(FileIndex(file));
  if (text == nullptr || line == 0 || line > text->size()) return std::nullopt;
  return (*text)[line - 1];
}

std::uint32_t Program::LineCount(std::string_view file) const {
  const std::vector<std::string>* text = TextOf(FileIndex(file));
  return text == nullptr ? 0 : static_cast<std::uint32_t>(text->size());
}

}  // namespace workbench
