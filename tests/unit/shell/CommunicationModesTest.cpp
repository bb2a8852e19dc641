#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <deque>
#include <utility>

#include "shell/commands/CommunicationModes.h"
#include "shell/forms/Menus.h"
#include "tests/support/ScratchFolder.h"
#include "tests/unit/doubles/FakeFolderNotification.h"
#include "tests/unit/doubles/FakeSocketService.h"
#include "tests/unit/doubles/FakeTrace.h"
#include "tests/unit/doubles/FakeWindow.h"
#include "util/RunTimeError.h"

namespace ostrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr MenuItem kItems[] = {
    mnuCommunicationsFolder, mnuCommunicationsSocket,   mnuCommunicationsD3Linux,
    mnuCommunicationsD3NT,   mnuCommunicationsUniverse, mnuCommunicationsOI,
};

MATCHER_P(BeginsWith, start, "") { return arg.starts_with(start); }

class CommunicationModesTest : public testing::Test {
 protected:
  CommunicationModesTest() {
    Settings.sIniFile = Folder.Path(u"osl.ini");
    Settings.lSocketPort = 5000;
    Settings.lBlockSize = 10000;
    Settings.sProcessPath = Folder.Path(u"process");
    Settings.sResponsePath = Folder.Path(u"response");
    Transport.SwitchTicks = [this](bool on) { tmrSocketProcess.SetEnabled(on); };
    Watch.SwitchTicks = [this](bool on) { tmrProcess.SetEnabled(on); };
    Folder.Write(u"osl.ini", "[Communication]\r\nType=0\r\nFolder=0\r\nSocket=0\r\n");
  }

  std::vector<MenuItem> MarkedItems() const {
    std::vector<MenuItem> marked;
    for (const MenuItem item : kItems) {
      const auto found = Window.Checked.find(item);
      if (found != Window.Checked.end() && found->second) marked.push_back(item);
    }
    return marked;
  }
  bool FileSays(const std::string& line) const {
    return Folder.Read(u"osl.ini").find(line) != std::string::npos;
  }

  ScratchFolder Folder;
  doubles::FakeWindow Window;
  doubles::FakeTrace Trace;
  doubles::FakeNetwork Network;
  AppSettings Settings;
  RequestGate Gate;
  SettingsFile File{Settings, Window, Trace, Folder.Path(), [] {}};
  SocketTransport Transport{Settings, Trace, Gate, [](Text&, Text&) { return 0.0F; },
                            [this](SocketTransport&, ostrel::Trace&) {
                              return std::make_unique<doubles::FakeSocketService>(Network);
                            }};
  FolderTransport Watch{Settings, Trace, Gate, [](Text&, Text&) { return 0.0F; },
                        [this] {
                          auto notification = std::make_unique<doubles::FakeFolderNotification>();
                          notification->Steps = std::exchange(FolderSteps, {});
                          auto watcher = std::make_shared<clsWatchFolder>(std::move(notification));
                          watcher->FolderChanged = [](TextView) {};
                          return watcher;
                        }};
  std::deque<doubles::FakeFolderNotification::Step> FolderSteps;  // of the next watcher
  platform::Timer tmrSocketProcess{std::chrono::milliseconds(100), [] {}};
  platform::Timer tmrProcess{std::chrono::milliseconds(100), [] {}};
  CommunicationModes Modes{Settings, File, Window, Trace, Transport, Watch};
};

TEST_F(CommunicationModesTest, RunsNothingWithBothTransportsOff) {
  Modes.ApplyCommunications();

  EXPECT_EQ(Network.iServersCreated, 0);
  EXPECT_THAT(MarkedItems(), IsEmpty());
  EXPECT_FALSE(Transport.IsRunning());
}

TEST_F(CommunicationModesTest, StartsTheSocketServer) {
  Settings.bSocketServer = true;

  Modes.ApplyCommunications();

  EXPECT_THAT(Network.PortsAsked, ElementsAre(5000));
  EXPECT_THAT(Trace.Status, ElementsAre(u"Listenning on Socket 5000"));
  EXPECT_TRUE(Transport.IsRunning());
  EXPECT_TRUE(tmrSocketProcess.Enabled());
  EXPECT_THAT(MarkedItems(), ElementsAre(mnuCommunicationsSocket));
}

TEST_F(CommunicationModesTest, OnlyEnablesTheTimerWhenTheServerListensAlready) {
  Settings.bSocketServer = true;
  Modes.ApplyCommunications();
  tmrSocketProcess.SetEnabled(false);

  Modes.ApplyCommunications();

  EXPECT_EQ(Network.PortsAsked.size(), 1u);
  EXPECT_EQ(Trace.Status.size(), 1u);
  EXPECT_TRUE(tmrSocketProcess.Enabled());
}

TEST_F(CommunicationModesTest, StopsTheSocketServerUnderAFixedNumber) {
  // Kept: the line does not follow the port.
  Settings.bSocketServer = true;
  Modes.ApplyCommunications();
  Trace.Status.clear();

  Settings.bSocketServer = false;
  Modes.ApplyCommunications();

  EXPECT_THAT(Trace.Status, ElementsAre(u"Stop Listenning on Socket 4999"));
  EXPECT_EQ(Network.iStops, 1);
  EXPECT_EQ(Network.iServersAlive, 0);
  EXPECT_FALSE(Transport.IsRunning());
  EXPECT_FALSE(tmrSocketProcess.Enabled());
}

TEST_F(CommunicationModesTest, CreatesTheServerAnewWhenSocketIsToggledOffAndOn) {
  Settings.bSocketServer = true;
  Modes.ApplyCommunications();

  Modes.mnuCommunicationsSocket_Click();
  const int alive = Network.iServersAlive;
  Modes.mnuCommunicationsSocket_Click();

  EXPECT_EQ(alive, 0);
  EXPECT_EQ(Network.iServersCreated, 2);
  EXPECT_TRUE(Transport.IsRunning());
}

TEST_F(CommunicationModesTest, TakesNoMoreAndLeavesTheConnectionsOpen) {
  Settings.bSocketServer = true;
  Modes.ApplyCommunications();

  Modes.TakeNoMore();
  Transport.oSocketServer_DataArrival(1, u"late\x1F");

  EXPECT_EQ(Network.iListenersStopped, 1);
  EXPECT_EQ(Network.iStops, 0);
  EXPECT_EQ(Network.iServersAlive, 1);
  EXPECT_THAT(Trace.CommLog, testing::Not(testing::Contains(BeginsWith(u"Socket 1"))));
}

TEST_F(CommunicationModesTest, TakesNoMoreWithoutAServer) {
  Modes.TakeNoMore();

  EXPECT_EQ(Network.iListenersStopped, 0);
}

TEST_F(CommunicationModesTest, LeavesAServerThatIsBeingStartedAlone) {
  Settings.bSocketServer = true;
  Network.DuringStart = [this] { Modes.TakeNoMore(); };

  Modes.ApplyCommunications();

  EXPECT_EQ(Network.iListenersStopped, 0);
}

TEST_F(CommunicationModesTest, ForgetsTheRequestsOfAStoppedServer) {
  Settings.bSocketServer = true;
  Modes.ApplyCommunications();
  Transport.oSocketServer_DataArrival(1, u"half");

  Modes.mnuCommunicationsSocket_Click();
  Modes.mnuCommunicationsSocket_Click();
  Trace.CommLog.clear();
  Transport.oSocketServer_DataArrival(1, u"\x1F");

  EXPECT_THAT(Trace.CommLog, testing::Contains(u"Socket 1\tStorage Array Position: 2"));
}

TEST_F(CommunicationModesTest, TellsThatThePortCannotBeHad) {
  Settings.bSocketServer = true;
  Settings.bFolderWatch = true;
  Network.bPortTaken = true;

  Modes.ApplyCommunications();

  EXPECT_THAT(Window.Messages, ElementsAre(u"Unable to start the Socket Server on Port 5000"));
  EXPECT_FALSE(Settings.bSocketServer);
  EXPECT_FALSE(Transport.IsRunning());
  EXPECT_THAT(MarkedItems(), ElementsAre(mnuCommunicationsFolder));
  EXPECT_THAT(Trace.Status, IsEmpty());
}

TEST_F(CommunicationModesTest, TriesThePortAgainOnTheNextToggle) {
  Settings.bSocketServer = true;
  Network.bPortTaken = true;
  Modes.ApplyCommunications();

  Network.bPortTaken = false;
  Modes.mnuCommunicationsSocket_Click();

  EXPECT_TRUE(Transport.IsRunning());
}

TEST_F(CommunicationModesTest, ClearsTheFlavourMarkWhenItsOnlyTransportCannotStart) {
  Network.bPortTaken = true;

  Modes.ChooseFlavour(2);

  EXPECT_THAT(MarkedItems(), IsEmpty());
}

struct FlavourCase {
  std::int32_t lCommType;
  MenuItem iItem;
  TextView sName;
  bool bSocketServer;
};

class Flavours : public CommunicationModesTest, public testing::WithParamInterface<FlavourCase> {};

TEST_P(Flavours, SetTransportsMarkLogAndKey) {
  Settings.bFolderWatch = GetParam().bSocketServer;

  Modes.ChooseFlavour(GetParam().lCommType);

  EXPECT_EQ(Settings.bSocketServer, GetParam().bSocketServer);
  EXPECT_EQ(Settings.bFolderWatch, !GetParam().bSocketServer);
  EXPECT_THAT(MarkedItems(), ElementsAre(GetParam().iItem));
  EXPECT_THAT(Trace.CommLog, ElementsAre(u"Communication Set\t" + Text(GetParam().sName)));
  EXPECT_TRUE(FileSays("Type=" + std::to_string(GetParam().lCommType)));
}

INSTANTIATE_TEST_SUITE_P(
    All, Flavours,
    testing::Values(FlavourCase{1, mnuCommunicationsD3Linux, u"D3Linux", true},
                    FlavourCase{2, mnuCommunicationsD3NT, u"D3/NT", true},
                    FlavourCase{3, mnuCommunicationsUniverse, u"Universe", true},
                    FlavourCase{4, mnuCommunicationsOI, u"OpenInsight", false}));

TEST_F(CommunicationModesTest, StopsTheSocketServerForTheFlavourWithoutOne) {
  Modes.ChooseFlavour(1);

  Modes.ChooseFlavour(4);

  EXPECT_TRUE(Trace.HasStatus(u"Stop Listenning on Socket 4999"));
  EXPECT_EQ(Network.iServersAlive, 0);
  EXPECT_TRUE(Settings.bFolderWatch);
}

TEST_F(CommunicationModesTest, LogsTheTransportsOfNoFlavour) {
  Settings.bSocketServer = true;

  Modes.ApplyCommunications();

  EXPECT_THAT(Trace.CommLog, ElementsAre(u"Communication Set\tFolder Watch = False",
                                         u"Communication Set\tSocket Watch = True"));
}

TEST_F(CommunicationModesTest, LeavesFlagsAndMarksAloneForAnUnknownFlavour) {
  Settings.bSocketServer = true;
  Settings.lCommType = 7;

  Modes.ApplyCommunications();

  EXPECT_THAT(Window.Checked, IsEmpty());
  EXPECT_TRUE(Transport.IsRunning());
}

TEST_F(CommunicationModesTest, ResetsTheFlavourWithATransportToggle) {
  Modes.ChooseFlavour(2);
  const bool written = FileSays("Type=2");

  Modes.mnuCommunicationsSocket_Click();

  EXPECT_TRUE(written);
  EXPECT_TRUE(FileSays("Type=0"));
  EXPECT_EQ(Settings.lCommType, 0);
  EXPECT_THAT(MarkedItems(), IsEmpty());
}

TEST_F(CommunicationModesTest, NeverWritesTheTransportKeys) {
  // Kept: toggling lasts until the next start.
  Modes.mnuCommunicationsFolder_Click();
  Modes.mnuCommunicationsSocket_Click();

  EXPECT_TRUE(Settings.bFolderWatch && Settings.bSocketServer);
  EXPECT_TRUE(FileSays("Folder=0"));
  EXPECT_TRUE(FileSays("Socket=0"));
}

TEST_F(CommunicationModesTest, KeepsAFolderThatIsOnThroughAReload) {
  Modes.mnuCommunicationsFolder_Click();

  File.LoadSettings();

  EXPECT_TRUE(Settings.bFolderWatch);
  EXPECT_TRUE(FileSays("Folder=0"));
}

TEST_F(CommunicationModesTest, AppliesAToggleThatComesWhileItStartsTheServerAfterwards) {
  Settings.bSocketServer = true;
  bool aliveDuringStart = false;
  Network.DuringStart = [&] {
    Network.DuringStart = nullptr;
    Modes.mnuCommunicationsSocket_Click();
    aliveDuringStart = Network.iServersAlive == 1 && Modes.IsApplying();
  };

  Modes.ApplyCommunications();

  EXPECT_TRUE(aliveDuringStart);
  EXPECT_EQ(Network.iServersAlive, 0);
  EXPECT_FALSE(Transport.IsRunning());
  EXPECT_FALSE(Modes.IsApplying());
}

TEST_F(CommunicationModesTest, PreparesTheFolderWatch) {
  Settings.bFolderWatch = true;

  Modes.ApplyCommunications();

  EXPECT_TRUE(Folder.Has(u"process") && Folder.Has(u"response"));
  EXPECT_EQ(Watch.ProcessList.Folder(), Settings.sProcessPath);
  EXPECT_TRUE(tmrProcess.Enabled());
  EXPECT_FALSE(Watch.IsRunning());
  EXPECT_THAT(MarkedItems(), ElementsAre(mnuCommunicationsFolder));
}

TEST_F(CommunicationModesTest, ListsRequestFilesOnly) {
  Settings.bFolderWatch = true;
  Modes.ApplyCommunications();
  for (const TextView name : {u"process/a.osl", u"process/a.txt"}) Folder.Write(name, "");

  Watch.ProcessList.Refresh();

  EXPECT_THAT(Watch.ProcessList.Names(), ElementsAre(u"a.osl"));
}

TEST_F(CommunicationModesTest, LeavesARunningFolderWatchAlone) {
  Settings.bFolderWatch = true;
  Modes.ApplyCommunications();
  tmrProcess.SetEnabled(false);
  Watch.tmrProcess_Timer();
  Settings.sProcessPath = Folder.Path(u"other");

  Modes.ApplyCommunications();

  EXPECT_TRUE(Watch.IsRunning());
  EXPECT_FALSE(tmrProcess.Enabled());
  EXPECT_FALSE(Folder.Has(u"other"));
}

TEST_F(CommunicationModesTest, StopsTheFolderWatch) {
  Settings.bFolderWatch = true;
  Modes.ApplyCommunications();
  Watch.tmrProcess_Timer();
  Settings.sProcessPath = Folder.Path(u"other");

  Modes.mnuCommunicationsFolder_Click();

  EXPECT_EQ(Trace.Status.back(), u"Stop Watching Folder: " + Folder.Path(u"process"));
  EXPECT_FALSE(Watch.IsRunning());
  EXPECT_THAT(MarkedItems(), IsEmpty());
}

TEST_F(CommunicationModesTest, StopsAFolderWatchThatHasNotBegun) {
  Settings.bFolderWatch = true;
  Modes.ApplyCommunications();

  Modes.mnuCommunicationsFolder_Click();

  EXPECT_FALSE(tmrProcess.Enabled());
  EXPECT_THAT(Trace.Status, IsEmpty());
}

TEST_F(CommunicationModesTest, StartsTheFolderWatchAnewFromInsideIt) {
  Settings.bFolderWatch = true;
  Modes.ApplyCommunications();
  tmrProcess.SetEnabled(false);
  bool ended = true;
  FolderSteps.push_back({.during = [&] {
    Modes.mnuCommunicationsFolder_Click();
    Modes.mnuCommunicationsFolder_Click();
  }});
  FolderSteps.push_back({.during = [&] { ended = false; }});

  Watch.tmrProcess_Timer();

  EXPECT_TRUE(ended);
  EXPECT_TRUE(tmrProcess.Enabled());
  EXPECT_FALSE(Watch.IsRunning());
}

TEST_F(CommunicationModesTest, WatchesTheFolderAlthoughThePortIsTaken) {
  Settings.bSocketServer = Settings.bFolderWatch = true;
  Network.bPortTaken = true;

  Modes.ApplyCommunications();

  EXPECT_TRUE(tmrProcess.Enabled());
  EXPECT_FALSE(Transport.IsRunning());
}

TEST_F(CommunicationModesTest, ChangesFromSocketToFolderWithTheFlavour) {
  Modes.ChooseFlavour(1);

  Modes.ChooseFlavour(4);

  EXPECT_TRUE(tmrProcess.Enabled());
  EXPECT_FALSE(Transport.IsRunning());
}

TEST_F(CommunicationModesTest, ChangesFromFolderToSocketWithTheFlavour) {
  Modes.ChooseFlavour(4);
  Watch.tmrProcess_Timer();

  Modes.ChooseFlavour(3);

  EXPECT_TRUE(Trace.HasStatus(u"Stop Watching Folder: " + Settings.sProcessPath));
  EXPECT_TRUE(Transport.IsRunning());
  EXPECT_FALSE(Watch.IsRunning());
}

TEST_F(CommunicationModesTest, RefusesTheProcessFolderUnderAnotherName) {
  Folder.MakeFolder(u"process");
  Folder.MakeLink(u"process", u"link");
  for (const TextView name : {u"\\.", u"\\..\\process", u"\\..\\link"}) {
    if (name.ends_with(u"link") && !Folder.Has(u"link")) continue;  // Wine makes none
    Settings.bFolderWatch = true;
    Settings.sResponsePath = Settings.sProcessPath + Text(name);

    Modes.ApplyCommunications();

    EXPECT_FALSE(Settings.bFolderWatch || tmrProcess.Enabled()) << ToUtf8(name);
  }
}

TEST_F(CommunicationModesTest, RaisesWhenAFolderCannotBeCreated) {
  Folder.Write(u"process", "a file");
  Settings.bSocketServer = Settings.bFolderWatch = true;

  try {
    Modes.ApplyCommunications();
    ADD_FAILURE() << "nothing was raised";
  } catch (const RunTimeError& error) {
    EXPECT_EQ(error.Number, 75);
    EXPECT_TRUE(
        error.Description.starts_with(u"Unable to create the folder " + Settings.sProcessPath));
  }
  EXPECT_TRUE(Transport.IsRunning());
  EXPECT_FALSE(tmrProcess.Enabled());
  EXPECT_FALSE(Modes.IsApplying());
}

TEST_F(CommunicationModesTest, DoesNotWatchTheFolderOfTheResponses) {
  Settings.bFolderWatch = true;
  Settings.sResponsePath = UpperCase(Settings.sProcessPath) + u"/";

  Modes.ApplyCommunications();

  EXPECT_THAT(Window.Messages, ElementsAre(BeginsWith(u"Unable to watch the folder " +
                                                      Settings.sProcessPath + u": it is")));
  EXPECT_FALSE(Settings.bFolderWatch);
  EXPECT_FALSE(tmrProcess.Enabled());
  EXPECT_THAT(MarkedItems(), IsEmpty());
}

TEST_F(CommunicationModesTest, StopsTheTransportsAtTheShutDownWithoutAWord) {
  Settings.bSocketServer = Settings.bFolderWatch = true;
  Modes.ApplyCommunications();
  Watch.tmrProcess_Timer();
  Trace.Status.clear();

  Modes.StopTransports();

  EXPECT_THAT(Trace.Status, IsEmpty());
  EXPECT_EQ(Network.iServersAlive, 0);
  EXPECT_FALSE(tmrSocketProcess.Enabled());
  EXPECT_FALSE(tmrProcess.Enabled());
  EXPECT_FALSE(Watch.IsRunning());
}

}  // namespace
}  // namespace ostrel
