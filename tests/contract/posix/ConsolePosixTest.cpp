#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

#include "platform/Console.h"

namespace ostrel::platform {
namespace {

TEST(Console, ArgumentsAreUtf8) {
  std::vector<std::string> own{"program", "caf\xC3\xA9", "bad\xFF"};
  std::vector<char*> argv{own[0].data(), own[1].data(), own[2].data()};

  const auto arguments = ProgramArguments(3, argv.data());

  EXPECT_EQ(arguments, (std::vector<Text>{u"caf\u00E9", u"bad\uFFFD"}));
}

TEST(ConsoleDeathTest, APipeWithoutAReaderDoesNotEndTheProgram) {
  EXPECT_EXIT(
      {
        int ends[2];
        const bool piped = pipe(ends) == 0 && dup2(ends[1], STDOUT_FILENO) >= 0;
        close(ends[0]);
        WriteStandardOutput(u"nobody listens");
        std::_Exit(piped ? 0 : 1);
      },
      testing::ExitedWithCode(0), "");
}

std::string ReadToEnd(int descriptor) {
  std::string all;
  char piece[4096];
  for (ssize_t length = 0; (length = read(descriptor, piece, sizeof piece)) > 0;) {
    all.append(piece, static_cast<std::size_t>(length));
  }
  return all;
}

TEST(ConsoleDeathTest, AFullPipeThatDoesNotBlockGetsEverything) {
  EXPECT_EXIT(
      {
        const std::string bytes(1 << 20, 'x');
        int ends[2];
        bool isRight = pipe(ends) == 0 && dup2(ends[1], STDOUT_FILENO) >= 0 &&
                       fcntl(STDOUT_FILENO, F_SETFL, O_NONBLOCK) == 0;
        close(ends[1]);
        std::thread reader([&] { isRight = isRight && ReadToEnd(ends[0]) == bytes; });
        WriteStandardOutputBytes(bytes);
        close(STDOUT_FILENO);
        reader.join();
        std::_Exit(isRight ? 0 : 1);
      },
      testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace ostrel::platform
