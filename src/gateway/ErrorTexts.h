// The request processor's error numbers in words.
#pragma once

#include <cstdint>
#include <optional>

#include "util/Text.h"

namespace ostrel {

/// A raw number (HRESULT) is this much more than the reduced number that clients see.
inline constexpr std::uint32_t kReducedNumberBase = 0x80040000;
/// Reduced: QuickBooks could not parse the request.
inline constexpr std::int32_t kParseError = 1024;

/// The sentence for a raw number or a reduced one. Kept: of the reduced numbers only 1024, 1030,
/// 1046 and 1050 have one, the raw numbers from 0x80040400 to 0x8004042F all do.
std::optional<TextView> FindErrorText(std::int32_t number);

}  // namespace ostrel
