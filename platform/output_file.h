#pragma once

#include <sys/types.h>

#include <cstddef>
#include <string>

/// Inside the platform library only. Errors are the operating system's numbers; 0 is none.
namespace platform {

/// Owns a file descriptor.
class Descriptor {
 public:
  explicit Descriptor(int file = -1) : file_(file) {}
  Descriptor(Descriptor&& other) noexcept : file_(other.file_) { other.file_ = -1; }
  Descriptor& operator=(Descriptor&& other) noexcept;
  ~Descriptor() { Close(); }

  int Close();
  int get() const { return file_; }
  explicit operator bool() const { return file_ >= 0; }

 private:
  int file_;
};

/// A file that is being written. A regular file stays as it is until Commit puts all that was written in its
/// place; a device or a pipe gets the bytes as they come. One object, one thread.
class OutputFile {
 public:
  OutputFile() = default;
  /// Discards.
  ~OutputFile() { Discard(); }
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  /// Begins to write the file of a native path; what was open is discarded. Never waits for a pipe's reader.
  int Open(const std::string& native);
  /// Writes all of it, or gives the error after what could be written.
  int Write(const char* bytes, std::size_t count) const;
  /// Ends with what was written as the file's content. After an error a regular file is the old one.
  int Commit();
  /// Ends with the old file.
  void Discard();
  bool IsOpen() const { return static_cast<bool>(file_); }

 private:
  int CreateTemporary(const std::string& target, mode_t mode);
  int MoveIntoPlace();
  int CopyIntoPlace() const;

  Descriptor file_;  ///< gets the bytes
  Descriptor old_;   ///< the regular file that is there already
  std::string target_;
  std::string temporary_;  ///< empty when `file_` has no name, or is the device or pipe itself
  bool isPipe_ = false;
};

}  // namespace platform
