// Letters change their case by the table of Windows-1252, whatever the system's locale: a name that
// the product has turned to lower case is then the same on every machine. UTF-8 is only read and
// written at the edges (consoles, company files, schemas). An ill-formed start costs one byte and
// becomes one replacement character, so that a damaged text loses nothing behind the damage.
#include "util/Text.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cstring>

namespace ostrel {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

void AppendCodePoint(Text& text, char32_t c) {
  if (c < 0x10000) {
    text.push_back(static_cast<char16_t>(c));
    return;
  }
  c -= 0x10000;
  text.push_back(static_cast<char16_t>(0xD800 + (c >> 10)));
  text.push_back(static_cast<char16_t>(0xDC00 + (c & 0x3FF)));
}

void AppendUtf8(std::string& bytes, char32_t c) {
  auto tail = [&](int shift) { bytes.push_back(static_cast<char>(0x80 | ((c >> shift) & 0x3F))); };
  if (c < 0x80) {
    bytes.push_back(static_cast<char>(c));
  } else if (c < 0x800) {
    bytes.push_back(static_cast<char>(0xC0 | (c >> 6)));
    tail(0);
  } else if (c < 0x10000) {
    bytes.push_back(static_cast<char>(0xE0 | (c >> 12)));
    tail(6);
    tail(0);
  } else {
    bytes.push_back(static_cast<char>(0xF0 | (c >> 18)));
    tail(12);
    tail(6);
    tail(0);
  }
}

// Takes one code point from the front of `utf8`; an ill-formed start costs one byte.
char32_t TakeCodePoint(std::string_view& utf8) {
  const auto lead = static_cast<unsigned char>(utf8.front());
  const std::size_t length = lead < 0x80   ? 1
                             : lead < 0xC2 ? 0
                             : lead < 0xE0 ? 2
                             : lead < 0xF0 ? 3
                             : lead < 0xF5 ? 4
                                           : 0;
  if (length == 0 || length > utf8.size()) {
    utf8.remove_prefix(1);
    return kReplacement;
  }
  char32_t c = length == 1 ? lead : lead & (0x7Fu >> length);
  for (std::size_t i = 1; i < length; ++i) {
    const auto byte = static_cast<unsigned char>(utf8[i]);
    if ((byte & 0xC0) != 0x80) {
      utf8.remove_prefix(1);
      return kReplacement;
    }
    c = (c << 6) | (byte & 0x3Fu);
  }
  constexpr char32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
  const bool valid = c >= kSmallest[length] && c <= 0x10FFFF && (c < 0xD800 || c > 0xDFFF);
  utf8.remove_prefix(valid ? length : 1);
  return valid ? c : kReplacement;
}

// Capital Latin-1 letters are 0xC0 to 0xDE, small ones 0xE0 to 0xFE; 0xD7 and 0xF7 are signs.
constexpr bool IsCapitalLatin1(char16_t c) {
  return (c >= u'A' && c <= u'Z') || (c >= 0xC0 && c <= 0xDE && c != 0xD7);
}
constexpr bool IsSmallLatin1(char16_t c) {
  return (c >= u'a' && c <= u'z') || (c >= 0xE0 && c <= 0xFE && c != 0xF7);
}

// The letters of Windows-1252 beyond Latin-1: S and Z with caron, OE, Y with diaeresis.
struct Letter {
  char16_t capital, small;
};
constexpr Letter kOtherLetters[] = {{0x160, 0x161}, {0x17D, 0x17E}, {0x152, 0x153}, {0x178, 0xFF}};

constexpr char16_t Lower(char16_t c) {
  if (IsCapitalLatin1(c)) return static_cast<char16_t>(c + 0x20);
  if (c < 0x100) return c;
  for (const Letter& letter : kOtherLetters) {
    if (c == letter.capital) return letter.small;
  }
  return c;
}
constexpr char16_t Upper(char16_t c) {
  if (IsSmallLatin1(c)) return static_cast<char16_t>(c - 0x20);
  if (c < 0xFF) return c;
  for (const Letter& letter : kOtherLetters) {
    if (c == letter.small) return letter.capital;
  }
  return c;
}

template <char16_t (*kMap)(char16_t)>
Text Mapped(TextView text) {
  Text mapped(text);
  for (char16_t& c : mapped) c = kMap(c);
  return mapped;
}

}  // namespace

Text FromAscii(std::string_view ascii) {
  Text text(ascii.size(), u'\0');
  for (std::size_t i = 0; i < ascii.size(); ++i) text[i] = static_cast<unsigned char>(ascii[i]);
  return text;
}

Text FromUtf8(std::string_view utf8) {
  const auto isAscii = [](char c) { return static_cast<unsigned char>(c) < 0x80; };
  const auto ascii = std::find_if_not(utf8.begin(), utf8.end(), isAscii) - utf8.begin();
  Text text(utf8.begin(), utf8.begin() + ascii);
  utf8.remove_prefix(static_cast<std::size_t>(ascii));
  text.reserve(text.size() + utf8.size());
  while (!utf8.empty()) AppendCodePoint(text, TakeCodePoint(utf8));
  return text;
}

std::string ToUtf8(TextView text) {
  std::string bytes;
  bytes.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    char32_t c = text[i];
    const bool high = c >= 0xD800 && c < 0xDC00;
    if (high && i + 1 < text.size() && text[i + 1] >= 0xDC00 && text[i + 1] < 0xE000) {
      c = 0x10000 + ((c - 0xD800) << 10) + (text[++i] - 0xDC00u);
    } else if (c >= 0xD800 && c < 0xE000) {
      c = kReplacement;
    }
    AppendUtf8(bytes, c);
  }
  return bytes;
}

Text ToText(std::int64_t number) { return FromAscii(std::to_string(number)); }

Text ToText(float number) {
  char digits[64];
  const auto end = std::to_chars(digits, digits + sizeof digits, number, std::chars_format::fixed);
  return FromAscii({digits, static_cast<std::size_t>(end.ptr - digits)});
}

Text BooleanWord(bool value) { return value ? u"True" : u"False"; }

Text LowerCase(TextView text) { return Mapped<Lower>(text); }
Text UpperCase(TextView text) { return Mapped<Upper>(text); }

TextView TrimBlanks(TextView text) {
  const std::size_t first = text.find_first_not_of(u' ');
  if (first == TextView::npos) return {};
  return text.substr(first, text.find_last_not_of(u' ') - first + 1);
}

// A machine word holds several characters. Without the wanted one in it, each of them differs from
// that in some bit, and the subtraction borrows from no other character up to the first that is
// equal.
std::size_t FindCharacter(TextView text, char16_t wanted, std::size_t from) {
  static_assert(std::endian::native == std::endian::little, "the first character is the lowest");
  using Word = std::size_t;
  constexpr std::size_t kPerWord = sizeof(Word) / sizeof(char16_t);
  constexpr Word kLowBits = ~Word{0} / 0xFFFF;
  constexpr Word kHighBits = kLowBits << 15;
  const Word pattern = kLowBits * wanted;
  std::size_t at = from;
  for (; at < text.size() && text.size() - at >= kPerWord; at += kPerWord) {
    Word word;
    std::memcpy(&word, text.data() + at, sizeof word);
    word ^= pattern;
    const Word equal = (word - kLowBits) & ~word & kHighBits;
    if (equal != 0) return at + static_cast<std::size_t>(std::countr_zero(equal)) / 16;
  }
  return text.find(wanted, at);
}

bool Contains(TextView text, TextView part) { return text.find(part) != TextView::npos; }

Text ReplaceAll(TextView text, TextView from, TextView to) {
  Text replaced;
  std::size_t done = 0;
  while (!from.empty()) {
    const std::size_t at = text.find(from, done);
    if (at == TextView::npos) break;
    replaced.append(text.substr(done, at - done)).append(to);
    done = at + from.size();
  }
  return replaced.append(text.substr(done));
}

}  // namespace ostrel
