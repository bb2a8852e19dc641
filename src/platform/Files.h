// One open file of the operating system. Paths are product paths: "\" separates folders on every
// system ("/" is taken too). On POSIX each folder is looked up exactly first and then ignoring
// case, since the product turns folder names to lower case; the file's own name is taken exactly as
// it is given. Error numbers are Windows' everywhere (platform/SystemError.h).
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <utility>

#include "platform/Clock.h"
#include "platform/SystemError.h"
#include "util/Text.h"

namespace ostrel::platform {

enum class FileAccess { kRead, kWrite, kReadWrite };
enum class FileCreation {
  kOpenExisting,
  kOpenAlways,  // created empty when missing
  kCreateNew    // fails with kFileExists when there is anything of the name, a link included
};

/// The treatment of a link as the last component of a path: a symbolic link, and on Windows every
/// reparse point that stands for another name (not the one of a file kept in the cloud, say).
enum class FileLinks { kFollow, kRefuse /* with kStoppedOnLink */ };

struct FileTimes {
  TimePoint created, accessed, modified;
};

/// Opened without sharing: while it is open, every other open of the same file through this class
/// fails with kSharingViolation, in this process or another. Opening for reading fails so as well
/// while another program has the file open for writing in any way (on POSIX where the system can
/// tell: a local file of this user).
class File {
 public:
  File() = default;
  ~File();
  File(File&& other) noexcept;
  File& operator=(File&& other) noexcept;

  /// Closes what was open. 0, or the error number.
  int Open(TextView path, FileAccess access, FileCreation creation,
           FileLinks links = FileLinks::kFollow);
  void Close();
  bool IsOpen() const;

  /// Bytes read from this byte position on, fewer than asked for at the end of the file; nothing on
  /// failure, with the number in `error`.
  std::optional<std::size_t> ReadAt(std::int64_t position, std::span<char> bytes, int& error);
  /// Writes all the bytes. 0, or the error number (kDiskFull among them).
  int WriteAt(std::int64_t position, std::span<const char> bytes);

  /// The size in bytes; nothing when the system cannot tell.
  std::optional<std::int64_t> Size() const;
  /// Makes the file end at this position.
  int CutAt(std::int64_t position);
  /// Returns when the system has the file safe on its disk.
  int Flush();
  std::optional<FileTimes> Times() const;

 private:
  std::intptr_t handle = -1;
};

/// Reads the open file from its beginning to its end: settings, schemas, companies. 0,
/// kFileTooLarge when it has more than `limit` bytes, or another error number; then `bytes` is
/// empty.
inline int ReadFileContents(File& file, std::int64_t limit, std::string& bytes) {
  bytes.clear();
  const auto size = file.Size();
  if (!size) return kGeneralFailure;
  if (*size > limit) return kFileTooLarge;
  std::string read(static_cast<std::size_t>(*size), '\0');
  int error = 0;
  const auto count = file.ReadAt(0, read, error);
  if (!count) return error;
  read.resize(*count);
  bytes = std::move(read);
  return 0;
}

}  // namespace ostrel::platform
