// The text of each socket error that the library reports.
#pragma once

#include "util/Text.h"

namespace ostrel {

/// number: of the Windows Sockets standard. "Unknown error." for any other.
TextView SocketErrorText(int number);

}  // namespace ostrel
