#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/api.h"
#include "platform/paths.h"

/// Files and directories, by product paths. One object, one thread; the free functions any thread.
namespace platform {

PLATFORM_API bool PathExists(const std::string& path);
PLATFORM_API bool MoveFile(const std::string& from, const std::string& to, std::string* error = nullptr);
PLATFORM_API bool IsDirectory(const std::string& path);
/// One level; true as well when the directory is there already.
PLATFORM_API bool CreateDirectory(const std::string& path);
PLATFORM_API bool RemoveFile(const std::string& path);
/// Names in a directory, sorted, without "." and ".."; empty when it cannot be read.
PLATFORM_API std::vector<std::string> ListDirectory(const std::string& path);
/// Size in bytes, or nothing when there is no such file.
PLATFORM_API std::optional<std::uint64_t> FileSize(const std::string& path);

/// The bytes of a file, or nothing when it cannot be read or is longer than `limit`.
PLATFORM_API std::optional<std::string> ReadFile(const std::string& path, std::size_t limit = 64u << 20);
/// Puts `content` in the place of a file, as TextWriter does but as it stands. False: `error` says why.
PLATFORM_API bool ReplaceFile(const std::string& path, std::string_view content,
                              std::string* error = nullptr);

/// Asked-for fault: from now on only `bytes` more can be written by this process's writers and ReplaceFile,
/// as on a disk that is nearly full. Without a number the fault is taken away.
PLATFORM_API void SetDiskSpace(std::optional<std::uint64_t> bytes);

class OutputFile;

/// Writes a text file, "\n" becomes CR LF on the way.
///
/// A regular file is replaced as a whole: the bytes go to a temporary file beside it, ".name.qal-save-" and
/// 16 hexadecimal digits, which takes the name's place in Close. Until then, and after any failure, the old
/// file is untouched and no half-written one is seen. Links are followed to the file they name, there or not.
/// A new file gets the process's usual mode; a replaced one keeps the old mode, and the old owner as far as
/// this process may give it. Another hard link to the old file keeps the old content. What a killed process
/// left is removed when the same file is written next. Where a file may be written but not replaced (its
/// directory takes no new file), Close copies the content into it, once all of it is known and room for it is
/// found; only being killed in that moment, or a failing disk, can then leave a mixture.
///
/// Devices and pipes get the bytes as they come, and fail when they take nothing for 10 seconds. A pipe that
/// nobody reads, a directory and a socket cannot be opened.
class PLATFORM_API TextWriter {
 public:
  TextWriter();
  /// Without Close, nothing is kept of what was written.
  ~TextWriter();
  TextWriter(const TextWriter&) = delete;
  TextWriter& operator=(const TextWriter&) = delete;

  /// False when the file may not be written or made. What was open is dropped without Close.
  bool Open(const std::string& path);
  void Write(std::string_view text);
  /// Bytes as they stand: rows that carry their CR LF already. Large blocks are not copied.
  void WriteRaw(std::string_view block);
  /// Makes all that was written so far the file's content, safely on the disk. False when anything since Open
  /// failed, such as a full disk: then the old file is still there.
  bool Close();
  /// False from the first failure on; Error then says what the system said.
  bool ok() const { return error_ == 0; }
  std::string Error() const;

 private:
  void Flush();
  void Put(const char* bytes, std::size_t count);

  std::unique_ptr<char[]> buffer_;
  std::size_t used_ = 0;
  std::unique_ptr<OutputFile> file_;
  int error_ = 0;
};

/// Reads a text file in large pieces. CR LF and LF both end a line.
class PLATFORM_API TextReader {
 public:
  /// A longer line is cut here and the rest of it skipped.
  static constexpr std::size_t kLongestLine = 64 * 1024;

  TextReader();
  ~TextReader();
  TextReader(const TextReader&) = delete;
  TextReader& operator=(const TextReader&) = delete;

  bool Open(const std::string& path);
  void Close();

  /// The next line without its end; false at the end of the file. The view is good until the next call. At
  /// most `limit` bytes of the line are given (whole lines are consumed all the same).
  bool ReadLine(std::string_view* line, std::size_t limit = kLongestLine);
  /// Whether the line given last had a line end.
  bool lineEnded() const { return lineEnded_; }

  /// For scanning without calls per line: the bytes from the present place on that are in memory, CR LF
  /// untouched. At least `minimum` (at most 64 KiB) unless the file ends before; empty at its end. Good until
  /// the next call.
  std::string_view Peek(std::size_t minimum = 1);
  /// Goes on by `count` bytes of what Peek gave.
  void Skip(std::size_t count);

  /// Offset in the file of what is read next, and going back to such an offset.
  std::uint64_t Position() const { return fileOffset_ - (end_ - begin_); }
  bool Seek(std::uint64_t position);

 private:
  bool Fill();
  bool ReadLongLine(std::string_view* line, std::size_t limit);

  std::unique_ptr<char[]> buffer_;
  std::size_t begin_ = 0;
  std::size_t end_ = 0;
  std::uint64_t fileOffset_ = 0;
  int file_ = -1;
  bool lineEnded_ = false;
  bool atEnd_ = false;
  std::string longLine_;
};

}  // namespace platform
