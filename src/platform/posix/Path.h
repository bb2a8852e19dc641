// Product paths as the system takes them.
#pragma once

#include <string>

#include "util/Text.h"

namespace ostrel::platform {

/// "\" and "/" separate; repeated separators count once. Each component is the one of exactly this
/// name if there is one, else one that differs in case only: the alphabetically first when it is
/// first looked for, and from then on the same one for as long as it is there. From the first
/// component that does not exist on, names stay as they are given. Empty when the path cannot be
/// one (empty, or with a NUL in it), which every system call refuses. A folder is read through for
/// a name only when nothing is known of it yet; the time does not depend on the number of entries
/// otherwise.
std::string ResolveFolder(TextView path);
/// Only the folders are looked up so, whose names the product turns to lower case; the last
/// component stays exactly as it is given: names of files that differ in case are different files.
std::string ResolveFile(TextView path);

/// Refines "no such file" of this resolved path: kFileNotFound, or kPathNotFound when its folder is
/// missing too. Other numbers stay as they are.
int RefineMissing(int error, const std::string& resolved);

}  // namespace ostrel::platform
