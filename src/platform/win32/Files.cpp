// A file is opened without sharing: as long as it is open, every other program is refused, and a
// file that another one has open is refused here. A link is recognised on the open handle, not
// before, so that nobody can put one in its place in between. Reading and writing name their
// position, in pieces that a network drive takes, and devices that only look like files (CON, a
// pipe) are closed again.
#include "platform/Files.h"

#include <windows.h>

#include <algorithm>
#include <string>
#include <utility>

#include "platform/SystemError.h"
#include "platform/win32/FileMetadata.h"
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

DWORD Disposition(FileCreation creation) {
  switch (creation) {
    case FileCreation::kOpenAlways:
      return OPEN_ALWAYS;
    case FileCreation::kCreateNew:
      return CREATE_NEW;
    default:
      return OPEN_EXISTING;
  }
}

// INVALID_HANDLE_VALUE, and the thread's last error, on failure.
HANDLE OpenAlone(const std::wstring& path, FileAccess access, FileCreation creation, DWORD flags) {
  constexpr DWORD kNoSharing = 0;
  return CreateFileW(path.c_str(), AccessRights(access), kNoSharing, nullptr, Disposition(creation),
                     FILE_ATTRIBUTE_NORMAL | flags, nullptr);
}

// Opens the entry itself, and what it stands for only when that is the same file (kept in the
// cloud, say).
HANDLE OpenUnlessLink(const std::wstring& path, FileAccess access, FileCreation creation) {
  const HANDLE opened = OpenAlone(path, access, creation, FILE_FLAG_OPEN_REPARSE_POINT);
  const DWORD tag = opened == INVALID_HANDLE_VALUE ? 0 : ReparseTag(opened);
  if (tag == 0) return opened;
  CloseHandle(opened);
  if (!IsLinkTag(tag)) return OpenAlone(path, access, FileCreation::kOpenExisting, 0);
  SetLastError(kStoppedOnLink);
  return INVALID_HANDLE_VALUE;
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

int File::Open(TextView path, FileAccess access, FileCreation creation, FileLinks links) {
  Close();
  const std::wstring name = SystemPath(path);
  const HANDLE opened = links == FileLinks::kFollow ? OpenAlone(name, access, creation, 0)
                                                    : OpenUnlessLink(name, access, creation);
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

std::optional<std::int64_t> File::Size() const {
  LARGE_INTEGER size;
  if (!GetFileSizeEx(Handle(handle), &size)) return {};
  return size.QuadPart;
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
