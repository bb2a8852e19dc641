#include "shell/commands/modShellandWait.h"

#include <algorithm>

namespace ostrel::modShellandWait {
namespace {

constexpr std::int32_t kSecondsOfDay = 86400;
// The time of day tells a second after this limit from the start of the wait, and no longer one.
constexpr std::int32_t kLongestTimeout = kSecondsOfDay - 2;
constexpr std::int32_t kShown = 5;

std::int32_t SecondsSinceMidnight(const platform::Clock& clock) {
  const platform::LocalTime now = clock.ToLocalTime(clock.Now());
  return (now.hour * 60 + now.minute) * 60 + now.second;
}

// A moment of today or, when it is past midnight, of tomorrow.
class Deadline {
 public:
  Deadline(std::int32_t start, std::int32_t timeout)
      : iStart(start), iEnd(start + std::min(timeout, kLongestTimeout)) {
    bTomorrow = iEnd >= kSecondsOfDay;
    if (bTomorrow) iEnd -= kSecondsOfDay;
  }

  bool HasPassed(std::int32_t now) const { return now > iEnd && (!bTomorrow || now < iStart); }

 private:
  std::int32_t iStart;
  std::int32_t iEnd;
  bool bTomorrow;
};

}  // namespace

bool ShellAndWait(const Surroundings& surroundings, TextView sCommand, std::int32_t lTimeout,
                  std::int16_t iWindowStyle, TextView sVerb) {
  platform::Processes& processes = surroundings.processes;
  const Deadline deadline(SecondsSinceMidnight(surroundings.clock), lTimeout);
  if (!Contains(LowerCase(sCommand), u".exe")) {
    return processes.OpenDocument(sCommand, sVerb, kShown);
  }
  const platform::ProcessId process = processes.StartProgram(sCommand, iWindowStyle);
  if (process == 0) return false;
  while (!processes.HasEnded(process)) {
    if (!surroundings.letEventsRun()) return false;
    if (deadline.HasPassed(SecondsSinceMidnight(surroundings.clock))) return false;
  }
  return true;
}

}  // namespace ostrel::modShellandWait
