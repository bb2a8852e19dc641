#include "platform/FileSystem.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>

#include "platform/FileNames.h"
#include "platform/SystemError.h"
#include "platform/posix/ErrorNumber.h"
#include "platform/posix/Path.h"

namespace ostrel::platform {
namespace {

struct CloseDirectory {
  void operator()(DIR* directory) const { closedir(directory); }
};

int Result(int systemResult, const std::string& path) {
  return systemResult == 0 ? 0 : RefineMissing(LastErrorNumber(), path);
}

bool StatusOf(int folder, const char* name, struct stat& status) {
  return fstatat(folder, name, &status, 0) == 0;
}

// The path's last component as it was given, in the folder that was found for it.
std::string WithGivenName(const std::string& resolved, TextView path) {
  const std::size_t end = path.find_last_not_of(u"\\/") + 1;
  const TextView trimmed = path.substr(0, end);
  const TextView name = trimmed.substr(trimmed.find_last_of(u"\\/") + 1);
  return resolved.substr(0, resolved.rfind('/') + 1) + ToUtf8(name);
}

// Of an operation from one path to another: "no such file" may mean either.
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
  return ToUtf8(name) == bytes && !Contains(name, u"\\");
}

}  // namespace

int EraseFile(TextView path) {
  const std::string resolved = ResolvePath(path);
  return Result(unlink(resolved.c_str()), resolved);
}

int RenamePath(TextView from, TextView to) {
  const std::string source = ResolvePath(from);
  std::string target = ResolvePath(to);
  if (target == source) target = WithGivenName(source, to);
  if (target == source) return 0;
  return RenameUnlessExists(source, target);
}

int RenameOver(TextView from, TextView to) {
  return RenameReplacing(ResolvePath(from), ResolvePath(to));
}

int DuplicateFile(TextView from, TextView to) {
  const std::string source = ResolvePath(from);
  const std::string target = ResolvePath(to);
  std::error_code error;
  std::filesystem::copy_file(source, target, std::filesystem::copy_options::overwrite_existing,
                             error);
  if (!error) return 0;
  const int number = TransferError(ErrorNumberOf(error.value()), source);
  if (number == kDiskFull) unlink(target.c_str());
  return number;
}

int RecyclePath(TextView path, bool /*confirm*/) { return EraseFile(path); }

std::optional<TimePoint> ModifiedTime(TextView path) {
  struct stat status;
  if (!StatusOf(AT_FDCWD, ResolvePath(path).c_str(), status)) return {};
  return TimePoint(std::chrono::seconds(status.st_mtim.tv_sec) +
                   std::chrono::nanoseconds(status.st_mtim.tv_nsec));
}

Text MakeTemporaryFile(TextView folder, TextView prefix) {
  const Text start(prefix.substr(0, 3));
  if (folder.empty() || start.find_first_of(u"\\/") != Text::npos) return {};
  std::string path = ResolvePath(folder) + "/" + ToUtf8(start) + std::string(6, 'X') + ".tmp";
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
  const std::string resolved = ResolvePath(path);
  const int error = Result(mkdir(resolved.c_str(), 0777), resolved);
  return error == kFileNotFound ? kPathNotFound : error;
}

bool FolderExists(TextView path) {
  struct stat status;
  return StatusOf(AT_FDCWD, ResolvePath(path).c_str(), status) && S_ISDIR(status.st_mode);
}

std::vector<Text> ListFiles(TextView folder, TextView pattern) {
  const std::unique_ptr<DIR, CloseDirectory> directory(opendir(ResolvePath(folder).c_str()));
  if (!directory) return {};

  std::vector<Text> names;
  while (const dirent* entry = readdir(directory.get())) {
    Text name = FromUtf8(entry->d_name);
    struct stat status;
    const bool isFile =
        entry->d_type == DT_REG ||
        (entry->d_type != DT_DIR && StatusOf(dirfd(directory.get()), entry->d_name, status) &&
         S_ISREG(status.st_mode));
    if (isFile && IsProductName(entry->d_name, name)) names.push_back(std::move(name));
  }
  return SelectNames(names, pattern);
}

}  // namespace ostrel::platform
