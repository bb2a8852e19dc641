#include "platform/Console.h"

#include <poll.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>

namespace ostrel::platform {
namespace {

// A handler that does nothing turns the signal into an error of write. Ignoring the signal would do
// the same here, and be inherited by every program that is started.
void SurviveVanishedReaders() {
  static const auto previous = std::signal(SIGPIPE, [](int) {});
  static_cast<void>(previous);
}

bool CanTryAgain(int descriptor) {
  if (errno == EAGAIN) {
    pollfd writable{descriptor, POLLOUT, 0};
    return poll(&writable, 1, -1) > 0 || errno == EINTR;
  }
  return errno == EINTR;
}

void WriteAll(int descriptor, std::string_view bytes) {
  SurviveVanishedReaders();
  while (!bytes.empty()) {
    const ssize_t written = write(descriptor, bytes.data(), bytes.size());
    if (written >= 0) {
      bytes.remove_prefix(static_cast<std::size_t>(written));
    } else if (!CanTryAgain(descriptor)) {
      return;
    }
  }
}

}  // namespace

std::vector<Text> ProgramArguments(int argc, char* argv[]) {
  std::vector<Text> arguments;
  for (int i = 1; i < argc; ++i) arguments.push_back(FromUtf8(argv[i]));
  return arguments;
}

std::optional<std::string> ReadStandardInput() {
  std::string input;
  std::array<char, 65536> piece;
  for (;;) {
    const ssize_t length = read(STDIN_FILENO, piece.data(), piece.size());
    if (length == 0) return input;
    if (length > 0) {
      input.append(piece.data(), static_cast<std::size_t>(length));
    } else if (errno != EINTR) {
      return std::nullopt;
    }
  }
}

void WriteStandardOutput(TextView text) { WriteAll(STDOUT_FILENO, ToUtf8(text)); }

void WriteStandardError(TextView text) { WriteAll(STDERR_FILENO, ToUtf8(text)); }

void WriteStandardOutputBytes(std::string_view bytes) { WriteAll(STDOUT_FILENO, bytes); }

}  // namespace ostrel::platform
