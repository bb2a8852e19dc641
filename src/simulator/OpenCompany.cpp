#include "simulator/OpenCompany.h"

#include <new>

#include "platform/SystemError.h"

namespace ostrel::simulator {

int OpenCompany::AddCustomer(Element customer, const Stamp& now, std::string& listId) {
  listId = oCompany.AddCustomer(std::move(customer), now);
  const int error = Save();
  if (error != 0) oCompany.RemoveCustomer(listId);
  return error;
}

int OpenCompany::Save() noexcept {
  try {
    return oStorage.Replace(sPath, oCompany.ToBytes());
  } catch (const std::bad_alloc&) {
    return platform::kOutOfMemory;
  }
}

}  // namespace ostrel::simulator
