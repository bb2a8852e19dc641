// A file with an advisory lock. The system takes the lock back with the process; the empty file
// stays behind, since removing it would let two processes lock two files of one name.
#include "platform/SingleInstance.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <string>

namespace ostrel::platform {
namespace {

class FileLock : public InstanceLock {
 public:
  /// -1: holds nothing.
  explicit FileLock(int descriptor) : iDescriptor(descriptor) {}
  ~FileLock() override {
    if (iDescriptor >= 0) {
      close(iDescriptor);
    }
  }
  FileLock(const FileLock&) = delete;
  FileLock& operator=(const FileLock&) = delete;

 private:
  int iDescriptor;
};

bool IsPlain(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
         c == '-' || c == '.';
}

// FNV-1a: the same in every process and every build.
std::uint64_t Fingerprint(std::string_view bytes) {
  std::uint64_t hash = 14695981039346656037U;
  for (const char c : bytes) {
    hash = (hash ^ static_cast<unsigned char>(c)) * 1099511628211U;
  }
  return hash;
}

// A plain name as it is. Another one loses what a file name may not hold or has no room for, and
// gets its fingerprint, so that different names stay different files.
std::string FileNameFor(TextView name) {
  constexpr std::size_t longest = 200;
  const std::string whole = ToUtf8(name);
  std::string plain = whole.substr(0, longest);
  std::replace_if(
      plain.begin(), plain.end(), [](char c) { return !IsPlain(c); }, '_');
  if (plain != whole) {
    plain += '-' + std::to_string(Fingerprint(whole));
  }
  return plain + ".lock";
}

int OpenLockFile(const std::string& path) {
  constexpr int flags = O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK;
  const int descriptor = open(path.c_str(), flags | O_CREAT, 0644);
  // In a folder for everybody a system may refuse to "create" the file that another user made.
  return descriptor < 0 && errno == EACCES ? open(path.c_str(), flags) : descriptor;
}

// In the first folder that takes it; -1 when none does.
int OpenLockFileFor(TextView name) {
  const std::string fileName = '/' + FileNameFor(name);
  for (const char* folder :
       std::array<const char*, 3>{getenv("XDG_RUNTIME_DIR"), getenv("TMPDIR"), "/tmp"}) {
    if (folder == nullptr || *folder == '\0') {
      continue;
    }
    const int descriptor = OpenLockFile(folder + fileName);
    if (descriptor >= 0) {
      return descriptor;
    }
  }
  return -1;
}

}  // namespace

std::unique_ptr<InstanceLock> AcquireInstanceLock(TextView name) {
  const int descriptor = OpenLockFileFor(name);
  auto lock = std::make_unique<FileLock>(descriptor);
  if (descriptor >= 0 && flock(descriptor, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
    return nullptr;
  }
  return lock;
}

}  // namespace ostrel::platform
