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

/// Empty when another process holds the lock of this name. A named mutex on Windows; on POSIX a
/// locked file of that name in $XDG_RUNTIME_DIR, else $TMPDIR, else /tmp.
std::unique_ptr<InstanceLock> AcquireInstanceLock(TextView name);

}  // namespace ostrel::platform
