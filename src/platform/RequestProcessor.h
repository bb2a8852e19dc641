// QuickBooks' qbXML request processor: COM on Windows, the built-in stand-in elsewhere. Which one a
// program uses is decided where the program is put together.
#pragma once

#include <algorithm>
#include <cstdint>
#include <exception>
#include <iterator>
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

/// What an operation fails with that was given up (RPC_E_CALL_CANCELED).
inline constexpr auto kGivenUp = static_cast<std::int32_t>(0x80010002);
inline constexpr TextView kGivenUpText = u"The call to QuickBooks was given up.";

/// The HRESULTs with which a call ends when the server behind the object has died or was
/// disconnected.
inline constexpr std::uint32_t kServerGone[] = {
    0x800706BA,  // RPC_S_SERVER_UNAVAILABLE
    0x800706BE,  // RPC_S_CALL_FAILED
    0x800706BF,  // RPC_S_CALL_FAILED_DNE
    0x80010007,  // RPC_E_SERVER_DIED
    0x80010012,  // RPC_E_SERVER_DIED_DNE
    0x80010108,  // RPC_E_DISCONNECTED
    0x800401FD,  // CO_E_OBJNOTCONNECTED
};

inline bool MeansServerGone(std::int32_t hresult) {
  const auto number = static_cast<std::uint32_t>(hresult);
  return std::find(std::begin(kServerGone), std::end(kServerGone), number) != std::end(kServerGone);
}

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
  /// For an event that comes while an operation is outstanding: the operation fails with kGivenUp
  /// as soon as its caller runs again, and the object is of no further use. Harmless otherwise.
  virtual void GiveUp() = 0;
};

}  // namespace ostrel::platform
