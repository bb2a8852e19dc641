#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include "platform/SystemError.h"
#include "tests/support/ScratchFolder.h"
#include "tests/unit/doubles/FakeFolderNotification.h"
#include "transports/clsWatchFolder.h"

namespace ostrel {
namespace {

using doubles::FakeFolderNotification;
using std::chrono::milliseconds;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using Result = platform::FolderNotification::WaitResult;

constexpr int kRoundsUntilNextTry = 20;  // of 100 ms

class WatchFolderTest : public testing::Test {
 protected:
  WatchFolderTest() {
    oWatcher.FolderChanged = [this](TextView path) {
      Changes.emplace_back(path);
      sHistory += "changed ";
    };
    oWatcher.ShowMessage = [this](TextView text) { Messages.emplace_back(text); };
    oWatcher.DoEvents = [this] { sHistory += "events "; };
  }

  void Prepare(Result result, std::function<void()> during = {}) {
    oFolder.Steps.push_back({result, std::move(during)});
  }
  void PrepareRounds(int count) {
    for (int i = 0; i < count; ++i) Prepare(Result::kTimePassed);
  }

 private:
  std::unique_ptr<FakeFolderNotification> oOwned = std::make_unique<FakeFolderNotification>();

 protected:
  FakeFolderNotification& oFolder = *oOwned;
  clsWatchFolder oWatcher{std::move(oOwned)};
  std::vector<Text> Changes, Messages;
  std::string sHistory;
};

TEST_F(WatchFolderTest, WatchesInRoundsOf100Milliseconds) {
  PrepareRounds(3);

  oWatcher.WatchFolder(u"C:\\Process");

  EXPECT_THAT(oFolder.Opened, ElementsAre(u"C:\\Process"));
  EXPECT_THAT(oFolder.Waits, SizeIs(4));
  EXPECT_THAT(oFolder.Waits, Each(milliseconds(100)));
  EXPECT_THAT(Changes, IsEmpty());
}

TEST_F(WatchFolderTest, TellsOfEachChange) {
  Prepare(Result::kChanged);
  PrepareRounds(2);
  Prepare(Result::kChanged);

  oWatcher.WatchFolder(u"C:\\Process");

  EXPECT_THAT(Changes, ElementsAre(u"C:\\Process", u"C:\\Process"));
}

TEST_F(WatchFolderTest, LetsEventsRunAfterEachChange) {
  Prepare(Result::kChanged);
  Prepare(Result::kChanged);

  oWatcher.WatchFolder(u"C:\\Process");

  EXPECT_EQ(sHistory, "changed events changed events ");
}

TEST_F(WatchFolderTest, ArmsAgainBeforeTheEventSoThatNoChangeDuringItIsLost) {
  int armedAtEvent = 0;
  oWatcher.FolderChanged = [&](TextView) { armedAtEvent = oFolder.iRearmed; };
  Prepare(Result::kChanged);

  oWatcher.WatchFolder(u"C:\\Process");

  EXPECT_EQ(armedAtEvent, 1);
  EXPECT_EQ(oFolder.iRearmed, 1);
}

TEST_F(WatchFolderTest, AFolderThatCannotBeWatchedIsAFatalError) {
  oFolder.OpenErrors = {platform::kPathNotFound};

  oWatcher.WatchFolder(u"C:\\No Folder");

  EXPECT_THAT(Messages, ElementsAre(u"Fatal Error: Unable to start watching the folder: "
                                    u"C:\\No Folder"));
  EXPECT_THAT(oFolder.Waits, IsEmpty());
}

TEST_F(WatchFolderTest, AFatalErrorWithNobodyToTellIsSurvived) {
  oFolder.OpenErrors = {platform::kPathNotFound};
  oWatcher.ShowMessage = nullptr;

  oWatcher.WatchFolder(u"C:\\No Folder");

  EXPECT_THAT(oFolder.Waits, IsEmpty());
}

TEST_F(WatchFolderTest, EventsWithoutListenersAreSurvived) {
  oWatcher.FolderChanged = nullptr;
  Prepare(Result::kChanged);

  oWatcher.WatchFolder(u"C:\\Process");

  EXPECT_EQ(oFolder.iRearmed, 1);
}

TEST_F(WatchFolderTest, ThePathMayGoAwayDuringTheWatch) {
  auto path = std::make_unique<Text>(u"C:\\A folder with a name that is on the heap");
  const Text copy = *path;
  Prepare(Result::kChanged, [&] { path.reset(); });

  oWatcher.WatchFolder(*path);

  EXPECT_THAT(Changes, ElementsAre(copy));
}

TEST_F(WatchFolderTest, EndsWhenItIsStoppedFromInsideAWait) {
  Prepare(Result::kTimePassed, [&] { oWatcher.WatchStop(); });
  PrepareRounds(5);

  oWatcher.WatchFolder(u"C:\\Process");

  EXPECT_THAT(oFolder.Waits, SizeIs(1));
  EXPECT_FALSE(oFolder.IsOpen());
}

TEST_F(WatchFolderTest, EndsWhenItIsStoppedFromInsideItsEvent) {
  oWatcher.FolderChanged = [&](TextView path) {
    Changes.emplace_back(path);
    oWatcher.WatchStop();
  };
  Prepare(Result::kChanged);
  Prepare(Result::kChanged);

  oWatcher.WatchFolder(u"C:\\Process");

  EXPECT_THAT(Changes, SizeIs(1));
  EXPECT_FALSE(oFolder.IsOpen());
}

TEST_F(WatchFolderTest, AChangeInTheRoundOfTheStopIsNotTold) {
  bool stopping = false;
  oWatcher.DoEvents = [&] { stopping = true; };
  Prepare(Result::kChanged, [&] { oWatcher.WatchStop(); });

  oWatcher.WatchFolder(u"C:\\Process");

  EXPECT_TRUE(stopping);
  EXPECT_THAT(Changes, IsEmpty());
}

TEST_F(WatchFolderTest, AStopLetsPendingEventsRunAndThenLetsTheFolderGo) {
  bool openDuringEvents = false;
  oWatcher.DoEvents = [&] { openDuringEvents = oFolder.IsOpen(); };
  Prepare(Result::kTimePassed, [&] {
    oWatcher.WatchStop();
    EXPECT_FALSE(oFolder.IsOpen());
  });

  oWatcher.WatchFolder(u"C:\\Process");

  EXPECT_TRUE(openDuringEvents);
  EXPECT_EQ(oFolder.iClosed, 1);
}

TEST_F(WatchFolderTest, AStopInsideAStopIsHarmless) {
  int depth = 0;
  oWatcher.DoEvents = [&] {
    if (++depth < 3) oWatcher.WatchStop();
  };
  Prepare(Result::kTimePassed, [&] { oWatcher.WatchStop(); });

  oWatcher.WatchFolder(u"C:\\Process");

  EXPECT_EQ(depth, 3);
  EXPECT_EQ(oFolder.iClosed, 1);
}

TEST_F(WatchFolderTest, AStopWithoutAWatchDoesNothing) {
  oWatcher.WatchStop();

  EXPECT_EQ(sHistory, "");
  EXPECT_EQ(oFolder.iClosed, 0);
}

TEST_F(WatchFolderTest, WatchesAgainAfterAStop) {
  Prepare(Result::kTimePassed, [&] { oWatcher.WatchStop(); });
  oWatcher.WatchFolder(u"C:\\First");
  Prepare(Result::kChanged);

  oWatcher.WatchFolder(u"C:\\Second");

  EXPECT_THAT(oFolder.Opened, ElementsAre(u"C:\\First", u"C:\\Second"));
  EXPECT_THAT(Changes, ElementsAre(u"C:\\Second"));
}

TEST_F(WatchFolderTest, ASecondWatchInsideTheFirstDoesNothing) {
  Prepare(Result::kTimePassed, [&] {
    oWatcher.WatchFolder(u"C:\\Second");
    oWatcher.WatchFile(u"C:\\Second", u"a.osl");
  });
  Prepare(Result::kChanged);

  oWatcher.WatchFolder(u"C:\\First");

  EXPECT_THAT(oFolder.Opened, ElementsAre(u"C:\\First"));
  EXPECT_THAT(Changes, ElementsAre(u"C:\\First"));
}

TEST_F(WatchFolderTest, TheEndOfTheLoopEndsTheWatch) {
  Prepare(Result::kLoopQuits);
  Prepare(Result::kChanged);

  oWatcher.WatchFolder(u"C:\\Process");

  EXPECT_THAT(oFolder.Waits, SizeIs(1));
  EXPECT_FALSE(oFolder.IsOpen());
}

TEST_F(WatchFolderTest, AnEventThatRaisesEndsTheWatch) {
  oWatcher.FolderChanged = [](TextView) { throw std::bad_alloc(); };
  Prepare(Result::kChanged);

  EXPECT_THROW(oWatcher.WatchFolder(u"C:\\Process"), std::bad_alloc);

  EXPECT_FALSE(oFolder.IsOpen());
}

class LostFolderTest : public WatchFolderTest {
 protected:
  LostFolderTest() {
    oFolder.RearmErrors = {platform::kPathNotFound};
    Prepare(Result::kChanged);
  }
};

TEST_F(LostFolderTest, IsToldAsAChangeAndKeepsTheWatchOnTheStack) {
  PrepareRounds(kRoundsUntilNextTry - 1);

  oWatcher.WatchFolder(u"C:\\Process");

  EXPECT_THAT(Changes, SizeIs(1));
  EXPECT_THAT(Messages, IsEmpty());
  EXPECT_THAT(oFolder.Opened, SizeIs(1));
}

TEST_F(LostFolderTest, IsTriedAgainEveryTwoSecondsAndToldWhenItIsBack) {
  oFolder.OpenErrors = {0, platform::kPathNotFound, platform::kPathNotFound, 0};
  PrepareRounds(3 * kRoundsUntilNextTry);

  oWatcher.WatchFolder(u"C:\\Process");

  EXPECT_THAT(oFolder.Opened, SizeIs(4));
  EXPECT_THAT(Changes, SizeIs(2));
  EXPECT_THAT(Messages, IsEmpty());
}

TEST_F(LostFolderTest, IsWatchedAsBeforeOnceItIsBack) {
  PrepareRounds(kRoundsUntilNextTry + 5);
  Prepare(Result::kChanged);

  oWatcher.WatchFolder(u"C:\\Process");

  EXPECT_THAT(Changes, SizeIs(3));
  EXPECT_EQ(oFolder.iRearmed, 2);  // what was opened afresh is armed already
}

TEST_F(LostFolderTest, MayGoAwayAgain) {
  oFolder.RearmErrors.push_back(platform::kPathNotFound);
  PrepareRounds(kRoundsUntilNextTry);
  Prepare(Result::kChanged);
  PrepareRounds(kRoundsUntilNextTry);

  oWatcher.WatchFolder(u"C:\\Process");

  EXPECT_THAT(oFolder.Opened, SizeIs(3));
  EXPECT_THAT(Changes, SizeIs(4));
}

TEST_F(LostFolderTest, CanBeStopped) {
  PrepareRounds(3);
  Prepare(Result::kTimePassed, [&] { oWatcher.WatchStop(); });
  PrepareRounds(kRoundsUntilNextTry);

  oWatcher.WatchFolder(u"C:\\Process");

  EXPECT_THAT(oFolder.Waits, SizeIs(5));
  EXPECT_THAT(oFolder.Opened, SizeIs(1));
}

TEST_F(LostFolderTest, IsNotOpenedAgainAfterAStopInTheRoundOfTheTry) {
  PrepareRounds(kRoundsUntilNextTry - 1);
  Prepare(Result::kTimePassed, [&] { oWatcher.WatchStop(); });

  oWatcher.WatchFolder(u"C:\\Process");

  EXPECT_THAT(oFolder.Opened, SizeIs(1));
  EXPECT_FALSE(oFolder.IsOpen());
}

TEST_F(LostFolderTest, CanBeStoppedInTheEventThatTellsOfIt) {
  oWatcher.FolderChanged = [&](TextView) { oWatcher.WatchStop(); };
  PrepareRounds(kRoundsUntilNextTry);

  oWatcher.WatchFolder(u"C:\\Process");

  EXPECT_THAT(oFolder.Waits, SizeIs(1));
}

TEST_F(LostFolderTest, EndsWithTheLoop) {
  Prepare(Result::kLoopQuits);
  PrepareRounds(kRoundsUntilNextTry);

  oWatcher.WatchFolder(u"C:\\Process");

  EXPECT_THAT(oFolder.Waits, SizeIs(2));
}

class WatchFileTest : public WatchFolderTest {
 protected:
  WatchFileTest() {
    oWatcher.FileChanged = [this] { ++iTold; };
    oDisk.Write(u"rates.txt", "1");
    oBegin = std::filesystem::last_write_time(Path());
  }

  /// Counted from when the file was written.
  void SetTime(int count) {
    std::filesystem::last_write_time(Path(), oBegin + std::chrono::seconds(count));
  }
  std::filesystem::path Path() const { return std::filesystem::path(oDisk.Path()) / "rates.txt"; }

  ScratchFolder oDisk;
  std::filesystem::file_time_type oBegin;
  int iTold = 0;
};

TEST_F(WatchFileTest, TellsWhenTheFileHasBecomeLater) {
  Prepare(Result::kChanged, [&] { SetTime(5); });

  oWatcher.WatchFile(oDisk.Path(), u"rates.txt");

  EXPECT_EQ(iTold, 1);
  EXPECT_THAT(oFolder.Opened, ElementsAre(oDisk.Path()));
  EXPECT_THAT(Changes, IsEmpty());
}

TEST_F(WatchFileTest, SaysNothingOfOtherChangesInTheFolder) {
  Prepare(Result::kChanged, [&] { oDisk.Write(u"other.txt", "2"); });

  oWatcher.WatchFile(oDisk.Path(), u"rates.txt");

  EXPECT_EQ(iTold, 0);
}

TEST_F(WatchFileTest, TellsOfEachTimeOnceAndNeverOfAnEarlierOne) {
  Prepare(Result::kChanged, [&] { SetTime(10); });
  Prepare(Result::kChanged);
  Prepare(Result::kChanged, [&] { SetTime(5); });
  Prepare(Result::kChanged, [&] { SetTime(10); });

  oWatcher.WatchFile(oDisk.Path(), u"rates.txt");

  EXPECT_EQ(iTold, 1);
}

TEST_F(WatchFileTest, TellsOfAFileThatWasMissing) {
  std::filesystem::remove(Path());
  Prepare(Result::kChanged);
  Prepare(Result::kChanged, [&] { oDisk.Write(u"rates.txt", "2"); });

  oWatcher.WatchFile(oDisk.Path(), u"rates.txt");

  EXPECT_EQ(iTold, 1);
}

TEST_F(WatchFileTest, SaysNothingOfAFileThatGoesAwayAndComesBackAsItWas) {
  Prepare(Result::kChanged, [&] { std::filesystem::remove(Path()); });
  Prepare(Result::kChanged, [&] {
    oDisk.Write(u"rates.txt", "1");
    SetTime(-5);
  });

  oWatcher.WatchFile(oDisk.Path(), u"rates.txt");

  EXPECT_EQ(iTold, 0);
}

TEST_F(WatchFileTest, TakesAFolderThatEndsInASeparator) {
  Prepare(Result::kChanged, [&] { SetTime(5); });
  Prepare(Result::kLoopQuits);
  oWatcher.WatchFile(oDisk.Path() + u"\\", u"rates.txt");
  Prepare(Result::kChanged, [&] { SetTime(10); });

  oWatcher.WatchFile(oDisk.Path() + u"/", u"rates.txt");

  EXPECT_EQ(iTold, 2);
}

TEST_F(WatchFileTest, AFolderThatCannotBeWatchedIsAFatalError) {
  oFolder.OpenErrors = {platform::kPathNotFound};

  oWatcher.WatchFile(u"C:\\No Folder", u"rates.txt");

  EXPECT_THAT(Messages, ElementsAre(u"Fatal Error: Unable to start watching the folder: "
                                    u"C:\\No Folder"));
}

TEST(WatchFolder, IsStoppedByItsEnd) {
  auto notification = std::make_unique<FakeFolderNotification>();
  FakeFolderNotification& folder = *notification;
  bool eventsRan = false;
  auto watcher = std::make_unique<clsWatchFolder>(std::move(notification));
  watcher->DoEvents = [&] { eventsRan = folder.IsOpen(); };
  folder.Open(u"C:\\Process");

  watcher.reset();

  EXPECT_TRUE(eventsRan);
}

}  // namespace
}  // namespace ostrel
