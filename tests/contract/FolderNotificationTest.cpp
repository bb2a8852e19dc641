#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <string>

#include "platform/EventLoop.h"
#include "platform/FileSystem.h"
#include "platform/FolderNotification.h"
#include "platform/SocketNotifications.h"
#include "platform/Sockets.h"
#include "platform/SystemError.h"
#include "tests/contract/SecondProcess.h"
#include "tests/contract/UnderWine.h"
#include "tests/support/ScratchFolder.h"

namespace ostrel::platform {

void PrintTo(FolderNotification::WaitResult result, std::ostream* out) {
  static constexpr const char* kNames[] = {"kChanged", "kTimePassed", "kClosed", "kLoopQuits"};
  *out << kNames[static_cast<std::size_t>(result)];
}

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;
using Result = FolderNotification::WaitResult;

constexpr milliseconds kLong{20'000};  // ends early unless something is wrong
constexpr milliseconds kShort{300};    // long enough for what is not to come
constexpr int kBurst = 1000;
constexpr char kOrder[] = "OSTREL_TEST_FOLDER_ORDER";

// The orders that the second process carries out in a folder, by the first word of each.

void Write(const std::filesystem::path& file) { std::ofstream(file) << "text"; }

void CarryOut(const std::string& verb, const std::filesystem::path& folder) {
  if (verb == "create") Write(folder / "a.osl");
  if (verb == "rewrite") Write(folder / "old.osl");
  if (verb == "delete") std::filesystem::remove(folder / "old.osl");
  if (verb == "rename") std::filesystem::rename(folder / "outside" / "b.osl", folder / "b.osl");
  if (verb == "remove") std::filesystem::remove_all(folder);
  for (int i = 0; verb == "burst" && i < kBurst; ++i) {
    Write(folder / ("burst" + std::to_string(i) + ".osl"));
  }
}

TEST(FolderNotificationWriter, CarriesOutItsOrder) {
  const ScratchFolder own;
  const char* const given = std::getenv(kOrder);
  const std::string order = given != nullptr ? given : "create " + ToUtf8(own.Path());
  const std::size_t verbEnd = order.find(' ');
  const std::filesystem::path folder = order.substr(verbEnd + 1);
  const auto before = std::filesystem::last_write_time(folder);

  CarryOut(order.substr(0, verbEnd), folder);

  std::error_code gone;
  const auto after = std::filesystem::last_write_time(folder, gone);
  EXPECT_TRUE(gone || after >= before);
}

class FolderNotificationTest : public testing::Test {
 protected:
  FolderNotificationTest() {
    oFolder.Write(u"old.osl", "1");
    oFolder.MakeFolder(u"outside");
    oFolder.Write(u"outside/b.osl", "1");
  }
  void SetUp() override { ASSERT_EQ(oNotification->Open(oFolder.Path()), 0); }

  bool AnotherProcess(const std::string& verb) const {
    SecondProcess process("FolderNotificationWriter.CarriesOutItsOrder", kOrder,
                          verb + " " + ToUtf8(oFolder.Path()));
    return process.Passed();
  }
  Result Wait(milliseconds time) const { return oNotification->WaitWithEvents(time); }
  /// Takes what belongs to changes that were told already.
  void AwaitQuiet() const {
    while (Wait(kShort) == Result::kChanged) ASSERT_EQ(oNotification->Rearm(), 0);
  }

  ScratchFolder oFolder;
  std::unique_ptr<FolderNotification> oNotification = MakeFolderNotification();
};

TEST_F(FolderNotificationTest, TellsOfAFileThatIsCreated) {
  ASSERT_TRUE(AnotherProcess("create"));

  EXPECT_EQ(Wait(kLong), Result::kChanged);
}

TEST_F(FolderNotificationTest, TellsOfAFileThatIsRenamedIn) {
  ASSERT_TRUE(AnotherProcess("rename"));

  EXPECT_EQ(Wait(kLong), Result::kChanged);
}

TEST_F(FolderNotificationTest, TellsOfAFileThatIsRewritten) {
  ASSERT_TRUE(AnotherProcess("rewrite"));

  EXPECT_EQ(Wait(kLong), Result::kChanged);
}

TEST_F(FolderNotificationTest, TellsOfAFileThatIsDeleted) {
  ASSERT_TRUE(AnotherProcess("delete"));

  EXPECT_EQ(Wait(kLong), Result::kChanged);
}

TEST_F(FolderNotificationTest, TellsWhileItWaits) {
  SecondProcess process("FolderNotificationWriter.CarriesOutItsOrder", kOrder,
                        "create " + ToUtf8(oFolder.Path()));

  EXPECT_EQ(Wait(kLong), Result::kChanged);

  EXPECT_TRUE(process.Passed());
}

TEST_F(FolderNotificationTest, SaysNothingWhenNothingHasChanged) {
  const auto begin = steady_clock::now();

  EXPECT_EQ(Wait(kShort), Result::kTimePassed);

  EXPECT_GE(steady_clock::now() - begin, kShort);
}

TEST_F(FolderNotificationTest, SaysNothingOfSubfoldersAndTheirFiles) {
  oFolder.MakeFolder(u"sub");
  oFolder.Write(u"sub/c.osl", "1");

  EXPECT_EQ(Wait(kShort), Result::kTimePassed);
}

TEST_F(FolderNotificationTest, TellsOfWhatChangesAfterItWasArmedAgain) {
  oFolder.Write(u"a.osl", "1");
  ASSERT_EQ(Wait(kLong), Result::kChanged);
  ASSERT_EQ(oNotification->Rearm(), 0);
  AwaitQuiet();

  oFolder.Write(u"b.osl", "1");

  EXPECT_EQ(Wait(kLong), Result::kChanged);
}

TEST_F(FolderNotificationTest, TellsOfWhatChangesBeforeItIsArmedAgain) {
  AwaitQuiet();
  oFolder.Write(u"a.osl", "1");
  ASSERT_EQ(Wait(kLong), Result::kChanged);
  DoEventsFor(kShort);  // the rest of that change

  oFolder.Write(u"b.osl", "1");
  ASSERT_EQ(oNotification->Rearm(), 0);

  EXPECT_EQ(Wait(kLong), Result::kChanged);
}

TEST_F(FolderNotificationTest, LosesNothingOfABurst) {
  SecondProcess process("FolderNotificationWriter.CarriesOutItsOrder", kOrder,
                        "burst " + ToUtf8(oFolder.Path()));

  while (ListFiles(oFolder.Path(), u"burst*.osl").size() < kBurst) {
    ASSERT_EQ(Wait(kLong), Result::kChanged);
    ASSERT_EQ(oNotification->Rearm(), 0);
  }

  EXPECT_TRUE(process.Passed());
}

TEST_F(FolderNotificationTest, AFolderThatIsRemovedIsAChangeAndCannotBeArmedAgain) {
  SecondProcess process("FolderNotificationWriter.CarriesOutItsOrder", kOrder,
                        "remove " + ToUtf8(oFolder.Path()));

  // Its files go first. Wine keeps a folder for as long as someone watches it, and says nothing.
  int error = 0;
  Result last = Result::kChanged;
  while (error == 0 && last == Result::kChanged) {
    last = Wait(UnderWine() ? kShort * 10 : kLong);
    error = oNotification->Rearm();
  }

  EXPECT_TRUE(process.Passed());
  EXPECT_EQ(last, UnderWine() ? Result::kTimePassed : Result::kChanged);
  EXPECT_EQ(error == 0, UnderWine());
  oNotification->Close();
  EXPECT_FALSE(FolderExists(oFolder.Path()));
}

class LostFolderNotificationTest : public FolderNotificationTest {
 protected:
  void SetUp() override {
    FolderNotificationTest::SetUp();
    std::filesystem::rename(oFolder.Path(), oElsewhere.Path() + u"/moved");
    oNotification->LookAtFolder();
    while (oNotification->Rearm() == 0) Wait(milliseconds(100));
  }

  ScratchFolder oElsewhere;
};

TEST_F(LostFolderNotificationTest, LetsTheTimePassUntilItIsClosed) {
  const auto begin = steady_clock::now();
  int ticks = 0;
  Timer timer(milliseconds(5), [&] { ++ticks; });
  timer.SetEnabled(true);

  EXPECT_TRUE(oNotification->IsOpen());
  EXPECT_EQ(Wait(kShort), Result::kTimePassed);

  EXPECT_GE(steady_clock::now() - begin, kShort);
  EXPECT_GT(ticks, 0);
  EXPECT_NE(oNotification->Rearm(), 0);
}

TEST_F(LostFolderNotificationTest, IsSeenWhenItIsBackAndIsNoChangeUntilItIsOpened) {
  const bool before = oNotification->LookAtFolder();
  std::filesystem::rename(oElsewhere.Path() + u"/moved", oFolder.Path());

  EXPECT_FALSE(before);
  EXPECT_TRUE(oNotification->LookAtFolder());
  EXPECT_EQ(Wait(milliseconds(1)), Result::kTimePassed);
}

TEST_F(LostFolderNotificationTest, StaysAsItIsWhenItCannotBeOpened) {
  EXPECT_NE(oNotification->Open(oFolder.Path()), 0);

  EXPECT_TRUE(oNotification->IsOpen());
  EXPECT_EQ(Wait(milliseconds(1)), Result::kTimePassed);
}

TEST_F(LostFolderNotificationTest, IsWatchedAgainWhenItIsBack) {
  std::filesystem::rename(oElsewhere.Path() + u"/moved", oFolder.Path());

  ASSERT_EQ(oNotification->Open(oFolder.Path()), 0);
  oFolder.Write(u"a.osl", "1");

  EXPECT_EQ(Wait(kLong), Result::kChanged);
  EXPECT_EQ(oNotification->Rearm(), 0);
}

TEST_F(FolderNotificationTest, AFolderAboveThatIsMovedTakesItAway) {
  const ScratchFolder above;
  above.MakeFolder(u"a");
  above.MakeFolder(u"a/watched");
  ASSERT_EQ(oNotification->Open(above.Path(u"a\\watched")), 0);

  std::error_code refused;  // where the system keeps what is watched in its place
  std::filesystem::rename(above.Path() + u"/a", above.Path() + u"/b", refused);

  EXPECT_EQ(Wait(kShort), Result::kTimePassed);  // a wait does not ask for the folder
  EXPECT_EQ(oNotification->LookAtFolder(), static_cast<bool>(refused));
  const auto expected = refused ? Result::kTimePassed : Result::kChanged;
  EXPECT_EQ(Wait(kShort), expected);
  EXPECT_EQ(oNotification->Rearm() == 0, expected == Result::kTimePassed);
}

TEST_F(FolderNotificationTest, ALookAtAFolderThatIsThereIsNoChange) {
  EXPECT_TRUE(oNotification->LookAtFolder());

  EXPECT_EQ(Wait(kShort), Result::kTimePassed);
  EXPECT_EQ(oNotification->Rearm(), 0);
}

TEST_F(FolderNotificationTest, WatchesOneFolderAtATime) {
  const ScratchFolder other;
  ASSERT_EQ(oNotification->Open(other.Path()), 0);

  oFolder.Write(u"a.osl", "1");
  EXPECT_EQ(Wait(kShort), Result::kTimePassed);

  other.Write(u"a.osl", "1");
  EXPECT_EQ(Wait(kLong), Result::kChanged);
}

TEST_F(FolderNotificationTest, AFailedOpenChangesNothing) {
  EXPECT_EQ(oNotification->Open(oFolder.Path(u"missing")), kFileNotFound);

  oFolder.Write(u"a.osl", "1");
  EXPECT_EQ(Wait(kLong), Result::kChanged);
}

TEST_F(FolderNotificationTest, ATimerTicksDuringAWait) {
  int ticks = 0;
  Timer timer(milliseconds(2), [&] {
    if (++ticks == 5) oFolder.Write(u"a.osl", "1");
  });
  timer.SetEnabled(true);

  EXPECT_EQ(Wait(kLong), Result::kChanged);

  EXPECT_GE(ticks, 5);
}

TEST_F(FolderNotificationTest, AWaitEndsWhenItIsClosedFromInside) {
  const auto begin = steady_clock::now();
  Timer timer(milliseconds(5), [&] { oNotification->Close(); });
  timer.SetEnabled(true);

  EXPECT_EQ(Wait(kLong), Result::kClosed);

  EXPECT_LT(steady_clock::now() - begin, kLong);
  EXPECT_FALSE(oNotification->IsOpen());
}

TEST_F(FolderNotificationTest, AWaitEndsWhenAnotherFolderIsOpenedFromInside) {
  Timer timer(milliseconds(5), [&] {
    timer.SetEnabled(false);
    oNotification->Open(oFolder.Path(u"outside"));
  });
  timer.SetEnabled(true);

  EXPECT_EQ(Wait(kLong), Result::kClosed);

  oFolder.Write(u"outside/a.osl", "1");
  EXPECT_EQ(Wait(kLong), Result::kChanged);
}

TEST_F(FolderNotificationTest, AChangeInTheRoundOfTheCloseIsNotTold) {
  Timer timer(milliseconds(5), [&] {
    oFolder.Write(u"a.osl", "1");
    oNotification->Close();
  });
  timer.SetEnabled(true);

  EXPECT_EQ(Wait(kLong), Result::kClosed);
}

TEST_F(FolderNotificationTest, AWaitEndsWhenTheLoopQuits) {
  const auto begin = steady_clock::now();
  Timer timer(milliseconds(5), [] { QuitEventLoop(4); });
  timer.SetEnabled(true);

  EXPECT_EQ(Wait(kLong), Result::kLoopQuits);
  oFolder.Write(u"a.osl", "1");
  EXPECT_EQ(Wait(kLong), Result::kLoopQuits);

  EXPECT_LT(steady_clock::now() - begin, kLong);
  EXPECT_EQ(RunEventLoop(), 4);
}

TEST(FolderNotification, IsClosedAtFirst) {
  const auto notification = MakeFolderNotification();

  EXPECT_FALSE(notification->IsOpen());
  EXPECT_EQ(notification->WaitWithEvents(kLong), Result::kClosed);
  EXPECT_EQ(notification->Rearm(), kInvalidHandle);
  notification->Close();
  notification->Close();
}

TEST(FolderNotification, AMissingFolderIsNotOpened) {
  const ScratchFolder folder;
  const auto notification = MakeFolderNotification();

  EXPECT_EQ(notification->Open(folder.Path(u"missing")), kFileNotFound);
  EXPECT_EQ(notification->Open(folder.Path(u"missing\\below")), kPathNotFound);
  EXPECT_NE(notification->Open(u""), 0);

  EXPECT_FALSE(notification->IsOpen());
}

TEST(FolderNotification, AFileIsNoFolder) {
  const ScratchFolder folder;
  folder.Write(u"a.osl", "1");
  const auto notification = MakeFolderNotification();

  EXPECT_EQ(notification->Open(folder.Path(u"a.osl")), kPathNotFound);
}

TEST(FolderNotification, TakesANameOfAnyLanguage) {
  const ScratchFolder folder;
  const Text name = u"Aufträge \u65E5\u672C";
  folder.MakeFolder(name);
  const auto notification = MakeFolderNotification();

  ASSERT_EQ(notification->Open(folder.Path(name)), 0);
  folder.Write(name + u"/a.osl", "1");

  EXPECT_EQ(notification->WaitWithEvents(kLong), Result::kChanged);
}

TEST(FolderNotification, TakesASeparatorAtTheEnd) {
  const ScratchFolder folder;
  const auto notification = MakeFolderNotification();

  ASSERT_EQ(notification->Open(folder.Path() + u"\\"), 0);
  folder.Write(u"a.osl", "1");

  EXPECT_EQ(notification->WaitWithEvents(kLong), Result::kChanged);
}

/// Writes a file when a connection comes.
class Doorbell final : public SocketSink {
 public:
  explicit Doorbell(const ScratchFolder& folder) : oFolder(folder) {
    notifier.StartUp();
    notifier.ConnectSink(*this);
    listener = sockets.Open(SocketProtocol::kTcp).value;
    client = sockets.Open(SocketProtocol::kTcp).value;
    sockets.Bind(listener, {kLoopback, 0});
    sockets.Listen(listener, 5);
    notifier.Select(listener);
  }
  ~Doorbell() {
    sockets.Close(client);
    sockets.Close(listener);
    notifier.DisconnectSink();
    notifier.CleanUp();
  }
  Doorbell(const Doorbell&) = delete;
  Doorbell& operator=(const Doorbell&) = delete;

  void Ring() { sockets.Connect(client, sockets.Properties(listener).value.local); }

  void OnSocket(SocketHandle socket, SocketEvent event, int /*error*/) noexcept override {
    if (socket != listener || event != SocketEvent::kAccept) return;
    sockets.Close(sockets.Accept(listener).value);
    rang = true;
    nested = IsNestedHandler();
    oFolder.Write(u"rang.osl", "1");
  }
  void OnLookUp(LookUpHandle, int, std::uint32_t) noexcept override {}

  bool rang = false, nested = false;

 private:
  static constexpr std::uint32_t kLoopback = 0x7F000001;

  const ScratchFolder& oFolder;
  SocketLayer& sockets = SystemSockets();
  SocketNotifications& notifier = SystemSocketNotifications();
  SocketHandle listener = kNoSocket, client = kNoSocket;
};

TEST_F(FolderNotificationTest, ASocketIsServedDuringAWait) {
  Doorbell bell(oFolder);
  bell.Ring();

  EXPECT_EQ(Wait(kLong), Result::kChanged);

  EXPECT_TRUE(bell.rang);
  EXPECT_FALSE(bell.nested);
}

TEST_F(FolderNotificationTest, HandlersDuringAHandlersWaitAreNested) {
  Doorbell bell(oFolder);
  Result result = Result::kTimePassed;
  Timer timer(milliseconds(1), [&] {
    bell.Ring();
    result = Wait(kLong);
    QuitEventLoop(0);
  });
  timer.SetEnabled(true);

  RunEventLoop();

  EXPECT_EQ(result, Result::kChanged);
  EXPECT_TRUE(bell.nested);
}

}  // namespace
}  // namespace ostrel::platform
