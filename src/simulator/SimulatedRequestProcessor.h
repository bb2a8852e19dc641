// The QuickBooks stand-in, seen as QuickBooks' request processor is: six operations on a company
// file that is XML. What fails, fails with the request processor's own number and sentence.
#pragma once

#include <functional>
#include <memory>

#include "platform/RequestProcessor.h"
#include "simulator/QuickBooks.h"
#include "simulator/Session.h"

namespace ostrel {

/// One client's connection. Events are dispatched only while a company file asks for a delay; the
/// object must not be destroyed then.
class SimulatedRequestProcessor : public platform::RequestProcessor {
 public:
  /// Processors that share a QuickBooks share its open company.
  explicit SimulatedRequestProcessor(simulator::QuickBooks& quickBooks) : oQuickBooks(quickBooks) {}

  void Create() override {}
  void OpenConnection(TextView applicationId, TextView applicationName) override;
  Text BeginSession(TextView companyFile, platform::FileMode mode) override;
  Text ProcessRequest(TextView ticket, TextView request) override;
  Text GetCurrentCompanyFileName(TextView ticket) override;
  void EndSession(TextView ticket) override;
  /// Ends an open session too.
  void CloseConnection() override;

  /// Ends the delays that company files ask for.
  void GiveUp() override;

 private:
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
std::unique_ptr<platform::RequestProcessor> MakeSimulatedRequestProcessor();

/// What ends this process where a company file asks for it (processRequestDies). Without it the
/// request fails as a client of an ended process sees it.
void SetSimulatedDeath(std::function<void()> die);

}  // namespace ostrel
