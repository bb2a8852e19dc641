// Numbers as people write them into the settings file: decimal digits with an optional sign and
// fraction, blanks around. A fraction is rounded, a half to the even neighbour.
#pragma once

#include <cstdint>

#include "util/Text.h"

namespace ostrel {

/// Raise RunTimeError 13 "Type mismatch" for what is no number, 6 "Overflow" for one that does not
/// fit.
std::int16_t ToInteger(TextView text);
std::int32_t ToLong(TextView text);

}  // namespace ostrel
