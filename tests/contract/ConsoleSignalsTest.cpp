#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>

#include "platform/Console.h"
#include "platform/EventLoop.h"
#include "tests/contract/SendConsoleSignal.h"

namespace ostrel::platform {
namespace {

constexpr std::chrono::seconds kLimit{30};

// Each statement runs in a second process, whose console is its own.

void ExitAfterTheLimit() { std::_Exit(99); }

TEST(ConsoleSignalsDeathTest, ExitRunsItsHandlerOnTheLoop) {
  EXPECT_EXIT(
      {
        Timer limit(kLimit, ExitAfterTheLimit);
        limit.SetEnabled(true);
        OnConsoleSignal(ConsoleSignal::kExit, [] { QuitEventLoop(7); });

        AskThisProcessToExit();

        std::_Exit(RunEventLoop());
      },
      testing::ExitedWithCode(7), "");
}

TEST(ConsoleSignalsDeathTest, AnExitHandlerMayReplaceItself) {
  EXPECT_EXIT(
      {
        Timer limit(kLimit, ExitAfterTheLimit);
        limit.SetEnabled(true);
        OnConsoleSignal(ConsoleSignal::kExit, [] {
          OnConsoleSignal(ConsoleSignal::kExit, [] { QuitEventLoop(8); });
          AskThisProcessToExit();
        });

        AskThisProcessToExit();

        std::_Exit(RunEventLoop());
      },
      testing::ExitedWithCode(8), "");
}

}  // namespace
}  // namespace ostrel::platform
