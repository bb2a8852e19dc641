// The program's name and version. The numbers are the project's, given by the build.
#pragma once

#include "util/Text.h"

namespace ostrel {

inline constexpr TextView kProgramName = u"Ostrel Server";
inline constexpr TextView kProgramTitle = u"Ostrel Server - MultiValue QuickBooks Gateway";

/// Where people send a problem report.
inline constexpr TextView kSupportAddress = u"support@pellmor.example";

/// Major, minor and revision joined by ".".
Text ProgramVersion();

}  // namespace ostrel
