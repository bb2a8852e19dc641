// One folder for the files of all inputs: making one for each would be most of the work.
#pragma once

#include "tests/support/ScratchFolder.h"

namespace ostrel::fuzz {

inline const ScratchFolder& Folder() {
  static const ScratchFolder folder;
  return folder;
}

}  // namespace ostrel::fuzz
