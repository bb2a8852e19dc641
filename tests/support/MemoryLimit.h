// Memory that runs short: the program's large requests fail for as long as a limit lives. The
// source replaces the operators new and delete, so a test program that uses it lists it by name.
#pragma once

#include <cstddef>

namespace ostrel {

class MemoryLimit {
 public:
  /// Every request for more than this many bytes at once raises std::bad_alloc.
  explicit MemoryLimit(std::size_t bytes);
  ~MemoryLimit();
  MemoryLimit(const MemoryLimit&) = delete;
  MemoryLimit& operator=(const MemoryLimit&) = delete;
};

}  // namespace ostrel
