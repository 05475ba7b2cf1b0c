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
/// Puts `content` in the place of a file as a whole: after a failure (false, `error` says why) the old one is
/// untouched, and no half-written file is ever seen under the name.
PLATFORM_API bool ReplaceFile(const std::string& path, std::string_view content,
                              std::string* error = nullptr);

/// Asked-for fault: from now on only `bytes` more can be written by this process's writers and ReplaceFile,
/// as on a disk that is nearly full; nothing takes the fault away.
PLATFORM_API void SetDiskSpace(std::optional<std::uint64_t> bytes);

/// Writes a text file: created or truncated, "\n" becomes CR LF on the way.
class PLATFORM_API TextWriter {
 public:
  TextWriter();
  /// Closes; what fails then is lost, so call Close.
  ~TextWriter();
  TextWriter(const TextWriter&) = delete;
  TextWriter& operator=(const TextWriter&) = delete;

  bool Open(const std::string& path);
  void Write(std::string_view text);
  /// Bytes as they stand: rows that carry their CR LF already. Large blocks are not copied.
  void WriteRaw(std::string_view block);
  /// Flushes and closes. False when anything since Open failed, such as a full disk; what fitted stays in the
  /// file.
  bool Close();
  /// False from the first failure on; Error then says what the system said.
  bool ok() const { return error_ == 0; }
  std::string Error() const;

 private:
  void Flush();
  void Put(const char* bytes, std::size_t count);

  std::unique_ptr<char[]> buffer_;
  std::size_t used_ = 0;
  int file_ = -1;
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
