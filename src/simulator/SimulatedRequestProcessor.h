// The QuickBooks stand-in, seen as QuickBooks' request processor is: six operations on a company
// file that is XML. What fails, fails with the request processor's own number and sentence.
#pragma once

#include <functional>
#include <memory>

#include "quickbooks/RequestProcessor.h"
#include "simulator/QuickBooks.h"
#include "simulator/messages/Session.h"

namespace ostrel {

/// One client's connection. Events are dispatched while a company file asks for a delay, while
/// another process has the company open, and now and then in long work; the object must not be
/// destroyed then. Requests and sessions that come in the middle of long work are refused.
class SimulatedRequestProcessor : public RequestProcessor {
 public:
  /// Processors that share a QuickBooks share its open company.
  explicit SimulatedRequestProcessor(simulator::QuickBooks& quickBooks) : oQuickBooks(quickBooks) {}

  void Create() override {}
  void OpenConnection(TextView applicationId, TextView applicationName) override;
  Text BeginSession(TextView companyFile, FileMode mode) override;
  Text ProcessRequest(TextView ticket, TextView request) override;
  Text GetCurrentCompanyFileName(TextView ticket) override;
  void EndSession(TextView ticket) override;
  /// Ends an open session too.
  void CloseConnection() override;

  /// Ends delays and long work. A change is then whole or not there at all.
  void GiveUp() override;

 private:
  Text Compute(TextView request, simulator::OpenCompany& company);
  void Perform(const simulator::Conduct& conduct);
  void RequireNoConnection() const;
  void RequireNoSession() const;
  std::shared_ptr<simulator::OpenCompany> RequireSession(TextView ticket) const;

  simulator::QuickBooks& oQuickBooks;
  int iOutstanding = 0;  // operations that wait
  bool bGivenUp = false;
  bool bConnected = false;
  Text sTicket;
  simulator::Session oSession;
  std::shared_ptr<simulator::OpenCompany> oCompany;  // null: no session
};

/// A processor on the system's files, clock and event loop. All of a process share one QuickBooks;
/// "sample.qbw" beside the program is the company that its user has open.
std::unique_ptr<RequestProcessor> MakeSimulatedRequestProcessor();

/// Sets the routine that ends this process where a company file asks for it (processRequestDies).
/// Without it the request fails as a client of an ended process sees it.
void SetSimulatedDeath(std::function<void()> die);

/// Sets the routine that handles events while a request is computed; platform::DoEvents unless set.
/// A process whose events are calls of other clients must let none of them in then.
void SetSimulatedDispatching(std::function<void()> dispatch);

}  // namespace ostrel
