// The program's string type and the few operations on it that everything shares. Text is UTF-16
// inside; bytes become text only at files, profile functions and sockets (util/CodePage.h).
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace ostrel {

using Text = std::u16string;
using TextView = std::u16string_view;

inline constexpr TextView kCrLf = u"\r\n";

/// Each byte becomes the character of the same number; meant for 7-bit text.
Text FromAscii(std::string_view ascii);

/// Ill-formed parts become U+FFFD.
Text FromUtf8(std::string_view utf8);
std::string ToUtf8(TextView text);

/// Decimal, with a leading "-" when negative.
Text ToText(std::int64_t number);
/// Shortest decimal form that names this number, never with an exponent: "1024", "0.5".
Text ToText(float number);
/// "True" or "False".
Text BooleanWord(bool value);

/// Case is that of the letters of Windows-1252, on every system; other letters have none.
Text LowerCase(TextView text);
Text UpperCase(TextView text);

/// Without the blanks (character 32 only) at both ends.
TextView TrimBlanks(TextView text);

/// Whether it moves a cursor or separates pieces of data rather than being seen.
constexpr bool IsControl(char16_t c) { return c < 0x20 || (c >= 0x7F && c < 0xA0); }

/// Position of the first such character at or after `from`, npos when there is none. Looks at
/// several characters at a time, which TextView::find does not.
std::size_t FindCharacter(TextView text, char16_t wanted, std::size_t from = 0);

bool Contains(TextView text, TextView part);
/// Every occurrence, left to right, without overlap; one pass. An empty `from` changes nothing.
Text ReplaceAll(TextView text, TextView from, TextView to);

}  // namespace ostrel
