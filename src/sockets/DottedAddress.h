// IPv4 addresses in dotted form.
#pragma once

#include <cstdint>
#include <optional>

#include "util/Text.h"

namespace ostrel {

/// Four decimal numbers from 0 to 255; nothing for any other text.
std::optional<std::uint32_t> ParseDottedAddress(TextView text);
Text DottedAddress(std::uint32_t ip);

}  // namespace ostrel
