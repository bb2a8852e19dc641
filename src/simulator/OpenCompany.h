// A company that is open in QuickBooks: the company, its file, and the mode it is open in.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/RequestProcessor.h"
#include "simulator/Change.h"
#include "simulator/Company.h"
#include "simulator/CompanyStorage.h"

namespace ostrel::simulator {

class OpenCompany {
 public:
  /// `counts` outlives the company's being open, where faults are counted beyond that.
  OpenCompany(Company company, Text path, platform::FileMode mode, CompanyStorage& storage,
              std::shared_ptr<FaultCounts> counts = std::make_shared<FaultCounts>())
      : oCompany(std::move(company)),
        sPath(std::move(path)),
        fileMode(mode),
        oStorage(storage),
        oCounts(std::move(counts)) {}

  const Company& Data() const { return oCompany; }
  /// Numbers for new objects.
  Numbers& NewNumbers() { return oCompany.NewNumbers(); }
  const Text& Path() const { return sPath; }
  /// Never kDoNotCare.
  platform::FileMode Mode() const { return fileMode; }

  /// What is asked of this call of an operation ("beginSession").
  Conduct NextConduct(std::string_view operation);
  /// What is asked of this message ("CustomerAddRq"); null: to be answered.
  const Fault* NextFault(std::string_view message) {
    return oCounts->Count(oCompany.Conducts().faults, message);
  }

  /// Makes the changes safe in the file, then carries them out in memory. On failure nothing has
  /// changed, here or there, and the error number (platform/SystemError.h) is returned.
  int Commit(Changes changes) noexcept;

 private:
  Company oCompany;
  Text sPath;
  platform::FileMode fileMode;
  CompanyStorage& oStorage;
  std::shared_ptr<FaultCounts> oCounts;
};

}  // namespace ostrel::simulator
