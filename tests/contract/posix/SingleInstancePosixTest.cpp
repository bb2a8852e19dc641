// The lock is the machine's, whatever the environment of its users, unless they ask for another
// one.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

#include "platform/SingleInstance.h"
#include "tests/support/ScratchFolder.h"

namespace ostrel::platform {
namespace {

// Sets a variable of the environment for as long as it lives.
class Setting {
 public:
  Setting(const char* name, const std::string& value) : cName(name) {
    const char* before = getenv(name);
    bBefore = before != nullptr;
    if (bBefore) sBefore = before;
    setenv(name, value.c_str(), 1);
  }
  ~Setting() { bBefore ? setenv(cName, sBefore.c_str(), 1) : unsetenv(cName); }
  Setting(const Setting&) = delete;
  Setting& operator=(const Setting&) = delete;

 private:
  const char* cName;
  bool bBefore = false;
  std::string sBefore;
};

// Of this test's folder, so that two builds may be tested at the same time.
class SingleInstancePosix : public testing::Test {
 protected:
  Text Name() const { return oFolder.Path(u"lock"); }

  ScratchFolder oFolder;
};

TEST_F(SingleInstancePosix, IsTheSameWhateverFoldersAUserHas) {
  const auto held = AcquireInstanceLock(Name());
  ASSERT_TRUE(held);
  ScratchFolder other;
  const std::string path = ToUtf8(ReplaceAll(other.Path(u""), u"\\", u"/"));

  const Setting runtime("XDG_RUNTIME_DIR", path);
  const Setting temporary("TMPDIR", path);

  EXPECT_FALSE(AcquireInstanceLock(Name()));
  EXPECT_EQ(other.EntryCount(), 0u);
}

// Run by a superuser, the second process is another user's.
TEST_F(SingleInstancePosix, KeepsAnotherUserOut) {
  const auto held = AcquireInstanceLock(Name());
  ASSERT_TRUE(held);
  constexpr uid_t kNobody = 65534;

  EXPECT_EXIT(
      {
        const bool changed = geteuid() != 0 || setuid(kNobody) == 0;
        std::_Exit(changed && !AcquireInstanceLock(Name()) ? 0 : 1);
      },
      testing::ExitedWithCode(0), "");
}

TEST_F(SingleInstancePosix, IsHeldOnceForEachInstanceThatIsAskedFor) {
  const auto held = AcquireInstanceLock(Name());
  const Setting first("OSTREL_INSTANCE", "first");
  const auto firstHeld = AcquireInstanceLock(Name());

  EXPECT_TRUE(held);
  EXPECT_TRUE(firstHeld);
  EXPECT_FALSE(AcquireInstanceLock(Name()));
  const Setting second("OSTREL_INSTANCE", "second");
  EXPECT_TRUE(AcquireInstanceLock(Name()));
}

}  // namespace
}  // namespace ostrel::platform
