#include "platform/win32/Path.h"

#include <windows.h>

namespace ostrel::platform {
namespace {

// Longer paths need the prefix that switches the system's own limit off; a folder is made only
// where 12 more characters for a file's name would fit.
constexpr std::size_t kLongestPlainPath = MAX_PATH - 13;

}  // namespace

// Both are UTF-16 on Windows: a wchar_t holds what a char16_t holds.
std::wstring ToWide(TextView text) { return std::wstring(text.begin(), text.end()); }
Text FromWide(std::wstring_view text) { return Text(text.begin(), text.end()); }

std::wstring SystemPath(TextView path) {
  if (path.empty() || Contains(path, TextView(u"\0", 1))) return {};
  const std::wstring given = ToWide(path);
  std::wstring full(GetFullPathNameW(given.c_str(), 0, nullptr, nullptr), L'\0');
  const DWORD length = static_cast<DWORD>(full.size());
  full.resize(GetFullPathNameW(given.c_str(), length, full.data(), nullptr));

  if (full.size() <= kLongestPlainPath || full.starts_with(LR"(\\?\)")) return full;
  if (full.starts_with(LR"(\\)")) return LR"(\\?\UNC\)" + full.substr(2);
  return LR"(\\?\)" + full;
}

}  // namespace ostrel::platform
