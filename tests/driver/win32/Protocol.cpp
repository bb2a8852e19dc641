#include "tests/driver/win32/Protocol.h"

#include <windows.h>

namespace ostrel::driver {
namespace {

struct Escape {
  char letter;
  char meaning;
};

constexpr Escape kEscapes[] = {{'t', '\t'}, {'n', '\n'}, {'r', '\r'}, {'\\', '\\'}};

char MeaningOf(char letter) {
  for (const Escape& escape : kEscapes) {
    if (escape.letter == letter) return escape.meaning;
  }
  throw CommandError("unknown escape");
}

void AppendEscaped(std::string& line, char byte) {
  for (const Escape& escape : kEscapes) {
    if (escape.meaning != byte) continue;
    line += {'\\', escape.letter};
    return;
  }
  line += byte;
}

}  // namespace

Fields ReadFields(std::string_view line) {
  Fields fields;
  std::string field;
  for (std::size_t i = 0; i < line.size(); ++i) {
    if (line[i] == '\t') {
      fields.push_back(FromUtf8(field));
      field.clear();
    } else if (line[i] == '\\' && i + 1 < line.size()) {
      field += MeaningOf(line[++i]);
    } else {
      field += line[i];
    }
  }
  fields.push_back(FromUtf8(field));
  return fields;
}

std::string WriteFields(const Fields& fields) {
  std::string line;
  for (const std::wstring& field : fields) {
    if (!line.empty()) line += '\t';
    for (const char byte : ToUtf8(field)) AppendEscaped(line, byte);
  }
  return line;
}

std::wstring FromUtf8(std::string_view text) {
  const int size = static_cast<int>(text.size());
  const int length = MultiByteToWideChar(CP_UTF8, 0, text.data(), size, nullptr, 0);
  std::wstring wide(static_cast<std::size_t>(length), L'\0');
  MultiByteToWideChar(CP_UTF8, 0, text.data(), size, wide.data(), length);
  return wide;
}

std::string ToUtf8(std::wstring_view text) {
  const int size = static_cast<int>(text.size());
  const int length =
      WideCharToMultiByte(CP_UTF8, 0, text.data(), size, nullptr, 0, nullptr, nullptr);
  std::string bytes(static_cast<std::size_t>(length), '\0');
  WideCharToMultiByte(CP_UTF8, 0, text.data(), size, bytes.data(), length, nullptr, nullptr);
  return bytes;
}

long long NumberOf(const std::wstring& field) {
  try {
    return std::stoll(field, nullptr, 0);
  } catch (const std::logic_error&) {
    throw CommandError("not a number: " + ToUtf8(field));
  }
}

}  // namespace ostrel::driver
