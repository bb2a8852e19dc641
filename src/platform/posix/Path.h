// Product paths as the system takes them.
#pragma once

#include <string>

#include "util/Text.h"

namespace ostrel::platform {

/// "\" and "/" separate; repeated separators count once. Each component is the one of exactly this
/// name if there is one, else the alphabetically first that differs in case only; from the first
/// one that does not exist on, names stay as they are given. Empty when the path cannot be one
/// (empty, or with a NUL in it), which every system call refuses.
std::string ResolveFolder(TextView path);
/// Only the folders are looked up so, whose names the product turns to lower case; the last
/// component stays exactly as it is given: names of files that differ in case are different files.
std::string ResolveFile(TextView path);

/// Refines "no such file" of this resolved path: kFileNotFound, or kPathNotFound when its folder is
/// missing too. Other numbers stay as they are.
int RefineMissing(int error, const std::string& resolved);

}  // namespace ostrel::platform
