#include "simulator/company/OpenCompany.h"

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
  if (bChanged && !bLeftInJournal && oFile.IsLong()) Fold();
}

int OpenCompany::Commit(const Changes& changes) noexcept {
  try {
    if (changes.empty()) return 0;
    if (const int error = RequireHold()) return error;
    Company::Prepared prepared = oCompany.Prepare(changes);
    if (const int error = MakeSafe(changes)) return error;
    oCompany.Apply(std::move(prepared));
  } catch (const std::bad_alloc&) {
    return platform::kOutOfMemory;
  }
  if (oFile.IsTooLong()) Fold();
  return 0;
}

// The lock may have failed for a moment only; until then others may have changed the company.
int OpenCompany::RequireHold() {
  if (oHold.error == 0) return 0;
  CompanyHold hold = oFile.Lock();
  if (hold.error != 0) return hold.error;
  if (const int error = oFile.CheckAsRead()) return error;
  oHold = std::move(hold);
  return 0;
}

int OpenCompany::MakeSafe(const Changes& changes) {
  const bool unsaid = oCompany.IsCompleted() || !oFile.RecordsLeftOut().empty();
  if (!bChanged && unsaid) {
    if (const int error = WriteAnew()) return error;
  }
  const int error = oFile.Append(changes);
  bChanged = bChanged || error == 0;
  return error;
}

int OpenCompany::WriteAnew() {
  const std::string bytes = oCompany.ToBytes();
  return bytes.empty() ? platform::kFileTooLarge : oFile.Fold(bytes);
}

// A company that cannot be folded is as safe in two files.
void OpenCompany::Fold() noexcept {
  try {
    WriteAnew();
  } catch (const std::exception&) {  // NOLINT(bugprone-empty-catch): see above
  }
}

}  // namespace ostrel::simulator
