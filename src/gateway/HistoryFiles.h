// History files: one a second by default, since they are named after the second; or, as HistoryEach
// asks for, each request has one of its own.
#pragma once

#include <cstdint>

#include "gateway/GatewaySettings.h"
#include "util/Text.h"
#include "util/cFileIO.h"

namespace ostrel {

/// The name for a moment, given its general date text: "1/5/2010 9:03:07 AM" gives
/// "1050201090307AM.txt". Kept: each "/" becomes "0". Characters that no file name may hold, as
/// other locales have them, are left out. number: among the files of that second, from 1; the later
/// ones have it at their end: "1050201090307AM-2.txt".
Text HistoryFileName(TextView generalDate, std::int32_t number = 1);

class HistoryFiles {
 public:
  /// Opens the history file of a moment, given its general date text, for writing; false when it
  /// cannot be opened. `file` is named after it either way. With HistoryEach it is a new file: the
  /// first of a second has the plain name, later ones end in "-2", "-3" and so on. A link in its
  /// place is not followed.
  bool Open(cFileIO& file, const GatewaySettings& settings, TextView generalDate);

 private:
  bool OpenNew(cFileIO& file, const Text& folder, TextView generalDate);

  Text sLastDate;
  std::int32_t lLastNumber = 0;  // of the files of that second
};

}  // namespace ostrel
