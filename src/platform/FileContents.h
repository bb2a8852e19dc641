// All of a file's bytes at once, for files that are read as a whole: settings, schemas, companies.
#pragma once

#include <cstdint>
#include <string>

#include "platform/Files.h"

namespace ostrel::platform {

/// The open file from its beginning to its end. 0, kFileTooLarge when it has more than `limit`
/// bytes, or another error number; then `bytes` is empty.
int ReadFileContents(File& file, std::int64_t limit, std::string& bytes);

}  // namespace ostrel::platform
