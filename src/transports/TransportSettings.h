// The part of the settings record that the transports read; the shell fills it from the settings
// file.
#pragma once

#include <cstddef>
#include <cstdint>

#include "util/Text.h"

namespace ostrel {

inline constexpr std::int32_t kDefaultBlockSize = 10000;

struct TransportSettings {
  Text sProcessPath;   // folder watched for request files, no separator at its end
  Text sResponsePath;  // folder of response files, no separator at its end
  std::int32_t lSocketPort = 0;
  std::int32_t lBlockSize = kDefaultBlockSize;  // as the settings file has it

  /// Characters of a socket response sent at once.
  std::size_t BlockSize() const {
    return static_cast<std::size_t>(lBlockSize < 1 ? kDefaultBlockSize : lBlockSize);
  }
};

}  // namespace ostrel
