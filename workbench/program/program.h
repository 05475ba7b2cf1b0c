// A loaded firmware image: what its ELF file and its debug information say.
//
// Immutable once loaded, so any thread may read it; only the texts of source files are read from disk on
// demand, behind a lock. Addresses are 32-bit target addresses without the Thumb bit; every `last` and `end`
// is inclusive.
#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace workbench {

/// Why a file could not be loaded. The text names the file and what is wrong with it.
class ProgramError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Bytes that a download writes to `address`.
struct Segment {
  std::uint32_t address = 0;         ///< where the bytes are loaded (the physical address)
  std::uint32_t virtualAddress = 0;  ///< where the program uses them
  std::uint32_t memorySize = 0;      ///< size at `virtualAddress`, never below `bytes.size()`
  bool writable = false;
  bool executable = false;
  std::vector<std::uint8_t> bytes;
};

struct Symbol {
  enum class Kind { kFunction, kObject, kLabel };
  std::string name;  ///< demangled
  std::uint32_t address = 0;
  std::uint32_t size = 0;  ///< 0 when the image does not say
  Kind kind = Kind::kLabel;
  bool global = false;
};

struct Function {
  std::string name;  ///< demangled, without parameters
  std::uint32_t start = 0;
  std::uint32_t end = 0;  ///< last byte of code; literal pools behind the code do not belong to it
  std::uint32_t line = 0;
};

struct SourceLine {
  std::string file;  ///< as in `SourceFiles()`
  std::uint32_t line = 0;
};

struct AddressRange {
  std::uint32_t start = 0;
  std::uint32_t last = 0;
  friend bool operator==(const AddressRange&, const AddressRange&) = default;
};

/// Where to look for sources whose recorded path begins with `from`: the same path below `to`.
struct SourcePathMap {
  std::string from;
  std::string to;
};

struct ProgramOptions {
  std::string projectDirectory;  ///< searched for sources after the directory of the image; may be empty
  std::vector<SourcePathMap> sourcePaths;
};

class Program {
 public:
  /// Reads the image. Throws ProgramError for anything that is not a complete 32-bit little-endian ARM
  /// executable; damaged debug information costs lines and functions, never the load.
  static std::shared_ptr<const Program> Load(const std::string& file, const ProgramOptions& options = {});

  /// The same for an image in memory that stands for the file `name`.
  static std::shared_ptr<const Program> FromBytes(const std::string& name, std::vector<std::uint8_t> bytes,
                                                  const ProgramOptions& options = {});

  ~Program();
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  /// The image's path as given to `Load`, absolute.
  const std::string& File() const { return file_; }
  /// Entry address from the ELF header, without the Thumb bit.
  std::uint32_t Entry() const { return entry_; }
  /// What damaged debug information made unreadable; empty for a sound image.
  const std::vector<std::string>& Warnings() const { return warnings_; }

  // --- memory ---
  /// In ascending order of address, never overlapping.
  const std::vector<Segment>& Segments() const { return segments_; }
  /// Copies `size` bytes of the image at `address` (as loaded, or as a segment is used). False when some are
  /// not in it.
  bool ReadImage(std::uint32_t address, void* buffer, std::uint32_t size) const;
  /// True when the byte at `address` belongs to an executable section of the image.
  bool IsInCode(std::uint32_t address) const;
  /// True when the byte lies in code but is data: a literal pool, a jump table, padding behind a pool.
  bool IsDataInCode(std::uint32_t address) const;
  /// Executable sections, ascending.
  const std::vector<AddressRange>& CodeRanges() const { return code_; }
  /// Data inside executable sections, ascending.
  const std::vector<AddressRange>& DataRanges() const { return data_; }

  // --- symbols ---
  /// Ascending by address; mapping symbols and section names are left out.
  const std::vector<Symbol>& Symbols() const { return symbols_; }
  /// Global before local, function before object; null when there is none.
  const Symbol* FindSymbol(std::string_view name) const;
  /// The closest symbol at or below `address` when it covers it: by its size, else to the end of its segment.
  const Symbol* SymbolAt(std::uint32_t address) const;

  // --- functions and lines ---
  /// Source files with code, in alphabetical order. Absolute host paths where the file was found, else as
  /// recorded.
  const std::vector<std::string>& SourceFiles() const { return sourceFiles_; }
  /// The name in `SourceFiles()` that `name` means: the same path, else the only one that ends with it
  /// (compared without case when nothing else fits; backslashes count as slashes). Empty when none or several
  /// do.
  std::string FindSourceFile(std::string_view name) const;
  /// Functions whose code stands in `file` (a name that FindSourceFile understands), ascending, each address
  /// once.
  const std::vector<Function>& FunctionsOf(std::string_view file) const;
  /// Every function, ascending, each address once; those without debug information come from the symbol
  /// table.
  const std::vector<Function>& Functions() const { return functions_; }
  /// The function that holds `address`, literal pools included; null when there is none.
  const Function* FunctionAt(std::uint32_t address) const;
  /// Bytes from a function's start to the last byte before the next function or the end of its section's
  /// code, literal pools included.
  AddressRange ExtentOf(const Function& function) const;

  std::optional<SourceLine> LineOf(std::uint32_t address) const;
  /// Lowest address of the line that LineOf maps back to the same line.
  std::optional<std::uint32_t> AddressOf(std::string_view file, std::uint32_t line) const;
  /// Text of a source line without its line end; nothing when the file or the line is not there.
  std::optional<std::string> LineText(std::string_view file, std::uint32_t line) const;
  /// Lines of a source file; 0 when it cannot be read.
  std::uint32_t LineCount(std::string_view file) const;

 private:
  friend class ElfReader;
  friend class DwarfReader;
  struct LineRow {
    std::uint32_t start;
    std::uint32_t last;
    std::uint32_t file;  ///< index into sourceFiles_
    std::uint32_t line;
  };
  struct LineAddress {
    std::uint32_t line;
    std::uint32_t address;
  };

  Program() = default;
  int FileIndex(std::string_view name) const;
  const LineRow* RowAt(std::uint32_t address) const;
  bool InOneSegment(std::uint32_t first, std::uint32_t second) const;
  const std::vector<std::string>* TextOf(int fileIndex) const;

  std::string file_;
  std::uint32_t entry_ = 0;
  std::vector<std::string> warnings_;
  std::vector<Segment> segments_;
  std::vector<AddressRange> code_;
  std::vector<AddressRange> data_;
  std::vector<Symbol> symbols_;
  std::unordered_map<std::string_view, std::size_t> symbolByName_;
  std::vector<std::string> sourceFiles_;
  std::vector<Function> functions_;
  std::vector<std::vector<Function>> functionsByFile_;
  std::vector<LineRow> lines_;                           // ascending, not overlapping
  std::vector<std::vector<LineAddress>> addressByLine_;  // per file, ascending by line

  mutable std::mutex textMutex_;
  mutable std::unordered_map<int, std::vector<std::string>> texts_;
};

}  // namespace workbench
