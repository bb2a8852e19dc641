// A company that is open in QuickBooks: the company, its file, and the mode it is open in.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "quickbooks/RequestProcessor.h"
#include "simulator/company/Company.h"
#include "simulator/company/CompanyFile.h"

namespace ostrel::simulator {

class OpenCompany {
 public:
  /// `counts` outlives the company's being open, where faults are counted beyond that. Without a
  /// lock that could be had (`hold` says why) the company cannot be changed before one is had.
  OpenCompany(Company company, CompanyFile file, FileMode mode,
              std::shared_ptr<FaultCounts> counts = std::make_shared<FaultCounts>(),
              CompanyHold hold = {})
      : oHold(std::move(hold)),
        oCompany(std::move(company)),
        oFile(std::move(file)),
        fileMode(mode),
        oCounts(std::move(counts)) {}
  /// Folds the journal into the company file, if that is due.
  ~OpenCompany();
  OpenCompany(const OpenCompany&) = delete;
  OpenCompany& operator=(const OpenCompany&) = delete;

  const Company& Data() const { return oCompany; }
  /// Numbers for new objects.
  Numbers& NewNumbers() { return oCompany.NewNumbers(); }
  const Text& Path() const { return oFile.Path(); }
  /// Never kDoNotCare.
  FileMode Mode() const { return fileMode; }

  /// The conduct that the company asks of this call of an operation ("beginSession").
  Conduct NextConduct(std::string_view operation);
  /// The fault that strikes this message ("CustomerAddRq"); null when it is to be carried out.
  const Fault* NextFault(std::string_view message) {
    return oCounts->Count(oCompany.Conducts().faults, message);
  }

  /// Makes the changes safe on disk, then carries them out in memory. On failure nothing has
  /// changed, here or there, and the error number (platform/SystemError.h) is returned.
  int Commit(const Changes& changes) noexcept;

  /// When it closes, its journal is not folded, which may take a while.
  void LeaveInJournal() { bLeftInJournal = true; }

 private:
  int RequireHold();
  int MakeSafe(const Changes& changes);
  int WriteAnew();
  void Fold() noexcept;

  CompanyHold oHold;  // given back after all the others
  Company oCompany;
  CompanyFile oFile;
  FileMode fileMode;
  bool bChanged = false;  // since it was opened
  bool bLeftInJournal = false;
  std::shared_ptr<FaultCounts> oCounts;
};

}  // namespace ostrel::simulator
