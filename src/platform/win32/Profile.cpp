// The system's own functions, in their 8-bit form: the bytes go in and come out as they are.
#include "platform/Profile.h"

#include <windows.h>

#include "platform/Files.h"
#include "platform/SystemError.h"
#include "platform/win32/Path.h"

namespace ostrel::platform {
namespace {

// Nothing when the path has characters outside the code page.
std::string Narrow(const std::wstring& path) {
  BOOL replaced = FALSE;
  const bool everyCharacter = GetACP() == CP_UTF8;  // and then the system takes no such question
  std::string bytes(path.size() * 3, '\0');
  const int length = WideCharToMultiByte(CP_ACP, everyCharacter ? 0 : WC_NO_BEST_FIT_CHARS,
                                         path.c_str(), static_cast<int>(path.size()), bytes.data(),
                                         static_cast<int>(bytes.size()), nullptr,
                                         everyCharacter ? nullptr : &replaced);
  bytes.resize(replaced ? 0 : static_cast<std::size_t>(length));
  return bytes;
}

// The short form has 7-bit names only; a file must exist to have one.
std::string NarrowPath(TextView path) {
  const std::wstring full = SystemPath(path);
  std::string bytes = Narrow(full);
  if (!bytes.empty()) return bytes;
  std::wstring shortPath(GetShortPathNameW(full.c_str(), nullptr, 0), L'\0');
  const DWORD size = static_cast<DWORD>(shortPath.size());
  shortPath.resize(GetShortPathNameW(full.c_str(), shortPath.data(), size));
  return Narrow(shortPath);
}

// A new file that can be named only by its short name has to be there first.
std::string NarrowPathOfNew(TextView path) {
  std::string bytes = NarrowPath(path);
  if (!bytes.empty()) return bytes;
  File().Open(path, FileAccess::kWrite, FileCreation::kOpenAlways);
  return NarrowPath(path);
}

}  // namespace

std::string ReadProfileValue(TextView path, std::string_view section, std::string_view key,
                             std::string_view fallback, std::size_t size) {
  const std::string file = NarrowPath(path);
  if (file.empty()) return std::string(fallback.substr(0, size - 1));
  std::string value(size, '\0');
  value.resize(GetPrivateProfileStringA(std::string(section).c_str(), std::string(key).c_str(),
                                        std::string(fallback).c_str(), value.data(),
                                        static_cast<DWORD>(size), file.c_str()));
  return value;
}

std::string ReadProfileSection(TextView path, std::string_view section, std::size_t size) {
  const std::string file = NarrowPath(path);
  if (file.empty()) return {};
  std::string entries(size, '\0');
  entries.resize(GetPrivateProfileSectionA(std::string(section).c_str(), entries.data(),
                                           static_cast<DWORD>(size), file.c_str()));
  return entries;
}

int WriteProfileValue(TextView path, std::string_view section, std::string_view key,
                      const std::string* value) {
  const std::string file = value != nullptr ? NarrowPathOfNew(path) : NarrowPath(path);
  if (file.empty()) return kInvalidName;
  return WritePrivateProfileStringA(std::string(section).c_str(), std::string(key).c_str(),
                                    value != nullptr ? value->c_str() : nullptr, file.c_str())
             ? 0
             : LastErrorNumber();
}

int EraseProfileSection(TextView path, std::string_view section) {
  const std::string file = NarrowPath(path);
  if (file.empty()) return kInvalidName;
  return WritePrivateProfileSectionA(std::string(section).c_str(), nullptr, file.c_str())
             ? 0
             : LastErrorNumber();
}

}  // namespace ostrel::platform
