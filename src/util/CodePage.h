// The one table between bytes outside the program (files, profile values, sockets) and text inside:
// the system's 8-bit code page when that is single-byte, Windows-1252 otherwise. Every byte is
// exactly one character and back; byte 254 is always character 254, the attribute mark.
#pragma once

#include <array>
#include <optional>
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
/// The bytes of the text, one a character, into room that is there.
void CopyTextAsBytes(TextView text, char* bytes);

/// A table in both directions. The functions above use the system's; tests make others.
class CodePageTable {
 public:
  using Characters = std::array<char16_t, 256>;

  /// From the character of each byte; nothing stands for Windows-1252. Bytes below 128 and byte 254
  /// keep the characters of their own numbers, and no two bytes get the same character: a byte
  /// whose character is taken gets one for private use.
  explicit CodePageTable(const std::optional<Characters>& characters);

  void AppendBytesAsText(Text& text, std::string_view bytes) const;
  void AppendTextAsBytes(std::string& bytes, TextView text) const;
  void CopyTextAsBytes(TextView text, char* bytes) const;

 private:
  Characters aCharacterOf{};
  std::array<char, 0x10000> aByteOf{};
};

}  // namespace ostrel
