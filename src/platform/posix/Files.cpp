// POSIX lets several programs open a file at once, so exclusive use is made of two parts. A lock
// (flock) keeps out every other File, in this process or another. A lease, asked for and given back
// at once, shows whether a program that takes no locks is writing the file. A file that was
// replaced or erased between its opening and its lock is opened anew, since the lock would guard a
// file that no longer has the name.
#include "platform/Files.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <string>
#include <utility>

#include "platform/SystemError.h"
#include "platform/posix/ErrorNumbers.h"
#include "platform/posix/Path.h"

namespace ostrel::platform {
namespace {

int Descriptor(std::intptr_t handle) { return static_cast<int>(handle); }

// A write beyond the user's limit for files is an error like a full disk, not the program's end.
void IgnoreFileSizeSignal() {
  static const bool ignored = std::signal(SIGXFSZ, SIG_IGN) != SIG_ERR;
  static_cast<void>(ignored);
}

int OpenFlags(FileAccess access, FileCreation creation, FileLinks links) {
  // O_NONBLOCK: the open of a pipe without a partner must not hang; regular files do not mind.
  int flags = O_CLOEXEC | O_NOCTTY | O_NONBLOCK;
  flags |= access == FileAccess::kRead    ? O_RDONLY
           : access == FileAccess::kWrite ? O_WRONLY
                                          : O_RDWR;
  if (links == FileLinks::kRefuse) flags |= O_NOFOLLOW;
  if (creation == FileCreation::kCreateNew) flags |= O_EXCL;
  return creation == FileCreation::kOpenExisting ? flags : flags | O_CREAT;
}

// The error of an entry that exists and is no file, which is not even opened: the reader of a pipe
// would notice. 0 for a file, and for faults that the open itself reports.
int ErrorOfOtherThanFile(const std::string& path, FileCreation creation, FileLinks links) {
  struct stat status;
  const bool follows = links == FileLinks::kFollow;
  if ((follows ? stat : lstat)(path.c_str(), &status) != 0 || S_ISREG(status.st_mode)) return 0;
  if (creation == FileCreation::kCreateNew) return kFileExists;
  return S_ISLNK(status.st_mode) ? kStoppedOnLink : kAccessDenied;
}

// 0 when the file is ours alone. A network file system may lock for reading only what is open for
// reading, or not lock at all: then the file is used without a lock.
int LockWhole(int descriptor) {
  if (flock(descriptor, LOCK_EX | LOCK_NB) == 0) return 0;
  if (errno == EBADF && flock(descriptor, LOCK_SH | LOCK_NB) == 0) return 0;
  return errno == EWOULDBLOCK ? kSharingViolation : 0;
}

// True when anybody has the file open for writing, even without a lock: the system then refuses a
// lease (fcntl(2), F_SETLEASE). Where leases cannot be had (another user's
// file, a network file system), nobody is assumed.
bool IsBeingWritten(int descriptor) {
  // Sent to the holder of a lease when somebody opens the file just then; by itself it would end
  // the program.
  static const bool ignored = std::signal(SIGIO, SIG_IGN) != SIG_ERR;
  if (!ignored) return false;
  if (fcntl(descriptor, F_SETLEASE, F_RDLCK) != 0) return errno == EAGAIN;
  fcntl(descriptor, F_SETLEASE, F_UNLCK);
  return false;
}

int ErrorOfOpen(const std::string& path, int flags) {
  const int error = LastErrorNumber();
  struct stat status;
  const bool isLink = errno == ELOOP && (flags & O_NOFOLLOW) != 0 &&
                      lstat(path.c_str(), &status) == 0 && S_ISLNK(status.st_mode);
  return isLink ? kStoppedOnLink : RefineMissing(error, path);
}

// One attempt. `replaced` tells that the path named another file by the time this one was locked.
int OpenLocked(const std::string& path, int flags, int& descriptor, bool& replaced) {
  replaced = false;
  descriptor = open(path.c_str(), flags, 0666);
  if (descriptor < 0) return ErrorOfOpen(path, flags);

  struct stat status;
  int error = fstat(descriptor, &status) == 0 ? 0 : LastErrorNumber();
  if (error == 0 && !S_ISREG(status.st_mode)) error = kAccessDenied;
  if (error == 0) error = LockWhole(descriptor);
  const bool reads = (flags & O_ACCMODE) == O_RDONLY;
  if (error == 0 && reads && IsBeingWritten(descriptor)) error = kSharingViolation;
  if (error == 0) replaced = fstat(descriptor, &status) == 0 && status.st_nlink == 0;
  if (error != 0 || replaced) close(descriptor);
  return error;
}

TimePoint ToTimePoint(const statx_timestamp& time) {
  return TimePoint(std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec));
}

}  // namespace

File::~File() { Close(); }
File::File(File&& other) noexcept : handle(std::exchange(other.handle, -1)) {}
File& File::operator=(File&& other) noexcept {
  if (this != &other) {
    Close();
    handle = std::exchange(other.handle, -1);
  }
  return *this;
}

int File::Open(TextView path, FileAccess access, FileCreation creation, FileLinks links) {
  constexpr int kAttempts = 8;
  Close();
  if (access != FileAccess::kRead) IgnoreFileSizeSignal();
  const std::string resolved = ResolveFile(path);
  if (const int error = ErrorOfOtherThanFile(resolved, creation, links)) return error;

  const int flags = OpenFlags(access, creation, links);
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    int descriptor = -1;
    bool replaced = false;
    const int error = OpenLocked(resolved, flags, descriptor, replaced);
    if (error != 0) return error;
    if (replaced) continue;
    handle = descriptor;
    return 0;
  }
  return kSharingViolation;
}

void File::Close() {
  if (IsOpen()) close(Descriptor(std::exchange(handle, -1)));
}

bool File::IsOpen() const { return handle != -1; }

std::optional<std::size_t> File::ReadAt(std::int64_t position, std::span<char> bytes, int& error) {
  std::size_t done = 0;
  while (done < bytes.size()) {
    const ssize_t count = pread(Descriptor(handle), bytes.data() + done, bytes.size() - done,
                                position + static_cast<std::int64_t>(done));
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) {
      error = LastErrorNumber();
      return {};
    }
    if (count == 0) break;
    done += static_cast<std::size_t>(count);
  }
  error = 0;
  return done;
}

int File::WriteAt(std::int64_t position, std::span<const char> bytes) {
  if (!IsOpen()) return kInvalidHandle;
  while (!bytes.empty()) {
    const ssize_t count = pwrite(Descriptor(handle), bytes.data(), bytes.size(), position);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return LastErrorNumber();
    if (count == 0) return kDiskFull;
    position += count;
    bytes = bytes.subspan(static_cast<std::size_t>(count));
  }
  return 0;
}

std::optional<std::int64_t> File::Size() const {
  struct stat status;
  if (fstat(Descriptor(handle), &status) != 0) return {};
  return status.st_size;
}

int File::CutAt(std::int64_t position) {
  int result = 0;
  do {
    result = ftruncate(Descriptor(handle), position);
  } while (result != 0 && errno == EINTR);
  return result == 0 ? 0 : LastErrorNumber();
}

int File::Flush() { return fsync(Descriptor(handle)) == 0 ? 0 : LastErrorNumber(); }

std::optional<FileTimes> File::Times() const {
  struct statx status;
  if (!IsOpen() ||
      statx(Descriptor(handle), "", AT_EMPTY_PATH, STATX_BASIC_STATS | STATX_BTIME, &status) != 0) {
    return {};
  }
  const bool known = (status.stx_mask & STATX_BTIME) != 0;
  return FileTimes{ToTimePoint(known ? status.stx_btime : status.stx_mtime),
                   ToTimePoint(status.stx_atime), ToTimePoint(status.stx_mtime)};
}

}  // namespace ostrel::platform
