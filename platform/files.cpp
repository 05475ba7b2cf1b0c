#include "platform/files.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <system_error>

#include "platform/output_file.h"
#include "platform/text.h"

namespace platform {
namespace {

constexpr std::size_t kChunk = 256 * 1024;
static_assert(kChunk >= 2 * TextReader::kLongestLine);

std::string ErrorText(int error) { return FromUtf8(std::generic_category().message(error)); }

/// Opens a plain file for reading; -1 for anything else.
int OpenToRead(const std::string& path) {
  const int file = open(ToNative(path).c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (file < 0) return -1;
  struct stat status {};
  if (fstat(file, &status) == 0 && S_ISREG(status.st_mode)) return file;
  close(file);
  return -1;
}

/// Bytes read, 0 at the end or on an error.
std::size_t ReadSome(int file, char* buffer, std::size_t count) {
  ssize_t got;
  do {
    got = read(file, buffer, count);
  } while (got < 0 && errno == EINTR);
  return got > 0 ? static_cast<std::size_t>(got) : 0;
}

bool Stat(const std::string& path, struct stat* status) { return stat(ToNative(path).c_str(), status) == 0; }

}  // namespace

bool PathExists(const std::string& path) {
  struct stat status {};
  return Stat(path, &status);
}

bool IsDirectory(const std::string& path) {
  struct stat status {};
  return Stat(path, &status) && S_ISDIR(status.st_mode);
}

bool CreateDirectory(const std::string& path) {
  return mkdir(ToNative(path).c_str(), 0777) == 0 || IsDirectory(path);
}

bool RemoveFile(const std::string& path) { return unlink(ToNative(path).c_str()) == 0; }

std::vector<std::string> ListDirectory(const std::string& path) {
  std::vector<std::string> names;
  const std::unique_ptr<DIR, int (*)(DIR*)> stream(opendir(ToNative(path).c_str()), closedir);
  while (const dirent* entry = stream ? readdir(stream.get()) : nullptr) {
    if (std::strcmp(entry->d_name, ".") != 0 && std::strcmp(entry->d_name, "..") != 0) {
      names.push_back(FromUtf8(entry->d_name));
    }
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::optional<std::uint64_t> FileSize(const std::string& path) {
  struct stat status {};
  if (!Stat(path, &status) || !S_ISREG(status.st_mode)) return std::nullopt;
  return static_cast<std::uint64_t>(status.st_size);
}

std::optional<std::string> ReadFile(const std::string& path, std::size_t limit) {
  const int file = OpenToRead(path);
  if (file < 0) return std::nullopt;
  std::string content;
  for (;;) {
    const std::size_t size = content.size();
    content.resize(size + kChunk);
    const std::size_t got = ReadSome(file, content.data() + size, kChunk);
    content.resize(size + got);
    if (got == 0 || content.size() > limit) break;
  }
  close(file);
  if (content.size() > limit) return std::nullopt;
  return content;
}

bool ReplaceFile(const std::string& path, std::string_view content, std::string* error) {
  OutputFile file;
  int reason = file.Open(ToNative(path));
  if (!reason) reason = file.Write(content.data(), content.size());
  if (!reason) reason = file.Commit();
  if (reason && error) *error = ErrorText(reason);
  return reason == 0;
}

bool MoveFile(const std::string& from, const std::string& to, std::string* error) {
  if (rename(ToNative(from).c_str(), ToNative(to).c_str()) == 0) return true;
  if (error) *error = ErrorText(errno);
  return false;
}

TextWriter::TextWriter()
    : buffer_(std::make_unique_for_overwrite<char[]>(kChunk)), file_(std::make_unique<OutputFile>()) {}

TextWriter::~TextWriter() = default;

bool TextWriter::Open(const std::string& path) {
  used_ = 0;
  error_ = file_->Open(ToNative(path));
  return ok();
}

void TextWriter::Put(const char* bytes, std::size_t count) {
  if (!file_->IsOpen() && error_ == 0) error_ = EBADF;
  if (error_ == 0) error_ = file_->Write(bytes, count);
}

void TextWriter::Flush() {
  if (used_ > 0) Put(buffer_.get(), used_);
  used_ = 0;
}

void TextWriter::WriteRaw(std::string_view block) {
  if (block.size() > kChunk - used_) Flush();
  if (block.size() > kChunk / 2) {
    Flush();
    Put(block.data(), block.size());
    return;
  }
  std::memcpy(buffer_.get() + used_, block.data(), block.size());
  used_ += block.size();
}

void TextWriter::Write(std::string_view text) {
  for (;;) {
    const std::size_t lineFeed = text.find('\n');
    WriteRaw(text.substr(0, lineFeed));
    if (lineFeed == std::string_view::npos) return;
    WriteRaw("\r\n");
    text.remove_prefix(lineFeed + 1);
  }
}

bool TextWriter::Close() {
  if (!file_->IsOpen()) return false;
  Flush();
  if (error_ == 0) error_ = file_->Commit();
  file_->Discard();
  return ok();
}

std::string TextWriter::Error() const { return error_ ? ErrorText(error_) : std::string{}; }

TextReader::TextReader() : buffer_(std::make_unique_for_overwrite<char[]>(kChunk)) {}

TextReader::~TextReader() { Close(); }

bool TextReader::Open(const std::string& path) {
  Close();
  file_ = OpenToRead(path);
  return file_ >= 0;
}

void TextReader::Close() {
  if (file_ >= 0) close(file_);
  file_ = -1;
  begin_ = end_ = 0;
  fileOffset_ = 0;
  lineEnded_ = atEnd_ = false;
}

bool TextReader::Fill() {
  if (file_ < 0 || atEnd_) return false;
  if (begin_ > 0) {
    std::memmove(buffer_.get(), buffer_.get() + begin_, end_ - begin_);
    end_ -= begin_;
    begin_ = 0;
  }
  if (end_ == kChunk) return false;
  const std::size_t got = ReadSome(file_, buffer_.get() + end_, kChunk - end_);
  end_ += got;
  fileOffset_ += got;
  atEnd_ = got == 0;
  return got > 0;
}

bool TextReader::ReadLine(std::string_view* line, std::size_t limit) {
  std::size_t searched = 0;
  const char* lineFeed = nullptr;
  for (;;) {
    const char* first = buffer_.get() + begin_ + searched;
    lineFeed = static_cast<const char*>(std::memchr(first, '\n', end_ - begin_ - searched));
    searched = end_ - begin_;
    if (lineFeed || searched > kLongestLine || !Fill()) break;
  }
  if (!lineFeed && searched > kLongestLine) return ReadLongLine(line, limit);
  lineEnded_ = lineFeed != nullptr;
  if (!lineEnded_ && searched == 0) return false;
  const char* first = buffer_.get() + begin_;
  std::size_t length = lineEnded_ ? static_cast<std::size_t>(lineFeed - first) : searched;
  begin_ += length + (lineEnded_ ? 1 : 0);
  if (lineEnded_ && length > 0 && first[length - 1] == '\r') --length;
  *line = {first, std::min({length, limit, kLongestLine})};
  return true;
}

bool TextReader::ReadLongLine(std::string_view* line, std::size_t limit) {
  longLine_.assign(buffer_.get() + begin_, kLongestLine);
  const char* lineFeed = nullptr;
  do {
    const char* first = buffer_.get() + begin_;
    lineFeed = static_cast<const char*>(std::memchr(first, '\n', end_ - begin_));
    begin_ = lineFeed ? static_cast<std::size_t>(lineFeed + 1 - buffer_.get()) : end_;
  } while (!lineFeed && Fill());
  lineEnded_ = lineFeed != nullptr;
  *line = std::string_view(longLine_).substr(0, limit);
  return true;
}

std::string_view TextReader::Peek(std::size_t minimum) {
  minimum = std::min(minimum, kLongestLine);
  while (end_ - begin_ < minimum && Fill()) {
  }
  return {buffer_.get() + begin_, end_ - begin_};
}

void TextReader::Skip(std::size_t count) { begin_ += std::min(count, end_ - begin_); }

bool TextReader::Seek(std::uint64_t position) {
  if (file_ < 0 || position > INT64_MAX) return false;
  const std::uint64_t bufferStart = fileOffset_ - end_;
  if (position >= bufferStart && position <= fileOffset_) {
    begin_ = static_cast<std::size_t>(position - bufferStart);
    return true;
  }
  if (lseek(file_, static_cast<off_t>(position), SEEK_SET) < 0) return false;
  begin_ = end_ = 0;
  fileOffset_ = position;
  atEnd_ = false;
  return true;
}

}  // namespace platform
