// Lets one call of one system operation fail, as the environment says:
//
//   OSTREL_FAULT=pwrite:3:28   the third call of pwrite fails with error 28; "short" instead of the
//                              number makes it carry out half of what it was asked
//   OSTREL_FAULT_COUNTS=FILE   at the end, the file holds a line "operation calls" for each
//
// Calls are counted from the start of main on, over all threads. A failure is told on standard
// error, "fault: pwrite 3". tests/endtoend/faults.py drives it.
#pragma once

#include <atomic>
#include <cstddef>

namespace ostrel::faults {

/// One for each operation, as a constant of the whole program.
class Operation {
 public:
  explicit Operation(const char* name);

  /// Counts a call. True when this is the one that fails.
  bool Fails();
  const char* Name() const { return sName; }
  long Calls() const { return lCalls; }
  Operation* Next() const { return oNext; }

 private:
  const char* sName;
  std::atomic<long> lCalls = 0;
  Operation* oNext;
};

/// Reads the plan; before it nothing is counted.
void Begin();

/// The error number that the plan names; kShort for half of what was asked.
inline constexpr int kShort = -1;
int PlannedError();
/// Half, but something, of what an operation was asked to carry out.
template <typename Size>
Size Half(Size size) {
  return size > 1 ? size / 2 : size;
}

}  // namespace ostrel::faults
