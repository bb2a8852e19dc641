// The request processor's failures as the stand-in raises them: HRESULT and QuickBooks' sentence.
#pragma once

#include <cstdint>

#include "platform/RequestProcessor.h"

namespace ostrel::simulator {

enum class Hresult : std::uint32_t {
  kCallRejected = 0x80010001,  // not its own: RPC_E_CALL_REJECTED
  kCallFailed = 0x800706BE,    // not its own: what a client is told when it has ended
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

/// QuickBooks' sentence for the number; empty for a number that is not the request processor's own.
TextView Sentence(std::uint32_t hresult);

/// Raises platform::RequestProcessorError.
[[noreturn]] void Fail(std::uint32_t hresult);
/// As an operation fails that was given up.
[[noreturn]] void FailAsGivenUp();
[[noreturn]] inline void Fail(Hresult hresult) { Fail(static_cast<std::uint32_t>(hresult)); }

}  // namespace ostrel::simulator
