#include "tests/contract/SendConsoleSignal.h"

#include <windows.h>

namespace ostrel {

// A console of its own: the event goes to every process of the console.
void AskThisProcessToExit() {
  FreeConsole();
  AllocConsole();
  GenerateConsoleCtrlEvent(CTRL_C_EVENT, 0);
}

}  // namespace ostrel
