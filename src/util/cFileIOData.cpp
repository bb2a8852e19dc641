// Reading and writing at the cursor. Everything goes in blocks, so that a long text costs no more
// memory than the text itself, and time in proportion to it.
#include <algorithm>
#include <cstring>
#include <new>
#include <optional>
#include <stdexcept>
#include <string>

#include "platform/SystemError.h"
#include "util/CodePage.h"
#include "util/Wire.h"
#include "util/cFileIO.h"

namespace ostrel {
namespace {

constexpr std::size_t kBlock = 0x10000;            // bytes of a file, or characters of a text
constexpr std::size_t kFirstLineBlock = 512;       // most lines end within the first
constexpr std::int64_t kLongestText = 0x3FFFFFFF;  // characters
constexpr std::int64_t kByteOrderMarkSize = 2;
constexpr TextView kHexDigits = u"0123456789ABCDEF";

// Too long a text is an error of the operation like any other.
template <typename Operation>
int ErrorOf(Operation operation) {
  try {
    return operation();
  } catch (const std::bad_alloc&) {
    return platform::kOutOfMemory;
  } catch (const std::length_error&) {
    return platform::kOutOfMemory;
  }
}

// UTF-16, low byte first; an odd byte at the end is dropped.
void AppendCodeUnits(Text& text, std::string_view bytes) {
  const std::size_t before = text.size();
  const std::size_t count = bytes.size() / 2;
  text.resize(before + count);
  for (std::size_t i = 0; i < count; ++i) {
    const auto low = static_cast<unsigned char>(bytes[2 * i]);
    const auto high = static_cast<unsigned char>(bytes[2 * i + 1]);
    text[before + i] = static_cast<char16_t>(high << 8 | low);
  }
}

void AppendHexadecimal(Text& text, std::string_view bytes) {
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    text.push_back(kHexDigits[byte >> 4]);
    text.push_back(kHexDigits[byte & 0xF]);
  }
}

struct Decoding {
  void (*append)(Text& text, std::string_view bytes);
  std::int64_t characters, bytes;  // so many characters come of so many bytes
};

constexpr Decoding kFromCodeUnits = {AppendCodeUnits, 1, 2};
constexpr Decoding kFromHexadecimal = {AppendHexadecimal, 2, 1};
constexpr Decoding kFromCodePage = {AppendBytesAsText, 1, 1};

std::optional<unsigned> HexValue(TextView digits, std::size_t at) {
  if (at >= digits.size()) return 0;  // the digit that an odd count lacks
  const std::size_t value = kHexDigits.find(digits[at]);
  if (value == TextView::npos) return {};
  return static_cast<unsigned>(value);
}

// A byte a pair of digits; an odd count is halved to the nearest even number of bytes. Nothing when
// there is something else than digits in the text.
std::optional<std::string> FromHexadecimal(TextView digits) {
  const std::size_t half = digits.size() / 2;
  const std::size_t count = digits.size() % 2 == 0 ? half : half + half % 2;
  std::string bytes(count, '\0');
  for (std::size_t i = 0; i < count; ++i) {
    const auto high = HexValue(digits, 2 * i);
    const auto low = HexValue(digits, 2 * i + 1);
    if (!high || !low) return {};
    bytes[i] = static_cast<char>(*high << 4 | *low);
  }
  return bytes;
}

struct LineEnd {
  std::size_t length;  // of the line
  std::size_t next;    // where the next line starts
};

// The first line end at or after `from`. A CR in the last place is none yet unless the file ends
// there: its LF may come with the next block.
std::optional<LineEnd> FindLineEnd(TextView text, std::size_t from, bool crLfOnly, bool complete) {
  for (std::size_t at = from; (at = text.find_first_of(kCrLf, at)) != TextView::npos; ++at) {
    if (text.substr(at, 2) == kCrLf) return LineEnd{at, at + 2};
    if (crLfOnly) continue;
    if (text[at] == u'\r' && at + 1 == text.size() && !complete) return {};
    return LineEnd{at, at + 1};
  }
  return {};
}

}  // namespace

std::int64_t cFileIO::PositionFor(std::int64_t offset) const {
  const std::int64_t position = std::max<std::int64_t>(offset == -1 ? lCursor : offset, 0);
  return position == 0 && bUnicode ? kByteOrderMarkSize : position;
}

void cFileIO::ReadData(Text& input, std::int64_t offset, std::int64_t bytesToRead,
                       TextView option) {
  ClearError();
  const bool hexadecimal = Contains(UpperCase(option), u"X");
  Text text;
  const int error =
      ErrorOf([&] { return ReadText(text, PositionFor(offset), bytesToRead, hexadecimal); });
  if (error == 0) {
    input = std::move(text);
  } else {
    KeepError(u"modMain.ReadData", input, error);
  }
}

int cFileIO::ReadText(Text& text, std::int64_t position, std::int64_t bytesToRead,
                      bool hexadecimal) {
  if (!IsOpen()) return platform::kInvalidHandle;
  const Decoding& decoding = bUnicode      ? kFromCodeUnits
                             : hexadecimal ? kFromHexadecimal
                                           : kFromCodePage;
  const auto size = oFile.Size();
  if (!size) return platform::kGeneralFailure;
  lCursor = position;
  std::int64_t left =
      std::clamp<std::int64_t>(*size - position, 0, std::max<std::int64_t>(bytesToRead, 0));
  const std::int64_t characters = left / decoding.bytes * decoding.characters;
  if (characters > kLongestText - static_cast<std::int64_t>(text.size())) {
    return platform::kOutOfMemory;
  }
  text.reserve(static_cast<std::size_t>(characters));

  std::string block(static_cast<std::size_t>(std::min<std::int64_t>(left, kBlock)), '\0');
  while (left > 0) {
    const auto wanted = static_cast<std::size_t>(std::min<std::int64_t>(left, kBlock));
    int error = 0;
    const auto count = oFile.ReadAt(lCursor, std::span(block).first(wanted), error);
    if (!count) return error;
    if (*count == 0) break;
    decoding.append(text, std::string_view(block).substr(0, *count));
    lCursor += static_cast<std::int64_t>(*count);
    left -= static_cast<std::int64_t>(*count);
  }
  return 0;
}

Text cFileIO::ReadAllData() {
  Text text;
  ReadData(text, 0, FileSize());
  return text;
}

void cFileIO::InputLine(Text& input) {
  ClearError();
  Text line;
  const int error = ErrorOf([&] { return ReadLine(line); });
  if (error == 0) {
    input = std::move(line);
  } else {
    KeepError(u"InputLine", input, error);
  }
}

int cFileIO::ReadLine(Text& line) {
  const std::int64_t start = PositionFor(-1);
  std::size_t block = kFirstLineBlock;
  std::size_t searched = 0;
  for (std::int64_t position = start;; position = lCursor) {
    const int error = ReadText(line, position, static_cast<std::int64_t>(block), false);
    if (error != 0) return error;
    const bool complete = lCursor < position + static_cast<std::int64_t>(block);
    if (const auto end = FindLineEnd(line, searched, InputLineCRLFOnly, complete)) {
      lCursor = start + static_cast<std::int64_t>(end->next) * (bUnicode ? 2 : 1);
      line.resize(end->length);
      return 0;
    }
    if (complete) return 0;
    searched = line.empty() ? 0 : line.size() - 1;
    block = std::min(block * 2, kBlock);
  }
}

void cFileIO::WriteData(Text& output, std::int64_t offset, TextView option) {
  ClearError();
  const int error = ErrorOf([&] {
    if (Contains(option, u"A")) output = ReplaceAll(output, kAttributeMarkText, kCrLf);
    return Write(output, PositionFor(offset), Contains(option, u"X"));
  });
  if (error != 0) KeepError(u"modMain.WriteData", {}, error);
}

void cFileIO::PrintLine(TextView output) {
  ClearError();
  const int error =
      ErrorOf([&] { return Write(Text(output).append(kCrLf), PositionFor(-1), false); });
  if (error != 0) KeepError(u"modMain.PrintLine", {}, error);
}

int cFileIO::Write(TextView text, std::int64_t position, bool hexadecimal) {
  if (!IsOpen()) return platform::kInvalidHandle;
  lCursor = position;
  if (hexadecimal) {
    const auto bytes = FromHexadecimal(text);
    return bytes ? WriteBytes(*bytes) : platform::kInvalidData;
  }
  std::string block;
  int error = 0;
  while (error == 0 && !text.empty()) {
    const TextView part = text.substr(0, kBlock);
    block.clear();
    AppendTextAsBytes(block, part);
    error = WriteBytes(block);
    text.remove_prefix(part.size());
  }
  return error;
}

int cFileIO::WriteBytes(std::span<const char> bytes) {
  const int error = oFile.WriteAt(lCursor, bytes);
  if (error == 0) lCursor += static_cast<std::int64_t>(bytes.size());
  return error;
}

}  // namespace ostrel
