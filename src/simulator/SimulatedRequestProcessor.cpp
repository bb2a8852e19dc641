#include "simulator/SimulatedRequestProcessor.h"

#include <new>

#include "simulator/messages/QbxmlEngine.h"
#include "simulator/values/LongWork.h"
#include "simulator/values/Status.h"

namespace ostrel {

using simulator::Fail;

namespace {

class Counted {
 public:
  explicit Counted(int& count) : iCount(count) { ++iCount; }
  ~Counted() { --iCount; }
  Counted(const Counted&) = delete;
  Counted& operator=(const Counted&) = delete;

 private:
  int& iCount;
};

}  // namespace

// A delay dispatches events, whose handlers may use this object: what was checked before one is
// checked again after it. A request and its company are the caller's and this function's own.

void SimulatedRequestProcessor::OpenConnection(TextView, TextView applicationName) {
  RequireNoConnection();
  if (applicationName.empty()) Fail(Hresult::kNoApplicationName);
  const Counted counted(iOutstanding);
  Perform(oQuickBooks.OpenConnectionConduct(bGivenUp));
  RequireNoConnection();
  bConnected = true;
}

Text SimulatedRequestProcessor::BeginSession(TextView companyFile, FileMode mode) {
  RequireNoSession();
  simulator::RequireNoLongWork();
  if (mode < FileMode::kSingleUser || mode > FileMode::kDoNotCare) Fail(Hresult::kInvalidParameter);
  const Counted counted(iOutstanding);
  auto company = oQuickBooks.Open(companyFile, mode, bGivenUp);
  RequireNoSession();
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
  const Counted counted(iOutstanding);
  Perform(company->NextConduct("processRequest"));
  RequireSession(sessionTicket);
  return Compute(request, *company);
}

Text SimulatedRequestProcessor::Compute(TextView request, simulator::OpenCompany& company) {
  const simulator::LongWork work(oQuickBooks.Dispatch(), bGivenUp);
  try {
    return simulator::ProcessQbxml(request, company, oSession, oQuickBooks.Now());
  } catch (const RequestProcessorError& error) {
    // A client that gives a request up is about to leave.
    if (error.Number == Raw(Hresult::kGivenUp)) company.LeaveInJournal();
    throw;
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
  const Counted counted(iOutstanding);
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
