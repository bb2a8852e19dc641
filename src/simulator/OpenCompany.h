// A company that is open in QuickBooks: the company, its file, and the mode it is open in.
#pragma once

#include <string>

#include "platform/RequestProcessor.h"
#include "simulator/Company.h"
#include "simulator/CompanyStorage.h"

namespace ostrel::simulator {

class OpenCompany {
 public:
  OpenCompany(Company company, Text path, platform::FileMode mode, CompanyStorage& storage)
      : oCompany(std::move(company)), sPath(std::move(path)), fileMode(mode), oStorage(storage) {}

  const Company& Data() const { return oCompany; }
  const Text& Path() const { return sPath; }
  /// Never kDoNotCare.
  platform::FileMode Mode() const { return fileMode; }

  /// Adds the customer and saves the file; `listId` names it. On failure nothing has changed, in
  /// memory or in the file, and the error number (platform/SystemError.h) is returned.
  int AddCustomer(Element customer, const Stamp& now, std::string& listId);

 private:
  int Save() noexcept;

  Company oCompany;
  Text sPath;
  platform::FileMode fileMode;
  CompanyStorage& oStorage;
};

}  // namespace ostrel::simulator
