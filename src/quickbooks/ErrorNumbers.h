// The numbers with which QuickBooks fails, and a sentence for each; those for failures of COM
// itself are in the COM adapter. An operation fails with a raw number, an HRESULT (0x80040400 to
// 0x8004042F are the request processor's own). Clients are told the reduced number: the HRESULT
// less 0x80040000.
#pragma once

#include <cstdint>
#include <optional>

#include "util/Text.h"

namespace ostrel {

enum class Hresult : std::uint32_t {
  // The system's own numbers, for calls that never came to QuickBooks or never came back.
  kCallRejected = 0x80010001,  // RPC_E_CALL_REJECTED
  kGivenUp = 0x80010002,       // RPC_E_CALL_CANCELED: the caller gave the operation up
  kCallFailed = 0x800706BE,    // RPC_S_CALL_FAILED: QuickBooks ended in the middle of it

  // The request processor's own.
  kParseError = 0x80040400,
  kCannotOpenCompany = 0x80040403,
  kUnusableCompany = 0x80040409,
  kOtherCompanyOpen = 0x8004040A,
  kNoSession = 0x8004040C,
  kWrongTicket = 0x8004040D,
  kNotEnoughMemory = 0x8004040E,
  kNoConnection = 0x8004040F,
  kOtherFileMode = 0x80040410,
  kSessionAlreadyBegun = 0x80040411,
  kConnectionAlreadyOpen = 0x80040412,
  kRollbackUnsupported = 0x80040413,
  kNoApplicationName = 0x80040415,
  kNoCompanyOpen = 0x80040416,
  kCannotLock = 0x8004041B,
  kUnknownVersion = 0x80040423,
  kInvalidParameter = 0x80040425,
};

constexpr std::int32_t Raw(Hresult hresult) { return static_cast<std::int32_t>(hresult); }
/// The raw number of a reduced one, and back. A raw number that is no failure of QuickBooks' own
/// may come out as 0 or less.
std::int32_t Raw(std::int32_t reduced);
std::int32_t Reduced(std::int32_t raw);

/// Reduced: QuickBooks could not parse the request.
inline constexpr std::int32_t kParseError = 1024;

/// The request processor's sentence for a raw number of its own, else empty. The gateway shows it
/// to people, the stand-in raises it as the description.
TextView SentenceFor(std::int32_t raw);
/// The sentence for a raw number or a reduced one.
/// Kept: of the reduced numbers only 1024, 1030, 1046 and 1050 have one; clients know the others by
/// their numbers.
std::optional<TextView> TextFor(std::int32_t number);
inline constexpr TextView kGivenUpText = u"The call to QuickBooks was given up.";

/// Whether the failure of this reduced number says that the session is of no further use: there is
/// no connection, session or ticket any more, or QuickBooks itself could not be reached.
bool IsSessionLost(std::int32_t reduced);
/// Whether the raw number says that the server behind the object has died or was disconnected.
bool IsServerGone(std::int32_t raw);

}  // namespace ostrel
