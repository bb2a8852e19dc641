// Each operation is one call of the system on the path in its long form (Path.h), which has no
// limit of 260 characters. Listings take all names from the system and select them here: the
// system's own patterns would compare the short 8.3 names as well.
#include "platform/FileSystem.h"

#include <windows.h>
// shellapi.h needs windows.h before it.
#include <shellapi.h>

#include <cstdint>
#include <memory>
#include <utility>

#include "platform/SystemError.h"
#include "platform/detail/FileNames.h"
#include "platform/win32/FileMetadata.h"
#include "platform/win32/Path.h"

namespace ostrel::platform {
namespace {

struct CloseFind {
  using pointer = HANDLE;
  void operator()(HANDLE find) const { FindClose(find); }
};

int Result(BOOL succeeded) { return succeeded ? 0 : LastErrorNumber(); }

// The text of a function that fills a buffer and returns the length: without the NUL when the
// buffer sufficed, with it when it did not.
template <typename Fill>
std::wstring Filled(Fill fill) {
  std::wstring text(MAX_PATH, L'\0');
  DWORD length = 0;
  while ((length = fill(text.data(), static_cast<DWORD>(text.size()))) >= text.size()) {
    text.resize(text.size() * 2);
  }
  text.resize(length);
  return text;
}

// Disk and number of a folder on it; nothing when there is none.
std::optional<std::pair<DWORD, std::uint64_t>> IdentityOf(TextView folder) {
  constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  const HANDLE opened = CreateFileW(SystemPath(folder).c_str(), 0, kShareAll, nullptr,
                                    OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
  if (opened == INVALID_HANDLE_VALUE) return {};
  BY_HANDLE_FILE_INFORMATION found{};
  const bool isFolder = GetFileInformationByHandle(opened, &found) &&
                        (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
  CloseHandle(opened);
  if (!isFolder) return {};
  return std::pair(found.dwVolumeSerialNumber,
                   std::uint64_t{found.nFileIndexHigh} << 32 | found.nFileIndexLow);
}

// Without a separator at its end, a drive's root excepted.
Text WithoutSeparator(std::wstring_view folder) {
  if (folder.ends_with(L'\\') && !folder.ends_with(LR"(:\)")) folder.remove_suffix(1);
  return FromWide(folder);
}

}  // namespace

int EraseFile(TextView path) { return Result(DeleteFileW(SystemPath(path).c_str())); }

int RenamePath(TextView from, TextView to) {
  return Result(MoveFileExW(SystemPath(from).c_str(), SystemPath(to).c_str(), 0));
}

int RenameOver(TextView from, TextView to) {
  return Result(MoveFileExW(SystemPath(from).c_str(), SystemPath(to).c_str(),
                            MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH));
}

int DuplicateFile(TextView from, TextView to) {
  return Result(CopyFileW(SystemPath(from).c_str(), SystemPath(to).c_str(), FALSE));
}

int RecyclePath(TextView path, bool confirm) {
  std::wstring list = SystemPath(path);
  if (GetFileAttributesW(list.c_str()) == INVALID_FILE_ATTRIBUTES) return LastErrorNumber();
  list.push_back(L'\0');  // a list of names, ended by an empty one

  SHFILEOPSTRUCTW operation{};
  operation.wFunc = FO_DELETE;
  operation.pFrom = list.c_str();
  operation.fFlags = FOF_ALLOWUNDO | FOF_SILENT | FOF_NOERRORUI;
  if (!confirm) operation.fFlags |= FOF_NOCONFIRMATION;
  const int failure = SHFileOperationW(&operation);
  if (failure == 0) return operation.fAnyOperationsAborted ? kAccessDenied : 0;
  return kGeneralFailure;  // the shell's numbers are of its own kind
}

EntryKind KindOf(TextView path) {
  WIN32_FIND_DATAW found{};
  const std::wstring name = SystemPath(path);
  const DWORD attributes = GetFileAttributesW(name.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES) return EntryKind::kNone;
  if ((attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0) {
    const HANDLE find = FindFirstFileW(name.c_str(), &found);
    if (find != INVALID_HANDLE_VALUE) FindClose(find);
    if (IsLinkTag(found.dwReserved0)) return EntryKind::kLink;
  }
  return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? EntryKind::kFolder : EntryKind::kFile;
}

std::optional<TimePoint> ModifiedTime(TextView path) {
  WIN32_FILE_ATTRIBUTE_DATA found;
  if (!GetFileAttributesExW(SystemPath(path).c_str(), GetFileExInfoStandard, &found)) return {};
  return FromFileTime(found.ftLastWriteTime);
}

Text MakeTemporaryFile(TextView folder, TextView prefix) {
  wchar_t path[MAX_PATH];
  const std::wstring start = ToWide(prefix.substr(0, 3));
  if (start.find_first_of(L"\\/") != std::wstring::npos) return {};
  if (GetTempFileNameW(SystemPath(folder).c_str(), start.c_str(), 0, path) == 0) return {};
  return FromWide(path);
}

Text TemporaryFolder() {
  std::wstring folder = Filled(
      [](wchar_t* text, DWORD size) { return GetEnvironmentVariableW(L"TEMP", text, size); });
  if (folder.empty()) {
    folder = Filled([](wchar_t* text, DWORD size) { return GetTempPathW(size, text); });
  }
  return WithoutSeparator(folder);
}

Text ShortPath(TextView folder) {
  const std::wstring path = SystemPath(folder);
  const std::wstring shortPath = Filled(
      [&](wchar_t* text, DWORD size) { return GetShortPathNameW(path.c_str(), text, size); });
  return shortPath.empty() ? Text(folder) : FromWide(shortPath);
}

const Text& ProgramFolder() {
  static const Text folder = [] {
    const std::wstring program =
        Filled([](wchar_t* text, DWORD size) { return GetModuleFileNameW(nullptr, text, size); });
    return FromWide(std::wstring_view(program).substr(0, program.rfind(L'\\')));
  }();
  return folder;
}

int MakeFolder(TextView path) {
  return Result(CreateDirectoryW(SystemPath(path).c_str(), nullptr));
}

bool FolderExists(TextView path) {
  const DWORD attributes = GetFileAttributesW(SystemPath(path).c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

bool IsSameFolder(TextView one, TextView other) {
  const auto first = IdentityOf(one);
  return first && first == IdentityOf(other);
}

bool IsSameName(TextView one, TextView other) { return LowerCase(one) == LowerCase(other); }

bool IsNameTooLong(TextView name) { return name.size() > 255; }

std::vector<Text> ListFiles(TextView folder, TextView pattern, std::vector<Text>* unreachable) {
  if (unreachable != nullptr) unreachable->clear();
  // The system's own pattern would compare short names as well.
  const std::wstring everything = SystemPath(Text(folder) + u"\\*");
  WIN32_FIND_DATAW found;
  const HANDLE first = FindFirstFileW(everything.c_str(), &found);
  if (first == INVALID_HANDLE_VALUE) return {};

  const std::unique_ptr<HANDLE, CloseFind> find(first);
  std::vector<Text> names;
  do {
    const bool isFolder = (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    if (!isFolder) names.push_back(FromWide(found.cFileName));
  } while (FindNextFileW(find.get(), &found));
  return SelectNames(std::move(names), pattern);
}

}  // namespace ostrel::platform
