#include "platform/posix/Path.h"

#include <dirent.h>
#include <sys/stat.h>

#include <memory>
#include <optional>

#include "platform/SystemError.h"

namespace ostrel::platform {
namespace {

constexpr TextView kSeparators = u"\\/";

bool Exists(const std::string& path) {
  struct stat status;
  return lstat(path.c_str(), &status) == 0;
}

// The alphabetically first entry of the folder whose name differs from this one in case only.
std::optional<std::string> FindIgnoringCase(const std::string& folder, TextView name) {
  struct Close {
    void operator()(DIR* directory) const { closedir(directory); }
  };
  const std::unique_ptr<DIR, Close> directory(opendir(folder.empty() ? "." : folder.c_str()));
  if (!directory) return {};

  const Text wanted = LowerCase(name);
  std::optional<std::string> found;
  while (const dirent* entry = readdir(directory.get())) {
    if (LowerCase(FromUtf8(entry->d_name)) != wanted) continue;
    if (!found || entry->d_name < *found) found = entry->d_name;
  }
  return found;
}

// Components from this position of the path on stay as they are given.
std::string Resolve(TextView path, std::size_t exactFrom) {
  if (path.empty() || Contains(path, TextView(u"\0", 1))) return {};

  std::string resolved;
  if (Contains(kSeparators, path.substr(0, 1))) resolved = "/";
  bool exists = true;
  for (std::size_t at = 0; (at = path.find_first_not_of(kSeparators, at)) != TextView::npos;) {
    const TextView name = path.substr(at, path.find_first_of(kSeparators, at) - at);
    at += name.size();
    std::string next = resolved + ToUtf8(name);
    const bool isExact = at > exactFrom;
    exists = isExact || (exists && Exists(next));
    if (!exists) {
      const auto found = FindIgnoringCase(resolved, name);
      exists = found.has_value();
      if (found) next = resolved + *found;
    }
    resolved = std::move(next) + "/";
  }
  if (resolved.size() > 1) resolved.pop_back();
  return resolved;
}

}  // namespace

std::string ResolveFolder(TextView path) { return Resolve(path, TextView::npos); }

std::string ResolveFile(TextView path) {
  const std::size_t end = path.find_last_not_of(kSeparators);
  return Resolve(path, path.find_last_of(kSeparators, end) + 1);
}

int RefineMissing(int error, const std::string& resolved) {
  if (error != kFileNotFound) return error;
  const std::size_t separator = resolved.rfind('/');
  if (separator == std::string::npos) return error;
  return Exists(resolved.substr(0, separator + 1)) ? kFileNotFound : kPathNotFound;
}

}  // namespace ostrel::platform
