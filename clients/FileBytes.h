// Whole files, byte for byte.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "util/Text.h"

namespace ostrel {

/// Nothing when it cannot be read, with the number of platform/SystemError.h in `error`.
std::optional<std::string> ReadFileBytes(TextView path, int& error);

/// Replaces what the file held. 0, or the error number; part of the file may be there then.
int WriteFileBytes(TextView path, std::string_view bytes);

}  // namespace ostrel
