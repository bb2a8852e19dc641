// The promises of our own profile functions alone; Windows compares names by rules of its own.
#include <gtest/gtest.h>

#include "platform/Profile.h"
#include "tests/support/ScratchFolder.h"

namespace ostrel::platform {
namespace {

TEST(ProfilePosix, NamesIgnoreTheCaseOfEveryLetter) {
  ScratchFolder folder;
  folder.Write(u"osl.ini", "[\xC9\x8A]\r\n\x9F=1\r\n");

  std::string value;
  ReadProfileValue(folder.Path(u"osl.ini"), "\xE9\x9A", "\xFF", "fallback", 100, value);

  EXPECT_EQ(value, "1");
}

}  // namespace
}  // namespace ostrel::platform
