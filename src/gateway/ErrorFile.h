// The answer to a request that came in a file and failed.
#pragma once

#include "gateway/WholeFile.h"
#include "util/Text.h"

namespace ostrel {

/// Writes the two lines "ERROR " & errorNumber and message into the open file. False when they
/// could not be written whole.
bool WriteErrorFile(WholeFile& file, TextView errorNumber, TextView message);

}  // namespace ostrel
