#include <gtest/gtest.h>

#include "shell/programs/ConsoleSurroundings.h"

namespace ostrel {
namespace {

TEST(ConsoleView, WritesStatusLinesToStandardOutputInTheirOrder) {
  testing::internal::CaptureStdout();
  {
    ConsoleView view;
    view.InsertStatusLine(0, u"Listenning on Socket 4999");
    view.InsertStatusLine(0, u"Watching Folder: a");
  }

  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "Listenning on Socket 4999\nWatching Folder: a\n");
}

TEST(ConsoleView, WritesAMessageToStandardError) {
  testing::internal::CaptureStderr();
  {
    ConsoleView view;
    view.ShowMessage(u"Unable to find the osl.ini file needed.");
  }

  EXPECT_EQ(testing::internal::GetCapturedStderr(), "Unable to find the osl.ini file needed.\n");
}

TEST(ConsoleView, KeepsALineOneLine) {
  EXPECT_EQ(ConsoleLine(u"a\r\nb\tc\x1B[2Jd\u009Be"), u"a  b c [2Jd e\n");
}

TEST(ConsoleView, TakesEveryControlCharacterForABlankAndNothingElse) {
  EXPECT_EQ(ConsoleLine(u"\u0001\u001F \u007F\u0080\u009F"), u"      \n");
  EXPECT_EQ(ConsoleLine(u"!~\u00A0\u00FF"), u"!~\u00A0\u00FF\n");
}

TEST(ConsoleView, KeepsTheAttributeMark) { EXPECT_EQ(ConsoleLine(u"a\u00FEb"), u"a\u00FEb\n"); }

}  // namespace
}  // namespace ostrel
