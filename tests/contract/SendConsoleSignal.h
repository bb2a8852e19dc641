// The signal with which a person in front of the program ends it.
#pragma once

namespace ostrel {

/// To this process: SIGTERM, or Ctrl-C in a console of its own.
void AskThisProcessToExit();

}  // namespace ostrel
