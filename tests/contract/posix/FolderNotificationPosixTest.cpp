// What is POSIX' own under the folder notification: a queue that runs over, names in another case.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "platform/EventLoop.h"
#include "platform/FolderNotification.h"
#include "tests/support/ScratchFolder.h"

namespace ostrel::platform {
namespace {

using std::chrono::milliseconds;
using Result = FolderNotification::WaitResult;

constexpr milliseconds kLong{20'000};

int QueueLength() {
  int length = 16384;
  std::ifstream("/proc/sys/fs/inotify/max_queued_events") >> length;
  return length;
}

TEST(FolderNotificationPosix, AQueueThatRunsOverIsAChange) {
  const ScratchFolder folder;
  const auto notification = MakeFolderNotification();
  ASSERT_EQ(notification->Open(folder.Path()), 0);
  folder.MakeFolder(u"a");
  folder.MakeFolder(u"b");
  const std::string first = ToUtf8(folder.Path()) + "/a", second = ToUtf8(folder.Path()) + "/b";

  // Attributes of subfolders do not count by themselves.
  for (int i = 0; i <= QueueLength() / 2; ++i) {
    chmod(first.c_str(), 0700);
    chmod(second.c_str(), 0700);
  }

  EXPECT_EQ(notification->WaitWithEvents(kLong), Result::kChanged);
}

TEST(FolderNotificationPosix, TheFoldersNameIsFoundInAnyCase) {
  const ScratchFolder folder;
  folder.MakeFolder(u"Process");
  const auto notification = MakeFolderNotification();

  ASSERT_EQ(notification->Open(folder.Path(u"PROCESS")), 0);
  folder.Write(u"Process/a.osl", "1");

  EXPECT_EQ(notification->WaitWithEvents(kLong), Result::kChanged);
}

TEST(FolderNotificationPosix, AFolderInThePlaceOfTheWatchedOneIsAnotherFolder) {
  const ScratchFolder folder;
  folder.MakeFolder(u"above");
  folder.MakeFolder(u"above/watched");
  const auto notification = MakeFolderNotification();
  ASSERT_EQ(notification->Open(folder.Path(u"above\\watched")), 0);

  std::filesystem::rename(folder.Path() + u"/above", folder.Path() + u"/moved");
  folder.MakeFolder(u"above");
  folder.MakeFolder(u"above/watched");

  EXPECT_TRUE(notification->LookAtFolder());
  EXPECT_EQ(notification->WaitWithEvents(milliseconds(1)), Result::kChanged);
  EXPECT_NE(notification->Rearm(), 0);
}

TEST(FolderNotificationPosix, ItsDescriptorsAreGivenBack) {
  const ScratchFolder folder;
  const auto notification = MakeFolderNotification();
  const auto count = [] {
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
  };
  DoEvents();
  const auto before = count();

  for (int i = 0; i < 10; ++i) ASSERT_EQ(notification->Open(folder.Path()), 0);
  notification->Close();

  EXPECT_EQ(count(), before);
}

}  // namespace
}  // namespace ostrel::platform
