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

int OpenCompany::Commit(Changes changes) noexcept {
  try {
    const std::string bytes = oCompany.ToBytes(changes);
    Company::Prepared prepared = oCompany.Prepare(std::move(changes));
    const int error = oStorage.Replace(sPath, bytes);
    if (error == 0) oCompany.Apply(std::move(prepared));
    return error;
  } catch (const std::bad_alloc&) {
    return platform::kOutOfMemory;
  }
}

}  // namespace ostrel::simulator
