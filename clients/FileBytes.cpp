#include "clients/FileBytes.h"

#include <limits>

#include "platform/Files.h"

namespace ostrel {

using platform::FileAccess;
using platform::FileCreation;

std::optional<std::string> ReadFileBytes(TextView path, int& error) {
  platform::File file;
  error = file.Open(path, FileAccess::kRead, FileCreation::kOpenExisting);
  if (error != 0) return std::nullopt;
  std::string bytes;
  error = platform::ReadFileContents(file, std::numeric_limits<std::int32_t>::max(), bytes);
  if (error != 0) return std::nullopt;
  return bytes;
}

int WriteFileBytes(TextView path, std::string_view bytes) {
  platform::File file;
  int error = file.Open(path, FileAccess::kWrite, FileCreation::kOpenAlways);
  if (error == 0) error = file.CutAt(0);
  if (error == 0) error = file.WriteAt(0, bytes);
  return error;
}

}  // namespace ostrel
