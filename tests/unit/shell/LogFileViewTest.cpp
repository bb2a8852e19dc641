#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "shell/commands/LogFileView.h"
#include "tests/unit/shell/SessionCommandTest.h"

namespace ostrel {
namespace {

class LogFileViewTest : public SessionCommandTest {
 protected:
  LogFileViewTest() {
    Settings.sHistPath = Folder.Path();
    Folder.Write(u"1050201090307AM.txt", "Version: 1\r\nlast");
  }

  LogFileView View{Settings, Report};
};

TEST_F(LogFileViewTest, ShowsTheFileThatTheLineNames) {
  View.lstStatus_DblClick(u"Creating Log File:  1050201090307AM.txt ");

  EXPECT_EQ(Forms.Only().sCaption, u"Log File");
  EXPECT_EQ(Forms.Only().sText, u"Version: 1\r\nlast");
  EXPECT_TRUE(Forms.Only().bOpen);
}

TEST_F(LogFileViewTest, IgnoresALineThatNamesNoLog) {
  for (const TextView line : {u"Listenning: 1050201090307AM.txt", u"log : 1050201090307AM.txt",
                              u"Log: 1050201090307AM.txt", u""}) {
    View.lstStatus_DblClick(line);
  }

  EXPECT_FALSE(HasShown());
}

TEST_F(LogFileViewTest, OpensNothingForALineWithoutAName) {
  View.lstStatus_DblClick(u"Creating Log File: ");

  EXPECT_FALSE(HasShown());
}

TEST_F(LogFileViewTest, TakesTheWholeLineForTheNameWithoutAColon) {
  Folder.Write(u"Log of today.txt", "today");

  View.lstStatus_DblClick(u" Log of today.txt");

  EXPECT_EQ(Forms.Only().sText, u"today");
}

TEST_F(LogFileViewTest, OpensNothingThatIsMissing) {
  View.lstStatus_DblClick(u"Creating Log File: missing.txt");

  EXPECT_FALSE(HasShown());
}

TEST_F(LogFileViewTest, LetsTheFileGoBeforeItIsShown) {
  bool isFree = false;
  Forms.DuringShow = [&] {
    cFileIO file;
    isFree = file.OpenFile(Folder.Path(u"1050201090307AM.txt"), u"R");
  };

  View.lstStatus_DblClick(u"Creating Log File: 1050201090307AM.txt");

  EXPECT_TRUE(isFree);
}

TEST_F(LogFileViewTest, ShowsTheBeginningOfAGiantFile) {
  Folder.Write(u"giant.txt", std::string(std::size_t{8} << 20, 'x'));

  View.lstStatus_DblClick(u"Creating Log File: giant.txt");

  EXPECT_TRUE(Forms.Only().sText.ends_with(u"x\r\n(The rest is not shown.)"));
  EXPECT_LT(Forms.Only().sText.size(), (std::size_t{4} << 20) + 100);
}

}  // namespace
}  // namespace ostrel
