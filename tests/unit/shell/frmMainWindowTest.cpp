// The main form and its window: frame, tray, dialogs, and the commands that ask the user.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <new>

#include "shell/forms/Menus.h"
#include "shell/forms/Version.h"
#include "tests/unit/shell/FormTest.h"

namespace ostrel {
namespace {

using platform::WindowState;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using Reason = platform::ApplicationWindow::CloseReason;

constexpr TextView kBusy = u"A request is in work: try again when it has ended";
constexpr TextView kExitWaits = u"Exit waits for the request in work; exit again to give it up";
constexpr std::uint32_t kLeftDoubleClick = 515, kRightDown = 516;

class frmMainWindowTest : public FormTest {
 protected:
  void ChooseFromTray(int item) {
    Tray.iChosen = item;
    Tray.Notify(kRightDown);
  }
};

TEST_F(frmMainWindowTest, MarksTheWindowFirst) {
  Load();

  EXPECT_EQ(Frame.Steps.at(0), u"Mark");
  EXPECT_THAT(Frame.Marks, ElementsAre(u"Ostrel_APPLICATION"));
}

TEST_F(frmMainWindowTest, MarksTheWindowBeforeTheTransportsStart) {
  std::set<Text> marks;
  Network.DuringStart = [&] { marks = Frame.Marks; };

  Load();

  EXPECT_THAT(marks, SizeIs(1));
}

TEST_F(frmMainWindowTest, ShowsTheIconOnceTheTransportsRun) {
  bool earlier = true;
  Network.DuringStart = [&] { earlier = Tray.bIconThere; };

  Load();

  EXPECT_FALSE(earlier);
  EXPECT_TRUE(Tray.bIconThere);
  EXPECT_EQ(Tray.Calls.at(0).oRecord.icon, Frame.hIcon);
}

TEST_F(frmMainWindowTest, ShowsTheWindow) {
  Load();

  EXPECT_TRUE(Frame.bVisible);
}

TEST_F(frmMainWindowTest, LivesInTheTrayWhenItBeginsMinimised) {
  Frame.iState = WindowState::kMinimised;

  Load();

  EXPECT_FALSE(Frame.bVisible);
  EXPECT_EQ(Frame.iState, WindowState::kNormal);
  EXPECT_TRUE(Tray.bIconThere);
}

TEST_F(frmMainWindowTest, ShowsTheWindowWhenAStepOfTheStartFails) {
  Ini("[Communication]\r\nSocketPort=many\r\n");

  Load();

  EXPECT_TRUE(Frame.bVisible);
  EXPECT_FALSE(Tray.bIconThere);
}

TEST_F(frmMainWindowTest, ShowsNothingWithoutASettingsFile) {
  Load(u"-ini " + Folder.Path(u"missing.ini"));

  EXPECT_FALSE(Frame.bVisible);
  EXPECT_THAT(Tray.Calls, IsEmpty());
  EXPECT_THAT(Frame.Marks, IsEmpty());
}

TEST_F(frmMainWindowTest, HidesWithTheCloseBoxAndGoesOn) {
  Load();

  Form->CloseRequest(Reason::kCloseBox);

  EXPECT_FALSE(Frame.bVisible);
  EXPECT_EQ(Network.iServersAlive, 1);
  EXPECT_EQ(iUnloads, 0);
}

TEST_F(frmMainWindowTest, ClosesTheAboutWindowWithTheCloseBox) {
  Load();
  Form->MenuClick(mnuHelpAbout);

  Form->CloseRequest(Reason::kCloseBox);

  EXPECT_FALSE(Forms.Only().bOpen);
}

TEST_F(frmMainWindowTest, HidesWhenItIsMinimised) {
  Load();
  Frame.iState = WindowState::kMinimised;

  Form->Resize();

  EXPECT_FALSE(Frame.bVisible);
  EXPECT_EQ(Frame.iState, WindowState::kNormal);
  EXPECT_EQ(Window.iFits, 0);
}

TEST_F(frmMainWindowTest, FitsTheListUnlessItIsMaximised) {
  Load();

  Form->Resize();
  Frame.iState = WindowState::kMaximised;
  Form->Resize();

  EXPECT_EQ(Window.iFits, 1);
  EXPECT_TRUE(Frame.bVisible);
}

TEST_F(frmMainWindowTest, HidesFromTheMenu) {
  Load();

  Form->MenuClick(mnuFileHide);
  Form->MenuClick(mnuFileHide);

  EXPECT_FALSE(Frame.bVisible);
  EXPECT_TRUE(Tray.bIconThere);
}

TEST_F(frmMainWindowTest, HasAnIconWheneverItIsHidden) {
  Ini("[Communication]\r\nSocketPort=many\r\n");
  Load();

  Form->CloseRequest(Reason::kCloseBox);

  EXPECT_TRUE(Tray.bIconThere);
}

TEST_F(frmMainWindowTest, ComesBackFromTheTrayMenu) {
  Load();
  Form->MenuClick(mnuFileHide);

  ChooseFromTray(0);

  EXPECT_TRUE(Frame.bVisible);
  EXPECT_EQ(Frame.Steps.back(), u"Front");
}

TEST_F(frmMainWindowTest, ComesBackByADoubleClickInTheNormalState) {
  Load();
  Frame.Hide();
  Frame.iState = WindowState::kMinimised;

  Tray.Notify(kLeftDoubleClick);

  EXPECT_TRUE(Frame.bVisible);
  EXPECT_EQ(Frame.iState, WindowState::kNormal);
  EXPECT_EQ(Frame.Steps.back(), u"Front");
}

TEST_F(frmMainWindowTest, ExitsFromTheTrayMenu) {
  Load();

  ChooseFromTray(2);

  EXPECT_EQ(iUnloads, 1);
  EXPECT_FALSE(Tray.bIconThere);
}

TEST_F(frmMainWindowTest, LeavesNothingBehindAtExit) {
  Load();
  Form->MenuClick(mnuHelpAbout);
  Ask();

  Form->MenuClick(mnuFileExit);

  EXPECT_FALSE(Forms.Only().bOpen);
  EXPECT_TRUE(SessionEnded());
  EXPECT_EQ(Network.iServersAlive, 0);
  EXPECT_FALSE(Tray.bIconThere);
  EXPECT_FALSE(Frame.bVisible);
  EXPECT_THAT(Frame.Marks, IsEmpty());
}

TEST_F(frmMainWindowTest, TakesTheIconAwayAfterTheTransports) {
  Load();
  Ask();
  bool thereAtEndOfSession = false;
  QuickBooks.DuringCall = [&](TextView operation) {
    if (operation == u"EndSession") thereAtEndOfSession = Tray.bIconThere;
  };

  Form->MenuClick(mnuFileExit);

  EXPECT_TRUE(thereAtEndOfSession);
}

TEST_F(frmMainWindowTest, IsSeenWhenAnotherInstanceIsStarted) {
  Load();
  Form->MenuClick(mnuFileHide);

  EXPECT_TRUE(Form->Restore());

  EXPECT_TRUE(Frame.bVisible);
  EXPECT_EQ(Frame.iState, WindowState::kNormal);
  EXPECT_EQ(Frame.Steps.back(), u"Front");
}

TEST_F(frmMainWindowTest, IsNotSeenAnyMoreWhenItIsAboutToEnd) {
  Load();
  Form->MenuClick(mnuFileHide);
  bool shown = true;
  During([&] {
    Form->MenuClick(mnuFileExit);
    shown = Form->Restore();
  });

  Ask();

  EXPECT_FALSE(shown);
  EXPECT_FALSE(Frame.bVisible);
}

TEST_F(frmMainWindowTest, EndsWithTheSystem) {
  Load();
  Ask();

  Form->CloseRequest(Reason::kSystemEnds);

  EXPECT_TRUE(SessionEnded());
  EXPECT_EQ(iUnloads, 1);
}

TEST_F(frmMainWindowTest, UnloadsForAnyOtherRequestToClose) {
  Load();

  Form->CloseRequest(Reason::kOther);

  EXPECT_EQ(iUnloads, 1);
}

TEST_F(frmMainWindowTest, TellsThatTheExitWaits) {
  Load();
  During([this] { Form->MenuClick(mnuFileExit); });

  Ask();

  EXPECT_TRUE(HasStatus(kExitWaits));
  EXPECT_EQ(Network.SentTo(1), u"17\u00FE<QBXML></QBXML>\x1F");
}

TEST_F(frmMainWindowTest, GivesTheRequestUpWithTheSecondExit) {
  Load();
  During([this] {
    Form->MenuClick(mnuFileExit);
    ChooseFromTray(2);
  });

  Ask();
  const Text response = Network.SentTo(1);
  LetTheLoopRun();

  EXPECT_TRUE(response.starts_with(u"ERROR: ")) << ToUtf8(response);
  EXPECT_EQ(iUnloads, 1);
}

TEST_F(frmMainWindowTest, FinishesTheRequestThatEndsBeforeTheSystemDoes) {
  Load();
  During([this] {
    Form->CloseRequest(Reason::kSystemEnds);
    Form->CloseRequest(Reason::kSystemEnds);  // told twice
  });

  Ask();
  LetTheLoopRun();

  EXPECT_EQ(Network.SentTo(1), u"17\u00FE<QBXML></QBXML>\x1F");
  EXPECT_TRUE(SessionEnded());
  EXPECT_EQ(iUnloads, 1);
}

TEST_F(frmMainWindowTest, GivesTheRequestUpWhenTheSystemDoesNotWait) {
  Load();
  During([this] {
    Form->CloseRequest(Reason::kSystemEnds);
    Form->tmrGiveUp_Timer();
  });

  Ask();
  LetTheLoopRun();

  EXPECT_TRUE(Network.SentTo(1).starts_with(u"ERROR: "));
  EXPECT_EQ(iUnloads, 1);
}

TEST_F(frmMainWindowTest, IgnoresEverythingOnceItHasUnloaded) {
  Load();
  Form->MenuClick(mnuFileExit);
  const auto steps = Frame.Steps;
  const auto calls = Tray.Calls.size();

  for (platform::MenuId item = mnuFile; item <= mnuLast; ++item) Form->MenuClick(item);
  Frame.iState = WindowState::kMinimised;
  Form->Resize();
  Form->CloseRequest(Reason::kCloseBox);
  Form->CloseRequest(Reason::kSystemEnds);
  Form->lstStatus_DblClick(u"Creating Log File: a.txt");
  Tray.Notify(kRightDown);

  EXPECT_EQ(Frame.Steps, steps);
  EXPECT_EQ(Tray.Calls.size(), calls);
  EXPECT_THAT(Forms.Created, IsEmpty());
  EXPECT_EQ(iUnloads, 1);
}

TEST_F(frmMainWindowTest, ShowsTheAboutWindow) {
  Load();

  Form->MenuClick(mnuHelpAbout);

  EXPECT_TRUE(Forms.Only().bOpen);
  EXPECT_TRUE(ostrel::Contains(Forms.Only().sText, ProgramVersion()));
}

TEST_F(frmMainWindowTest, TestsTheConnection) {
  Ini("[Quickbooks]\r\nFileName=C:\\a.qbw\r\n[Communication]\r\nFolder=0\r\n");
  QuickBooks.sResponse = u"<ProductName>QuickBooks Pro 2008<";
  Load();

  Form->MenuClick(mnuFileTest);

  EXPECT_EQ(Forms.Only().sCaption, u"Quickbooks Connection Status:");
}

TEST_F(frmMainWindowTest, ClosesTheSessionOfATestWhenItIsIdle) {
  Ini("[Quickbooks]\r\nFileName=C:\\a.qbw\r\n[Communication]\r\nFolder=0\r\n");
  QuickBooks.sResponse = u"<ProductName>QuickBooks Pro 2008<";
  Load();
  Form->MenuClick(mnuFileTest);

  Clock.Advance(std::chrono::seconds(300));
  Form->tmrClose_Timer();
  const bool early = SessionEnded();
  Clock.Advance(std::chrono::seconds(1));
  Form->tmrClose_Timer();

  EXPECT_FALSE(early);
  EXPECT_TRUE(SessionEnded());
}

TEST_F(frmMainWindowTest, CopiesTheSupportReport) {
  Load();
  Dialogs.TextAnswer = u"QUICKBOOKSINFO";
  Form->MenuClick(mnuToolsTest);

  Forms.Only().Press(u"Copy");

  EXPECT_TRUE(Dialogs.sClipboard.starts_with(u"Ostrel Server:\r\n"));
  EXPECT_TRUE(ostrel::Contains(Dialogs.sClipboard, u"Settings File: " + Folder.Path(u"osl.ini")));
}

TEST_F(frmMainWindowTest, EditsTheSettings) {
  Load();
  Processes.bEnded = true;
  Ini("[Quickbooks]\r\nFileName=C:\\b.qbw\r\n[Communication]\r\nSocketPort=5000\r\n");

  Form->MenuClick(mnuToolsSettings);
  Form->MenuClick(mnuToolsStartQB);

  ASSERT_THAT(Processes.Documents, SizeIs(1));
  EXPECT_EQ(Processes.Documents[0].sFile, u"C:\\b.qbw");
  // The transports stay as they are.
  EXPECT_THAT(Network.PortsAsked, ElementsAre(4999));
}

TEST_F(frmMainWindowTest, ChoosesTheCompanyFile) {
  Load();
  Dialogs.FileAnswer = u"C:\\b.qbw";

  Form->MenuClick(mnuToolsQBFile);

  EXPECT_NE(Folder.Read(u"osl.ini").find("FileName=C:\\b.qbw"), std::string::npos);
}

TEST_F(frmMainWindowTest, OpensAHistoryFileFromTheList) {
  Folder.MakeFolder(u"history");
  Folder.Write(u"history/1.txt", "what happened");
  Load();

  Form->lstStatus_DblClick(u"Creating Log File: 1.txt");

  EXPECT_EQ(Forms.Only().sText, u"what happened");
}

TEST_F(frmMainWindowTest, RefusesWhatWouldHoldARequestUp) {
  Load();
  During([this] {
    for (const MenuItem item : {mnuFileTest, mnuToolsSettings, mnuToolsQBFile, mnuToolsTest}) {
      Form->MenuClick(item);
    }
  });

  Ask();

  EXPECT_EQ(std::count(Window.Status.begin(), Window.Status.end(), kBusy), 4);
  EXPECT_THAT(Dialogs.Questions, IsEmpty());
  EXPECT_THAT(Dialogs.FileQuestions, IsEmpty());
  EXPECT_THAT(Processes.Programs, IsEmpty());
}

TEST_F(frmMainWindowTest, ServesRequestsWhileAQuestionIsOpen) {
  Load();
  Dialogs.DuringQuestion = [this] { Ask(); };

  Form->MenuClick(mnuToolsTest);

  EXPECT_TRUE(Network.SentTo(1).ends_with(u"\x1F"));
}

TEST_F(frmMainWindowTest, AsksOneQuestionAtATime) {
  Load();
  Dialogs.DuringQuestion = [this] {
    if (Dialogs.Questions.size() == 1) Form->MenuClick(mnuToolsTest);
  };

  Form->MenuClick(mnuToolsTest);
  Dialogs.DuringQuestion = nullptr;
  Form->MenuClick(mnuToolsTest);

  EXPECT_THAT(Dialogs.Questions, SizeIs(2));
}

TEST_F(frmMainWindowTest, ExitsWhileAQuestionIsOpen) {
  Load();
  Dialogs.DuringQuestion = [this] { Form->MenuClick(mnuFileExit); };

  Form->MenuClick(mnuFileTest);

  EXPECT_EQ(iUnloads, 1);
  EXPECT_THAT(QuickBooks.Calls, IsEmpty());
}

TEST_F(frmMainWindowTest, ExitsWhileTheEditorIsOpen) {
  Load();
  platform::Timer exit(std::chrono::milliseconds(1), [this] { Form->MenuClick(mnuFileExit); });
  exit.SetEnabled(true);

  Form->MenuClick(mnuToolsSettings);

  EXPECT_EQ(iUnloads, 1);
}

TEST_F(frmMainWindowTest, TurnsWhatTheWindowRaisesIntoAStatusLine) {
  Load();
  Dialogs.DuringQuestion = [] { throw std::bad_alloc(); };

  Form->MenuClick(mnuToolsTest);
  Form->MenuClick(mnuToolsTest);

  EXPECT_THAT(Dialogs.Questions, SizeIs(2));
  EXPECT_TRUE(HasStatus(u"mnuToolsTest: Out of memory"));
}

}  // namespace
}  // namespace ostrel
