// Comes before the program's own main (the linker's --wrap).
#include "tests/faults/FaultPlan.h"

// The names are the linker's.
// NOLINTBEGIN(bugprone-reserved-identifier)
extern "C" int __real_main(int argc, char* argv[]);
extern "C" int __wrap_main(int argc, char* argv[]);
// NOLINTEND(bugprone-reserved-identifier)

extern "C" int __wrap_main(int argc, char* argv[]) {
  ostrel::faults::Begin();
  return __real_main(argc, argv);
}
