#pragma once

#include "util/RunTimeError.h"

namespace ostrel {

/// The number of the run-time error that the action raises, 0 when it raises none.
template <typename Action>
int ErrorOf(Action action) {
  try {
    action();
  } catch (const RunTimeError& error) {
    return error.Number;
  }
  return 0;
}

}  // namespace ostrel
