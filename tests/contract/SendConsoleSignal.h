// What the person in front of the program does.
#pragma once

namespace ostrel {

/// To this process: SIGTERM, or Ctrl-C in a console of its own.
void AskThisProcessToExit();

}  // namespace ostrel
