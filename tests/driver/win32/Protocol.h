// The lines on standard input and output: fields divided by tabs, in UTF-8. A tab, a line break or
// a backslash inside a field is written \t, \n, \r or \\.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace ostrel::driver {

using Fields = std::vector<std::wstring>;

/// A command that could not be carried out; what() is told to who gave it.
using CommandError = std::runtime_error;

/// The line is without its end.
Fields ReadFields(std::string_view line);
std::string WriteFields(const Fields& fields);

std::wstring FromUtf8(std::string_view text);
std::string ToUtf8(std::wstring_view text);

/// Decimal, or hexadecimal behind 0x; may be negative. Raises CommandError for anything else.
long long NumberOf(const std::wstring& field);

}  // namespace ostrel::driver
