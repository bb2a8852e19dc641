// The time of day and its text in the system's general date format.
#pragma once

#include <chrono>

#include "util/Text.h"

namespace ostrel::platform {

using TimePoint = std::chrono::system_clock::time_point;
/// A time on a clock that nobody sets, to measure how long something lasts. It may stand still
/// while the machine sleeps.
using SteadyPoint = std::chrono::steady_clock::time_point;

struct LocalTime {
  int year, month, day;      // month and day from 1
  int hour, minute, second;  // 24-hour clock
  int offsetMinutes;         // east of Greenwich, daylight saving included
};

/// Abstract so that tests can set the time.
class Clock {
 public:
  virtual ~Clock() = default;
  virtual TimePoint Now() const = 0;
  virtual SteadyPoint SteadyNow() const { return std::chrono::steady_clock::now(); }
  virtual LocalTime ToLocalTime(TimePoint time) const = 0;
  /// The locale's short date, a blank, the long time. On POSIX always the US form:
  /// "1/5/2010 9:03:07 AM". The time is left out at exactly midnight, as the general format does.
  virtual Text GeneralDate(TimePoint time) const = 0;
};

const Clock& SystemClock();

}  // namespace ostrel::platform
