// QuickBooks' qbXML request processor: COM on Windows, the built-in stand-in elsewhere. Which one a
// program uses is decided where the program is put together.
#pragma once

#include <cstdint>
#include <exception>
#include <memory>
#include <utility>

#include "util/Text.h"

namespace ostrel {

/// A failed operation: the HRESULT (quickbooks/ErrorNumbers.h) and its description.
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
  /// Comes first: reaches QuickBooks, which may have to start. Fails when it is not installed.
  virtual void Create() = 0;
  virtual void OpenConnection(TextView applicationId, TextView applicationName) = 0;
  /// An empty company file: the one that is open in QuickBooks. Returns the session's ticket.
  virtual Text BeginSession(TextView companyFile, FileMode mode) = 0;
  /// Returns the qbXML response.
  virtual Text ProcessRequest(TextView ticket, TextView request) = 0;
  virtual Text GetCurrentCompanyFileName(TextView ticket) = 0;
  virtual void EndSession(TextView ticket) = 0;
  virtual void CloseConnection() = 0;
  /// For an event that comes while an operation is outstanding: the operation fails with
  /// Hresult::kGivenUp as soon as its caller runs again, and the object is of no further use.
  /// Harmless otherwise.
  virtual void GiveUp() = 0;
};

/// Makes the request processor that QuickBooks has installed on this machine. Only on Windows. When
/// QuickBooks is found gone (IsServerGone) the object has no session any more; OpenConnection,
/// which needs none, first tries to reach QuickBooks anew. Destroying the object takes 2 seconds at
/// most, whatever QuickBooks does.
std::unique_ptr<RequestProcessor> MakeInstalledRequestProcessor();

}  // namespace ostrel
