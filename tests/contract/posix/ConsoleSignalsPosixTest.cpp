#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>

#include "platform/Console.h"
#include "platform/EventLoop.h"

namespace ostrel::platform {
namespace {

// Each statement runs in a second process, whose signals are its own.

int ExitCodeAfter(int signalNumber, ConsoleSignal signal) {
  OnConsoleSignal(signal, [] { QuitEventLoop(7); });
  std::raise(signalNumber);
  return RunEventLoop();
}

TEST(ConsoleSignalsDeathTest, TheTerminalsEndIsExit) {
  EXPECT_EXIT(std::_Exit(ExitCodeAfter(SIGHUP, ConsoleSignal::kExit)), testing::ExitedWithCode(7),
              "");
}

TEST(ConsoleSignalsDeathTest, TheTerminalsEndIsNothingToAProgramThatIsToOutliveIt) {
  EXPECT_EXIT(
      {
        std::signal(SIGHUP, SIG_IGN);
        OnConsoleSignal(ConsoleSignal::kExit, [] { QuitEventLoop(7); });
        std::raise(SIGHUP);
        DoEvents();
        QuitEventLoop(8);
        std::_Exit(RunEventLoop());
      },
      testing::ExitedWithCode(8), "");
}

TEST(ConsoleSignalsDeathTest, InterruptAndTerminateAreExit) {
  EXPECT_EXIT(std::_Exit(ExitCodeAfter(SIGINT, ConsoleSignal::kExit)), testing::ExitedWithCode(7),
              "");
  EXPECT_EXIT(std::_Exit(ExitCodeAfter(SIGTERM, ConsoleSignal::kExit)), testing::ExitedWithCode(7),
              "");
}

TEST(ConsoleSignalsDeathTest, TheFirstUserSignalTogglesTheCommLog) {
  EXPECT_EXIT(std::_Exit(ExitCodeAfter(SIGUSR1, ConsoleSignal::kUser)), testing::ExitedWithCode(7),
              "");
}

TEST(ConsoleSignalsDeathTest, WithoutAHandlerTheSystemDecides) {
  EXPECT_EXIT(
      {
        OnConsoleSignal(ConsoleSignal::kExit, [] {});
        OnConsoleSignal(ConsoleSignal::kExit, {});
        std::raise(SIGTERM);
      },
      testing::KilledBySignal(SIGTERM), "");
}

TEST(ConsoleSignalsDeathTest, ASignalWithinAHandlerIsServedToo) {
  EXPECT_EXIT(
      {
        int served = 0;
        OnConsoleSignal(ConsoleSignal::kUser, [&] {
          if (++served == 1) {
            std::raise(SIGUSR1);
          } else {
            QuitEventLoop(served);
          }
        });
        std::raise(SIGUSR1);
        std::_Exit(RunEventLoop());
      },
      testing::ExitedWithCode(2), "");
}

}  // namespace
}  // namespace ostrel::platform
