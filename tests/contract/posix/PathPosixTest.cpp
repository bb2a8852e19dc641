// The paths of a folder with many entries: the number of times that it is read through is counted
// by the system itself, which tells a watch of each reading.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <cstring>
#include <filesystem>
#include <fstream>

#include "platform/FileSystem.h"
#include "platform/Files.h"
#include "platform/SystemError.h"
#include "platform/posix/Path.h"
#include "tests/support/ScratchFolder.h"

namespace ostrel::platform {
namespace {

constexpr int kTimes = 20;

/// The readings of one folder's entries. Equal ones are told once unless somebody looks in between.
class Readings {
 public:
  explicit Readings(const std::string& folder) {
    inotify_add_watch(descriptor, folder.c_str(), IN_ACCESS);
  }
  ~Readings() { close(descriptor); }
  Readings(const Readings&) = delete;
  Readings& operator=(const Readings&) = delete;

  /// Whether there was one since the last call.
  bool WasRead() {
    char bytes[16384];
    bool ofItself = false;
    for (ssize_t count; (count = read(descriptor, bytes, sizeof bytes)) > 0;) {
      for (const char* at = bytes; at < bytes + count;) {
        inotify_event event;
        std::memcpy(&event, at, sizeof event);
        at += sizeof event + event.len;
        ofItself = ofItself || event.len == 0;  // not of a file in it
      }
    }
    return ofItself;
  }

 private:
  int descriptor = inotify_init1(IN_CLOEXEC | IN_NONBLOCK);
};

class PathPosixTest : public testing::Test {
 protected:
  PathPosixTest() {
    oScratch.MakeFolder(u"Big");
    oScratch.MakeFolder(u"Big/History");
  }

  /// How many of so many calls read the folder Big through. Before each, an entry is added to it.
  template <typename Call>
  int CountReadings(Call call) {
    Readings readings(Big());
    int count = 0;
    for (int i = 0; i < kTimes; ++i) {
      oScratch.Write(u"Big/entry" + ToText(std::int64_t{i}), "");
      call(i);
      count += readings.WasRead() ? 1 : 0;
    }
    return count;
  }

  std::string Big() const { return ToUtf8(oScratch.Path()) + "/Big"; }

  const ScratchFolder oScratch;
};

TEST_F(PathPosixTest, AReadingIsCounted) {
  EXPECT_EQ(CountReadings([&](int) { ListFiles(oScratch.Path(u"Big"), u"*.osl"); }), kTimes);
}

TEST_F(PathPosixTest, ANewFileIsOpenedWithoutAReading) {
  const int readings = CountReadings([&](int i) {
    const Text path = oScratch.Path(u"Big\\new" + ToText(std::int64_t{i}));
    EXPECT_EQ(File().Open(path, FileAccess::kWrite, FileCreation::kOpenAlways), 0);
  });

  EXPECT_EQ(readings, 0);
}

TEST_F(PathPosixTest, AFolderInAnotherCaseIsLookedForOnce) {
  const int readings = CountReadings([&](int i) {
    const Text path = oScratch.Path(u"Big\\history\\new" + ToText(std::int64_t{i}));
    EXPECT_EQ(File().Open(path, FileAccess::kWrite, FileCreation::kOpenAlways), 0);
  });

  EXPECT_EQ(readings, 1);
}

TEST_F(PathPosixTest, AnExactFolderThatComesLaterTakesTheName) {
  ASSERT_TRUE(ResolveFolder(oScratch.Path(u"Big\\history")).ends_with("/Big/History"));
  oScratch.MakeFolder(u"Big/history");

  EXPECT_TRUE(ResolveFolder(oScratch.Path(u"Big\\history")).ends_with("/Big/history"));
}

TEST_F(PathPosixTest, AFolderThatHasGoneIsForgotten) {
  ASSERT_TRUE(ResolveFolder(oScratch.Path(u"Big\\history")).ends_with("/Big/History"));
  std::filesystem::rename(Big() + "/History", Big() + "/HISTORY");

  EXPECT_TRUE(ResolveFolder(oScratch.Path(u"Big\\history")).ends_with("/Big/HISTORY"));
}

TEST_F(PathPosixTest, AFolderIsTheSameOneForAsLongAsItIsThere) {
  ASSERT_TRUE(ResolveFolder(oScratch.Path(u"Big\\history")).ends_with("/Big/History"));
  oScratch.MakeFolder(u"Big/HISTORY");

  EXPECT_TRUE(ResolveFolder(oScratch.Path(u"Big\\history")).ends_with("/Big/History"));
}

TEST_F(PathPosixTest, AFolderThatComesIsFoundAtOnce) {
  for (int i = 0; i < kTimes; ++i) {
    const Text name = u"folder" + ToText(std::int64_t{i});
    ASSERT_FALSE(FolderExists(oScratch.Path(u"Big\\" + name)));
    oScratch.MakeFolder(u"Big/F" + name.substr(1));

    EXPECT_TRUE(FolderExists(oScratch.Path(u"Big\\" + name)));
  }
}

// Not before the folder's last change is so long ago that the next one cannot have the same time.
TEST_F(PathPosixTest, AMissingFolderIsLookedForOnceWhereNothingChanges) {
  const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(20);
  Readings readings(Big());
  bool reads = true;
  while (reads && std::chrono::steady_clock::now() < limit) {
    ResolveFolder(oScratch.Path(u"Big\\missing\\a"));
    reads = readings.WasRead();
    usleep(50'000);
  }
  EXPECT_FALSE(reads);

  oScratch.MakeFolder(u"Big/Missing");

  EXPECT_TRUE(ResolveFolder(oScratch.Path(u"Big\\missing")).ends_with("/Big/Missing"));
}

}  // namespace
}  // namespace ostrel::platform
