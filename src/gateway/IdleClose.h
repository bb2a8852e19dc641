// When an idle QuickBooks session is closed, so that people can work in the company file. Its clock
// runs on evenly: setting the machine's clock neither closes a session nor keeps it open.
#pragma once

#include <cstdint>

#include "platform/Clock.h"

namespace ostrel {

struct IdleClose {
  platform::SteadyPoint dCloseAt{};
  bool bAutoClose = true;  // cleared by OPENQB:, set by CLOSEQB: and the File menu's close command

  /// Pushes the moment `timeoutSeconds` ahead of now; 0 or less leaves it where it is.
  void Extend(platform::SteadyPoint now, std::int16_t timeoutSeconds) {
    if (timeoutSeconds > 0) dCloseAt = now + std::chrono::seconds(timeoutSeconds);
  }

  bool IsDue(platform::SteadyPoint now, std::int16_t timeoutSeconds) const {
    return bAutoClose && timeoutSeconds != 0 && now > dCloseAt;
  }
};

}  // namespace ostrel
