#include <gtest/gtest.h>

#include <set>

#include "platform/CodePage.h"

namespace ostrel::platform {
namespace {

TEST(CodePageWin32, EveryByteOfTheTableHasACharacter) {
  const auto characters = SystemCodePage();
  ASSERT_TRUE(characters) << "run on a system whose code page is single-byte";

  for (std::size_t byte = 0; byte < 0x80; ++byte) EXPECT_EQ((*characters)[byte], byte);
  for (std::size_t byte = 0x80; byte < 0x100; ++byte) EXPECT_GE((*characters)[byte], 0x80);
  EXPECT_EQ(std::set<char16_t>(characters->begin(), characters->end()).size(), 256u);
}

}  // namespace
}  // namespace ostrel::platform
