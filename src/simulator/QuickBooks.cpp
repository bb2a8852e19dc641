#include "simulator/QuickBooks.h"

#include <cstdio>

#include "platform/SystemError.h"
#include "simulator/Errors.h"

namespace ostrel::simulator {
namespace {

using platform::FileMode;

// The same for all spellings of a path.
Text PathKey(TextView path) { return LowerCase(ReplaceAll(path, u"/", u"\\")); }

}  // namespace

QuickBooks::QuickBooks(Surroundings surroundings)
    : oSurroundings(std::move(surroundings)), oRandom(std::random_device{}()) {}

std::shared_ptr<OpenCompany> QuickBooks::Open(TextView path, FileMode mode) {
  if (auto open = oOpen.lock()) {
    if (!path.empty() && PathKey(path) != PathKey(open->Path())) Fail(Hresult::kOtherCompanyOpen);
    if (mode != FileMode::kDoNotCare && mode != open->Mode()) Fail(Hresult::kOtherFileMode);
    return open;
  }
  auto opened = Load(path, mode == FileMode::kMultiUser ? mode : FileMode::kSingleUser);
  oOpen = opened;
  return opened;
}

std::shared_ptr<OpenCompany> QuickBooks::Load(TextView path, FileMode mode) {
  const bool byUser = path.empty();
  if (byUser) path = oSurroundings.usersCompany;
  CompanyFile file(Text(path), oSurroundings.storage);
  int error = 0;
  auto company = Company::FromFile(file, Now(), error);
  if (error == platform::kInvalidData) Fail(Hresult::kUnusableCompany);
  if (!company) Fail(byUser ? Hresult::kNoCompanyOpen : Hresult::kCannotOpenCompany);
  auto& counts = oCounts[PathKey(path)];
  if (!counts) counts = std::make_shared<FaultCounts>();
  return std::make_shared<OpenCompany>(*std::move(company), std::move(file), mode, counts);
}

Conduct QuickBooks::OpenConnectionConduct() {
  if (const auto open = oOpen.lock()) return open->NextConduct("openConnection");
  try {
    return Load({}, FileMode::kSingleUser)->NextConduct("openConnection");
  } catch (const platform::RequestProcessorError&) {
    return {};  // no company is open, which only BeginSession can mind
  }
}

void QuickBooks::Perform(const Conduct& conduct, const bool& givenUp) const {
  if (conduct.delay.count() > 0) oSurroundings.delay(conduct.delay, givenUp);
  if (givenUp) {
    throw platform::RequestProcessorError(platform::kGivenUp, Text(platform::kGivenUpText));
  }
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
