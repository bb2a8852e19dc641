#include "tests/faults/FaultPlan.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace ostrel::faults {
namespace {

// Nothing here may need memory from "new", which is one of the operations.
struct Plan {
  bool bBegun = false;
  char sOperation[64] = "";
  long lCall = 0;
  int iError = 0;
};

Plan oPlan;
Operation* oFirst = nullptr;

void WriteCounts() {
  oPlan.bBegun = false;
  const char* const path = std::getenv("OSTREL_FAULT_COUNTS");
  std::FILE* const file = path == nullptr ? nullptr : std::fopen(path, "w");
  if (file == nullptr) return;
  for (const Operation* one = oFirst; one != nullptr; one = one->Next()) {
    std::fprintf(file, "%s %ld\n", one->Name(), one->Calls());
  }
  std::fclose(file);
}

}  // namespace

Operation::Operation(const char* name) : sName(name), oNext(oFirst) { oFirst = this; }

bool Operation::Fails() {
  if (!oPlan.bBegun) return false;
  const long call = ++lCalls;
  if (call != oPlan.lCall || std::strcmp(oPlan.sOperation, sName) != 0) return false;
  std::fprintf(stderr, "fault: %s %ld\n", sName, call);
  std::fflush(stderr);
  return true;
}

void Begin() {
  if (const char* const plan = std::getenv("OSTREL_FAULT")) {
    char error[16] = "";
    std::sscanf(plan, "%63[^:]:%ld:%15s", oPlan.sOperation, &oPlan.lCall, error);
    oPlan.iError = std::strcmp(error, "short") == 0 ? kShort : std::atoi(error);
  }
  std::atexit(WriteCounts);
  oPlan.bBegun = true;
}

int PlannedError() { return oPlan.iError; }

}  // namespace ostrel::faults
