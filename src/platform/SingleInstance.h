// The machine-wide lock that keeps the program from running twice.
#pragma once

#include <memory>

#include "util/Text.h"

namespace ostrel::platform {

/// Held for as long as the object lives; given back by the system when the process dies.
class InstanceLock {
 public:
  virtual ~InstanceLock() = default;
};

/// Empty when the lock of this name is held already, by another process or by this one. A named
/// mutex on Windows; on POSIX a locked file of that name in $XDG_RUNTIME_DIR, else $TMPDIR, else
/// /tmp. A system that cannot make such a lock at all does not keep the program from running: the
/// object then holds nothing.
std::unique_ptr<InstanceLock> AcquireInstanceLock(TextView name);

}  // namespace ostrel::platform
