#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "workbench/services/columns.h"

namespace workbench {

/// The files that source editors show, as the person has edited them; nothing is written back. The clients of
/// the editors' columns hear of files that open and close and of lines that come and go. Files are product
/// paths, case ignored. Main thread.
class OpenFiles {
 public:
  explicit OpenFiles(Columns& columns) : columns_(columns) {}

  /// Kind of the columns that stand beside instructions; all others stand beside source lines.
  static constexpr std::uint32_t kDisassemblyKind = 1;

  bool IsOpen(const std::string& file) const { return Find(file) != nullptr; }
  /// Opens an editor with these lines; one that is open already stays as it is.
  void Open(const std::string& file, const std::vector<std::string>& lines);
  /// False when no editor shows the file.
  bool Close(const std::string& file);
  /// Paths as they were opened, in alphabetical order.
  std::vector<std::string> Files() const;
  /// Lines of an open file; 0 for another.
  std::uint32_t LineCount(const std::string& file) const;
  /// Nothing when the file is not open or has no such line; lines count from 1.
  std::optional<std::string> LineText(const std::string& file, std::uint32_t line) const;
  /// Inserts `count` empty lines before a line, or deletes lines. False when the file is not open or has no
  /// such lines.
  bool Insert(const std::string& file, std::uint32_t line, std::uint32_t count);
  bool Delete(const std::string& file, std::uint32_t line, std::uint32_t count);

  /// Where a line of the file as it was opened stands now, and the other way round. Nothing for a line that
  /// was deleted or inserted; in a file that is not open every line is where it was.
  std::optional<std::uint32_t> LineNow(const std::string& file, std::uint32_t opened) const;
  std::optional<std::uint32_t> LineOpened(const std::string& file, std::uint32_t now) const;

  /// Tells the columns of a component that has just started of every open file.
  void Announce() const;

 private:
  struct Line {
    std::string text;
    std::uint32_t opened;  ///< its number when the file was opened; 0 for an inserted one
  };
  struct File {
    std::string path;
    std::vector<Line> lines;
  };
  const File* Find(const std::string& file) const;
  File* Find(const std::string& file) { return const_cast<File*>(std::as_const(*this).Find(file)); }

  /// Calls `tell(client, name, id)` for each column of the source editors.
  template <class Tell>
  void TellColumns(const std::string& path, Tell tell) const;

  Columns& columns_;
  std::map<std::string, File> files_;  // by lower-case path
};

}  // namespace workbench
