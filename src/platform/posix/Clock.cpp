#include "platform/Clock.h"

#include <cstdio>
#include <ctime>

namespace ostrel::platform {
namespace {

class LocalClock : public Clock {
 public:
  TimePoint Now() const override { return std::chrono::system_clock::now(); }

  LocalTime ToLocalTime(TimePoint time) const override {
    // Floor: a time before 1970 belongs to the second that it is in, not to the next one.
    const std::time_t seconds =
        std::chrono::floor<std::chrono::seconds>(time).time_since_epoch().count();
    std::tm local{};
    tzset();  // localtime_r need not look at the environment
    localtime_r(&seconds, &local);
    return {local.tm_year + 1900,
            local.tm_mon + 1,
            local.tm_mday,
            local.tm_hour,
            local.tm_min,
            local.tm_sec,
            static_cast<int>(local.tm_gmtoff / 60)};
  }

  Text GeneralDate(TimePoint time) const override {
    const LocalTime local = ToLocalTime(time);
    char text[80];
    int length = std::snprintf(text, sizeof text, "%d/%d/%d", local.month, local.day, local.year);
    if (local.hour != 0 || local.minute != 0 || local.second != 0) {
      const int hour = local.hour % 12 == 0 ? 12 : local.hour % 12;
      const char* half = local.hour < 12 ? "AM" : "PM";
      const auto used = static_cast<std::size_t>(length);
      length += std::snprintf(text + used, sizeof text - used, " %d:%02d:%02d %s", hour,
                              local.minute, local.second, half);
    }
    return FromAscii({text, static_cast<std::size_t>(length)});
  }
};

}  // namespace

const Clock& SystemClock() {
  static const LocalClock clock;
  return clock;
}

}  // namespace ostrel::platform
