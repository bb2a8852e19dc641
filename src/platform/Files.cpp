#include "platform/Files.h"

#include <span>

#include "platform/SystemError.h"

namespace ostrel::platform {

int ReadFileContents(File& file, std::int64_t limit, std::string& bytes) {
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
