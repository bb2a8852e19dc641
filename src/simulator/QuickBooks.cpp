#include "simulator/QuickBooks.h"

#include <cstdio>

#include "simulator/Errors.h"

namespace ostrel::simulator {
namespace {

using platform::FileMode;

// The same file under two spellings of its path.
bool SamePath(TextView a, TextView b) {
  const auto key = [](TextView path) { return LowerCase(ReplaceAll(path, u"/", u"\\")); };
  return key(a) == key(b);
}

}  // namespace

QuickBooks::QuickBooks(Surroundings surroundings)
    : oSurroundings(std::move(surroundings)), oRandom(std::random_device{}()) {}

std::shared_ptr<OpenCompany> QuickBooks::Open(TextView path, FileMode mode) {
  if (auto open = oOpen.lock()) {
    if (!path.empty() && !SamePath(path, open->Path())) Fail(Hresult::kOtherCompanyOpen);
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
  std::string bytes;
  if (oSurroundings.storage.Read(path, bytes) != 0) {
    Fail(byUser ? Hresult::kNoCompanyOpen : Hresult::kCannotOpenCompany);
  }
  auto company = Company::FromBytes(bytes, Now());
  if (!company) Fail(Hresult::kUnusableCompany);
  return std::make_shared<OpenCompany>(*std::move(company), Text(path), mode,
                                       oSurroundings.storage);
}

Conduct QuickBooks::OpenConnectionConduct() {
  if (const auto open = oOpen.lock()) return open->Data().Conducts().openConnection;
  try {
    return Load({}, FileMode::kSingleUser)->Data().Conducts().openConnection;
  } catch (const platform::RequestProcessorError&) {
    return {};  // no company is open, which only BeginSession can mind
  }
}

void QuickBooks::Perform(const Conduct& conduct, const bool& givenUp) const {
  if (conduct.delay.count() > 0) oSurroundings.delay(conduct.delay, givenUp);
  if (givenUp) {
    throw platform::RequestProcessorError(platform::kGivenUp, Text(platform::kGivenUpText));
  }
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
