// What the program is doing at the moment, as the parts of the main form tell each other.
#pragma once

#include <cstdint>

#include "transports/WatchState.h"

namespace ostrel {

struct RunState : WatchState {
  bool bSocketRunning = false;     // the socket server has been started
  std::int16_t iActiveSocket = 0;  // connection whose request is being answered; below 1: none
  bool bDebug = false;             // the debug switch was given
};

}  // namespace ostrel
