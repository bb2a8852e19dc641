// Memory for C++, of which one request fails as the plan says. Over-aligned memory is left to the
// library.
#include <cstdlib>
#include <new>

#include "tests/faults/FaultPlan.h"

namespace ostrel::faults {
namespace {

Operation& Memory() {
  alignas(Operation) static unsigned char place[sizeof(Operation)];
  static Operation* const memory = new (place) Operation("memory");
  return *memory;
}

void* Allocate(std::size_t size) noexcept {
  return Memory().Fails() ? nullptr : std::malloc(size == 0 ? 1 : size);
}

}  // namespace
}  // namespace ostrel::faults

void* operator new(std::size_t size) {
  void* const memory = ostrel::faults::Allocate(size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}
void* operator new[](std::size_t size) { return operator new(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return ostrel::faults::Allocate(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return ostrel::faults::Allocate(size);
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }
