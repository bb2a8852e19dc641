// The exact path is asked for first, in one call. Only the components of a path that is not there
// are looked up one by one, ignoring case where need be, and what such a look-up finds is
// remembered, since it reads the whole folder: other programs may keep any number of files there.
//
// What is remembered never outlives the truth. A name that was found is used only while it is
// there and while no exact one is. That there was none holds only while the folder has the time of
// change that it had then, and only where that time was old enough for the next change to give it
// another one.
#include "platform/posix/Path.h"

#include <dirent.h>
#include <sys/stat.h>

#include <chrono>
#include <map>
#include <memory>
#include <optional>
#include <utility>

#include "platform/SystemError.h"

namespace ostrel::platform {
namespace {

constexpr TextView kSeparators = u"\\/";

bool Exists(const std::string& path) {
  struct stat status;
  return lstat(path.c_str(), &status) == 0;
}

// The alphabetically first entry of the folder whose name in lower case is this one.
std::optional<std::string> FindIgnoringCase(const std::string& folder, const Text& wanted) {
  struct Close {
    void operator()(DIR* directory) const { closedir(directory); }
  };
  const std::unique_ptr<DIR, Close> directory(opendir(folder.c_str()));
  if (!directory) return {};

  std::optional<std::string> found;
  while (const dirent* entry = readdir(directory.get())) {
    if (LowerCase(FromUtf8(entry->d_name)) != wanted) continue;
    if (!found || entry->d_name < *found) found = entry->d_name;
  }
  return found;
}

// The state of a folder's list of entries: another one after each entry that comes or goes.
class FolderState {
 public:
  FolderState() = default;
  explicit FolderState(const std::string& folder) {
    struct stat status;
    if (stat(folder.c_str(), &status) != 0) return;
    oDevice = status.st_dev;
    oEntry = status.st_ino;
    oChanged = std::chrono::seconds(status.st_ctim.tv_sec) +
               std::chrono::nanoseconds(status.st_ctim.tv_nsec);
    bKnown = true;
  }

  // Whether a change from now on is seen: file systems count time in steps of up to two seconds.
  bool IsSettled() const {
    constexpr std::chrono::seconds kLongestStep{3};
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    return bKnown && now - oChanged > kLongestStep;
  }
  friend bool operator==(const FolderState&, const FolderState&) = default;

 private:
  bool bKnown = false;
  dev_t oDevice = 0;
  ino_t oEntry = 0;
  std::chrono::nanoseconds oChanged{0};
};

// What is known of names that are not there exactly as they are asked for.
class KnownNames {
 public:
  // `folder` is resolved, and ends with "/" unless it is empty.
  std::optional<std::string> Find(const std::string& folder, TextView name) {
    Known& known = KnownOf(folder, LowerCase(name));
    if (known.sFound && Exists(folder + *known.sFound)) return known.sFound;

    const std::string place = folder.empty() ? "." : folder;
    const FolderState now(place);
    if (known.bSettled && known.oState == now) return {};
    known.sFound = FindIgnoringCase(place, LowerCase(name));
    known.oState = now;
    known.bSettled = !known.sFound && now.IsSettled();
    return known.sFound;
  }

 private:
  static constexpr std::size_t kMost = 1000;  // paths come from clients, too

  struct Known {
    std::optional<std::string> sFound;
    FolderState oState;     // before the folder was read
    bool bSettled = false;  // by then, and nothing was found
  };

  Known& KnownOf(const std::string& folder, Text name) {
    if (oNames.size() >= kMost) oNames.clear();
    return oNames[{folder, std::move(name)}];
  }

  std::map<std::pair<std::string, Text>, Known> oNames;
};

std::optional<std::string> FindKnown(const std::string& folder, TextView name) {
  thread_local KnownNames names;
  return names.Find(folder, name);
}

// The path as it is given, less repeated separators.
std::string ExactPath(TextView path) {
  std::string exact;
  if (Contains(kSeparators, path.substr(0, 1))) exact = "/";
  for (std::size_t at = 0; (at = path.find_first_not_of(kSeparators, at)) != TextView::npos;) {
    const TextView name = path.substr(at, path.find_first_of(kSeparators, at) - at);
    at += name.size();
    exact += ToUtf8(name) + "/";
  }
  if (exact.size() > 1) exact.pop_back();
  return exact;
}

// With each component that is not there exactly in the writing in which it is.
std::string PathIgnoringCase(TextView path) {
  std::string resolved;
  if (Contains(kSeparators, path.substr(0, 1))) resolved = "/";
  bool exists = true;
  for (std::size_t at = 0; (at = path.find_first_not_of(kSeparators, at)) != TextView::npos;) {
    const TextView name = path.substr(at, path.find_first_of(kSeparators, at) - at);
    at += name.size();
    std::string exact = ToUtf8(name);
    if (exists && !Exists(resolved + exact)) {
      const auto found = FindKnown(resolved, name);
      exists = found.has_value();
      if (found) exact = *found;
    }
    resolved += exact + "/";
  }
  if (resolved.size() > 1) resolved.pop_back();
  return resolved;
}

bool CanBePath(TextView path) { return !path.empty() && !Contains(path, TextView(u"\0", 1)); }

}  // namespace

std::string ResolveFolder(TextView path) {
  if (!CanBePath(path)) return {};
  std::string exact = ExactPath(path);
  return Exists(exact) ? exact : PathIgnoringCase(path);
}

std::string ResolveFile(TextView path) {
  if (!CanBePath(path)) return {};
  const std::size_t end = path.find_last_not_of(kSeparators);
  const std::size_t name = path.find_last_of(kSeparators, end) + 1;
  std::string folder = ResolveFolder(path.substr(0, name));
  if (!folder.empty() && !folder.ends_with('/')) folder.push_back('/');
  return folder + ExactPath(path.substr(name));
}

int RefineMissing(int error, const std::string& resolved) {
  if (error != kFileNotFound) return error;
  const std::size_t separator = resolved.rfind('/');
  if (separator == std::string::npos) return error;
  return Exists(resolved.substr(0, separator + 1)) ? kFileNotFound : kPathNotFound;
}

}  // namespace ostrel::platform
