// What a transport hands a request to.
#pragma once

#include <functional>

#include "util/Text.h"

namespace ostrel {

/// The gateway's ProcessRequest: the result is above 0 for an error.
using RequestProcessing = std::function<float(Text& request, Text& response)>;

/// Characters; no transport takes a longer request.
inline constexpr std::size_t kLongestRequest = std::size_t{256} * 1024 * 1024;

}  // namespace ostrel
