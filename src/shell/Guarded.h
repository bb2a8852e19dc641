// Runs what the system calls (a timer's tick, a socket's event, a menu command, a signal). Nothing
// leaves it: what is raised becomes a status line, and the program goes on.
#pragma once

#include <functional>

#include "gateway/Trace.h"
#include "util/Text.h"

namespace ostrel {

/// name: the entry's, for the status line "<name>: <what happened>".
void Guarded(Trace& trace, TextView name, const std::function<void()>& entry) noexcept;

}  // namespace ostrel
