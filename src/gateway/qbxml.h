// The QuickBooks session: connection, session on a company file, requests, and back again. No
// failure leaves it as an exception: members return a reduced error number (the HRESULT less
// 0x80040000, 0 for success, always positive for a failure) and keep the text.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "platform/RequestProcessor.h"
#include "util/Text.h"

namespace ostrel {

class qbxml {
 public:
  /// Creates the request processor object; raises platform::RequestProcessorError when QuickBooks
  /// has not installed it.
  using ProcessorFactory = std::function<std::unique_ptr<platform::RequestProcessor>()>;

  explicit qbxml(ProcessorFactory factory);
  ~qbxml();
  qbxml(const qbxml&) = delete;
  qbxml& operator=(const qbxml&) = delete;

  bool IsConnected() const;
  /// The open company file, or a sentence that says that there is none.
  Text CompanyFileName();
  std::int32_t OpenConnectionAndBeginSession(TextView applicationId, TextView applicationName,
                                             TextView companyFile, std::int16_t fileMode,
                                             std::int32_t& errorNumber);
  void EndSessionAndCloseConnection();
  std::int32_t OpenConnection(TextView applicationId, TextView applicationName,
                              std::int32_t& errorNumber);
  /// fileMode 1: single user, 2: multi-user, anything else: QuickBooks chooses.
  std::int32_t BeginSession(TextView companyFile, std::int16_t fileMode, std::int32_t& errorNumber);
  void EndSession();
  void CloseConnection();
  std::int32_t ProcessRequest(TextView request, Text& response);
  /// The sentence for a raw (HRESULT) or reduced number.
  Text ErrorDescription(std::int32_t number) const;
  /// True and an empty report for a valid request; else a report of the first fault.
  bool XMLValidate(TextView request, Text& report) const;

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
  std::unique_ptr<platform::RequestProcessor> oProcessor;
};

}  // namespace ostrel
