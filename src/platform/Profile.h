// Windows' private-profile (INI) functions: sections in square brackets, name=value lines, 8-bit
// text. Section and key names ignore case. Nothing is cached: each call reads or rewrites the file.
// Strings are bytes of the system's code page; paths are product paths.
#pragma once

#include <string>
#include <string_view>

#include "util/Text.h"

namespace ostrel::platform {

/// The value of a key without blanks around it and without a pair of quotes around it; `fallback`
/// when file, section or key is missing. At most size - 1 bytes.
std::string ReadProfileValue(TextView path, std::string_view section, std::string_view key,
                             std::string_view fallback, std::size_t size);

/// The section's name=value entries, each ended by a NUL, at most size - 2 bytes in all, cut as the
/// system cuts.
std::string ReadProfileSection(TextView path, std::string_view section, std::size_t size);

/// Creates file, section and key as needed and keeps every other line as it is. A null value
/// removes the key. 0, or the error number.
int WriteProfileValue(TextView path, std::string_view section, std::string_view key,
                      const std::string* value);
/// Removes the section and its entries.
int EraseProfileSection(TextView path, std::string_view section);

}  // namespace ostrel::platform
