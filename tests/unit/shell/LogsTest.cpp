#include <gtest/gtest.h>

#include <algorithm>

#include "shell/commands/Logs.h"
#include "shell/forms/Menus.h"
#include "shell/forms/Version.h"
#include "tests/support/ScratchFolder.h"
#include "tests/unit/doubles/FakeClock.h"
#include "tests/unit/doubles/FakeWindow.h"

namespace ostrel {
namespace {

const std::string kTime = "1/5/2010 9:03:07 AM";
const std::string kRule(60, '=');

std::string VersionLine() { return "Version: " + ToUtf8(ProgramVersion()) + "\r\n"; }

class LogsTest : public testing::Test {
 protected:
  LogsTest() {
    Settings.sHistPath = Folder.Path();
    Settings.sStatusPath = Folder.Path();
    Settings.oCommLog.FullFileName(Folder.Path(u"Comm.log"));
    Settings.lCommType = 2;
    Settings.bSocketServer = true;
    Settings.bHistory = true;
  }

  void TurnCommLogOn() {
    Log.mnuToolsCommLog_Click();
    std::filesystem::remove(std::filesystem::path(Folder.Path()) / "Comm.log");
  }
  std::string CommLog() const { return Folder.Read(u"Comm.log"); }
  std::string OpeningLines() const {
    return VersionLine() + "Communication Type:2\r\nSocket:True\r\nFolder:False\r\n" + kRule +
           "\r\n";
  }
  void LoseTheFolder() { Settings.oCommLog.FullFileName(Folder.Path(u"missing\\Comm.log")); }
  void FindTheFolder() { Settings.oCommLog.FullFileName(Folder.Path(u"Comm.log")); }
  std::ptrdiff_t FailuresTold() const {
    return std::count_if(Window.Status.begin(), Window.Status.end(), [](const Text& line) {
      return line.starts_with(u"Unable to write the communication log: ");
    });
  }

  ScratchFolder Folder;
  doubles::FakeClock Clock;
  doubles::FakeWindow Window;
  AppSettings Settings;
  Logs Log{Settings, Window, Clock};
};

TEST_F(LogsTest, StartsWithTheCommLogOff) {
  EXPECT_FALSE(Log.CommLogEnabled());

  Log.WriteCommLog(u"line");
  Log.AddStatus(u"status");

  EXPECT_EQ(Folder.EntryCount(), 0u);
}

TEST_F(LogsTest, AppendsADatedLine) {
  TurnCommLogOn();

  Log.WriteCommLog(u"one");
  Clock.Advance(std::chrono::seconds(1));
  Log.WriteCommLog(u"two");

  EXPECT_EQ(CommLog(), kTime + "\tone\r\n1/5/2010 9:03:08 AM\ttwo\r\n");
}

TEST_F(LogsTest, OpensTheCommLogWithFiveLines) {
  Log.mnuToolsCommLog_Click();

  EXPECT_EQ(CommLog(), kTime + "\t----> Comm Log enabled <-----\r\n" +  //
                           kTime + "\t" + VersionLine() +               //
                           kTime + "\tCommunication Type:2\r\n" +       //
                           kTime + "\tSocket:True\r\n" +                //
                           kTime + "\tFolder:False\r\n");
  EXPECT_TRUE(Window.Checked.at(mnuToolsCommLog));
}

TEST_F(LogsTest, LeavesNoClosingLineInTheCommLog) {
  // Kept: the log is off before the closing line is written.
  TurnCommLogOn();

  Log.mnuToolsCommLog_Click();

  EXPECT_EQ(Folder.EntryCount(), 0u);
  EXPECT_FALSE(Window.Checked.at(mnuToolsCommLog));
  EXPECT_FALSE(Log.CommLogEnabled());
}

TEST_F(LogsTest, CopiesAStatusLineForTheSocketBeingServed) {
  TurnCommLogOn();

  Log.ActiveSocket = [] { return std::int16_t{3}; };
  Log.AddStatus(u"Processing Request");

  EXPECT_EQ(CommLog(), kTime + "\tSocket 3\tQBXML Status: Processing Request\r\n");
  EXPECT_EQ(Window.Status.front(), u"Processing Request");
}

TEST_F(LogsTest, CopiesAStatusLineForTheWatchedFolderOtherwise) {
  TurnCommLogOn();

  Log.ActiveSocket = [] { return std::int16_t{0}; };
  Log.AddStatus(u"Processing Request");

  EXPECT_EQ(CommLog(), kTime + "\tWatch Folder\tQBXML Status: Processing Request\r\n");
}

TEST_F(LogsTest, TellsOnceThatTheCommLogCannotBeWritten) {
  TurnCommLogOn();
  LoseTheFolder();

  Log.WriteCommLog(u"one");
  Log.WriteCommLog(u"two");
  Log.AddStatus(u"status");

  EXPECT_EQ(FailuresTold(), 1);
}

TEST_F(LogsTest, TellsAgainAfterTheCommLogCouldBeWrittenInBetween) {
  TurnCommLogOn();
  LoseTheFolder();
  Log.WriteCommLog(u"one");
  FindTheFolder();
  Log.WriteCommLog(u"two");
  LoseTheFolder();
  Log.WriteCommLog(u"three");

  EXPECT_EQ(FailuresTold(), 2);
}

TEST_F(LogsTest, WritesAHistoryFileNamedAfterTheMoment) {
  Log.WriteHistoryFile(u"line one\u00FEline two");

  EXPECT_EQ(Folder.Read(u"1050201090307AM.txt"), OpeningLines() + "line one\r\nline two");
  EXPECT_EQ(Folder.EntryCount(), 1u);
}

TEST_F(LogsTest, LeavesTheNameOutOfTheStatusLine) {
  // Kept: the line ends behind its colon.
  Log.WriteHistoryFile(u"text");

  EXPECT_EQ(Window.Status, std::deque<Text>{u"Creating Log File: "});
}

TEST_F(LogsTest, WritesNoHistoryFileWhileHistoryIsOff) {
  Settings.bHistory = false;

  Log.WriteHistoryFile(u"text");

  EXPECT_EQ(Folder.EntryCount(), 0u);
  EXPECT_TRUE(Window.Status.empty());
}

TEST_F(LogsTest, OverwritesTheHistoryFileOfTheSameSecond) {
  Log.WriteHistoryFile(u"longer than the second");
  Log.WriteHistoryFile(u"second");

  EXPECT_EQ(Folder.EntryCount(), 1u);
  EXPECT_TRUE(Folder.Read(u"1050201090307AM.txt").starts_with(OpeningLines() + "second"));
}

TEST_F(LogsTest, KeepsEachHistoryFileOfASecondWhenAskedFor) {
  Settings.bHistoryEach = true;

  Log.WriteHistoryFile(u"the first");
  Log.WriteHistoryFile(u"the second");

  EXPECT_TRUE(Folder.Read(u"1050201090307AM.txt").ends_with("the first"));
  EXPECT_TRUE(Folder.Read(u"1050201090307AM-2.txt").ends_with("the second"));
}

TEST_F(LogsTest, NamesHistoryFilesInAnyLocale) {
  Clock.sGeneralDate = u"05.01.2010 9:03:07*?";

  Log.WriteHistoryFile(u"text");

  EXPECT_TRUE(Folder.Has(u"05.01.201090307.txt"));
}

TEST_F(LogsTest, GoesOnWithoutAHistoryFolder) {
  Settings.sHistPath = Folder.Path(u"missing");

  Log.WriteHistoryFile(u"text");

  EXPECT_EQ(Folder.EntryCount(), 0u);
}

TEST_F(LogsTest, SeparatesTheHistoryHeaderByAttributeMarks) {
  EXPECT_EQ(Log.HistoryHeader(), Text(u"Version: ") + ProgramVersion() +
                                     u"\u00FECommunication Type:2\u00FESocket:True\u00FE"
                                     u"Folder:False\u00FE" +
                                     Text(60, u'=') + u"\u00FE");
}

TEST_F(LogsTest, RewritesTheStatusFile) {
  Log.WriteStatusFile(u"busy");
  Log.WriteStatusFile(u"idle");

  EXPECT_EQ(Folder.Read(u"status.txt"), kTime + "\r\nidle\r\n");
}

TEST_F(LogsTest, FollowsNoLinkAndTellsOfItOnce) {
  Folder.Write(u"precious", "precious");
  for (const TextView name : {u"status.txt", u"1050201090307AM.txt", u"Comm.log"}) {
    if (!Folder.MakeLink(u"precious", name)) return;  // Wine makes no links
  }

  TurnCommLogOn();
  for (int time = 0; time < 2; ++time) {
    Log.WriteStatusFile(u"busy");
    Log.WriteHistoryFile(u"text");
    Log.WriteCommLog(u"line");
  }

  EXPECT_EQ(Folder.Read(u"precious"), "precious");
  for (const TextView name : {u"status.txt", u"1050201090307AM.txt", u"Comm.log"}) {
    EXPECT_EQ(std::count_if(Window.Status.begin(), Window.Status.end(),
                            [&](const Text& line) { return ostrel::Contains(line, name); }),
              1);
  }
}

TEST_F(LogsTest, GoesOnWithoutAFolderForTheStatus) {
  Settings.sStatusPath = Folder.Path(u"missing");

  Log.WriteStatusFile(u"busy");

  EXPECT_EQ(Folder.EntryCount(), 0u);
}

}  // namespace
}  // namespace ostrel
