// When an idle QuickBooks session is closed, so that people can work in the company file.
#pragma once

#include <cstdint>

#include "platform/Clock.h"

namespace ostrel {

struct IdleClose {
  platform::TimePoint dCloseAt{};
  bool bAutoClose = true;  // cleared by OPENQB:, set by CLOSEQB: and the File menu's close command

  /// Pushes the moment `timeoutSeconds` ahead of now; 0 or less leaves it where it is.
  void Extend(platform::TimePoint now, std::int16_t timeoutSeconds) {
    if (timeoutSeconds > 0) dCloseAt = now + std::chrono::seconds(timeoutSeconds);
  }

  bool IsDue(platform::TimePoint now, std::int16_t timeoutSeconds) const {
    return bAutoClose && timeoutSeconds != 0 && now > dCloseAt;
  }
};

}  // namespace ostrel
