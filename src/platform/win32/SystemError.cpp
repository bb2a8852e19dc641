#include "platform/SystemError.h"

#include <windows.h>

#include <memory>

#include "platform/win32/Path.h"

namespace ostrel::platform {
namespace {

struct Mapping {
  DWORD systemError;
  int number;
};

constexpr Mapping kMappings[] = {
    {ERROR_ALREADY_EXISTS, kFileExists},       {ERROR_HANDLE_DISK_FULL, kDiskFull},
    {ERROR_LOCK_VIOLATION, kSharingViolation}, {ERROR_DIRECTORY, kPathNotFound},
    {ERROR_BAD_PATHNAME, kInvalidName},
};

}  // namespace

int ErrorNumberOf(unsigned long systemError) {
  for (const Mapping& mapping : kMappings) {
    if (mapping.systemError == systemError) return mapping.number;
  }
  return static_cast<int>(systemError);
}

int LastErrorNumber() {
  const int number = ErrorNumberOf(GetLastError());
  return number == 0 ? kGeneralFailure : number;
}

Text SystemErrorText(int number) {
  struct Free {
    void operator()(wchar_t* text) const { LocalFree(text); }
  };
  wchar_t* buffer = nullptr;
  const DWORD length = FormatMessageW(
      FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
      nullptr, static_cast<DWORD>(number), 0, reinterpret_cast<wchar_t*>(&buffer), 0, nullptr);
  const std::unique_ptr<wchar_t, Free> owner(buffer);
  const std::wstring_view sentence(buffer, length);
  const std::size_t end = sentence.find_last_not_of(L"\r\n ") + 1;
  if (end == 0) return u"Error " + ToText(std::int64_t{number}) + u".";
  return FromWide(sentence.substr(0, end));
}

}  // namespace ostrel::platform
