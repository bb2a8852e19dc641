#include "simulator/OpenCompany.h"

#include <new>

#include "platform/SystemError.h"

namespace ostrel::simulator {

Conduct OpenCompany::NextConduct(std::string_view operation) {
  const Behaviour& behaviour = oCompany.Conducts();
  const Fault* fault = oCounts->Count(behaviour.faults, operation);
  const Conduct always = ConductOf(behaviour, operation);
  if (!fault) return always;
  Conduct conduct = fault->conduct;
  if (conduct.delay.count() == 0) conduct.delay = always.delay;
  if (conduct.error == 0) conduct.error = always.error;
  conduct.dies = conduct.dies || always.dies;
  return conduct;
}

OpenCompany::~OpenCompany() {
  if (bChanged && oFile.IsLong()) Fold();
}

int OpenCompany::Commit(const Changes& changes) noexcept {
  try {
    if (changes.empty()) return 0;
    Company::Prepared prepared = oCompany.Prepare(changes);
    if (const int error = MakeSafe(changes)) return error;
    oCompany.Apply(std::move(prepared));
  } catch (const std::bad_alloc&) {
    return platform::kOutOfMemory;
  }
  if (oFile.IsTooLong()) Fold();
  return 0;
}

int OpenCompany::MakeSafe(const Changes& changes) {
  if (!bChanged && oCompany.IsCompleted()) {
    if (const int error = oFile.Fold(oCompany.ToBytes())) return error;
  }
  const int error = oFile.Append(changes);
  bChanged = bChanged || error == 0;
  return error;
}

// A company that cannot be folded is as safe in two files.
void OpenCompany::Fold() noexcept {
  try {
    oFile.Fold(oCompany.ToBytes());
  } catch (const std::bad_alloc&) {
  }
}

}  // namespace ostrel::simulator
