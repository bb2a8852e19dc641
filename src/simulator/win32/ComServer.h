// The stand-in's process as a COM server: it gives request processors to clients until the last of
// them has let go.
#pragma once

#include <ole2.h>

namespace ostrel::simulator {

/// Serves clients on this thread; returns the process's exit code.
int ServeClients();

}  // namespace ostrel::simulator
