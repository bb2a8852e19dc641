// Dates and moments as qbXML writes them, and the ranges of dates that it has names for.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "platform/Clock.h"

namespace ostrel::simulator {

/// A moment in the two forms in which QuickBooks' objects carry it.
struct Stamp {
  std::int64_t seconds;  // since 1970
  std::string text;      // "2010-01-05T09:03:07-08:00"
};

Stamp MakeStamp(const platform::Clock& clock);

inline const Stamp kEpoch = {0, "1970-01-01T00:00:00+00:00"};

/// Reads "2010-01-05"; nothing for a text that is no date.
std::optional<std::chrono::sys_days> ParseDate(std::string_view text);
std::string DateText(std::chrono::sys_days day);
/// The day of the stamp where it was made.
std::chrono::sys_days DayOf(const Stamp& stamp);

/// Seconds since 1970 of "2010-01-05T09:03:07-08:00". Without a zone it is in that of `now`; a date
/// alone is its first second, or its last one.
std::optional<std::int64_t> ParseMoment(std::string_view text, const Stamp& now, bool endOfDay);

/// Minutes of "PT1H30M" (hours, minutes and seconds, each may be left out) or "1:30".
std::optional<std::int64_t> ParseInterval(std::string_view text);
/// "PT1H30M"
std::string IntervalText(std::int64_t minutes);

struct DateRange {
  std::optional<std::chrono::sys_days> from;
  std::optional<std::chrono::sys_days> to;
};

/// The names: "Today", "LastMonthToDate" and so on.
std::span<const std::string_view> DateMacros();
/// The range that a name means on this day. Weeks begin on Sunday.
DateRange RangeOf(std::string_view dateMacro, std::chrono::sys_days today);

}  // namespace ostrel::simulator
