// Runs what the system calls (a timer's tick, a socket's event, a menu command, a signal). Nothing
// leaves it: what is raised becomes a status line, and the program goes on.
#pragma once

#include "gateway/Trace.h"
#include "util/Text.h"

namespace ostrel {

/// Tells the exception being handled on the status list, as "<name>: <what happened>".
void TellException(Trace& trace, TextView name) noexcept;

/// name: the entry's, for the status line.
template <typename Entry>
void Guarded(Trace& trace, TextView name, const Entry& entry) noexcept {
  try {
    entry();
  } catch (...) {
    TellException(trace, name);
  }
}

}  // namespace ostrel
