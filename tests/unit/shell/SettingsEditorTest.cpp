#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "shell/commands/SettingsEditor.h"
#include "tests/unit/shell/SessionCommandTest.h"

namespace ostrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class SettingsEditorTest : public SessionCommandTest {
 protected:
  void OpenSession() {
    Text request = u"QUICKBOOKSINFO";
    Text response;
    Handler.ProcessRequest(request, response);
    Trace.Status.clear();
  }

  std::function<void()> WhileOpen = [] {};  // what happens before the editor is closed
  bool bProgramGoesOn = true;
  SettingsEditor Editor{Settings, File, Gate, Handler, Window, Trace, {Processes, Clock, [this] {
                                                                         WhileOpen();
                                                                         Processes.bEnded = true;
                                                                         return bProgramGoesOn;
                                                                       }}};
};

TEST_F(SettingsEditorTest, OpensTheSettingsFile) {
  Editor.mnuToolsSettings_Click();

  ASSERT_THAT(Processes.Programs, SizeIs(1));
  EXPECT_EQ(Processes.Programs[0].sCommand, u"notepad.exe " + Settings.sIniFile);
  EXPECT_EQ(Processes.Programs[0].iWindowStyle, 1);
}

TEST_F(SettingsEditorTest, ReadsTheSettingsWhenTheEditorWasClosed) {
  std::int16_t whileOpen = 0;
  WhileOpen = [&] {
    Folder.Write(u"osl.ini", "[Quickbooks]\r\nDisconnectTimeout=60\r\n");
    whileOpen = Settings.iDisconnectTimeout;
  };

  Editor.mnuToolsSettings_Click();

  EXPECT_EQ(whileOpen, 300);
  EXPECT_EQ(Settings.iDisconnectTimeout, 60);
}

TEST_F(SettingsEditorTest, ClosesTheConnection) {
  OpenSession();
  bool openMeanwhile = false;
  WhileOpen = [&] { openMeanwhile = IsOpen(); };

  Editor.mnuToolsSettings_Click();

  EXPECT_TRUE(openMeanwhile);
  EXPECT_FALSE(IsOpen());
}

TEST_F(SettingsEditorTest, ReloadsNothingWhenTheEditorDoesNotStart) {
  OpenSession();
  Processes.bCanStart = false;
  Settings.iDisconnectTimeout = 1;

  Editor.mnuToolsSettings_Click();

  EXPECT_EQ(Settings.iDisconnectTimeout, 1);
  EXPECT_TRUE(IsOpen());
}

TEST_F(SettingsEditorTest, ReloadsNothingAfterFiveThousandSeconds) {
  Settings.iDisconnectTimeout = 1;
  WhileOpen = [this] { Clock.Advance(std::chrono::seconds(5001)); };

  Editor.mnuToolsSettings_Click();

  EXPECT_EQ(Settings.iDisconnectTimeout, 1);
}

TEST_F(SettingsEditorTest, ReloadsNothingWhenTheProgramEnds) {
  Settings.iDisconnectTimeout = 1;
  bProgramGoesOn = false;

  Editor.mnuToolsSettings_Click();

  EXPECT_EQ(Settings.iDisconnectTimeout, 1);
}

TEST_F(SettingsEditorTest, TellsAValueThatCannotBeUsed) {
  Folder.Write(u"osl.ini", "[Communication]\r\nSocketPort=many\r\n");

  Editor.mnuToolsSettings_Click();

  EXPECT_THAT(Window.Messages,
              ElementsAre(u"The settings file has a value that cannot be used: Type mismatch "
                          u"(SocketPort=many)\r\n\r\nThe settings after it stay as they were."));
}

TEST_F(SettingsEditorTest, TellsThatTheFileIsGone) {
  Settings.sIniFile = Folder.Path(u"missing.ini");

  Editor.mnuToolsSettings_Click();

  EXPECT_THAT(Window.Messages, ElementsAre(u"Unable to find the osl.ini file needed."));
  EXPECT_EQ(iUnloads, 1);
}

TEST_F(SettingsEditorTest, ReloadsWhenTheRequestInWorkHasEnded) {
  Settings.iDisconnectTimeout = 1;
  auto pass = Gate.TryEnter();

  Editor.mnuToolsSettings_Click();

  EXPECT_EQ(Settings.iDisconnectTimeout, 1);
  EXPECT_TRUE(Editor.IsReloadDue());
  EXPECT_THAT(Trace.Status,
              ElementsAre(u"The settings are read when the request in work has ended"));

  Editor.Reload();  // still in work: not told again
  EXPECT_TRUE(Editor.IsReloadDue());
  EXPECT_THAT(Trace.Status, SizeIs(1));

  pass.reset();
  Editor.Reload();

  EXPECT_EQ(Settings.iDisconnectTimeout, 300);
  EXPECT_FALSE(Editor.IsReloadDue());
}

}  // namespace
}  // namespace ostrel
