#include "tests/contract/SendConsoleSignal.h"

#include <csignal>

namespace ostrel {

void AskThisProcessToExit() { std::raise(SIGTERM); }

}  // namespace ostrel
