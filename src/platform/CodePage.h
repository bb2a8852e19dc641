// The system's 8-bit code page.
#pragma once

#include <array>
#include <optional>

namespace ostrel::platform {

/// The character of each byte; a byte without a character stands for the character of its own
/// number. Nothing when the system's code page is not single-byte, as on POSIX always.
std::optional<std::array<char16_t, 256>> SystemCodePage();

}  // namespace ostrel::platform
