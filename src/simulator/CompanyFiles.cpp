#include <cstdint>
#include <limits>

#include "platform/FileSystem.h"
#include "platform/Files.h"
#include "platform/SystemError.h"
#include "simulator/CompanyStorage.h"

namespace ostrel::simulator {
namespace {

constexpr std::int64_t kMaxFileSize = 512 * 1024 * 1024;

int WriteNewFile(TextView path, std::string_view bytes) {
  platform::File file;
  if (const int error =
          file.Open(path, platform::FileAccess::kWrite, platform::FileCreation::kOpenAlways)) {
    return error;
  }
  if (const int error = file.CutAt(0)) return error;
  if (const int error = file.WriteAt(0, bytes)) return error;
  return file.Flush();
}

// A read-only file in a writable folder could be replaced all the same; it is not.
int CheckWritable(TextView path) {
  platform::File file;
  return file.Open(path, platform::FileAccess::kReadWrite, platform::FileCreation::kOpenExisting);
}

}  // namespace

int CompanyFiles::Read(TextView path, std::string& bytes) {
  platform::File file;
  if (const int error =
          file.Open(path, platform::FileAccess::kRead, platform::FileCreation::kOpenExisting)) {
    return error;
  }
  if (file.Size() > kMaxFileSize) return platform::kGeneralFailure;
  bytes.resize(static_cast<std::size_t>(file.Size()));
  int error = 0;
  const auto count = file.ReadAt(0, bytes, error);
  if (!count) return error;
  bytes.resize(*count);
  return 0;
}

int CompanyFiles::Replace(TextView path, std::string_view bytes) {
  if (const int error = CheckWritable(path)) return error;
  const Text beside = Text(path) + u".new";
  int error = WriteNewFile(beside, bytes);
  if (error == 0) error = platform::RenameOver(beside, path);
  if (error != 0) platform::EraseFile(beside);
  return error;
}

}  // namespace ostrel::simulator
