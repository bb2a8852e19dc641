// The names of periods as reports show them, and the periods into which a report divides its own.
#pragma once

#include <chrono>
#include <string>
#include <string_view>

#include "simulator/values/Dates.h"

namespace ostrel::simulator {

/// "January through December 2008", "June 1 - 2, 2008", "All Transactions".
std::string PeriodTitle(const DateRange& range);
/// "Jan - Dec 08", "Jun 1 - 2, 08"; empty without a beginning and an end.
std::string ShortPeriodTitle(const DateRange& range);
/// "June 2, 2008"
std::string LongDate(std::chrono::sys_days day);
/// "Jun 2, 08"
std::string ShortDate(std::chrono::sys_days day);

/// Whether it is a name of a part of the calendar: "Day", "Week", "Month", "Quarter", "Year".
bool IsCalendarPart(std::string_view name);
/// The part of the calendar of that name in which the day lies.
DateRange PartOf(std::string_view name, std::chrono::sys_days day);

}  // namespace ostrel::simulator
