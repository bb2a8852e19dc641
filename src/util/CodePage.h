// The one table between bytes outside the program (files, profile values, sockets) and text inside:
// the system's 8-bit code page when that is single-byte, Windows-1252 otherwise. Every byte is
// exactly one character and back; byte 254 is always character 254, the attribute mark.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "util/Text.h"

namespace ostrel {

Text BytesToText(std::string_view bytes);
/// A character outside the code page becomes "?".
std::string TextToBytes(TextView text);

/// As the two above, appending: for buffers that grow piece by piece.
void AppendBytesAsText(Text& text, std::string_view bytes);
void AppendTextAsBytes(std::string& bytes, TextView text);

}  // namespace ostrel
