#include "platform/output_file.h"

#include <dirent.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/random.h>
#include <sys/sendfile.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <ctime>
#include <memory>
#include <string_view>

#include "platform/files.h"
#include "platform/native_path.h"

namespace platform {
namespace {

/// Bytes that may still be written; negative for as many as the disk takes.
std::atomic<std::int64_t> diskSpace{-1};

/// How long a device or a pipe may take no byte at all.
constexpr int kLongestStallMs = 10'000;

/// Takes up to `count` bytes of the asked-for disk space and gives how many there were.
std::size_t TakeDiskSpace(std::size_t count) {
  std::int64_t left = diskSpace;
  for (;;) {
    if (left < 0) return count;
    const auto taken = std::min(count, static_cast<std::size_t>(left));
    if (diskSpace.compare_exchange_weak(left, left - static_cast<std::int64_t>(taken))) return taken;
  }
}

/// 0 as soon as the device or pipe takes more.
int WaitForRoom(int file) {
  pollfd waiting{file, POLLOUT, 0};
  for (;;) {
    const int ready = poll(&waiting, 1, kLongestStallMs);
    if (ready > 0) return 0;
    if (ready == 0) return ETIMEDOUT;
    if (errno != EINTR) return errno;
  }
}

int WriteAll(int file, const char* bytes, std::size_t count) {
  const std::size_t allowed = TakeDiskSpace(count);
  for (std::size_t done = 0; done < allowed;) {
    const ssize_t written = write(file, bytes + done, allowed - done);
    if (written >= 0) {
      done += static_cast<std::size_t>(written);
    } else if (errno == EAGAIN) {
      if (const int error = WaitForRoom(file)) return error;
    } else if (errno != EINTR) {
      return errno;
    }
  }
  return allowed < count ? ENOSPC : 0;
}

/// While it lives, writing to a pipe whose reader went away fails instead of ending the process.
class WithoutPipeSignal {
 public:
  WithoutPipeSignal() {
    sigset_t pending;
    sigemptyset(&pipe_);
    sigaddset(&pipe_, SIGPIPE);
    wasPending_ = sigpending(&pending) == 0 && sigismember(&pending, SIGPIPE) == 1;
    pthread_sigmask(SIG_BLOCK, &pipe_, &before_);
  }
  ~WithoutPipeSignal() {
    constexpr timespec kAtOnce{};
    while (!wasPending_ && sigtimedwait(&pipe_, nullptr, &kAtOnce) < 0 && errno == EINTR) {
    }
    pthread_sigmask(SIG_SETMASK, &before_, nullptr);
  }
  WithoutPipeSignal(const WithoutPipeSignal&) = delete;
  WithoutPipeSignal& operator=(const WithoutPipeSignal&) = delete;

 private:
  sigset_t pipe_{};
  sigset_t before_{};
  bool wasPending_ = false;
};

/// Where a name leads that has no file yet: links are followed to the name that they give.
std::string FollowLinks(std::string name) {
  constexpr int kMostLinks = 40;
  char next[PATH_MAX];
  for (int links = 0; links < kMostLinks; ++links) {
    const ssize_t length = readlink(name.c_str(), next, sizeof next);
    if (length <= 0) break;
    const std::string_view to(next, static_cast<std::size_t>(length));
    if (!to.starts_with('/')) name.erase(name.rfind('/') + 1);
    name = to.starts_with('/') ? std::string(to) : name.append(to);
  }
  return name;
}

bool IsSameFile(const struct stat& file, const std::string& name) {
  struct stat named {};
  return stat(name.c_str(), &named) == 0 && named.st_dev == file.st_dev && named.st_ino == file.st_ino;
}

// The temporary file of "dir/name" is "dir/.name.qal-save-" and 16 hexadecimal digits. As long as its writer
// lives, it holds a lock on it: one without a lock was left by a writer that was killed.

constexpr std::string_view kTemporaryMark = ".qal-save-";
constexpr std::size_t kTemporaryDigits = 16;

struct TemporaryName {
  std::string directory;  ///< with a slash at its end
  std::string front;      ///< of the name, up to the digits
};

TemporaryName TemporaryNameOf(const std::string& target) {
  const std::size_t name = target.rfind('/') + 1;
  std::size_t length =
      std::min(target.size() - name, NAME_MAX - 1 - kTemporaryMark.size() - kTemporaryDigits);
  // A character is not cut in two.
  while (name + length < target.size() && (target[name + length] & 0xC0) == 0x80) --length;
  return {target.substr(0, name), "." + target.substr(name, length) + std::string(kTemporaryMark)};
}

std::string RandomDigits() {
  std::uint64_t number = 0;
  if (getrandom(&number, sizeof number, 0) < 0) number = static_cast<std::uint64_t>(getpid());
  char digits[kTemporaryDigits + 1];
  std::snprintf(digits, sizeof digits, "%016jx", static_cast<std::uintmax_t>(number));
  return digits;
}

void RemoveStale(const TemporaryName& temporary) {
  const std::unique_ptr<DIR, int (*)(DIR*)> stream(opendir(temporary.directory.c_str()), closedir);
  while (const dirent* entry = stream ? readdir(stream.get()) : nullptr) {
    const std::string_view name = entry->d_name;
    if (name.size() != temporary.front.size() + kTemporaryDigits || !name.starts_with(temporary.front) ||
        name.find_first_not_of("0123456789abcdef", temporary.front.size()) != std::string_view::npos) {
      continue;
    }
    const std::string path = temporary.directory + entry->d_name;
    const Descriptor file(open(path.c_str(), O_WRONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    struct stat status {};
    if (file && fstat(file.get(), &status) == 0 && S_ISREG(status.st_mode) &&
        flock(file.get(), LOCK_EX | LOCK_NB) == 0) {
      unlink(path.c_str());
    }
  }
}

/// Locks a temporary file just made; false when somebody who took it for a stale one was faster.
bool Lock(const Descriptor& file) {
  if (flock(file.get(), LOCK_EX | LOCK_NB) != 0) return errno != EWOULDBLOCK;  // a disk without locks
  struct stat status {};
  return fstat(file.get(), &status) == 0 && status.st_nlink > 0;
}

/// Gives the new file the old one's mode, and its owner and group as far as that is allowed.
bool TakeAfter(const struct stat& old, int file) {
  struct stat own {};
  if (fstat(file, &own) != 0) return false;
  mode_t mode = old.st_mode & 07777;
  if ((own.st_uid != old.st_uid || own.st_gid != old.st_gid) && fchown(file, old.st_uid, old.st_gid) != 0) {
    mode &= 0777;
    // What the old group might is nothing that another group may.
    const bool sameGroup = own.st_gid == old.st_gid || fchown(file, static_cast<uid_t>(-1), old.st_gid) == 0;
    if (!sameGroup) mode = (mode & 0707) | (mode & 07) << 3;
  }
  return fchmod(file, mode) == 0;
}

}  // namespace

void SetDiskSpace(std::optional<std::uint64_t> bytes) {
  diskSpace = bytes ? static_cast<std::int64_t>(std::min<std::uint64_t>(*bytes, INT64_MAX)) : -1;
}

Descriptor& Descriptor::operator=(Descriptor&& other) noexcept {
  if (this != &other) {
    Close();
    file_ = other.file_;
    other.file_ = -1;
  }
  return *this;
}

int Descriptor::Close() {
  const int error = file_ >= 0 && close(file_) != 0 ? errno : 0;
  file_ = -1;
  return error;
}

int OutputFile::Open(const std::string& native) {
  Discard();
  old_ = Descriptor(open(native.c_str(), O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
  if (!old_) return errno == ENOENT ? CreateTemporary(FollowLinks(native), 0666) : errno;
  struct stat old {};
  if (fstat(old_.get(), &old) != 0) return errno;
  if (!S_ISREG(old.st_mode)) {
    file_ = std::move(old_);
    isPipe_ = S_ISFIFO(old.st_mode);
    return 0;
  }
  const auto target = FullNativePath(native);
  if (target && IsSameFile(old, *target) && CreateTemporary(*target, 0600) == 0) {
    if (TakeAfter(old, file_.get())) return 0;
    unlink(temporary_.c_str());
    temporary_.clear();
  }
  file_ = Descriptor(memfd_create("save", MFD_CLOEXEC));
  return file_ ? 0 : errno;
}

int OutputFile::CreateTemporary(const std::string& target, mode_t mode) {
  const TemporaryName temporary = TemporaryNameOf(target);
  RemoveStale(temporary);
  for (int attempt = 0; attempt < 100; ++attempt) {
    const std::string path = temporary.directory + temporary.front + RandomDigits();
    Descriptor file(open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, mode));
    if (!file && errno != EEXIST) return errno;
    if (!file || !Lock(file)) continue;
    file_ = std::move(file);
    target_ = target;
    temporary_ = path;
    return 0;
  }
  return EEXIST;
}

int OutputFile::Write(const char* bytes, std::size_t count) const {
  if (!isPipe_) return WriteAll(file_.get(), bytes, count);
  const WithoutPipeSignal noSignal;
  return WriteAll(file_.get(), bytes, count);
}

int OutputFile::Commit() {
  int error = 0;
  if (!temporary_.empty()) {
    error = MoveIntoPlace();
  } else if (old_) {
    error = CopyIntoPlace();
  }
  const int closing = file_.Close();
  Discard();
  return error ? error : closing;
}

int OutputFile::MoveIntoPlace() {
  if (fsync(file_.get()) != 0) return errno;
  if (rename(temporary_.c_str(), target_.c_str()) == 0) {
    temporary_.clear();
    return 0;
  }
  // Another's file in a directory where only its owner may move it, or a file that is mounted by itself.
  const bool mayOnlyBeWritten = errno == EPERM || errno == EACCES || errno == EBUSY;
  return old_ && mayOnlyBeWritten ? CopyIntoPlace() : errno;
}

int OutputFile::CopyIntoPlace() const {
  struct stat written {};
  if (fstat(file_.get(), &written) != 0) return errno;
  const off_t size = written.st_size;
  // A full disk is to be met before the first byte of the old file is gone.
  if (size > 0 && fallocate(old_.get(), FALLOC_FL_KEEP_SIZE, 0, size) != 0 &&
      (errno == ENOSPC || errno == EDQUOT || errno == EFBIG)) {
    return errno;
  }
  for (off_t at = 0; at < size;) {
    const ssize_t copied = sendfile(old_.get(), file_.get(), &at, static_cast<std::size_t>(size - at));
    if (copied < 0 && errno != EINTR) return errno;
    if (copied == 0) return EIO;
  }
  return ftruncate(old_.get(), size) == 0 && fsync(old_.get()) == 0 ? 0 : errno;
}

void OutputFile::Discard() {
  if (!temporary_.empty()) unlink(temporary_.c_str());
  temporary_.clear();
  target_.clear();
  file_.Close();
  old_.Close();
  isPipe_ = false;
}

}  // namespace platform
