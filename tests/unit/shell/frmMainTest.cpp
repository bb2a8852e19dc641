#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <new>
#include <optional>
#include <utility>

#include "platform/EventLoop.h"
#include "platform/Files.h"
#include "shell/forms/Menus.h"
#include "shell/frmMain.h"
#include "tests/unit/shell/FormTest.h"

namespace ostrel {
namespace {

using std::chrono::seconds;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

MATCHER_P(BeginsWith, start, "") { return arg.starts_with(start); }

class frmMainTest : public FormTest {
 protected:
  void LoadWithFolder() {
    const std::string folder = ToUtf8(Folder.Path());
    Ini("[General]\r\nProcessPath=" + folder + "\\process\r\nResponsePath=" + folder +
        "\\response\r\nHistPath=" + folder +
        "\\history\r\n[Communication]\r\nFolder=1\r\nSocket=1\r\n");
    Folder.MakeFolder(u"history");
    Load();
  }
  // As the settings give it.
  Text ProcessFolder() const { return LowerCase(Folder.Path(u"process")); }
  void AskInFile(TextView name) const {
    Folder.Write(Text(u"process/").append(name), "<?xml version=\"1.0\"?><QBXML/>\r\n");
  }
  std::string FileResponse(TextView name) const {
    return Folder.Read(Text(u"response/").append(name));
  }
};

TEST_F(frmMainTest, StartsTheTransportsThatTheSettingsName) {
  Load();

  EXPECT_THAT(Window.Status, ElementsAre(u"Listenning on Socket 4999"));
  EXPECT_THAT(Window.Messages, IsEmpty());
  EXPECT_EQ(iUnloads, 0);
}

TEST_F(frmMainTest, TakesTheSettingsFileOfTheCommandLine) {
  Folder.MakeFolder(u"my folder");
  Folder.Write(u"my folder/other.ini", "[Communication]\r\nFolder=0\r\nSocketPort=5000\r\n");

  Load(u"-ini \"" + Folder.Path(u"my folder\\other.ini") + u"\"");

  EXPECT_THAT(Window.Status, ElementsAre(u"Listenning on Socket 5000"));
}

TEST_F(frmMainTest, ShowsTheDebugTools) {
  Load(u"/DEBUG");

  for (const MenuItem item : {mnuToolsCommLog, mnuToolsSettings, mnuToolsSep2, mnuToolsTest}) {
    EXPECT_TRUE(Window.Visible.at(item)) << item;
  }
  EXPECT_EQ(Window.sCaption, u"Ostrel Server - MultiValue QuickBooks Gateway (Debugging)");
}

TEST_F(frmMainTest, HidesTheDebugToolsOtherwise) {
  Load();

  for (const MenuItem item : {mnuToolsCommLog, mnuToolsSettings, mnuToolsSep2, mnuToolsTest}) {
    EXPECT_FALSE(Window.Visible.at(item)) << item;
  }
  EXPECT_EQ(Window.sCaption, u"");
}

TEST_F(frmMainTest, HidesTheCommunicationsMenuForFalseOnly) {
  Load(u"-commmenu False");
  const bool hidden = Window.Visible.count(mnuCommunications) == 1;
  Window.Visible.clear();
  Load(u"-commmenu no");

  EXPECT_TRUE(hidden);
  EXPECT_EQ(Window.Visible.count(mnuCommunications), 0u);
}

TEST_F(frmMainTest, UnloadsWithoutASettingsFile) {
  Load(u"-ini " + Folder.Path(u"missing.ini"));

  EXPECT_THAT(Window.Messages, ElementsAre(u"Unable to find the osl.ini file needed."));
  EXPECT_TRUE(Form->IsUnloaded());
  EXPECT_EQ(iUnloads, 1);
  EXPECT_EQ(Network.iServersCreated, 0);
}

TEST_F(frmMainTest, StaysLoadedWhenASettingIsNoNumber) {
  Ini("[Communication]\r\nSocketPort=many\r\n");

  Load();

  EXPECT_THAT(Window.Status, ElementsAre(u"Start-up stopped at qbxml Object: Type mismatch "
                                         u"(SocketPort=many)"));
  EXPECT_FALSE(Form->IsUnloaded());
  EXPECT_EQ(Network.iServersCreated, 0);
}

TEST_F(frmMainTest, ServesARequest) {
  Load();
  QuickBooks.sResponse = u"<QBXML>answer</QBXML>";

  Ask();

  EXPECT_EQ(Network.SentTo(1), u"23\u00FE<QBXML>answer</QBXML>\x1F");
}

TEST_F(frmMainTest, ServesARequestWithoutWaitingForTheTimer) {
  Load();
  QuickBooks.sResponse = u"<QBXML/>";

  Transport->oSocketServer_DataArrival(1, u"<QBXML/>\x1F");
  platform::DoEvents();

  EXPECT_EQ(Network.SentTo(1), u"10\u00FE<QBXML/>\x1F");
}

TEST_F(frmMainTest, ServesTheNextRequestWhenAResponseHasGoneOut) {
  Load();
  QuickBooks.sResponse = u"<QBXML/>";

  Transport->oSocketServer_DataArrival(1, u"<QBXML/>\x1F");
  Transport->oSocketServer_DataArrival(2, u"<QBXML/>\x1F");
  Transport->oSocketServer_DataArrival(3, u"<QBXML/>\x1F");
  for (int i = 0; i < 3; ++i) platform::DoEvents();

  EXPECT_EQ(Network.SentTo(1), u"10\u00FE<QBXML/>\x1F");
  EXPECT_EQ(Network.SentTo(2), u"10\u00FE<QBXML/>\x1F");
  EXPECT_EQ(Network.SentTo(3), u"10\u00FE<QBXML/>\x1F");
}

TEST_F(frmMainTest, ServesWhatArrivedWhileAMenuCommandHadTheSession) {
  Load();
  Ask();
  QuickBooks.DuringCall = [this, done = false](TextView operation) mutable {
    if (operation != u"EndSession" || std::exchange(done, true)) return;
    Transport->oSocketServer_DataArrival(2, u"<QBXML/>\x1F");
    platform::DoEvents();
    EXPECT_EQ(Network.SentTo(2), u"");
  };

  Form->MenuClick(mnuFileCloseConnection);
  platform::DoEvents();

  EXPECT_NE(Network.SentTo(2), u"");
}

TEST_F(frmMainTest, ShowsTheSessionsProgress) {
  Load();

  Ask();

  EXPECT_TRUE(HasStatus(u"Openning Connection"));
  EXPECT_TRUE(HasStatus(u"Request Processed"));
}

TEST_F(frmMainTest, ClosesAnIdleSession) {
  Load();
  Ask();

  Clock.Advance(seconds(300));
  Form->tmrClose_Timer();
  const bool endedAtTimeout = SessionEnded();
  Clock.Advance(seconds(1));
  Form->tmrClose_Timer();

  EXPECT_FALSE(endedAtTimeout);
  EXPECT_TRUE(SessionEnded());
}

TEST_F(frmMainTest, LeavesAnIdleSessionOpenWithoutATimeout) {
  Ini("[Quickbooks]\r\nDisconnectTimeout=0\r\n[Communication]\r\nFolder=0\r\n");
  Load();
  Ask();

  Clock.Advance(std::chrono::hours(24));
  Form->tmrClose_Timer();

  EXPECT_FALSE(SessionEnded());
}

TEST_F(frmMainTest, ClosesASessionWithoutATimeoutFromTheMenu) {
  Ini("[Quickbooks]\r\nDisconnectTimeout=0\r\n[Communication]\r\nFolder=0\r\n");
  Load();
  Ask();
  Clock.Advance(std::chrono::hours(24));
  Form->tmrClose_Timer();

  Form->MenuClick(mnuFileCloseConnection);

  EXPECT_TRUE(SessionEnded());
}

TEST_F(frmMainTest, ClosesNothingSinceTheMachinesClockWasSet) {
  Load();
  Ask();

  Clock.dNow += std::chrono::hours(24);
  Form->tmrClose_Timer();
  const bool endedByTheClock = SessionEnded();
  Clock.dNow -= std::chrono::hours(48);
  Clock.dSteady += seconds(301);
  Form->tmrClose_Timer();

  EXPECT_FALSE(endedByTheClock);
  EXPECT_TRUE(SessionEnded());
}

TEST_F(frmMainTest, ClosesNothingWhileARequestIsInWork) {
  Load();
  Ask();
  During([this] {
    Clock.Advance(seconds(1000));
    Form->tmrClose_Timer();
  });

  Ask();

  EXPECT_FALSE(SessionEnded());
}

TEST_F(frmMainTest, ClosesTheSessionFromTheMenu) {
  Load();
  Ask();

  Form->MenuClick(mnuFileCloseConnection);

  EXPECT_TRUE(SessionEnded());
}

TEST_F(frmMainTest, RefusesToCloseTheSessionWhileARequestIsInWork) {
  Load();
  During([this] { Form->MenuClick(mnuFileCloseConnection); });

  Ask();

  EXPECT_FALSE(SessionEnded());
  EXPECT_TRUE(HasStatus(u"A request is in work: try again when it has ended"));
}

TEST_F(frmMainTest, GreysTheCloseItemWhileNoConnectionIsOpen) {
  Load();

  Form->MenuClick(mnuFile);
  const bool before = Window.Enabled.at(mnuFileCloseConnection);
  Ask();
  Form->MenuClick(mnuFile);

  EXPECT_FALSE(before);
  EXPECT_TRUE(Window.Enabled.at(mnuFileCloseConnection));
}

TEST_F(frmMainTest, TellsTheWaitingClientThatQuickBooksIsLoading) {
  Load();
  QuickBooks.DuringCall = [this](TextView operation) {
    if (operation == u"BeginSession") Form->tmrLoadingFlag_Timer();
  };

  Ask();

  EXPECT_TRUE(Network.SentTo(1).starts_with(u"ERROR: 99\x1F"));
}

TEST_F(frmMainTest, EndsSessionAndServerAtExit) {
  Load();
  Ask();

  Form->MenuClick(mnuFileExit);

  EXPECT_TRUE(SessionEnded());
  EXPECT_THAT(QuickBooks.Calls, Contains(u"CloseConnection()"));
  EXPECT_EQ(Network.iServersAlive, 0);
  EXPECT_EQ(iUnloads, 1);
}

TEST_F(frmMainTest, EndsTheSessionBeforeTheServer) {
  Load();
  Ask();
  int aliveAtEndOfSession = 0;
  QuickBooks.DuringCall = [&](TextView operation) {
    if (operation == u"EndSession") aliveAtEndOfSession = Network.iServersAlive;
  };

  Form->Unload();

  EXPECT_EQ(aliveAtEndOfSession, 1);
}

TEST_F(frmMainTest, UnloadsOnce) {
  Load();
  Ask();
  QuickBooks.DuringCall = [this](TextView) { Form->Unload(); };

  Form->Unload();
  Form->Unload();

  EXPECT_EQ(iUnloads, 1);
}

TEST_F(frmMainTest, PutsAnExitOffUntilTheRequestInWorkHasEnded) {
  Load();
  During([this] { Form->MenuClick(mnuFileExit); });

  Ask();
  const int unloadsInTheTick = iUnloads;
  const Text response = Network.SentTo(1);
  LetTheLoopRun();

  EXPECT_EQ(unloadsInTheTick, 0);
  EXPECT_TRUE(response.ends_with(u"\x1F"));
  EXPECT_EQ(iUnloads, 1);
}

TEST_F(frmMainTest, TakesNoFurtherRequestOnceAnExitIsWanted) {
  Load();
  During([this] { Form->MenuClick(mnuFileExit); });
  Ask(1);

  Ask(2);

  EXPECT_EQ(Network.SentTo(2), u"");
}

TEST_F(frmMainTest, PutsAnExitOffUntilTheResponsesHaveGoneOut) {
  Load();
  Network.ToSend[1] = 100;
  Ask();

  Form->MenuClick(mnuFileExit);
  for (int i = 0; i < 30; ++i) platform::DoEventsFor(std::chrono::milliseconds(2));
  const bool waited = iUnloads == 0 && Network.iServersAlive == 1 && Network.iListenersStopped > 0;
  Network.ToSend.clear();
  LetTheLoopRun();

  EXPECT_TRUE(waited);
  EXPECT_EQ(std::count(Window.Status.begin(), Window.Status.end(),
                       u"Exit waits for responses that are being sent; exit again to give them up"),
            1);
  EXPECT_EQ(iUnloads, 1);
  EXPECT_EQ(Network.iServersAlive, 0);
}

TEST_F(frmMainTest, PutsAnExitOffForTheResponseOfTheRequestInWorkToo) {
  Load();
  During([this] {
    Form->MenuClick(mnuFileExit);
    Network.ToSend[1] = 100;
  });
  Ask();
  for (int i = 0; i < 30; ++i) platform::DoEventsFor(std::chrono::milliseconds(2));
  const int early = iUnloads;

  Network.ToSend.clear();
  LetTheLoopRun();

  EXPECT_EQ(early, 0);
  EXPECT_EQ(iUnloads, 1);
}

TEST_F(frmMainTest, EndsWithoutAResponseThatNobodyTakesForFiveSeconds) {
  Load();
  Deliveries::Time now;
  Transport->Now = [&] { return now; };
  Network.ToSend[1] = 100;
  Ask();
  Form->MenuClick(mnuFileExit);
  now += seconds(4);
  for (int i = 0; i < 30; ++i) platform::DoEventsFor(std::chrono::milliseconds(2));
  const int early = iUnloads;

  now += seconds(1);
  LetTheLoopRun();

  EXPECT_EQ(early, 0);
  EXPECT_EQ(iUnloads, 1);
}

TEST_F(frmMainTest, EndsAtASecondExitWhileResponsesAreBeingSent) {
  Load();
  Network.ToSend[1] = 100;
  Ask();

  Form->MenuClick(mnuFileExit);
  const int atFirst = iUnloads;
  Form->MenuClick(mnuFileExit);

  EXPECT_EQ(atFirst, 0);
  EXPECT_EQ(iUnloads, 1);
}

TEST_F(frmMainTest, DoesNotWaitForClientsWhenTheSystemEnds) {
  Load();
  Network.ToSend[1] = 100;
  Ask();

  Form->CloseRequest(platform::ApplicationWindow::CloseReason::kSystemEnds);
  Form->tmrGiveUp_Timer();

  EXPECT_EQ(iUnloads, 1);
}

TEST_F(frmMainTest, PutsAnExitOffUntilTheServerHasStarted) {
  int aliveDuringStart = 0;
  Network.DuringStart = [&] {
    Form->MenuClick(mnuFileExit);
    aliveDuringStart = Network.iServersAlive;
  };

  Load();
  const bool unloadedInLoad = Form->IsUnloaded();
  LetTheLoopRun();

  EXPECT_EQ(aliveDuringStart, 1);
  EXPECT_FALSE(unloadedInLoad);
  EXPECT_EQ(iUnloads, 1);
  EXPECT_EQ(Network.iServersAlive, 0);
}

TEST_F(frmMainTest, SwitchesTheCommLogFromTheMenu) {
  Folder.MakeFolder(u"history");
  Load();

  Form->MenuClick(mnuToolsCommLog);

  EXPECT_TRUE(Folder.Has(u"history/Comm.log"));
}

TEST_F(frmMainTest, TogglesHistoryFromTheMenu) {
  Load();

  Form->MenuClick(mnuToolsHist);

  EXPECT_TRUE(Window.Checked.at(mnuToolsHist));
}

TEST_F(frmMainTest, SwitchesTransportsFromTheMenu) {
  Load();

  Form->MenuClick(mnuCommunicationsOI);
  const bool openInsight = Window.Checked.at(mnuCommunicationsOI);
  Form->MenuClick(mnuCommunicationsD3NT);

  EXPECT_TRUE(openInsight);
  EXPECT_TRUE(Window.Checked.at(mnuCommunicationsD3NT));
  EXPECT_EQ(Network.iServersCreated, 2);
}

TEST_F(frmMainTest, StopsAResponseWhenItsTransportIsSwitchedOff) {
  Load();
  During([this] { Form->MenuClick(mnuCommunicationsSocket); });

  Ask();

  EXPECT_EQ(Network.SentTo(1), u"");
  EXPECT_EQ(Network.iServersAlive, 0);
  EXPECT_TRUE(HasStatus(u"Stop Listenning on Socket 4999"));
}

TEST_F(frmMainTest, ServesRequestFiles) {
  LoadWithFolder();
  AskInFile(u"a.osl");

  Form->tmrProcess_Timer();

  EXPECT_EQ(FileResponse(u"a.osl"), "<QBXML></QBXML>\r\n");
  EXPECT_TRUE(HasStatus(u"Watching Folder: " + ProcessFolder()));
  EXPECT_THAT(QuickBooks.Calls, Contains(BeginsWith(u"ProcessRequest(ticket, ")));
}

TEST_F(frmMainTest, ServesAFolderRequestUnderNoSocket) {
  LoadWithFolder();
  Form->MenuClick(mnuToolsCommLog);
  AskInFile(u"a.osl");

  Form->tmrProcess_Timer();

  EXPECT_TRUE(Folder.Read(u"history/Comm.log").find("Watch Folder\tQBXML Status: Proces") !=
              std::string::npos);
}

TEST_F(frmMainTest, DoesNotWatchInsideAnotherHandlersWait) {
  LoadWithFolder();
  const Text watching = u"Watching Folder: " + ProcessFolder();
  bool tried = false;
  bool begun = false;
  const auto wait = [&] {
    for (int i = 0; i < 1000 && !tried; ++i) platform::DoEventsFor(std::chrono::milliseconds(1));
  };
  platform::Timer inner(std::chrono::milliseconds(1), [&] {
    const bool before = HasStatus(watching);
    Form->tmrProcess_Timer();
    begun = begun || HasStatus(watching) != before;
    tried = true;
  });
  platform::Timer outer(std::chrono::milliseconds(1), [&] {
    inner.SetEnabled(true);
    wait();
  });
  outer.SetEnabled(true);

  wait();
  Form->tmrProcess_Timer();

  EXPECT_TRUE(tried);
  EXPECT_FALSE(begun);
  EXPECT_TRUE(HasStatus(watching));
}

TEST_F(frmMainTest, GivesTheLoadingNoticeToTheNextRequestFile) {
  LoadWithFolder();
  AskInFile(u"a.osl");
  AskInFile(u"b.osl");
  std::string notice;
  QuickBooks.DuringCall = [&](TextView operation) {
    if (operation != u"BeginSession") return;
    Form->tmrLoadingFlag_Timer();
    notice = FileResponse(u"b.osl");
  };

  Form->tmrProcess_Timer();

  EXPECT_EQ(notice, "ERROR 99\r\nLoading Quickbooks\r\n");
  EXPECT_EQ(FileResponse(u"b.osl"), "<QBXML></QBXML>\r\n");
}

TEST_F(frmMainTest, GivesTheLoadingNoticeToTheSocketFirst) {
  LoadWithFolder();
  AskInFile(u"a.osl");
  platform::File writer;
  ASSERT_EQ(writer.Open(Folder.Path(u"process\\a.osl"), platform::FileAccess::kReadWrite,
                        platform::FileCreation::kOpenExisting),
            0);
  Form->tmrProcess_Timer();  // the file waits, first in the list
  QuickBooks.DuringCall = [this](TextView operation) {
    if (operation == u"BeginSession") Form->tmrLoadingFlag_Timer();
  };

  Ask();

  EXPECT_THAT(Network.SentTo(1), BeginsWith(u"ERROR: 99\x1F"));
  EXPECT_FALSE(Folder.Has(u"response/a.osl"));
}

TEST_F(frmMainTest, LeavesSocketRequestsWaitingWhileAFolderRequestIsInWork) {
  LoadWithFolder();
  AskInFile(u"a.osl");
  std::optional<Text> early;
  During([&] {
    Ask(1);
    platform::DoEvents();
    early = Network.SentTo(1);
  });

  Form->tmrProcess_Timer();
  Form->tmrSocketProcess_Timer();

  EXPECT_EQ(early, u"");
  EXPECT_TRUE(Network.SentTo(1).ends_with(u"\x1F"));
}

TEST_F(frmMainTest, LooksAtTheFolderAgainWhileItIsWatched) {
  LoadWithFolder();
  FolderSteps.push_back({.during = [this] {
    AskInFile(u"a.osl");
    Form->tmrLook_Timer();
  }});

  Form->tmrProcess_Timer();

  EXPECT_TRUE(Folder.Has(u"response/a.osl"));
}

TEST_F(frmMainTest, BeginsAWatchAgainThatCouldNotBegin) {
  LoadWithFolder();
  iFailingWatches = 1;
  const Text watching = u"Watching Folder: " + LowerCase(Folder.Path(u"process"));

  Form->tmrProcess_Timer();
  EXPECT_FALSE(HasStatus(watching));
  Form->tmrLook_Timer();
  for (int i = 0; i < 1000 && !HasStatus(watching); ++i) {
    platform::DoEventsFor(std::chrono::milliseconds(1));
  }

  EXPECT_TRUE(HasStatus(watching));
}

TEST_F(frmMainTest, LooksAtAFolderThatIsSwitchedOnWhileADialogIsOpen) {
  LoadWithFolder();
  Form->MenuClick(mnuCommunicationsFolder);
  Form->MenuClick(mnuCommunicationsFolder);
  AskInFile(u"a.osl");
  bool served = false;
  platform::Timer tmrDialog(std::chrono::milliseconds(1), [&] {
    Form->tmrProcess_Timer();  // nested: the watch cannot begin
    Form->tmrLook_Timer();
    served = Folder.Has(u"response/a.osl");
  });
  platform::Timer tmrMenu(std::chrono::milliseconds(1), [&] {
    tmrMenu.SetEnabled(false);
    tmrDialog.SetEnabled(true);
    for (int i = 0; i < 1000 && !served; ++i) platform::DoEventsFor(std::chrono::milliseconds(1));
    tmrDialog.SetEnabled(false);
    platform::QuitEventLoop(0);
  });
  tmrMenu.SetEnabled(true);

  platform::RunEventLoop();

  EXPECT_TRUE(served);
  EXPECT_FALSE(HasStatus(u"Watching Folder: " + ProcessFolder()));
}

TEST_F(frmMainTest, EndsTheWatchWhenFolderIsSwitchedOff) {
  LoadWithFolder();
  bool ended = true;
  FolderSteps.push_back({.during = [this] { Form->MenuClick(mnuCommunicationsFolder); }});
  FolderSteps.push_back({.during = [&] { ended = false; }});

  Form->tmrProcess_Timer();

  EXPECT_TRUE(ended);
  EXPECT_EQ(Window.Status.front(), u"Stop Watching Folder: " + ProcessFolder());
}

TEST_F(frmMainTest, EndsFromInsideTheWatch) {
  LoadWithFolder();
  bool ended = true;
  FolderSteps.push_back({.during = [this] { Form->MenuClick(mnuFileExit); }});
  FolderSteps.push_back({.during = [&] { ended = false; }});

  Form->tmrProcess_Timer();

  EXPECT_EQ(iUnloads, 1);
  EXPECT_TRUE(ended);
}

TEST_F(frmMainTest, ServesTheFolderRequestInWorkBeforeItEnds) {
  LoadWithFolder();
  for (const TextView name : {u"a.osl", u"b.osl", u"c.osl"}) AskInFile(name);
  During([this] { Form->MenuClick(mnuFileExit); });

  Form->tmrProcess_Timer();
  LetTheLoopRun();

  EXPECT_EQ(iUnloads, 1);
  EXPECT_TRUE(Folder.Has(u"response/a.osl"));
  EXPECT_TRUE(Folder.Has(u"process/b.osl") && Folder.Has(u"process/c.osl"));
}

TEST_F(frmMainTest, TellsThatTheFolderCannotBeCreatedAndServesTheSocket) {
  Folder.Write(u"process", "a file");

  LoadWithFolder();
  Ask();

  EXPECT_THAT(Window.Status,
              Contains(BeginsWith(u"Start-up stopped at Start Communications: Unable to "
                                  u"create the folder " +
                                  ProcessFolder())));
  EXPECT_TRUE(Network.SentTo(1).ends_with(u"\x1F"));
}

TEST_F(frmMainTest, WatchesOnAfterAScanForWhichThereIsNoMemory) {
  LoadWithFolder();
  QuickBooks.DuringCall = [](TextView) { throw std::bad_alloc(); };
  AskInFile(u"a.osl");
  bool watched = false;
  FolderSteps.push_back({.during = [&] { watched = true; }});

  Form->tmrProcess_Timer();

  EXPECT_TRUE(watched);
  EXPECT_THAT(FileResponse(u"a.osl"), BeginsWith("ERROR "));
}

TEST_F(frmMainTest, IgnoresAMenuItemItDoesNotKnow) {
  Load();

  Form->MenuClick(mnuToolsSep1);
  Form->MenuClick(12345);

  EXPECT_EQ(Window.Status.size(), 1u);
}

TEST_F(frmMainTest, SurvivesACommandForWhichThereIsNoMemory) {
  Load();
  Network.DuringStart = [] { throw std::bad_alloc(); };
  Form->MenuClick(mnuCommunicationsSocket);

  Form->MenuClick(mnuCommunicationsSocket);

  EXPECT_TRUE(HasStatus(u"mnuCommunicationsSocket: Out of memory"));
  EXPECT_EQ(iUnloads, 0);
}

}  // namespace
}  // namespace ostrel
