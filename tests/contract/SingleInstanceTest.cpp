#include <gtest/gtest.h>

#include <cstdlib>

#include "platform/FileSystem.h"
#include "platform/SingleInstance.h"

namespace ostrel::platform {
namespace {

// Of this program's folder, so that two builds may be tested at the same time; the same in a child
// process. A mutex's name has no room for "\".
Text NameOf(TextView test) {
  return ReplaceAll(ProgramFolder(), u"\\", u"/") + u": " + Text(test) + u" <*?>";
}

TEST(SingleInstance, IsHeldOnce) {
  const Text name = NameOf(u"once");
  const auto first = AcquireInstanceLock(name);
  ASSERT_TRUE(first);

  EXPECT_FALSE(AcquireInstanceLock(name));
}

TEST(SingleInstance, IsFreeAgainWhenGivenBack) {
  const Text name = NameOf(u"given back");
  auto first = AcquireInstanceLock(name);
  ASSERT_TRUE(first);

  first.reset();

  EXPECT_TRUE(AcquireInstanceLock(name));
}

TEST(SingleInstance, StaysHeldThroughARefusedAttempt) {
  const Text name = NameOf(u"attempts");
  const auto first = AcquireInstanceLock(name);
  ASSERT_TRUE(first);

  EXPECT_FALSE(AcquireInstanceLock(name));

  EXPECT_FALSE(AcquireInstanceLock(name));
}

TEST(SingleInstance, OtherNamesAreOtherLocks) {
  const auto first = AcquireInstanceLock(NameOf(u"a/b"));
  ASSERT_TRUE(first);

  EXPECT_TRUE(AcquireInstanceLock(NameOf(u"a:b")));
  EXPECT_TRUE(AcquireInstanceLock(NameOf(u"a_b")));
}

TEST(SingleInstance, TakesALongName) {
  Text name = NameOf(u"long");
  name.resize(240, u'n');
  const auto first = AcquireInstanceLock(name);
  ASSERT_TRUE(first);

  EXPECT_FALSE(AcquireInstanceLock(name));
  EXPECT_TRUE(AcquireInstanceLock(name + u"n"));
}

TEST(SingleInstance, KnowsLongNamesApartByTheirEnds) {
  Text name = NameOf(u"ends");
  name.resize(150, u'n');
  const auto first = AcquireInstanceLock(name + u"1");
  ASSERT_TRUE(first);

  EXPECT_TRUE(AcquireInstanceLock(name + u"2"));
}

// The statements below run in a second process.

TEST(SingleInstanceDeathTest, KeepsAnotherProcessOut) {
  const Text name = NameOf(u"processes");
  const auto held = AcquireInstanceLock(name);

  EXPECT_EXIT(std::_Exit(AcquireInstanceLock(name) ? 1 : 0), testing::ExitedWithCode(0), "");

  EXPECT_TRUE(held);
}

TEST(SingleInstanceDeathTest, IsFreeAgainWhenItsProcessDies) {
  const Text name = NameOf(u"death");

  EXPECT_EXIT(
      {
        const auto held = AcquireInstanceLock(name);
        std::_Exit(held ? 0 : 1);
      },
      testing::ExitedWithCode(0), "");

  EXPECT_TRUE(AcquireInstanceLock(name));
}

}  // namespace
}  // namespace ostrel::platform
