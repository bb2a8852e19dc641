#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <thread>

#include "platform/Files.h"
#include "shell/forms/Menus.h"
#include "shell/settings/SettingsFile.h"
#include "tests/support/ScratchFolder.h"
#include "tests/unit/doubles/FakeTrace.h"
#include "tests/unit/doubles/FakeWindow.h"
#include "util/CodePage.h"
#include "util/RunTimeError.h"

namespace ostrel {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class SettingsFileTest : public testing::Test {
 protected:
  SettingsFileTest() {
    Settings.sIniFile = Folder.Path(u"osl.ini");
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

  void ExpectDefaults() const { ExpectDefaults(Settings); }
  // Of all but the transports.
  void ExpectDefaults(const AppSettings& settings) const {
    EXPECT_EQ(settings.sProcessPath, sProgramFolder + u"\\process");
    EXPECT_EQ(settings.sResponsePath, sProgramFolder + u"\\response");
    EXPECT_EQ(settings.sHistPath, sProgramFolder + u"\\history");
    EXPECT_EQ(LowerCase(settings.oCommLog.FullFileName()),
              LowerCase(sProgramFolder + u"\\history\\comm.log"));
    EXPECT_EQ(settings.sStatusPath, sProgramFolder);
    EXPECT_FALSE(settings.bHistory);
    EXPECT_FALSE(settings.bHistoryEach);
    EXPECT_TRUE(settings.bValidateXML);
    EXPECT_EQ(settings.sQBFileName, u"");
    EXPECT_EQ(settings.iDisconnectTimeout, 300);
    EXPECT_EQ(settings.lCommType, 0);
    EXPECT_EQ(settings.lSocketPort, 4999);
    EXPECT_EQ(settings.lBlockSize, 10000);
  }
  // The file while another program holds it.
  std::unique_ptr<platform::File> Hold() const {
    auto file = std::make_unique<platform::File>();
    EXPECT_EQ(file->Open(Settings.sIniFile, platform::FileAccess::kReadWrite,
                         platform::FileCreation::kOpenExisting),
              0);
    return file;
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

  ExpectDefaults();
  EXPECT_TRUE(Settings.bFolderWatch);
  EXPECT_TRUE(Settings.bSocketServer);
  EXPECT_EQ(iUnloads, 0);
  EXPECT_THAT(Window.Messages, IsEmpty());
  EXPECT_THAT(Trace.Status, IsEmpty());
}

TEST_F(SettingsFileTest, HasEveryDefaultBeforeTheFileIsRead) {
  ExpectDefaults();
  EXPECT_FALSE(Settings.bFolderWatch);
  EXPECT_FALSE(Settings.bSocketServer);
}

TEST_F(SettingsFileTest, HasTheDefaultsOfWhatAFailedStartDidNotReach) {
  const std::string before = "[General]\r\nHistory=1\r\n";
  for (const char* failing :
       {"[Quickbooks]\r\nFileName=C:\\a\x1F.qbw\r\n", "[Quickbooks]\r\nDisconnectTimeout=x\r\n",
        "[Communication]\r\nType=x\r\n", "[Communication]\r\nSocketPort=x\r\n",
        "[Communication]\r\nBlockSize=x\r\n"}) {
    AppSettings settings;
    settings.sIniFile = Settings.sIniFile;
    SettingsFile file{settings, Window, Trace, sProgramFolder, [] {}};
    Write(before + failing);

    EXPECT_THROW(file.LoadSettings(), RunTimeError) << failing;

    EXPECT_TRUE(settings.bHistory) << failing;
    settings.bHistory = false;
    ExpectDefaults(settings);
  }
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

TEST_F(SettingsFileTest, TakesEveryDefaultWithoutTheFile) {
  Load(
      "[General]\r\nProcessPath=C:\\in\r\nResponsePath=C:\\out\r\nHistPath=C:\\logs\r\n"
      "HistoryEach=1\r\nValidateXML=0\r\nStatusPath=%AppPath%\\s\r\n"
      "[Quickbooks]\r\nFileName=C:\\a.qbw\r\nDisconnectTimeout=7\r\n"
      "[Communication]\r\nType=1\r\nSocketPort=7\r\nBlockSize=7\r\n");
  Folder.Erase(u"osl.ini");

  File.LoadSettings();

  ExpectDefaults();
  EXPECT_TRUE(Settings.bFolderWatch);
  EXPECT_TRUE(Settings.bSocketServer);
}

TEST_F(SettingsFileTest, WaitsForAProgramThatHasTheFileForAMoment) {
  Write("[Communication]\r\nSocketPort=5000\r\n");
  auto held = Hold();
  std::jthread holder([&held] {
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    held.reset();
  });

  File.LoadSettings();

  EXPECT_EQ(Settings.lSocketPort, 5000);
  EXPECT_EQ(iUnloads, 0);
}

TEST_F(SettingsFileTest, AFileThatStaysInUseIsAsGoodAsMissing) {
  Load("[Communication]\r\nSocketPort=5000\r\n");
  const auto held = Hold();

  File.LoadSettings();

  EXPECT_THAT(Window.Messages, ElementsAre(u"Unable to find the osl.ini file needed."));
  EXPECT_EQ(iUnloads, 1);
  ExpectDefaults();
}

TEST_F(SettingsFileTest, AFileTakenWhileItIsReadLeavesTheSettingsAsTheyWere) {
  Load("[Quickbooks]\r\nFileName=C:\\a.qbw\r\n");
  std::unique_ptr<platform::File> held;
  Write("[General]\r\nHistory=1\r\n[Quickbooks]\r\nFileName=C:\\b.qbw\r\n");
  Window.DuringMenuChecked = [&] { held = Hold(); };  // once History has been read

  File.LoadSettings();

  EXPECT_TRUE(Settings.bHistory);
  EXPECT_EQ(Settings.sQBFileName, u"C:\\a.qbw");
  EXPECT_EQ(Settings.lSocketPort, 4999);
  EXPECT_EQ(iUnloads, 0);
  ASSERT_EQ(Trace.Status.size(), 1u);
  EXPECT_TRUE(Trace.Status[0].starts_with(u"The settings file cannot be read: "));
  EXPECT_TRUE(
      Trace.Status[0].ends_with(u" HistoryEach and the settings after it stay as they were."));
}

TEST_F(SettingsFileTest, TellsThatAValueIsCut) {
  const std::string path = "C:\\" + std::string(97, 'x');
  Load("[Quickbooks]\r\nFileName=" + path + "\r\n");

  EXPECT_EQ(Settings.sQBFileName, FromAscii(path.substr(0, 99)));
  EXPECT_THAT(Trace.Status, ElementsAre(u"FileName is longer than 99 characters and cut: " +
                                        FromAscii(path.substr(0, 99))));
}

TEST_F(SettingsFileTest, TellsThatPortZeroIsNone) {
  Load("[Communication]\r\nSocketPort=0\r\n");

  EXPECT_THAT(Trace.Status, ElementsAre(u"SocketPort 0 is no port to connect to: the system "
                                        u"chooses any free one"));
}

TEST_F(SettingsFileTest, RefusesACompanyFileNameWithControlCharacters) {
  Settings.sQBFileName = u"C:\\a.qbw";

  const auto [number, description] = ErrorOf("[Quickbooks]\r\nFileName=C:\\b\x1F.qbw\r\n");

  EXPECT_EQ(number, 52);
  EXPECT_EQ(description,
            u"The company file name holds a control character (FileName=C:\\b\u001F.qbw)");
  EXPECT_EQ(Settings.sQBFileName, u"C:\\a.qbw");
}

TEST_F(SettingsFileTest, ReadsHistoryEachForOneOnly) {
  Load("[General]\r\nHistoryEach=yes\r\n");
  EXPECT_FALSE(Settings.bHistoryEach);
  Load("[General]\r\nHistoryEach=1\r\n");
  EXPECT_TRUE(Settings.bHistoryEach);
}

TEST_F(SettingsFileTest, TellsWhyAFileCannotBeUnderstood) {
  Load("[General]\rHistory=1\r");

  ASSERT_EQ(Trace.Status.size(), 1u);
  EXPECT_EQ(Trace.Status[0], FaultOfSettings(u"[General]\rHistory=1\r"));
}

TEST_F(SettingsFileTest, LooksForASectionAsFarAsAMebibyte) {
  Load(";" + std::string((1 << 20) - 12, 'x') + "\r\n[General]");

  EXPECT_THAT(Trace.Status, IsEmpty());
}

TEST(SettingsFault, IsNoneInAFileThatIsEmptyOrHasASection) {
  for (const TextView text :
       {u"", u" \r\n\t\r\n", u"[General]\r\n", u"; comment\n[QUICKBOOKS]\nFileName=",
        u"[Other]\r\n  [communication] ; comment\r\n", u"[General]"}) {
    EXPECT_EQ(FaultOfSettings(text), u"") << ToUtf8(text);
  }
}

TEST(SettingsFault, IsTheMarkOfUtf8) {
  EXPECT_THAT(ToUtf8(FaultOfSettings(BytesToText("\xEF\xBB\xBF[General]\r\n"))),
              HasSubstr("the mark of UTF-8"));
  EXPECT_EQ(FaultOfSettings(BytesToText("[General]\r\n;\xEF\xBB\xBF\r\n")), u"");
}

TEST(SettingsFault, IsALineEndOfCrAlone) {
  EXPECT_THAT(ToUtf8(FaultOfSettings(u"[General]\rHistory=1\r")), HasSubstr("end in CR alone"));
}

TEST(SettingsFault, IsAFileWithoutAnyOfTheSections) {
  for (const TextView text : {u"History=1\r\n", u"[Genera]\r\n", u"x[General]\r\n"}) {
    EXPECT_THAT(ToUtf8(FaultOfSettings(text)), HasSubstr("none of the sections")) << ToUtf8(text);
  }
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
