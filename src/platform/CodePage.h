// The system's 8-bit code page, from which util/CodePage.h makes the one table that files, profile
// functions and sockets convert by.
#pragma once

#include <array>
#include <cstddef>
#include <optional>

namespace ostrel::platform {

/// The character of each byte; a byte without a character stands for the character of its own
/// number. Nothing when the system's code page is not single-byte, as on POSIX always.
std::optional<std::array<char16_t, 256>> SystemCodePage();

/// Windows-1252, the code page of systems that have none of their own. A byte without a character
/// stands for the character of its own number.
constexpr std::array<char16_t, 256> Windows1252() {
  constexpr char16_t kFrom80To9F[] =
      u"\u20AC\u0081\u201A\u0192\u201E\u2026\u2020\u2021\u02C6\u2030\u0160\u2039\u0152\u008D"
      u"\u017D\u008F\u0090\u2018\u2019\u201C\u201D\u2022\u2013\u2014\u02DC\u2122\u0161\u203A"
      u"\u0153\u009D\u017E\u0178";
  std::array<char16_t, 256> characters{};
  for (std::size_t byte = 0; byte < characters.size(); ++byte) {
    const bool own = byte < 0x80 || byte >= 0xA0;
    characters[byte] = own ? static_cast<char16_t>(byte) : kFrom80To9F[byte - 0x80];
  }
  return characters;
}

}  // namespace ostrel::platform
