// The system's own functions, in their 8-bit form: the bytes go in and come out as they are. They
// have three faults that are made good here. They do not tell a file that cannot be read from one
// that is missing, so the file is opened beside them, several times when somebody else has it for a
// moment. They cannot name a file outside the code page, so its short name is used. They cut a long
// result without a word, so the buffer has room for one byte more than was asked for.
#include "platform/Profile.h"

#include <windows.h>

#include <algorithm>

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

// The file open for reading in the way that hinders nobody. As long as it is, nobody else can keep
// the system's functions from reading it.
class ReadableFile {
 public:
  explicit ReadableFile(TextView path) {
    constexpr DWORD kPause = 20;  // milliseconds
    constexpr int kAttempts = 25;
    for (int attempt = 1; !Open(path) && attempt < kAttempts; ++attempt) Sleep(kPause);
  }
  ~ReadableFile() {
    if (hFile != INVALID_HANDLE_VALUE) CloseHandle(hFile);
  }
  ReadableFile(const ReadableFile&) = delete;
  ReadableFile& operator=(const ReadableFile&) = delete;

  bool IsMissing() const { return iError == kFileNotFound || iError == kPathNotFound; }
  int Error() const { return iError; }

 private:
  // Whether another attempt is needless.
  bool Open(TextView path) {
    hFile = CreateFileW(SystemPath(path).c_str(), GENERIC_READ,
                        FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                        OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    iError = hFile == INVALID_HANDLE_VALUE ? LastErrorNumber() : 0;
    return iError == 0 || IsMissing();
  }

  HANDLE hFile = INVALID_HANDLE_VALUE;
  int iError = 0;
};

// Runs `read` with a buffer that has room for a byte more than asked for, by which a cut result is
// known, and hands out what fits. A missing file is an empty one.
template <typename Read>
int ReadFrom(TextView path, std::size_t most, std::string& result, Read read) {
  const ReadableFile readable(path);
  if (readable.Error() != 0 && !readable.IsMissing()) return readable.Error();
  const std::string file = NarrowPath(path);
  if (file.empty()) return readable.IsMissing() ? 0 : kInvalidName;
  read(file.c_str());
  if (result.size() <= most) return 0;
  result.resize(most);
  return kMoreData;
}

}  // namespace

int ReadProfileValue(TextView path, std::string_view section, std::string_view key,
                     std::string_view fallback, std::size_t size, std::string& value) {
  value = fallback.substr(0, std::min(fallback.find_last_not_of(' ') + 1, size - 1));
  return ReadFrom(path, size - 1, value, [&](const char* file) {
    value.assign(size + 1, '\0');
    value.resize(GetPrivateProfileStringA(std::string(section).c_str(), std::string(key).c_str(),
                                          std::string(fallback).c_str(), value.data(),
                                          static_cast<DWORD>(value.size()), file));
  });
}

int ReadProfileSection(TextView path, std::string_view section, std::size_t size,
                       std::string& entries) {
  entries.clear();
  return ReadFrom(path, size - 2, entries, [&](const char* file) {
    entries.assign(size + 1, '\0');
    entries.resize(GetPrivateProfileSectionA(std::string(section).c_str(), entries.data(),
                                             static_cast<DWORD>(entries.size()), file));
  });
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
