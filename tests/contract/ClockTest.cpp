#include <gtest/gtest.h>

#include <cstdlib>

#include "platform/Clock.h"
#include "util/Text.h"

namespace ostrel::platform {
namespace {

using namespace std::chrono_literals;
using std::chrono::sys_days;

TimePoint FromLocalTime(const LocalTime& local) {
  const std::chrono::year_month_day date(std::chrono::year(local.year),
                                         std::chrono::month(static_cast<unsigned>(local.month)),
                                         std::chrono::day(static_cast<unsigned>(local.day)));
  return sys_days(date) + std::chrono::hours(local.hour) + std::chrono::minutes(local.minute) +
         std::chrono::seconds(local.second) - std::chrono::minutes(local.offsetMinutes);
}

// The first moment of the local day.
TimePoint MidnightBefore(TimePoint time) {
  LocalTime local = SystemClock().ToLocalTime(time);
  local.hour = local.minute = local.second = 0;
  return FromLocalTime(local);
}

const TimePoint kTimes[] = {sys_days{2010y / 1 / 5} + 9h + 3min + 7s,
                            sys_days{2010y / 7 / 31} + 23h + 59min + 59s,
                            sys_days{2024y / 2 / 29} + 12h, sys_days{1999y / 12 / 31} + 1s};

TEST(Clock, NowIsTheSystemsTime) {
  const TimePoint before = std::chrono::system_clock::now() - 1s;

  const TimePoint now = SystemClock().Now();

  EXPECT_GE(now, before);
  EXPECT_LE(now, std::chrono::system_clock::now() + 1s);
}

TEST(Clock, LocalTimeAndItsOffsetNameTheSameMoment) {
  for (const TimePoint time : kTimes) {
    const LocalTime local = SystemClock().ToLocalTime(time);

    EXPECT_EQ(FromLocalTime(local), time);
    EXPECT_LE(std::abs(local.offsetMinutes), 14 * 60);
  }
}

TEST(Clock, PartsOfASecondBelongToTheSecondBefore) {
  const LocalTime local = SystemClock().ToLocalTime(kTimes[0] + 999ms);

  EXPECT_EQ(local.second, 7);
}

TEST(Clock, AtMidnightTheTextIsTheDateAlone) {
  const TimePoint midnight = MidnightBefore(kTimes[0]);

  const Text date = SystemClock().GeneralDate(midnight);

  EXPECT_TRUE(Contains(date, u"10"));  // of 2010, in any locale
  EXPECT_FALSE(Contains(date, u":"));
  EXPECT_EQ(SystemClock().GeneralDate(midnight + 999ms), date);
}

TEST(Clock, TheTimeFollowsTheDateAfterABlank) {
  const TimePoint midnight = MidnightBefore(kTimes[0]);
  const Text date = SystemClock().GeneralDate(midnight);

  const Text text = SystemClock().GeneralDate(midnight + 9h + 3min + 7s);

  EXPECT_TRUE(text.starts_with(date + u" "));
  EXPECT_TRUE(Contains(TextView(text).substr(date.size()), u"9"));
  EXPECT_TRUE(Contains(text, u"03"));
  EXPECT_TRUE(Contains(text, u"07"));
}

}  // namespace
}  // namespace ostrel::platform
