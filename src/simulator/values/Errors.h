// The request processor's failures as the stand-in raises them: HRESULT and QuickBooks' sentence.
#pragma once

#include <cstdint>

#include "quickbooks/ErrorNumbers.h"
#include "quickbooks/RequestProcessor.h"

namespace ostrel::simulator {

/// Raises RequestProcessorError.
[[noreturn]] void Fail(std::uint32_t hresult);
/// As an operation fails that was given up.
[[noreturn]] void FailAsGivenUp();
[[noreturn]] inline void Fail(Hresult hresult) { Fail(static_cast<std::uint32_t>(hresult)); }

}  // namespace ostrel::simulator
