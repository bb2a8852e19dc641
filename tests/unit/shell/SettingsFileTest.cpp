#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "../doubles/FakeTrace.h"
#include "../doubles/FakeWindow.h"
#include "shell/Menus.h"
#include "shell/SettingsFile.h"
#include "tests/support/ScratchFolder.h"
#include "util/RunTimeError.h"

namespace ostrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class SettingsFileTest : public testing::Test {
 protected:
  SettingsFileTest() {
    Settings.sIniFile = Folder.Path(u"osl.ini");
    Settings.iDisconnectTimeout = 300;
    Folder.MakeFolder(u"Program");
  }

  void Write(const std::string& lines) { Folder.Write(u"osl.ini", lines); }
  void Load(const std::string& lines) {
    Write(lines);
    File.LoadSettings();
  }
  std::string Ini() const { return Folder.Read(u"osl.ini"); }

  // As LoadSettings raised it: number and text.
  std::pair<int, Text> ErrorOf(const std::string& lines) {
    Write(lines);
    try {
      File.LoadSettings();
    } catch (const RunTimeError& error) {
      return {error.Number, error.Description};
    }
    return {0, u""};
  }

  ScratchFolder Folder;
  doubles::FakeWindow Window;
  doubles::FakeTrace Trace;
  AppSettings Settings;
  int iUnloads = 0;
  Text sProgramFolder = Folder.Path(u"Program");
  SettingsFile File{Settings, Window, Trace, sProgramFolder, [this] { ++iUnloads; }};
};

TEST_F(SettingsFileTest, GivesEveryKeyItsDefault) {
  Load("");

  EXPECT_EQ(Settings.sProcessPath, sProgramFolder + u"\\process");
  EXPECT_EQ(Settings.sResponsePath, sProgramFolder + u"\\response");
  EXPECT_EQ(Settings.sHistPath, sProgramFolder + u"\\history");
  EXPECT_EQ(Settings.sStatusPath, sProgramFolder);
  EXPECT_FALSE(Settings.bHistory);
  EXPECT_TRUE(Settings.bValidateXML);
  EXPECT_EQ(Settings.sQBFileName, u"");
  EXPECT_EQ(Settings.iDisconnectTimeout, 300);
  EXPECT_EQ(Settings.lCommType, 0);
  EXPECT_TRUE(Settings.bFolderWatch);
  EXPECT_TRUE(Settings.bSocketServer);
  EXPECT_EQ(Settings.lSocketPort, 4999);
  EXPECT_EQ(Settings.lBlockSize, 10000);
  EXPECT_EQ(iUnloads, 0);
  EXPECT_THAT(Window.Messages, IsEmpty());
}

TEST_F(SettingsFileTest, ReadsEveryKey) {
  Load(
      "[General]\r\nProcessPath=D:\\Data\\In\r\nResponsePath=D:\\Data\\Out\r\n"
      "HistPath=D:\\Logs\r\nHistory=0\r\nValidateXML=0\r\nStatusPath=%AppPath%\\State\r\n"
      "[Quickbooks]\r\nFileName=C:\\Books\\My Company.QBW\r\nDisconnectTimeout=60\r\n"
      "[Communication]\r\nType=3\r\nFolder=0\r\nSocket=1\r\nSocketPort=5000\r\nBlockSize=512\r\n");

  EXPECT_EQ(Settings.sProcessPath, u"d:\\data\\in");
  EXPECT_EQ(Settings.sResponsePath, u"d:\\data\\out");
  EXPECT_EQ(Settings.sHistPath, u"d:\\logs");
  EXPECT_FALSE(Settings.bValidateXML);
  EXPECT_EQ(Settings.sStatusPath, sProgramFolder + u"\\state");
  EXPECT_EQ(Settings.sQBFileName, u"C:\\Books\\My Company.QBW");
  EXPECT_EQ(Settings.iDisconnectTimeout, 60);
  EXPECT_EQ(Settings.lCommType, 3);
  EXPECT_FALSE(Settings.bFolderWatch);
  EXPECT_TRUE(Settings.bSocketServer);
  EXPECT_EQ(Settings.lSocketPort, 5000);
  EXPECT_EQ(Settings.lBlockSize, 512);
}

TEST_F(SettingsFileTest, TellsThatTheFileIsMissingAndUnloads) {
  File.LoadSettings();

  EXPECT_THAT(Window.Messages, ElementsAre(u"Unable to find the osl.ini file needed."));
  EXPECT_EQ(iUnloads, 1);
}

TEST_F(SettingsFileTest, GoesOnWithDefaultsWithoutTheFile) {
  File.LoadSettings();

  EXPECT_EQ(Settings.sProcessPath, sProgramFolder + u"\\process");
  EXPECT_EQ(Settings.lSocketPort, 4999);
  EXPECT_TRUE(Settings.bSocketServer);
}

TEST_F(SettingsFileTest, LeavesAnEmptyFileBehind) {
  File.LoadSettings();

  EXPECT_TRUE(Folder.Has(u"osl.ini"));
  EXPECT_EQ(Ini(), "");
}

TEST_F(SettingsFileTest, ExpandsTheProgramsFolderInAnyCase) {
  Load("[General]\r\nProcessPath=%APPPATH%\\Queue\r\n");

  EXPECT_EQ(Settings.sProcessPath, sProgramFolder + u"\\queue");
}

TEST_F(SettingsFileTest, TakesAnyTextButZeroForHistory) {
  Load("[General]\r\nHistory=\r\n");
  const bool empty = Settings.bHistory;
  Load("[General]\r\nHistory=0\r\n");
  const bool zero = Settings.bHistory;
  Load("[General]\r\nHistory=no\r\n");

  EXPECT_FALSE(empty);
  EXPECT_FALSE(zero);
  EXPECT_TRUE(Settings.bHistory);
}

TEST_F(SettingsFileTest, MarksTheHistoryItem) {
  Load("[General]\r\nHistory=1\r\n");

  EXPECT_TRUE(Window.Checked.at(mnuToolsHist));
}

TEST_F(SettingsFileTest, TurnsValidationOnForOneOnly) {
  for (const char* value : {"true", "", "2", "01"}) {
    Load(std::string("[General]\r\nValidateXML=") + value + "\r\n");
    EXPECT_FALSE(Settings.bValidateXML) << value;
  }
  Load("[General]\r\nValidateXML=1\r\n");
  EXPECT_TRUE(Settings.bValidateXML);
}

TEST_F(SettingsFileTest, BindsTheCommLogToTheHistoryFolder) {
  Load("[General]\r\nHistPath=%AppPath%\\Logs\r\n");

  EXPECT_EQ(LowerCase(Settings.oCommLog.FullFileName()),
            LowerCase(sProgramFolder + u"\\logs\\comm.log"));
}

TEST_F(SettingsFileTest, CreatesTheStatusFolder) {
  Load("[General]\r\nStatusPath=%AppPath%\\State\r\n");

  EXPECT_TRUE(Folder.Has(u"Program/state"));
  EXPECT_FALSE(Folder.Has(u"Program/history"));
}

TEST_F(SettingsFileTest, CreatesTheHistoryFolderWhenHistoryIsOn) {
  Load("[General]\r\nHistory=1\r\n");

  EXPECT_TRUE(Folder.Has(u"Program/history"));
}

TEST_F(SettingsFileTest, LeavesTheFoldersOfTheFolderTransportToIt) {
  Load("");

  EXPECT_FALSE(Folder.Has(u"Program/process"));
  EXPECT_FALSE(Folder.Has(u"Program/response"));
}

TEST_F(SettingsFileTest, TellsThatAFolderCannotBeCreated) {
  Folder.Write(u"Program/file", "");

  Load("[General]\r\nStatusPath=%AppPath%\\file\\State\r\n");

  EXPECT_THAT(Trace.Status,
              ElementsAre(u"Unable to create the folder " + sProgramFolder + u"\\file\\state"));
}

TEST_F(SettingsFileTest, LeavesTransportsOffAtTheStart) {
  Load("[Communication]\r\nFolder=0\r\nSocket=yes\r\n");

  EXPECT_FALSE(Settings.bFolderWatch);
  EXPECT_FALSE(Settings.bSocketServer);
}

TEST_F(SettingsFileTest, NeverTurnsATransportOffAgain) {
  // Kept: a transport that is on stays on until the next start.
  Settings.bFolderWatch = Settings.bSocketServer = true;

  Load("[Communication]\r\nFolder=0\r\nSocket=0\r\n");

  EXPECT_TRUE(Settings.bFolderWatch);
  EXPECT_TRUE(Settings.bSocketServer);
}

TEST_F(SettingsFileTest, RoundsNumbers) {
  Load("[Quickbooks]\r\nDisconnectTimeout= 60.5 \r\n[Communication]\r\nSocketPort=5000.6\r\n");

  EXPECT_EQ(Settings.iDisconnectTimeout, 60);
  EXPECT_EQ(Settings.lSocketPort, 5001);
}

TEST_F(SettingsFileTest, RaisesTypeMismatchWithKeyAndValue) {
  const auto [number, description] = ErrorOf("[Communication]\r\nSocketPort=many\r\n");

  EXPECT_EQ(number, 13);
  EXPECT_EQ(description, u"Type mismatch (SocketPort=many)");
}

TEST_F(SettingsFileTest, RaisesOverflowWithKeyAndValue) {
  const auto [number, description] = ErrorOf("[Quickbooks]\r\nDisconnectTimeout=32768\r\n");

  EXPECT_EQ(number, 6);
  EXPECT_EQ(description, u"Overflow (DisconnectTimeout=32768)");
}

TEST_F(SettingsFileTest, KeepsTheFieldsAfterABadNumber) {
  Settings.lSocketPort = 1234;

  ErrorOf("[General]\r\nHistory=1\r\n[Communication]\r\nType=x\r\nSocketPort=5000\r\n");

  EXPECT_TRUE(Settings.bHistory);
  EXPECT_FALSE(Settings.bSocketServer);
  EXPECT_EQ(Settings.lSocketPort, 1234);
}

TEST_F(SettingsFileTest, ConvertsTheFlavourAsASixteenBitNumber) {
  EXPECT_EQ(ErrorOf("[Communication]\r\nType=40000\r\n").first, 6);
}

TEST_F(SettingsFileTest, TakesABlockSizeBelowOneForTheUsualOne) {
  for (const char* size : {"0", "-5"}) {
    Trace.Status.clear();
    Load(std::string("[Communication]\r\nBlockSize=") + size + "\r\n");

    EXPECT_EQ(Settings.lBlockSize, 10000);
    EXPECT_THAT(Trace.Status, ElementsAre(u"BlockSize " + FromAscii(size) + u" counts as 10000"));
  }
}

TEST_F(SettingsFileTest, TurnsHistoryOnFromTheMenu) {
  Load("[General]\r\nHistPath=%AppPath%\\Later\r\n");

  File.mnuToolsHist_Click();

  EXPECT_TRUE(Settings.bHistory);
  EXPECT_TRUE(Window.Checked.at(mnuToolsHist));
  EXPECT_NE(Ini().find("History=1"), std::string::npos);
  EXPECT_TRUE(Folder.Has(u"Program/later"));
}

TEST_F(SettingsFileTest, ReadsTheHistoryFolderAgainWhenHistoryIsTurnedOn) {
  Load("[General]\r\nHistPath=%AppPath%\\Old\r\n");
  const Text commLog = Settings.oCommLog.FullFileName();

  Write("[General]\r\nHistPath=%AppPath%\\New\r\n");
  File.mnuToolsHist_Click();

  EXPECT_EQ(Settings.sHistPath, sProgramFolder + u"\\new");
  EXPECT_EQ(Settings.oCommLog.FullFileName(), commLog);
}

TEST_F(SettingsFileTest, TurnsHistoryOffFromTheMenu) {
  Load("[General]\r\nHistory=1\r\n");

  File.mnuToolsHist_Click();

  EXPECT_FALSE(Settings.bHistory);
  EXPECT_FALSE(Window.Checked.at(mnuToolsHist));
  EXPECT_NE(Ini().find("History=0"), std::string::npos);
}

TEST_F(SettingsFileTest, LooksForTheFileBeforeItWritesHistory) {
  File.mnuToolsHist_Click();

  EXPECT_THAT(Window.Messages, ElementsAre(u"Unable to find the osl.ini file needed."));
  EXPECT_EQ(iUnloads, 1);
}

TEST_F(SettingsFileTest, WritesOneKey) {
  Write("[Communication]\r\nFolder=0\r\n");

  File.Write(u"Communication", u"Type", u"2");

  EXPECT_NE(Ini().find("Type=2"), std::string::npos);
  EXPECT_NE(Ini().find("Folder=0"), std::string::npos);
}

}  // namespace
}  // namespace ostrel
