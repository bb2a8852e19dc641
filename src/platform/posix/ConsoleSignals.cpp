// Signals interrupt anywhere, so all a signal does is put its number into a pipe that the loop
// watches.
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <system_error>
#include <utility>

#include "platform/Console.h"
#include "platform/posix/LoopWatch.h"

namespace ostrel::platform {
namespace {

constexpr std::array<std::pair<int, ConsoleSignal>, 4> kSignals{{
    {SIGINT, ConsoleSignal::kExit},
    {SIGTERM, ConsoleSignal::kExit},
    {SIGHUP, ConsoleSignal::kExit},
    {SIGUSR1, ConsoleSignal::kUser},
}};

// Started by nohup, or the like.
bool IsToOutliveItsTerminal(int number) {
  struct sigaction action {};
  return number == SIGHUP && sigaction(number, nullptr, &action) == 0 &&
         action.sa_handler == SIG_IGN;
}

class Pipe {
 public:
  Pipe() {
    if (pipe2(oEnds.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
      throw std::system_error(errno, std::generic_category(), "console signals");
    }
  }
  ~Pipe() {
    close(oEnds[0]);
    close(oEnds[1]);
  }
  Pipe(const Pipe&) = delete;
  Pipe& operator=(const Pipe&) = delete;

  int ReadEnd() const { return oEnds[0]; }
  int WriteEnd() const { return oEnds[1]; }

 private:
  std::array<int, 2> oEnds;
};

class Signals {
 public:
  Signals() { iWriteEnd = oPipe.WriteEnd(); }
  ~Signals() {
    SetHandler(ConsoleSignal::kExit, {});
    SetHandler(ConsoleSignal::kUser, {});
  }
  Signals(const Signals&) = delete;
  Signals& operator=(const Signals&) = delete;

  void SetHandler(ConsoleSignal signal, std::function<void()> handler);

 private:
  static void OnSignal(int number);
  void Dispatch();

  static inline int iWriteEnd = -1;

  Pipe oPipe;
  std::array<std::function<void()>, 3> handlers;
  LoopWatch oWatch{oPipe.ReadEnd(), POLLIN, [this](short) { Dispatch(); }};
};

void Signals::OnSignal(int number) {
  const int before = errno;
  const char byte = static_cast<char>(number);
  // A full pipe holds enough of them.
  [[maybe_unused]] const ssize_t written = write(iWriteEnd, &byte, 1);
  errno = before;
}

void Signals::SetHandler(ConsoleSignal signal, std::function<void()> handler) {
  struct sigaction action {};
  action.sa_handler = handler ? &Signals::OnSignal : SIG_DFL;
  action.sa_flags = SA_RESTART;
  handlers[static_cast<std::size_t>(signal)] = std::move(handler);
  for (const auto& [number, meaning] : kSignals) {
    if (meaning == signal && !IsToOutliveItsTerminal(number)) sigaction(number, &action, nullptr);
  }
}

void Signals::Dispatch() {
  char byte = 0;
  while (read(oPipe.ReadEnd(), &byte, 1) == 1) {
    for (const auto& [number, meaning] : kSignals) {
      // A copy: the handler may put another one in its place.
      const auto handler = handlers[static_cast<std::size_t>(meaning)];
      if (number == byte && handler) handler();
    }
  }
}

}  // namespace

void OnConsoleSignal(ConsoleSignal signal, std::function<void()> handler) {
  static Signals signals;
  signals.SetHandler(signal, std::move(handler));
}

}  // namespace ostrel::platform
