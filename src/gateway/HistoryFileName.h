// The names of history files.
#pragma once

#include <cstdint>

#include "util/Text.h"

namespace ostrel {

/// The name for a moment, given its general date text: "1/5/2010 9:03:07 AM" gives
/// "1050201090307AM.txt". Kept: each "/" becomes "0". Characters that no file name may hold, as
/// other locales have them, are left out. number: among the files of that second, from 1; the later
/// ones have it at their end: "1050201090307AM-2.txt".
Text HistoryFileName(TextView generalDate, std::int32_t number = 1);

}  // namespace ostrel
