// Texts as QuickBooks responds with.
#pragma once

#include <cstddef>

#include "util/Text.h"

namespace ostrel::bench {

inline constexpr std::size_t kMega = 1024 * 1024;

/// The response to a customer query, one tag a line, with CR LF line breaks, exactly so many
/// characters long (at least 1000).
Text SampleResponse(std::size_t characters);

}  // namespace ostrel::bench
