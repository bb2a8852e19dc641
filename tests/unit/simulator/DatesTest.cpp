#include <gtest/gtest.h>

#include <string>

#include "simulator/values/Dates.h"

namespace ostrel::simulator {
namespace {

const Stamp kNow = {1262682187, "2010-01-05T09:03:07-08:00"};

std::string Range(std::string_view macro, std::string_view today = "2010-05-19") {
  const DateRange range = RangeOf(macro, *ParseDate(today));
  return DateText(*range.from) + " " + DateText(*range.to);
}

TEST(Dates, AreReadAndWritten) {
  ASSERT_TRUE(ParseDate("2008-02-29"));
  EXPECT_EQ(DateText(*ParseDate("2008-02-29")), "2008-02-29");
}

TEST(Dates, AreRefusedWhenTheyAreNone) {
  for (const char* text : {"", "2009-02-29", "2009-13-01", "2009-1-1", "01/05/2010", "2009-01-0x",
                           "-009-01-01", "2009-01-01 "}) {
    EXPECT_FALSE(ParseDate(text)) << text;
  }
}

TEST(Moments, AreReadWithAndWithoutZone) {
  EXPECT_EQ(ParseMoment("2010-01-05T09:03:07+00:00", kNow, false), 1262682187);
  EXPECT_EQ(ParseMoment("2010-01-05T09:03:07Z", kNow, false), 1262682187);
  EXPECT_EQ(ParseMoment("2010-01-05T01:03:07", kNow, false), 1262682187);
}

TEST(Moments, AreReadInTheirZone) {
  EXPECT_EQ(ParseMoment("2010-01-05T23:03:07+14:00", kNow, false), 1262682187);
  EXPECT_EQ(ParseMoment("2010-01-04T19:03:07-14:00", kNow, false), 1262682187);
  EXPECT_EQ(ParseMoment("2010-01-05T15:02:07+05:59", kNow, false), 1262682187);
  EXPECT_EQ(ParseMoment("2010-01-05T03:04:07-05:59", kNow, false), 1262682187);
}

TEST(Moments, AreRefusedInAZoneThatIsNone) {
  for (const char* zone : {"+15:00", "-15:00", "+05:60", "05:00", "*05:00", "+05-00", "+0500",
                           "+05:000", "+x5:00", "+05:0x", "z"}) {
    EXPECT_FALSE(ParseMoment(std::string("2010-01-05T09:03:07") + zone, kNow, false)) << zone;
  }
}

TEST(Moments, AreRefusedBeyondTheHoursOfADay) {
  EXPECT_EQ(ParseMoment("2010-01-05T23:59:59Z", kNow, false), 1262649600 + 86'399);
  for (const char* time : {"24:00:00", "23:60:00", "23:59:60", "23-59:59", "23:59-59"}) {
    EXPECT_FALSE(ParseMoment(std::string("2010-01-05T") + time + "Z", kNow, false)) << time;
  }
}

TEST(Moments, OfADateAreItsFirstOrLastSecond) {
  EXPECT_EQ(ParseMoment("2010-01-05", kNow, false), 1262649600 + 8 * 3600);
  EXPECT_EQ(ParseMoment("2010-01-05", kNow, true), 1262649600 + 8 * 3600 + 86'399);
}

TEST(Moments, AreRefusedWhenTheyAreNone) {
  for (const char* text : {"", "2010-01-05T", "2010-01-05T24:00:00", "2010-01-05 09:03:07",
                           "2010-01-05T09:03:07+1:00", "2010-01-05T09:03:07x"}) {
    EXPECT_FALSE(ParseMoment(text, kNow, false)) << text;
  }
}

// 19 May 2010 was a Wednesday.
TEST(DateMacros, NameRanges) {
  EXPECT_EQ(Range("Today"), "2010-05-19 2010-05-19");
  EXPECT_EQ(Range("Yesterday"), "2010-05-18 2010-05-18");
  EXPECT_EQ(Range("ThisWeek"), "2010-05-16 2010-05-22");
  EXPECT_EQ(Range("LastWeek"), "2010-05-09 2010-05-15");
  EXPECT_EQ(Range("NextFourWeeks"), "2010-05-23 2010-06-19");
  EXPECT_EQ(Range("ThisMonth"), "2010-05-01 2010-05-31");
  EXPECT_EQ(Range("LastMonth"), "2010-04-01 2010-04-30");
  EXPECT_EQ(Range("ThisCalendarQuarter"), "2010-04-01 2010-06-30");
  EXPECT_EQ(Range("LastCalendarQuarter"), "2010-01-01 2010-03-31");
  EXPECT_EQ(Range("LastFiscalYear"), "2009-01-01 2009-12-31");
  EXPECT_EQ(Range("NextCalendarYear"), "2011-01-01 2011-12-31");
}

TEST(DateMacros, ToDateEndWhereTodayLiesInThisOne) {
  EXPECT_EQ(Range("ThisWeekToDate"), "2010-05-16 2010-05-19");
  EXPECT_EQ(Range("LastMonthToDate"), "2010-04-01 2010-04-19");
  EXPECT_EQ(Range("LastMonthToDate", "2010-03-31"), "2010-02-01 2010-02-28");
  EXPECT_EQ(Range("LastCalendarYearToDate"), "2009-01-01 2009-05-19");
}

TEST(DateMacros, AllIsEveryDate) {
  const DateRange range = RangeOf("All", *ParseDate("2010-05-19"));

  EXPECT_FALSE(range.from);
  EXPECT_FALSE(range.to);
}

}  // namespace
}  // namespace ostrel::simulator
