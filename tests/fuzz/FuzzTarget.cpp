#include "tests/fuzz/FuzzTarget.h"

#include <cstdio>
#include <cstdlib>

namespace ostrel::fuzz {

std::vector<Target>& Targets() {
  static std::vector<Target> targets;
  return targets;
}

std::string& InputName() {
  static std::string name;
  return name;
}

void Require(bool condition, const char* what) {
  if (condition) return;
  std::fprintf(stderr, "does not hold: %s %s\n", what, InputName().c_str());
  std::abort();
}

}  // namespace ostrel::fuzz
