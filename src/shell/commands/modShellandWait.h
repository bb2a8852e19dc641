// Starts a program or opens a document and waits until it has ended, while events go on.
#pragma once

#include <cstdint>
#include <functional>

#include "platform/Clock.h"
#include "platform/Processes.h"
#include "util/Text.h"

namespace ostrel::modShellandWait {

/// The system, as the wait uses it; tests bring their own.
struct Surroundings {
  platform::Processes& processes;
  const platform::Clock& clock;
  /// Dispatches events for a moment, so that waiting costs no time of the processor; false when the
  /// program ends.
  std::function<bool()> letEventsRun;
};

/// True when the process has ended within the limit. A command with ".exe" in it is started as a
/// program with iWindowStyle (platform/Processes.h), anything else is opened as a document with
/// sVerb, and there is no process to wait for then. lTimeout: seconds; a day or more counts as two
/// seconds less than a day. False as well for what cannot be started, and as soon as the program
/// itself ends.
bool ShellAndWait(const Surroundings& surroundings, TextView sCommand, std::int32_t lTimeout,
                  std::int16_t iWindowStyle, TextView sVerb);

}  // namespace ostrel::modShellandWait
