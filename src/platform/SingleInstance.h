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

/// Empty when the lock of this name is held already, by another process or by this one, of whatever
/// user: there is one on a machine. A named mutex on Windows, which is one a logon session; on
/// POSIX a socket's abstract name. Where the environment variable OSTREL_INSTANCE is set (POSIX),
/// the lock is shared only by processes for which it has the same value: tests run programs side by
/// side so. A system that cannot make such a lock at all does not keep the program from running:
/// the object then holds nothing.
std::unique_ptr<InstanceLock> AcquireInstanceLock(TextView name);

}  // namespace ostrel::platform
