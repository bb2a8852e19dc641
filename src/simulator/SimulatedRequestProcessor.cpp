#include "simulator/SimulatedRequestProcessor.h"

#include <new>

#include "simulator/Errors.h"
#include "simulator/QbxmlEngine.h"

namespace ostrel {

using simulator::Fail;
using simulator::Hresult;

// A delay dispatches events, whose handlers may use this object: what was checked before one is
// checked again after it.

void SimulatedRequestProcessor::OpenConnection(TextView, TextView applicationName) {
  RequireNoConnection();
  if (applicationName.empty()) Fail(Hresult::kNoApplicationName);
  Perform(oQuickBooks.OpenConnectionConduct());
  RequireNoConnection();
  bConnected = true;
}

Text SimulatedRequestProcessor::BeginSession(TextView companyFile, platform::FileMode mode) {
  RequireNoSession();
  if (mode < platform::FileMode::kSingleUser || mode > platform::FileMode::kDoNotCare) {
    Fail(Hresult::kInvalidParameter);
  }
  auto company = oQuickBooks.Open(companyFile, mode);
  Perform(company->NextConduct("beginSession"));
  RequireNoSession();
  oCompany = std::move(company);
  sTicket = oQuickBooks.NewTicket();
  oSession = simulator::Session(ToUtf8(sTicket));
  return sTicket;
}

Text SimulatedRequestProcessor::ProcessRequest(TextView ticket, TextView request) {
  const auto company = RequireSession(ticket);
  const Text sessionTicket = sTicket;  // the caller's may change while events are dispatched
  Perform(company->NextConduct("processRequest"));
  RequireSession(sessionTicket);
  try {
    return simulator::ProcessQbxml(request, *company, oSession, oQuickBooks.Now());
  } catch (const std::bad_alloc&) {
    Fail(Hresult::kNotEnoughMemory);
  }
}

Text SimulatedRequestProcessor::GetCurrentCompanyFileName(TextView ticket) {
  const auto company = RequireSession(ticket);
  Perform(company->NextConduct("companyFileName"));
  return company->Path();
}

void SimulatedRequestProcessor::EndSession(TextView ticket) {
  RequireSession(ticket);
  oCompany.reset();
  sTicket.clear();
}

void SimulatedRequestProcessor::CloseConnection() {
  if (!bConnected) Fail(Hresult::kNoConnection);
  oCompany.reset();
  sTicket.clear();
  bConnected = false;
}

void SimulatedRequestProcessor::GiveUp() { bGivenUp = iOutstanding > 0; }

void SimulatedRequestProcessor::Perform(const simulator::Conduct& conduct) {
  struct Counted {
    int& count;
    ~Counted() { --count; }
  };
  const Counted counted{++iOutstanding};
  oQuickBooks.Perform(conduct, bGivenUp);
}

void SimulatedRequestProcessor::RequireNoConnection() const {
  if (bConnected) Fail(Hresult::kConnectionAlreadyOpen);
}

void SimulatedRequestProcessor::RequireNoSession() const {
  if (!bConnected) Fail(Hresult::kNoConnection);
  if (oCompany) Fail(Hresult::kSessionAlreadyBegun);
}

std::shared_ptr<simulator::OpenCompany> SimulatedRequestProcessor::RequireSession(
    TextView ticket) const {
  if (!bConnected) Fail(Hresult::kNoConnection);
  if (!oCompany) Fail(Hresult::kNoSession);
  if (ticket != sTicket) Fail(Hresult::kWrongTicket);
  return oCompany;
}

}  // namespace ostrel
