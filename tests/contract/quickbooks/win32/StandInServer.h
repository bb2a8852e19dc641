// OstrelSimulator.exe beside the test program, as a test uses it from outside.
#pragma once

#include "util/Text.h"

namespace ostrel {

/// Its exit code for this argument; -1 when it does not run or does not end within 20 seconds.
int RunStandIn(TextView argument);

}  // namespace ostrel
