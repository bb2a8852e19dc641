#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

#include "platform/Console.h"
#include "platform/FileSystem.h"

namespace ostrel::platform {
namespace {

// A file with this content that is gone with the object.
class TemporaryFile {
 public:
  explicit TemporaryFile(const std::string& content)
      : sPath(MakeTemporaryFile(TemporaryFolder(), u"con")) {
    std::ofstream(Name(), std::ios::binary) << content;
  }
  ~TemporaryFile() { EraseFile(sPath); }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  /// For the C++ library, which takes "/" on every system.
  std::string Name() const { return ToUtf8(ReplaceAll(sPath, u"\\", u"/")); }

 private:
  Text sPath;
};

// Every byte, line ends and Ctrl-Z included, more than once through any buffer.
std::string AllBytes() {
  std::string bytes;
  for (int i = 0; i < 300'000; ++i) bytes.push_back(static_cast<char>(i % 256));
  return bytes;
}

TEST(Console, ArgumentsAreThoseAfterTheProgramsName) {
  std::vector<std::string> own = testing::internal::GetArgvs();
  std::vector<char*> argv;
  for (std::string& argument : own) argv.push_back(argument.data());

  const std::vector<Text> arguments = ProgramArguments(static_cast<int>(argv.size()), argv.data());

  std::vector<Text> expected;
  for (std::size_t i = 1; i < own.size(); ++i) expected.push_back(FromUtf8(own[i]));
  EXPECT_EQ(arguments, expected);
}

// Runs in a second process, whose standard output ends up in a file.
template <typename Write>
void ExitWithZeroWhenOutputIs(const std::string& expected, Write write) {
  std::string bytes;
  {
    const TemporaryFile file("");
    if (std::freopen(file.Name().c_str(), "wb", stdout) != nullptr) {
      write();
      std::ifstream written(file.Name(), std::ios::binary);
      bytes.assign(std::istreambuf_iterator<char>(written), {});
    }
    std::fclose(stdout);
  }
  std::_Exit(bytes == expected ? 0 : 1);
}

TEST(ConsoleDeathTest, OutputIntoAFileIsUtf8) {
  EXPECT_EXIT(ExitWithZeroWhenOutputIs("h\xC3\xA9 \xE2\x82\xAC\r\n",
                                       [] { WriteStandardOutput(u"h\u00E9 \u20AC\r\n"); }),
              testing::ExitedWithCode(0), "");
}

TEST(ConsoleDeathTest, BytesArriveAsTheyAre) {
  const std::string bytes = AllBytes();

  EXPECT_EXIT(ExitWithZeroWhenOutputIs(bytes, [&] { WriteStandardOutputBytes(bytes); }),
              testing::ExitedWithCode(0), "");
}

TEST(ConsoleDeathTest, ErrorsGoToStandardError) {
  EXPECT_EXIT(
      {
        WriteStandardError(u"wrong \u00E9");
        std::_Exit(0);
      },
      testing::ExitedWithCode(0), "wrong \xC3\xA9");
}

// Runs in a second process, whose standard input comes from a file with this content.
void ExitWithZeroWhenInputIsReadAs(const std::string& content) {
  std::optional<std::string> input;
  {
    const TemporaryFile file(content);
    if (std::freopen(file.Name().c_str(), "rb", stdin) != nullptr) input = ReadStandardInput();
    std::fclose(stdin);
  }
  std::_Exit(input == content ? 0 : 1);
}

TEST(ConsoleDeathTest, InputIsReadToItsEndByteForByte) {
  EXPECT_EXIT(ExitWithZeroWhenInputIsReadAs(AllBytes()), testing::ExitedWithCode(0), "");
}

TEST(ConsoleDeathTest, EmptyInputIsEmptyAndNotUnreadable) {
  EXPECT_EXIT(ExitWithZeroWhenInputIsReadAs(""), testing::ExitedWithCode(0), "");
}

TEST(ConsoleDeathTest, ClosedInputCannotBeRead) {
  EXPECT_EXIT(
      {
        std::fclose(stdin);
        std::_Exit(ReadStandardInput() ? 1 : 0);
      },
      testing::ExitedWithCode(0), "");
}

TEST(ConsoleDeathTest, AReaderThatHasGoneIsIgnored) {
  EXPECT_EXIT(
      {
        std::fclose(stdout);
        WriteStandardOutput(u"nobody listens");
        std::_Exit(0);
      },
      testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace ostrel::platform
