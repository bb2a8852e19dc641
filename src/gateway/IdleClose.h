// When an idle QuickBooks session is closed, so that people can work in the company file. Its clock
// runs on evenly: setting the machine's clock neither closes a session nor keeps it open.
#pragma once

#include <cstdint>

#include "platform/Clock.h"

namespace ostrel {

/// The form asks IsDue at each of its ticks, in which the session is closed. Everything that uses
/// the session extends the time when it ends, the connection test included.
struct IdleClose {
  /// The moment behind which an idle session is closed.
  platform::SteadyPoint dCloseAt{};
  /// Cleared by OPENQB:, which asks for a session that stays; set by CLOSEQB: and by the File
  /// menu's close command.
  bool bAutoClose = true;

  /// Pushes the moment `timeoutSeconds` ahead of now; 0 or less leaves it where it is.
  void Extend(platform::SteadyPoint now, std::int16_t timeoutSeconds) {
    if (timeoutSeconds > 0) dCloseAt = now + std::chrono::seconds(timeoutSeconds);
  }

  /// False for a timeout of 0, whatever the moment.
  bool IsDue(platform::SteadyPoint now, std::int16_t timeoutSeconds) const {
    return bAutoClose && timeoutSeconds != 0 && now > dCloseAt;
  }
};

}  // namespace ostrel
