// QuickBooks' qbXML request processor: COM on Windows, the built-in stand-in elsewhere. Which one a
// program uses is decided where the program is put together.
#pragma once

#include <cstdint>
#include <exception>
#include <utility>

#include "util/Text.h"

namespace ostrel::platform {

/// A failed operation: the HRESULT (0x80040400 to 0x80040430 are the request processor's own) and
/// its description.
class RequestProcessorError : public std::exception {
 public:
  RequestProcessorError(std::int32_t hresult, Text description)
      : Number(hresult), Description(std::move(description)) {}
  const char* what() const noexcept override { return "request processor error"; }

  std::int32_t Number;
  Text Description;
};

enum class FileMode : std::int16_t { kSingleUser = 0, kMultiUser = 1, kDoNotCare = 2 };

/// Every operation raises RequestProcessorError on failure. Events are dispatched while an
/// operation is outstanding, so any handler may run before it returns.
class RequestProcessor {
 public:
  virtual ~RequestProcessor() = default;
  virtual void OpenConnection(TextView applicationId, TextView applicationName) = 0;
  /// An empty company file: the one that is open in QuickBooks. Returns the session's ticket.
  virtual Text BeginSession(TextView companyFile, FileMode mode) = 0;
  /// Returns the qbXML response.
  virtual Text ProcessRequest(TextView ticket, TextView request) = 0;
  virtual Text GetCurrentCompanyFileName(TextView ticket) = 0;
  virtual void EndSession(TextView ticket) = 0;
  virtual void CloseConnection() = 0;
};

}  // namespace ostrel::platform
