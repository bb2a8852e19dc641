#include "simulator/OpenCompany.h"

#include <new>

#include "platform/SystemError.h"

namespace ostrel::simulator {

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
