#include "util/CodePage.h"

#include <algorithm>

#include "platform/CodePage.h"
#include "util/Wire.h"

namespace ostrel {
namespace {

using Characters = CodePageTable::Characters;

// Runs of 7-bit text are found and carried over a block at a time: short enough that one other
// character costs little, long enough that the compiler's vector code pays.
constexpr std::size_t kCharactersAtOnce = 64;

constexpr char kOutside = '?';
constexpr char16_t kPrivateUse = 0xF700;

// The byte that holds character 254 elsewhere in the code page takes over what byte 254 held.
void PlaceAttributeMark(Characters& characters) {
  const auto holder = std::find(characters.begin(), characters.end(), kAttributeMark);
  if (holder != characters.end()) *holder = characters[kAttributeMark];
  characters[kAttributeMark] = kAttributeMark;
}

// Whether all units have their own numbers on the other side. The attribute mark is one of them:
// the lines of a response end in it.
template <typename Unit>
bool KeepNumbers(const Unit* units) {
  using Number = std::make_unsigned_t<Unit>;
  Number others = 0;
  for (std::size_t i = 0; i < kCharactersAtOnce; ++i) {
    const auto number = static_cast<Number>(units[i]);
    others = static_cast<Number>(others | (number == kAttributeMark ? 0 : number));
  }
  return others < 0x80;
}

// Carries blocks of 7-bit units over as they are, everything else through `map`.
template <typename From, typename To, typename Map>
void Convert(const From* from, std::size_t count, To* to, Map map) {
  while (count >= kCharactersAtOnce) {
    if (KeepNumbers(from)) {
      for (std::size_t i = 0; i < kCharactersAtOnce; ++i) {
        to[i] = static_cast<To>(static_cast<std::make_unsigned_t<From>>(from[i]));
      }
    } else {
      for (std::size_t i = 0; i < kCharactersAtOnce; ++i) to[i] = map(from[i]);
    }
    from += kCharactersAtOnce;
    to += kCharactersAtOnce;
    count -= kCharactersAtOnce;
  }
  for (std::size_t i = 0; i < count; ++i) to[i] = map(from[i]);
}

const CodePageTable& SystemTable() {
  static const CodePageTable table(platform::SystemCodePage());
  return table;
}

}  // namespace

CodePageTable::CodePageTable(const std::optional<Characters>& characters)
    : aCharacterOf(characters ? *characters : platform::Windows1252()) {
  for (std::size_t byte = 0; byte < 0x80; ++byte) aCharacterOf[byte] = static_cast<char16_t>(byte);
  PlaceAttributeMark(aCharacterOf);

  std::array<bool, 0x10000> taken{};
  taken[kAttributeMark] = true;
  aByteOf.fill(kOutside);
  for (std::size_t byte = 0; byte < aCharacterOf.size(); ++byte) {
    char16_t& character = aCharacterOf[byte];
    if (taken[character] && byte != kAttributeMark) {
      character = static_cast<char16_t>(kPrivateUse + byte);
    }
    taken[character] = true;
    aByteOf[character] = static_cast<char>(byte);
  }
}

void CodePageTable::AppendBytesAsText(Text& text, std::string_view bytes) const {
  const std::size_t before = text.size();
  text.resize(before + bytes.size());
  Convert(bytes.data(), bytes.size(), text.data() + before,
          [this](char byte) { return aCharacterOf[static_cast<unsigned char>(byte)]; });
}

void CodePageTable::AppendTextAsBytes(std::string& bytes, TextView text) const {
  const std::size_t before = bytes.size();
  bytes.resize(before + text.size());
  CopyTextAsBytes(text, bytes.data() + before);
}

void CodePageTable::CopyTextAsBytes(TextView text, char* bytes) const {
  Convert(text.data(), text.size(), bytes,
          [this](char16_t character) { return aByteOf[character]; });
}

void AppendBytesAsText(Text& text, std::string_view bytes) {
  SystemTable().AppendBytesAsText(text, bytes);
}
void AppendTextAsBytes(std::string& bytes, TextView text) {
  SystemTable().AppendTextAsBytes(bytes, text);
}

void CopyTextAsBytes(TextView text, char* bytes) { SystemTable().CopyTextAsBytes(text, bytes); }

Text BytesToText(std::string_view bytes) {
  Text text;
  AppendBytesAsText(text, bytes);
  return text;
}

std::string TextToBytes(TextView text) {
  std::string bytes;
  AppendTextAsBytes(bytes, text);
  return bytes;
}

}  // namespace ostrel
