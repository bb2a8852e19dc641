// A clock that stands still until a test moves it. Local time is UTC; it starts at 1/5/2010 9:03:07
// AM.
#pragma once

#include <chrono>
#include <string>

#include "platform/Clock.h"

namespace ostrel::doubles {

class FakeClock : public platform::Clock {
 public:
  platform::TimePoint dNow = std::chrono::sys_days{std::chrono::year{2010} / 1 / 5} +
                             std::chrono::hours(9) + std::chrono::minutes(3) +
                             std::chrono::seconds(7);
  Text sGeneralDate;  // unless empty, the answer of GeneralDate: another locale

  platform::SteadyPoint dSteady{std::chrono::hours(1)};  // since the machine started

  void Advance(std::chrono::milliseconds time) {
    dNow += time;
    dSteady += time;
  }

  platform::TimePoint Now() const override { return dNow; }
  platform::SteadyPoint SteadyNow() const override { return dSteady; }

  platform::LocalTime ToLocalTime(platform::TimePoint time) const override {
    const auto day = std::chrono::floor<std::chrono::days>(time);
    const std::chrono::year_month_day date{day};
    const std::chrono::hh_mm_ss clock{std::chrono::floor<std::chrono::seconds>(time - day)};
    return {static_cast<int>(date.year()),
            static_cast<int>(static_cast<unsigned>(date.month())),
            static_cast<int>(static_cast<unsigned>(date.day())),
            static_cast<int>(clock.hours().count()),
            static_cast<int>(clock.minutes().count()),
            static_cast<int>(clock.seconds().count()),
            0};
  }

  Text GeneralDate(platform::TimePoint time) const override {
    if (!sGeneralDate.empty()) return sGeneralDate;
    const platform::LocalTime t = ToLocalTime(time);
    const std::string date =
        std::to_string(t.month) + "/" + std::to_string(t.day) + "/" + std::to_string(t.year);
    if (t.hour == 0 && t.minute == 0 && t.second == 0) return FromAscii(date);
    const int hour = t.hour % 12 == 0 ? 12 : t.hour % 12;
    return FromAscii(date + " " + std::to_string(hour) + ":" + TwoDigits(t.minute) + ":" +
                     TwoDigits(t.second) + (t.hour < 12 ? " AM" : " PM"));
  }

 private:
  static std::string TwoDigits(int number) {
    return (number < 10 ? "0" : "") + std::to_string(number);
  }
};

}  // namespace ostrel::doubles
