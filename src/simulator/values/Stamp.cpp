#include "simulator/values/Stamp.h"

#include <cstdio>
#include <cstdlib>

namespace ostrel::simulator {

Stamp MakeStamp(const platform::Clock& clock) {
  const platform::TimePoint now = clock.Now();
  const platform::LocalTime local = clock.ToLocalTime(now);
  const int offset = std::abs(local.offsetMinutes);
  char text[96];
  std::snprintf(text, sizeof text, "%04d-%02d-%02dT%02d:%02d:%02d%c%02d:%02d", local.year,
                local.month, local.day, local.hour, local.minute, local.second,
                local.offsetMinutes < 0 ? '-' : '+', offset / 60, offset % 60);
  const auto seconds =
      std::chrono::duration_cast<std::chrono::seconds>(now.time_since_epoch()).count();
  return {seconds, text};
}

}  // namespace ostrel::simulator
