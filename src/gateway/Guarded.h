// The two protections of handlers that the system calls (a timer's tick, a socket's event, a menu
// command, a signal): nothing that they raise leaves them, and none begins while it still runs.
#pragma once

#include "gateway/Trace.h"
#include "util/Text.h"

namespace ostrel {

/// Tells the exception being handled on the status list, as "<name>: <what happened>".
void TellException(Trace& trace, TextView name) noexcept;

/// Runs the entry: what it raises becomes a status line, and the program goes on. name: the
/// entry's, for the status line.
template <typename Entry>
void Guarded(Trace& trace, TextView name, const Entry& entry) noexcept {
  try {
    entry();
  } catch (...) {
    TellException(trace, name);
  }
}

/// Sets a flag for as long as it lives: "this is on the stack". A handler that finds its own flag
/// set returns.
class Flag {
 public:
  explicit Flag(bool& flag) : bFlag(flag) { bFlag = true; }
  ~Flag() { bFlag = false; }
  Flag(const Flag&) = delete;
  Flag& operator=(const Flag&) = delete;

 private:
  bool& bFlag;
};

}  // namespace ostrel
