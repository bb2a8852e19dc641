// QuickBooks as a test sees it: what was called, what it responds, and what fails. It outlives the
// request processor objects that the program creates and drops.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <vector>

#include "quickbooks/ErrorNumbers.h"
#include "quickbooks/RequestProcessor.h"

namespace ostrel::doubles {

struct FakeQuickBooks {
  /// In the order made: u"OpenConnection(ostrel, Ostrel)", u"BeginSession(C:\\a.qbw, 2)",
  /// u"ProcessRequest(ticket, <request>)", u"EndSession(ticket)", u"CloseConnection()".
  /// Creating the object and reading the company file's name are not noted.
  std::vector<Text> Calls;
  /// An operation's name and how it fails, until the test takes the entry away.
  std::map<Text, RequestProcessorError> Failures;
  /// Runs inside every operation, with its name, as an event that comes while QuickBooks is slow.
  std::function<void(TextView)> DuringCall;

  /// Responds to a request; without it, the response is sResponse.
  std::function<Text(TextView)> Respond;
  Text sResponse = u"<QBXML></QBXML>";
  Text sTicket = u"ticket";
  Text sCompanyFile;  // BeginSession with a name sets it
  bool bInstalled = true;
  int iProcessorsCreated = 0;
  int iProcessorsAlive = 0;

  void Fail(Text operation, std::uint32_t hresult, Text description = u"as the test wants it") {
    Failures.insert_or_assign(
        std::move(operation),
        RequestProcessorError(static_cast<std::int32_t>(hresult), std::move(description)));
  }

  /// The factory with which the program creates request processor objects.
  std::function<std::unique_ptr<RequestProcessor>()> Factory();
};

class FakeRequestProcessor : public RequestProcessor {
 public:
  explicit FakeRequestProcessor(FakeQuickBooks& quickBooks) : oQuickBooks(quickBooks) {
    ++oQuickBooks.iProcessorsCreated;
    ++oQuickBooks.iProcessorsAlive;
  }
  ~FakeRequestProcessor() override { --oQuickBooks.iProcessorsAlive; }
  FakeRequestProcessor(const FakeRequestProcessor&) = delete;
  FakeRequestProcessor& operator=(const FakeRequestProcessor&) = delete;

  void Create() override {
    constexpr auto kClassNotRegistered = static_cast<std::int32_t>(0x80040154);
    if (!oQuickBooks.bInstalled) {
      throw RequestProcessorError(kClassNotRegistered, u"Class not registered");
    }
    Happen(u"Create");
  }

  void OpenConnection(TextView applicationId, TextView applicationName) override {
    Note(u"OpenConnection", Text(applicationId) + u", " + Text(applicationName));
  }

  Text BeginSession(TextView companyFile, FileMode mode) override {
    Note(u"BeginSession", Text(companyFile) + u", " + ToText(static_cast<std::int64_t>(mode)));
    if (!companyFile.empty()) oQuickBooks.sCompanyFile = companyFile;
    return oQuickBooks.sTicket;
  }

  Text ProcessRequest(TextView ticket, TextView request) override {
    Note(u"ProcessRequest", Text(ticket) + u", " + Text(request));
    return oQuickBooks.Respond ? oQuickBooks.Respond(request) : oQuickBooks.sResponse;
  }

  Text GetCurrentCompanyFileName(TextView ticket) override {
    Happen(u"GetCurrentCompanyFileName");
    constexpr auto kWrongTicket = static_cast<std::int32_t>(0x8004040D);
    if (ticket != oQuickBooks.sTicket) {
      throw RequestProcessorError(kWrongTicket, u"The ticket parameter is invalid.");
    }
    return oQuickBooks.sCompanyFile;
  }

  void EndSession(TextView ticket) override { Note(u"EndSession", Text(ticket)); }
  void CloseConnection() override { Note(u"CloseConnection", {}); }
  void GiveUp() override { bGivenUp = iOutstanding > 0; }

 private:
  void Note(const Text& operation, const Text& arguments) {
    oQuickBooks.Calls.push_back(operation + u"(" + arguments + u")");
    Happen(operation);
  }

  void Happen(const Text& operation) {
    ++iOutstanding;
    if (oQuickBooks.DuringCall) oQuickBooks.DuringCall(operation);
    --iOutstanding;
    if (bGivenUp) throw RequestProcessorError(Raw(Hresult::kGivenUp), Text(kGivenUpText));
    const auto failure = oQuickBooks.Failures.find(operation);
    if (failure != oQuickBooks.Failures.end()) throw failure->second;
  }

  FakeQuickBooks& oQuickBooks;
  int iOutstanding = 0;
  bool bGivenUp = false;
};

inline std::function<std::unique_ptr<RequestProcessor>()> FakeQuickBooks::Factory() {
  return [this] { return std::make_unique<FakeRequestProcessor>(*this); };
}

}  // namespace ostrel::doubles
