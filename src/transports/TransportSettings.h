// The part of the settings record that the transports read; the shell fills it from the settings
// file. The process folder and the port count when a transport is started: editing them leaves a
// running one as it is. The response folder and the block size count from the next response on.
#pragma once

#include <cstddef>
#include <cstdint>

#include "util/Text.h"

namespace ostrel {

inline constexpr std::int32_t kDefaultBlockSize = 10000;

struct TransportSettings {
  /// Folders of request files and of response files, no separator at their ends. One folder for
  /// both is refused where the folder transport is started.
  Text sProcessPath;
  Text sResponsePath;
  /// 0: any free port, which the system chooses.
  std::int32_t lSocketPort = 0;
  /// As the settings file has it; a value below 1 counts as the default.
  std::int32_t lBlockSize = kDefaultBlockSize;

  /// Characters of a socket response sent at once.
  std::size_t BlockSize() const {
    return static_cast<std::size_t>(lBlockSize < 1 ? kDefaultBlockSize : lBlockSize);
  }
};

}  // namespace ostrel
