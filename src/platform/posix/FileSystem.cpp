// Product paths are resolved to the system's, ignoring the letter case of folders, before each call
// (Path.h). Entries are examined relative to the open folder and never followed through a link by
// accident. Names that are no text, or that have a "\" in them, cannot be reached through a product
// path and are left out of listings.
#include "platform/FileSystem.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <utility>

#include "platform/SystemError.h"
#include "platform/detail/FileNames.h"
#include "platform/posix/ErrorNumbers.h"
#include "platform/posix/Path.h"

namespace ostrel::platform {
namespace {

struct CloseDirectory {
  void operator()(DIR* directory) const { closedir(directory); }
};

int Result(int systemResult, const std::string& path) {
  return systemResult == 0 ? 0 : RefineMissing(LastErrorNumber(), path);
}

bool StatusOf(int folder, const char* name, struct stat& status, int flags = 0) {
  return fstatat(folder, name, &status, flags) == 0;
}

// True for an entry that a listing shows. A link is listed unless it leads to a folder: whoever
// opens it is to be told that it is one.
bool IsListed(int folder, const dirent& entry) {
  if (entry.d_type == DT_REG || entry.d_type == DT_DIR) return entry.d_type == DT_REG;
  struct stat status;
  if (!StatusOf(folder, entry.d_name, status, AT_SYMLINK_NOFOLLOW)) return false;
  if (!S_ISLNK(status.st_mode)) return S_ISREG(status.st_mode);
  return !StatusOf(folder, entry.d_name, status) || !S_ISDIR(status.st_mode);
}

// The result of an operation from one path to another: "no such file" may mean either.
int TransferError(int error, const std::string& from) {
  struct stat status;
  if (error == kFileNotFound && StatusOf(AT_FDCWD, from.c_str(), status)) return kPathNotFound;
  return RefineMissing(error, from);
}

int RenameReplacing(const std::string& from, const std::string& to) {
  if (std::rename(from.c_str(), to.c_str()) == 0) return 0;
  return TransferError(LastErrorNumber(), from);
}

int RenameUnlessExists(const std::string& from, const std::string& to) {
  if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return 0;
  if (errno != EINVAL && errno != ENOSYS) return TransferError(LastErrorNumber(), from);
  // A file system that cannot refuse by itself.
  struct stat status;
  return StatusOf(AT_FDCWD, to.c_str(), status) ? kFileExists : RenameReplacing(from, to);
}

// A name that is no text, or has a "\" in it, cannot be reached through a product path.
bool IsProductName(std::string_view bytes, TextView name) {
  const bool isAscii = std::all_of(name.begin(), name.end(), [](char16_t c) { return c < 0x80; });
  return (isAscii || ToUtf8(name) == bytes) && !Contains(name, u"\\");
}

}  // namespace

int EraseFile(TextView path) {
  const std::string resolved = ResolveFile(path);
  return Result(unlink(resolved.c_str()), resolved);
}

int RenamePath(TextView from, TextView to) {
  const std::string source = ResolveFile(from);
  const std::string target = ResolveFile(to);
  return source == target ? 0 : RenameUnlessExists(source, target);
}

int RenameOver(TextView from, TextView to) {
  return RenameReplacing(ResolveFile(from), ResolveFile(to));
}

int DuplicateFile(TextView from, TextView to) {
  const std::string source = ResolveFile(from);
  const std::string target = ResolveFile(to);
  std::error_code error;
  std::filesystem::copy_file(source, target, std::filesystem::copy_options::overwrite_existing,
                             error);
  if (!error) return 0;
  const int number = TransferError(ErrorNumberOf(error.value()), source);
  if (number == kDiskFull) unlink(target.c_str());
  return number;
}

int RecyclePath(TextView path, bool /*confirm*/) { return EraseFile(path); }

EntryKind KindOf(TextView path) {
  struct stat status;
  if (!StatusOf(AT_FDCWD, ResolveFile(path).c_str(), status, AT_SYMLINK_NOFOLLOW)) {
    return EntryKind::kNone;
  }
  if (S_ISLNK(status.st_mode)) return EntryKind::kLink;
  if (S_ISDIR(status.st_mode)) return EntryKind::kFolder;
  return S_ISREG(status.st_mode) ? EntryKind::kFile : EntryKind::kOther;
}

std::optional<TimePoint> ModifiedTime(TextView path) {
  struct stat status;
  if (!StatusOf(AT_FDCWD, ResolveFile(path).c_str(), status)) return {};
  return TimePoint(std::chrono::seconds(status.st_mtim.tv_sec) +
                   std::chrono::nanoseconds(status.st_mtim.tv_nsec));
}

Text MakeTemporaryFile(TextView folder, TextView prefix) {
  const Text start(prefix.substr(0, 3));
  if (folder.empty() || start.find_first_of(u"\\/") != Text::npos) return {};
  std::string path = ResolveFolder(folder) + "/" + ToUtf8(start) + std::string(6, 'X') + ".tmp";
  const int descriptor = mkostemps(path.data(), 4, O_CLOEXEC);
  if (descriptor < 0) return {};
  close(descriptor);
  return FromUtf8(path);
}

Text TemporaryFolder() {
  for (const char* variable : {"TEMP", "TMPDIR"}) {
    const char* value = std::getenv(variable);
    if (value != nullptr && *value != '\0') return FromUtf8(value);
  }
  return u"/tmp";
}

Text ShortPath(TextView folder) { return Text(folder); }

const Text& ProgramFolder() {
  static const Text folder = [] {
    std::error_code error;
    return FromUtf8(std::filesystem::read_symlink("/proc/self/exe", error).parent_path().string());
  }();
  return folder;
}

int MakeFolder(TextView path) {
  const std::string resolved = ResolveFolder(path);
  const int error = Result(mkdir(resolved.c_str(), 0777), resolved);
  return error == kFileNotFound ? kPathNotFound : error;
}

bool FolderExists(TextView path) {
  struct stat status;
  return StatusOf(AT_FDCWD, ResolveFolder(path).c_str(), status) && S_ISDIR(status.st_mode);
}

bool IsSameFolder(TextView one, TextView other) {
  struct stat a, b;
  return StatusOf(AT_FDCWD, ResolveFolder(one).c_str(), a) &&
         StatusOf(AT_FDCWD, ResolveFolder(other).c_str(), b) && S_ISDIR(a.st_mode) &&
         a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

bool IsSameName(TextView one, TextView other) { return one == other; }

bool IsNameTooLong(TextView name) { return ToUtf8(name).size() > NAME_MAX; }

std::vector<Text> ListFiles(TextView folder, TextView pattern, std::vector<Text>* unreachable) {
  const std::unique_ptr<DIR, CloseDirectory> directory(opendir(ResolveFolder(folder).c_str()));
  if (!directory) return {};

  std::vector<Text> names, others;
  while (const dirent* entry = readdir(directory.get())) {
    if (!IsListed(dirfd(directory.get()), *entry)) continue;
    Text name = FromUtf8(entry->d_name);
    auto& list = IsProductName(entry->d_name, name) ? names : others;
    list.push_back(std::move(name));
  }
  if (unreachable != nullptr) *unreachable = SelectNames(std::move(others), pattern);
  return SelectNames(std::move(names), pattern);
}

}  // namespace ostrel::platform
