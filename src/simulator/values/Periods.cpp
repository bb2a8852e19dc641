#include "simulator/values/Periods.h"

#include <cstdio>
#include <iterator>
#include <utility>

namespace ostrel::simulator {
namespace {

using std::chrono::days;
using std::chrono::sys_days;
using std::chrono::year_month_day;

constexpr const char* kMonths[] = {"January",   "February", "March",    "April",
                                   "May",       "June",     "July",     "August",
                                   "September", "October",  "November", "December"};

// The parts of the calendar, each by the name of the present one among the date macros.
constexpr std::pair<std::string_view, std::string_view> kParts[] = {
    {"Day", "Today"},
    {"Week", "ThisWeek"},
    {"Month", "ThisMonth"},
    {"Quarter", "ThisCalendarQuarter"},
    {"Year", "ThisCalendarYear"}};

// How a title writes its dates.
struct Style {
  bool isShort;

  std::string Month(const year_month_day& date) const {
    const std::string name = kMonths[static_cast<unsigned>(date.month()) - 1];
    return isShort ? name.substr(0, 3) : name;
  }
  std::string Year(const year_month_day& date) const {
    char text[32];
    const int year = static_cast<int>(date.year());
    std::snprintf(text, sizeof text, isShort ? "%02d" : "%04d", isShort ? year % 100 : year);
    return text;
  }
  std::string MonthDay(const year_month_day& date) const {
    return Month(date) + ' ' + std::to_string(static_cast<unsigned>(date.day()));
  }
  std::string Date(const year_month_day& date) const { return MonthDay(date) + ", " + Year(date); }
  std::string MonthYear(const year_month_day& date) const { return Month(date) + ' ' + Year(date); }
  std::string_view Until() const { return isShort ? " - " : " through "; }
};

std::string MonthsTitle(const year_month_day& from, const year_month_day& to, Style style) {
  if (from.year() != to.year()) {
    return style.MonthYear(from).append(style.Until()).append(style.MonthYear(to));
  }
  if (from.month() == to.month()) return style.MonthYear(from);
  return style.Month(from).append(style.Until()).append(style.MonthYear(to));
}

std::string DaysTitle(const year_month_day& from, const year_month_day& to, Style style) {
  if (from == to) return style.Date(from);
  if (from.year() != to.year()) {
    return style.Date(from).append(style.Until()).append(style.Date(to));
  }
  if (from.month() != to.month()) {
    return style.MonthDay(from).append(style.Until()).append(style.Date(to));
  }
  return style.MonthDay(from) + " - " + std::to_string(static_cast<unsigned>(to.day())) + ", " +
         style.Year(to);
}

std::string Title(const DateRange& range, Style style) {
  const year_month_day from(*range.from), to(*range.to);
  const bool areMonths = from.day() == std::chrono::day(1) &&
                         year_month_day(*range.to + days(1)).day() == std::chrono::day(1);
  return areMonths ? MonthsTitle(from, to, style) : DaysTitle(from, to, style);
}

}  // namespace

std::string PeriodTitle(const DateRange& range) {
  if (range.from && range.to) return Title(range, {.isShort = false});
  if (range.to) return "Through " + LongDate(*range.to);
  return range.from ? "From " + LongDate(*range.from) : "All Transactions";
}

std::string ShortPeriodTitle(const DateRange& range) {
  return range.from && range.to ? Title(range, {.isShort = true}) : "";
}

std::string LongDate(sys_days day) { return Style{.isShort = false}.Date(day); }

std::string ShortDate(sys_days day) { return Style{.isShort = true}.Date(day); }

bool IsCalendarPart(std::string_view name) {
  for (const auto& [part, macro] : kParts) {
    if (part == name) return true;
  }
  return false;
}

DateRange PartOf(std::string_view name, sys_days day) {
  for (const auto& [part, macro] : kParts) {
    if (part == name) return RangeOf(macro, day);
  }
  return {};
}

}  // namespace ostrel::simulator
