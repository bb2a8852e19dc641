// Over-aligned memory is left to the library.
#include "tests/support/MemoryLimit.h"

#include <cstdlib>
#include <limits>
#include <new>

namespace ostrel {
namespace {

constexpr std::size_t kNoLimit = std::numeric_limits<std::size_t>::max();
std::size_t mostBytes = kNoLimit;

void* Allocate(std::size_t bytes) noexcept {
  return bytes > mostBytes ? nullptr : std::malloc(bytes == 0 ? 1 : bytes);
}

}  // namespace

MemoryLimit::MemoryLimit(std::size_t bytes) { mostBytes = bytes; }

MemoryLimit::~MemoryLimit() { mostBytes = kNoLimit; }

}  // namespace ostrel

void* operator new(std::size_t bytes) {
  void* const memory = ostrel::Allocate(bytes);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}
void* operator new[](std::size_t bytes) { return operator new(bytes); }
void* operator new(std::size_t bytes, const std::nothrow_t&) noexcept {
  return ostrel::Allocate(bytes);
}
void* operator new[](std::size_t bytes, const std::nothrow_t&) noexcept {
  return ostrel::Allocate(bytes);
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }
