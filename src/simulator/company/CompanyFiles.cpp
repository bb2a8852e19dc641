#include <new>
#include <utility>

#include "platform/FileSystem.h"
#include "platform/Files.h"
#include "platform/SystemError.h"
#include "simulator/company/CompanyStorage.h"

namespace ostrel::simulator {
namespace {

using platform::FileAccess;
using platform::FileCreation;

constexpr std::int64_t kMaxFileSize = 512 * 1024 * 1024;

int WriteToEnd(platform::File& file, std::int64_t position, std::string_view bytes) {
  // Only what was torn lies behind the position.
  if (const int error = file.CutAt(position)) return error;
  if (const int error = file.WriteAt(position, bytes)) return error;
  return file.Flush();
}

// An open file that is erased with the lock. Where a file that is open cannot be erased, nobody who
// has opened it in between loses it either.
class FileLock : public CompanyLock {
 public:
  FileLock(Text path, platform::File file) : sPath(std::move(path)), oFile(std::move(file)) {}
  ~FileLock() override {
    const bool erased = Erase();
    oFile.Close();
    if (!erased) Erase();
  }
  FileLock(const FileLock&) = delete;
  FileLock& operator=(const FileLock&) = delete;

 private:
  // Without memory for it the file stays, which locks nothing once it is closed.
  bool Erase() const noexcept {
    try {
      return platform::EraseFile(sPath) == 0;
    } catch (const std::bad_alloc&) {
      return false;
    }
  }

  Text sPath;
  platform::File oFile;
};

// ".sample.qbw.lock" in the company's folder.
Text LockPath(TextView path) {
  const std::size_t separator = path.find_last_of(u"\\/");
  const std::size_t name = separator == TextView::npos ? 0 : separator + 1;
  return Text(path.substr(0, name)) + u"." + Text(path.substr(name)) + u".lock";
}

}  // namespace

int CompanyFiles::Read(TextView path, std::string& bytes) {
  platform::File file;
  if (const int error = file.Open(path, FileAccess::kRead, FileCreation::kOpenExisting)) {
    return error;
  }
  return platform::ReadFileContents(file, kMaxFileSize, bytes);
}

// A read-only file in a writable folder could be replaced all the same; it is not.
int CompanyFiles::CheckWritable(TextView path, FileMark& mark) {
  platform::File file;
  if (const int error = file.Open(path, FileAccess::kReadWrite, FileCreation::kOpenExisting)) {
    return error;
  }
  const auto times = file.Times();
  const auto size = file.Size();
  if (!times || !size) return platform::kGeneralFailure;
  mark = {.bytes = *size, .modified = times->modified};
  return 0;
}

int CompanyFiles::WriteFrom(std::int64_t position, TextView path, std::string_view bytes) {
  if (position + static_cast<std::int64_t>(bytes.size()) > kMaxFileSize) return platform::kDiskFull;
  platform::File file;
  if (const int error = file.Open(path, FileAccess::kWrite, FileCreation::kOpenAlways)) {
    return error;
  }
  const int error = WriteToEnd(file, position, bytes);
  if (error == 0) return 0;
  file.CutAt(position);
  file.Close();
  if (position == 0) platform::EraseFile(path);
  return error;
}

int CompanyFiles::Rename(TextView from, TextView to) { return platform::RenameOver(from, to); }

int CompanyFiles::Erase(TextView path) { return platform::EraseFile(path); }

CompanyHold CompanyFiles::Lock(TextView path) {
  Text beside = LockPath(path);
  platform::File file;
  const int error = file.Open(beside, FileAccess::kReadWrite, FileCreation::kOpenAlways);
  if (error != 0) return {.error = error};
  return {.lock = std::make_unique<FileLock>(std::move(beside), std::move(file))};
}

}  // namespace ostrel::simulator
