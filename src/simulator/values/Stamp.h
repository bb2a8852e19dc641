// A moment in the forms in which QuickBooks' objects carry it.
#pragma once

#include <cstdint>
#include <string>

#include "platform/Clock.h"

namespace ostrel::simulator {

struct Stamp {
  std::int64_t seconds;  // since 1970
  std::string text;      // "2010-01-05T09:03:07-08:00"
};

Stamp MakeStamp(const platform::Clock& clock);

inline const Stamp kEpoch = {0, "1970-01-01T00:00:00+00:00"};

}  // namespace ostrel::simulator
