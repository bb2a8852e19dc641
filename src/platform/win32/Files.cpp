#include "platform/Files.h"

#include <windows.h>

#include <algorithm>
#include <utility>

#include "platform/SystemError.h"
#include "platform/win32/FileTime.h"
#include "platform/win32/Path.h"

namespace ostrel::platform {
namespace {

// The most bytes in one transfer: a network drive refuses very long ones.
constexpr std::size_t kLongestTransfer = 16 << 20;

HANDLE Handle(std::intptr_t handle) { return reinterpret_cast<HANDLE>(handle); }

DWORD AccessRights(FileAccess access) {
  switch (access) {
    case FileAccess::kRead:
      return GENERIC_READ;
    case FileAccess::kWrite:
      return GENERIC_WRITE;
    default:
      return GENERIC_READ | GENERIC_WRITE;
  }
}

int SeekTo(HANDLE handle, std::int64_t position) {
  LARGE_INTEGER distance;
  distance.QuadPart = position;
  return SetFilePointerEx(handle, distance, nullptr, FILE_BEGIN) ? 0 : LastErrorNumber();
}

}  // namespace

File::~File() { Close(); }
File::File(File&& other) noexcept : handle(std::exchange(other.handle, -1)) {}
File& File::operator=(File&& other) noexcept {
  if (this != &other) {
    Close();
    handle = std::exchange(other.handle, -1);
  }
  return *this;
}

int File::Open(TextView path, FileAccess access, FileCreation creation) {
  constexpr DWORD kNoSharing = 0;
  Close();
  const HANDLE opened =
      CreateFileW(SystemPath(path).c_str(), AccessRights(access), kNoSharing, nullptr,
                  creation == FileCreation::kOpenAlways ? OPEN_ALWAYS : OPEN_EXISTING,
                  FILE_ATTRIBUTE_NORMAL, nullptr);
  if (opened == INVALID_HANDLE_VALUE) return LastErrorNumber();
  if (GetFileType(opened) != FILE_TYPE_DISK) {
    CloseHandle(opened);  // a printer, a console, a pipe
    return kAccessDenied;
  }
  handle = reinterpret_cast<std::intptr_t>(opened);
  return 0;
}

void File::Close() {
  if (IsOpen()) CloseHandle(Handle(std::exchange(handle, -1)));
}

bool File::IsOpen() const { return handle != -1; }

std::optional<std::size_t> File::ReadAt(std::int64_t position, std::span<char> bytes, int& error) {
  std::size_t done = 0;
  error = SeekTo(Handle(handle), position);
  while (error == 0 && done < bytes.size()) {
    const auto wanted = static_cast<DWORD>(std::min(bytes.size() - done, kLongestTransfer));
    DWORD count = 0;
    if (!ReadFile(Handle(handle), bytes.data() + done, wanted, &count, nullptr)) {
      error = LastErrorNumber();
    }
    if (count == 0) break;
    done += count;
  }
  if (error != 0) return {};
  return done;
}

int File::WriteAt(std::int64_t position, std::span<const char> bytes) {
  const int error = SeekTo(Handle(handle), position);
  if (error != 0) return error;
  while (!bytes.empty()) {
    const auto wanted = static_cast<DWORD>(std::min(bytes.size(), kLongestTransfer));
    DWORD count = 0;
    if (!WriteFile(Handle(handle), bytes.data(), wanted, &count, nullptr)) return LastErrorNumber();
    if (count == 0) return kDiskFull;
    bytes = bytes.subspan(count);
  }
  return 0;
}

std::int64_t File::Size() const {
  LARGE_INTEGER size;
  return GetFileSizeEx(Handle(handle), &size) ? size.QuadPart : 0;
}

int File::CutAt(std::int64_t position) {
  const int error = SeekTo(Handle(handle), position);
  if (error != 0) return error;
  return SetEndOfFile(Handle(handle)) ? 0 : LastErrorNumber();
}

int File::Flush() { return FlushFileBuffers(Handle(handle)) ? 0 : LastErrorNumber(); }

std::optional<FileTimes> File::Times() const {
  FILETIME created, accessed, modified;
  if (!GetFileTime(Handle(handle), &created, &accessed, &modified)) return {};
  return FileTimes{FromFileTime(created), FromFileTime(accessed), FromFileTime(modified)};
}

}  // namespace ostrel::platform
