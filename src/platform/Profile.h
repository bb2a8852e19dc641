// Windows' private-profile (INI) functions: sections in square brackets, name=value lines, 8-bit
// text. Section and key names ignore case. Nothing is cached: each call reads or rewrites the file.
// Strings are bytes of the system's code page; paths are product paths.
#pragma once

#include <string>
#include <string_view>

#include "util/Text.h"

namespace ostrel::platform {

/// Both reading operations return 0, kMoreData when what they hand out was cut, or another error
/// number when the file is there and cannot be read. That is tried again for half a second, since
/// most causes pass (another program has the file open); no events are dispatched meanwhile. UTF-16
/// behind the mark FF FE is read in the code page, and stays UTF-16 when it is written.

/// The value of a key without blanks around it and without a pair of quotes around it; `fallback`
/// when file, section or key is missing, and when the file cannot be read. At most size - 1 bytes.
int ReadProfileValue(TextView path, std::string_view section, std::string_view key,
                     std::string_view fallback, std::size_t size, std::string& value);

/// The section's name=value entries, each ended by a NUL, at most size - 2 bytes in all, cut as the
/// system cuts. Nothing when the file cannot be read.
int ReadProfileSection(TextView path, std::string_view section, std::size_t size,
                       std::string& entries);

/// Creates file, section and key as needed and keeps every other line as it is. A null value
/// removes the key. 0, or the error number.
int WriteProfileValue(TextView path, std::string_view section, std::string_view key,
                      const std::string* value);
/// Removes the section and its entries.
int EraseProfileSection(TextView path, std::string_view section);

}  // namespace ostrel::platform
