#include "simulator/QuickBooks.h"

#include <cstdio>

#include "platform/SystemError.h"
#include "simulator/company/CompanyReader.h"
#include "simulator/values/LongWork.h"
#include "simulator/values/Status.h"

namespace ostrel::simulator {
namespace {

// The same for all spellings of a path.
Text PathKey(TextView path) { return LowerCase(ReplaceAll(path, u"/", u"\\")); }

}  // namespace

QuickBooks::QuickBooks(Surroundings surroundings)
    : oSurroundings(std::move(surroundings)), oRandom(std::random_device{}()) {}

std::shared_ptr<OpenCompany> QuickBooks::Open(TextView named, FileMode mode, const bool& givenUp) {
  const Text path(named);  // the caller's may change while events are dispatched
  constexpr int kAttempts = 10;
  constexpr std::chrono::milliseconds kPause(100);
  if (auto open = FindOpen(path, mode)) return open;
  CompanyHold hold = Lock(path);
  for (int i = 1; i < kAttempts && hold.error == platform::kSharingViolation; ++i) {
    oSurroundings.delay(kPause, givenUp);
    if (givenUp) FailAsGivenUp();
    // A handler that ran meanwhile may have opened a company.
    if (auto open = FindOpen(path, mode)) return open;
    hold = Lock(path);
  }
  const LongWork work(oSurroundings.dispatch, givenUp);
  auto opened =
      Load(path, mode == FileMode::kMultiUser ? mode : FileMode::kSingleUser, std::move(hold));
  oOpen = opened;
  return opened;
}

std::shared_ptr<OpenCompany> QuickBooks::FindOpen(TextView path, FileMode mode) const {
  auto open = oOpen.lock();
  if (!open) return open;
  if (!path.empty() && PathKey(path) != PathKey(open->Path())) Fail(Hresult::kOtherCompanyOpen);
  if (mode != FileMode::kDoNotCare && mode != open->Mode()) Fail(Hresult::kOtherFileMode);
  return open;
}

CompanyHold QuickBooks::Lock(TextView path) const {
  return oSurroundings.storage.Lock(path.empty() ? TextView(oSurroundings.usersCompany) : path);
}

std::shared_ptr<OpenCompany> QuickBooks::Load(TextView path, FileMode mode, CompanyHold hold) {
  if (hold.error == platform::kSharingViolation) Fail(Hresult::kCannotLock);
  const bool byUser = path.empty();
  if (byUser) path = oSurroundings.usersCompany;
  CompanyFile file(Text(path), oSurroundings.storage);
  int error = 0;
  auto company = CompanyFromFile(file, Now(), error);
  if (error == platform::kInvalidData) Fail(Hresult::kUnusableCompany);
  if (!company) Fail(byUser ? Hresult::kNoCompanyOpen : Hresult::kCannotOpenCompany);
  auto& counts = oCounts[PathKey(path)];
  if (!counts) counts = std::make_shared<FaultCounts>();
  return std::make_shared<OpenCompany>(*std::move(company), std::move(file), mode, counts,
                                       std::move(hold));
}

Conduct QuickBooks::OpenConnectionConduct(const bool& givenUp) {
  if (const auto open = oOpen.lock()) return open->NextConduct("openConnection");
  try {
    const LongWork work(oSurroundings.dispatch, givenUp);
    return Load({}, FileMode::kSingleUser, Lock({}))->NextConduct("openConnection");
  } catch (const RequestProcessorError&) {
    return {};  // no company is open, or only elsewhere, which only BeginSession can mind
  }
}

void QuickBooks::Perform(const Conduct& conduct, const bool& givenUp) const {
  if (conduct.delay.count() > 0) oSurroundings.delay(conduct.delay, givenUp);
  if (givenUp) FailAsGivenUp();
  if (conduct.dies) Die();
  if (conduct.error != 0) Fail(conduct.error);
}

void QuickBooks::Die() const {
  oSurroundings.die();
  Fail(Hresult::kCallFailed);
}

Text QuickBooks::NewTicket() {
  const std::uint64_t high = oRandom();
  const std::uint64_t low = oRandom();
  char ticket[64];
  std::snprintf(ticket, sizeof ticket, "{%08X-%04X-%04X-%04X-%012llX}",
                static_cast<unsigned>(high >> 32), static_cast<unsigned>(high >> 16 & 0xFFFF),
                static_cast<unsigned>(high & 0xFFFF), static_cast<unsigned>(low >> 48),
                static_cast<unsigned long long>(low & 0xFFFF'FFFF'FFFF));
  return FromAscii(ticket);
}

}  // namespace ostrel::simulator
