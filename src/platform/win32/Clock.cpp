#include "platform/Clock.h"

#include <windows.h>

#include <cmath>
#include <cstdint>
#include <ratio>
#include <string>

#include "platform/win32/FileMetadata.h"
#include "platform/win32/Path.h"

namespace ostrel::platform {
namespace {

using Ticks = std::chrono::duration<std::int64_t, std::ratio<1, 10'000'000>>;

// The time from 1 January 1601, where a FILETIME begins, to 1970.
constexpr Ticks kEpoch{116'444'736'000'000'000};
constexpr Ticks::rep kTicksPerMinute = 60 * 10'000'000LL;

SYSTEMTIME ToSystemLocalTime(TimePoint time) {
  const FILETIME universalFile = ToFileTime(time);
  SYSTEMTIME universal{}, local{};
  FileTimeToSystemTime(&universalFile, &universal);
  if (!SystemTimeToTzSpecificLocalTime(nullptr, &universal, &local)) return universal;
  return local;
}

int OffsetMinutes(TimePoint time, const SYSTEMTIME& local) {
  FILETIME localFile{};
  SystemTimeToFileTime(&local, &localFile);
  const double ticks = static_cast<double>(TicksOf(localFile) - TicksOf(ToFileTime(time)));
  return static_cast<int>(std::lround(ticks / kTicksPerMinute));
}

// Calls one of the two formatting functions with the user's locale and its own format.
template <typename Format>
Text Formatted(Format format, DWORD flags, const SYSTEMTIME& time) {
  std::wstring text(
      static_cast<std::size_t>(format(LOCALE_USER_DEFAULT, flags, &time, nullptr, nullptr, 0)),
      L'\0');
  const int length = format(LOCALE_USER_DEFAULT, flags, &time, nullptr, text.data(),
                            static_cast<int>(text.size()));
  text.resize(length > 0 ? static_cast<std::size_t>(length - 1) : 0);
  return FromWide(text);
}

class LocalClock : public Clock {
 public:
  TimePoint Now() const override { return std::chrono::system_clock::now(); }

  LocalTime ToLocalTime(TimePoint time) const override {
    const SYSTEMTIME local = ToSystemLocalTime(time);
    return {local.wYear,
            local.wMonth,
            local.wDay,
            local.wHour,
            local.wMinute,
            local.wSecond,
            OffsetMinutes(time, local)};
  }

  Text GeneralDate(TimePoint time) const override {
    const SYSTEMTIME local = ToSystemLocalTime(time);
    Text text = Formatted(GetDateFormatW, DATE_SHORTDATE, local);
    if (local.wHour != 0 || local.wMinute != 0 || local.wSecond != 0) {
      text.append(u" ").append(Formatted(GetTimeFormatW, 0, local));
    }
    return text;
  }
};

}  // namespace

TimePoint FromFileTime(const FILETIME& time) {
  return TimePoint(std::chrono::duration_cast<TimePoint::duration>(Ticks(TicksOf(time)) - kEpoch));
}

FILETIME ToFileTime(TimePoint time) {
  const Ticks ticks = std::chrono::floor<Ticks>(time.time_since_epoch()) + kEpoch;
  const auto count = static_cast<std::uint64_t>(ticks.count());
  return {static_cast<DWORD>(count), static_cast<DWORD>(count >> 32)};
}

std::int64_t TicksOf(const FILETIME& time) {
  return static_cast<std::int64_t>(std::uint64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime);
}

const Clock& SystemClock() {
  static const LocalClock clock;
  return clock;
}

}  // namespace ostrel::platform
