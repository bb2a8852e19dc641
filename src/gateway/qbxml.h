// The QuickBooks session: connection, session on a company file, requests, and back again. No
// failure leaves it as an exception: members return a reduced error number (the HRESULT less
// 0x80040000, 0 for success, always positive for a failure) and keep the text. When QuickBooks is
// found gone, nothing of the session is left: the next opening starts afresh.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "quickbooks/RequestProcessor.h"
#include "util/Text.h"

namespace ostrel {

class qbxml {
 public:
  /// Makes a request processor on which nothing has been called yet.
  using ProcessorFactory = std::function<std::unique_ptr<RequestProcessor>()>;

  explicit qbxml(ProcessorFactory factory);
  ~qbxml();
  qbxml(const qbxml&) = delete;
  qbxml& operator=(const qbxml&) = delete;

  bool IsConnected() const;
  /// The open company file, or a sentence that says that there is none.
  Text CompanyFileName();
  /// When the session cannot be begun the connection stays open; the caller closes it.
  std::int32_t OpenConnectionAndBeginSession(TextView applicationId, TextView applicationName,
                                             TextView companyFile, std::int16_t fileMode,
                                             std::int32_t& errorNumber);
  /// Harmless when nothing is open. Afterwards nothing is, even if QuickBooks refused.
  void EndSessionAndCloseConnection();
  std::int32_t OpenConnection(TextView applicationId, TextView applicationName,
                              std::int32_t& errorNumber);
  /// fileMode 1: single user, 2: multi-user, anything else: QuickBooks chooses.
  std::int32_t BeginSession(TextView companyFile, std::int16_t fileMode, std::int32_t& errorNumber);
  void EndSession();
  void CloseConnection();
  /// On failure the response is empty.
  std::int32_t ProcessRequest(TextView request, Text& response);
  /// For an event that comes while QuickBooks is at work: that operation fails at once, and nothing
  /// is open any more. Harmless otherwise.
  void GiveUp();
  /// The sentence for a raw (HRESULT) or reduced number.
  Text ErrorDescription(std::int32_t number) const;
  /// True and an empty report for a valid request; else a report of the first fault.
  bool XMLValidate(TextView request, Text& report) const;

  /// Exceptions of these are dropped: a status line must not break a session.
  std::function<void(TextView)> UpdateStatus;
  std::function<void()> Loading;  // before a company file is opened
  std::function<void()> Loaded;   // when that has ended, well or not

  bool bProcessorCreated = false;
  bool bConnectionOpen = false;
  bool bSessionBegun = false;
  Text sLastError;
  std::int32_t lLastError = 0;
  Text sTicket;

 private:
  struct Failure {
    std::int32_t lNumber = 0;  // reduced; 0: none
    Text sDescription;
    bool bGivenUp = false;
  };
  using Operation = std::function<void(RequestProcessor&)>;

  std::int32_t CreateProcessor(TextView failureText);
  Failure MakeProcessor();
  Failure Call(const Operation& operation);
  Failure CallFailed(const RequestProcessorError& error);
  void ForgetProcessor(TextView status);
  std::int32_t Keep(Failure failure);
  void ClearLastError();
  void TellStatus(TextView text) const;

  ProcessorFactory oFactory;
  std::shared_ptr<RequestProcessor> oProcessor;
  std::vector<RequestProcessor*> oOutstanding;  // operations; the innermost is the last
};

}  // namespace ostrel
