// A company that is open in QuickBooks: the company, its file, and the mode it is open in.
#pragma once

#include <string>

#include "platform/RequestProcessor.h"
#include "simulator/Change.h"
#include "simulator/Company.h"
#include "simulator/CompanyStorage.h"

namespace ostrel::simulator {

class OpenCompany {
 public:
  OpenCompany(Company company, Text path, platform::FileMode mode, CompanyStorage& storage)
      : oCompany(std::move(company)), sPath(std::move(path)), fileMode(mode), oStorage(storage) {}

  const Company& Data() const { return oCompany; }
  /// Numbers for new objects.
  Numbers& NewNumbers() { return oCompany.NewNumbers(); }
  const Text& Path() const { return sPath; }
  /// Never kDoNotCare.
  platform::FileMode Mode() const { return fileMode; }

  /// Makes the changes safe in the file, then carries them out in memory. On failure nothing has
  /// changed, here or there, and the error number (platform/SystemError.h) is returned.
  int Commit(Changes changes) noexcept;

 private:
  Company oCompany;
  Text sPath;
  platform::FileMode fileMode;
  CompanyStorage& oStorage;
};

}  // namespace ostrel::simulator
