#include <gtest/gtest.h>

#include "shell/ConsoleView.h"

namespace ostrel {
namespace {

TEST(ConsoleView, WritesAStatusLineToStandardOutputAtOnce) {
  ConsoleView view;

  testing::internal::CaptureStdout();
  view.InsertStatusLine(0, u"Listenning on Socket 4999");

  EXPECT_EQ(testing::internal::GetCapturedStdout(), "Listenning on Socket 4999\n");
}

TEST(ConsoleView, WritesAMessageToStandardError) {
  ConsoleView view;

  testing::internal::CaptureStderr();
  view.ShowMessage(u"Unable to find the osl.ini file needed.");

  EXPECT_EQ(testing::internal::GetCapturedStderr(), "Unable to find the osl.ini file needed.\n");
}

TEST(ConsoleView, KeepsALineOneLine) {
  EXPECT_EQ(ConsoleLine(u"a\r\nb\tc\x1B[2Jd\u009Be"), u"a  b c [2Jd e\n");
}

TEST(ConsoleView, KeepsTheAttributeMark) { EXPECT_EQ(ConsoleLine(u"a\u00FEb"), u"a\u00FEb\n"); }

}  // namespace
}  // namespace ostrel
