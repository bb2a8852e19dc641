// The part of the settings record that the transports read; the shell fills it from the settings
// file.
#pragma once

#include <cstdint>

#include "util/Text.h"

namespace ostrel {

inline constexpr std::int32_t kDefaultBlockSize = 10000;

struct TransportSettings {
  Text sProcessPath;   // folder watched for request files, no separator at its end
  Text sResponsePath;  // folder of response files, no separator at its end
  std::int32_t lSocketPort = 0;
  std::int32_t lBlockSize = 0;  // characters of a socket response sent at once; at least 1
};

}  // namespace ostrel
