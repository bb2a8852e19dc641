// Each named range of dates is a row: a period, its distance from the present one, and whether it
// ends at today's place in it. One function turns every row into two dates. Dates are whole days
// without a zone; moments carry the zone in which they were written, and only they depend on it.
#include "simulator/values/Dates.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <system_error>

namespace ostrel::simulator {
namespace {

using std::chrono::days;
using std::chrono::months;
using std::chrono::sys_days;
using std::chrono::year_month_day;

enum class Period { kNone, kDay, kWeek, kFourWeeks, kMonth, kQuarter, kYear };

// The present period, or one that lies `distance` periods from it. A period to date ends as far
// into it as today lies in the present one.
struct Macro {
  std::string_view name;
  Period period = Period::kNone;
  int distance = 0;
  bool toDate = false;
};

constexpr Macro kMacros[] = {
    {"All"},
    {"Today", Period::kDay},
    {"ThisWeek", Period::kWeek},
    {"ThisWeekToDate", Period::kWeek, 0, true},
    {"ThisMonth", Period::kMonth},
    {"ThisMonthToDate", Period::kMonth, 0, true},
    {"ThisCalendarQuarter", Period::kQuarter},
    {"ThisCalendarQuarterToDate", Period::kQuarter, 0, true},
    {"ThisFiscalQuarter", Period::kQuarter},
    {"ThisFiscalQuarterToDate", Period::kQuarter, 0, true},
    {"ThisCalendarYear", Period::kYear},
    {"ThisCalendarYearToDate", Period::kYear, 0, true},
    {"ThisFiscalYear", Period::kYear},
    {"ThisFiscalYearToDate", Period::kYear, 0, true},
    {"Yesterday", Period::kDay, -1},
    {"LastWeek", Period::kWeek, -1},
    {"LastWeekToDate", Period::kWeek, -1, true},
    {"LastMonth", Period::kMonth, -1},
    {"LastMonthToDate", Period::kMonth, -1, true},
    {"LastCalendarQuarter", Period::kQuarter, -1},
    {"LastCalendarQuarterToDate", Period::kQuarter, -1, true},
    {"LastFiscalQuarter", Period::kQuarter, -1},
    {"LastFiscalQuarterToDate", Period::kQuarter, -1, true},
    {"LastCalendarYear", Period::kYear, -1},
    {"LastCalendarYearToDate", Period::kYear, -1, true},
    {"LastFiscalYear", Period::kYear, -1},
    {"LastFiscalYearToDate", Period::kYear, -1, true},
    {"NextWeek", Period::kWeek, 1},
    {"NextFourWeeks", Period::kFourWeeks, 1},
    {"NextMonth", Period::kMonth, 1},
    {"NextCalendarQuarter", Period::kQuarter, 1},
    {"NextCalendarYear", Period::kYear, 1},
    {"NextFiscalQuarter", Period::kQuarter, 1},
    {"NextFiscalYear", Period::kYear, 1},
};

constexpr auto kMacroNames = [] {
  std::array<std::string_view, std::size(kMacros)> names;
  std::ranges::transform(kMacros, names.begin(), &Macro::name);
  return names;
}();

template <class Number>
bool ReadNumber(std::string_view text, Number& number) {
  const bool digits = std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
  const auto end = std::from_chars(text.data(), text.data() + text.size(), number).ptr;
  return digits && end == text.data() + text.size();
}

sys_days FirstOfMonths(sys_days day, unsigned count, int distance) {
  const year_month_day date(day);
  const unsigned month = (static_cast<unsigned>(date.month()) - 1) / count * count + 1;
  const auto first = date.year() / std::chrono::month(month) / 1;
  return first + months(distance * static_cast<int>(count));
}

sys_days FirstOfWeek(sys_days day, int distance) {
  return day - (std::chrono::weekday(day) - std::chrono::Sunday) + days(7 * distance);
}

sys_days FirstDay(Period period, sys_days day, int distance) {
  switch (period) {
    case Period::kWeek:
      return FirstOfWeek(day, distance);
    case Period::kFourWeeks:
      return FirstOfWeek(day, distance == 1 ? 1 : 5);
    case Period::kMonth:
      return FirstOfMonths(day, 1, distance);
    case Period::kQuarter:
      return FirstOfMonths(day, 3, distance);
    case Period::kYear:
      return FirstOfMonths(day, 12, distance);
    default:
      return day + days(distance);
  }
}

// The zone at the end of a moment's text, in minutes east; the whole text must be one.
std::optional<int> ParseZone(std::string_view text) {
  if (text == "Z") return 0;
  int hours = 0, minutes = 0;
  const bool form = text.size() == 6 && (text[0] == '+' || text[0] == '-') && text[3] == ':';
  if (!form || !ReadNumber(text.substr(1, 2), hours) || !ReadNumber(text.substr(4, 2), minutes)) {
    return std::nullopt;
  }
  if (hours > 14 || minutes > 59) return std::nullopt;
  return (text[0] == '-' ? -1 : 1) * (60 * hours + minutes);
}

std::optional<int> ParseSecondOfDay(std::string_view text) {
  int hour = 0, minute = 0, second = 0;
  const bool form = text.size() == 8 && text[2] == ':' && text[5] == ':' &&
                    ReadNumber(text.substr(0, 2), hour) && ReadNumber(text.substr(3, 2), minute) &&
                    ReadNumber(text.substr(6, 2), second);
  if (!form || hour > 23 || minute > 59 || second > 59) return std::nullopt;
  return 3600 * hour + 60 * minute + second;
}

constexpr std::size_t kDateLength = 10;
constexpr std::size_t kMomentLength = 19;  // without a zone

}  // namespace

std::optional<sys_days> ParseDate(std::string_view text) {
  int year = 0;
  unsigned month = 0, day = 0;
  const bool form = text.size() == kDateLength && text[4] == '-' && text[7] == '-' &&
                    ReadNumber(text.substr(0, 4), year) && ReadNumber(text.substr(5, 2), month) &&
                    ReadNumber(text.substr(8, 2), day);
  const year_month_day date{std::chrono::year(year), std::chrono::month(month),
                            std::chrono::day(day)};
  if (!form || !date.ok()) return std::nullopt;
  return sys_days(date);
}

std::string DateText(sys_days day) {
  const year_month_day date(day);
  char text[32];
  std::snprintf(text, sizeof text, "%04d-%02u-%02u", static_cast<int>(date.year()),
                static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()));
  return text;
}

sys_days DayOf(const Stamp& stamp) {
  return ParseDate(std::string_view(stamp.text).substr(0, kDateLength)).value_or(sys_days());
}

std::optional<std::int64_t> ParseMoment(std::string_view text, const Stamp& now, bool endOfDay) {
  const auto day = ParseDate(text.substr(0, kDateLength));
  if (!day) return std::nullopt;
  std::optional<int> second = endOfDay ? 86'399 : 0;
  std::string_view zone = std::string_view(now.text).substr(kMomentLength);
  if (text.size() > kDateLength) {
    if (text[kDateLength] != 'T') return std::nullopt;
    second = ParseSecondOfDay(text.substr(kDateLength + 1, 8));
    if (text.size() > kMomentLength) zone = text.substr(kMomentLength);
  }
  const auto offset = ParseZone(zone);
  if (!second || !offset) return std::nullopt;
  return std::int64_t{day->time_since_epoch().count()} * 86'400 + *second - *offset * 60;
}

std::optional<std::int64_t> ParseInterval(std::string_view text) {
  constexpr std::int64_t kMost = 1'000'000;
  std::int64_t minutes = 0;
  const bool isIso = text.starts_with("PT");
  std::string_view rest = isIso ? text.substr(2) : text;
  if (rest.empty()) return std::nullopt;
  for (bool isFirst = true; !rest.empty(); isFirst = false) {
    std::int64_t number = 0;
    const auto end = std::from_chars(rest.data(), rest.data() + rest.size(), number);
    if (end.ec != std::errc() || number < 0 || number > kMost) return std::nullopt;
    rest.remove_prefix(static_cast<std::size_t>(end.ptr - rest.data()));
    const char unit = rest.empty() ? '\0' : rest.front();
    if (isIso ? unit == 'H' : unit == ':' && isFirst) {
      minutes += 60 * number;
    } else if (isIso ? unit == 'M' : unit == '\0' && !isFirst) {
      minutes += number;
    } else if (unit != 'S') {
      return std::nullopt;
    }
    if (!rest.empty()) rest.remove_prefix(1);
  }
  return minutes;
}

std::string IntervalText(std::int64_t minutes) {
  return "PT" + std::to_string(minutes / 60) + "H" + std::to_string(minutes % 60) + "M";
}

std::span<const std::string_view> DateMacros() { return kMacroNames; }

DateRange RangeOf(std::string_view dateMacro, sys_days today) {
  const auto macro = std::ranges::find(kMacros, dateMacro, &Macro::name);
  if (macro == std::end(kMacros) || macro->period == Period::kNone) return {};
  const sys_days from = FirstDay(macro->period, today, macro->distance);
  const sys_days last = FirstDay(macro->period, today, macro->distance + 1) - days(1);
  if (!macro->toDate) return {from, last};
  return {from, std::min(last, from + (today - FirstDay(macro->period, today, 0)))};
}

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
