#include <gtest/gtest.h>

#include "clients/SendOptions.h"

namespace ostrel {
namespace {

TEST(SendOptions, FolderTakesTheProcessFolderAndTheResponseFolder) {
  const SendOptions options = ParseSendOptions({u"--folder", u"in", u"out", u"CLOSEQB:"});

  ASSERT_TRUE(options.folders);
  EXPECT_EQ(options.folders->process, u"in");
  EXPECT_EQ(options.folders->response, u"out");
  EXPECT_EQ(options.request, u"CLOSEQB:");
}

TEST(SendOptions, WithoutAFolderTheRequestGoesOverTcp) {
  const SendOptions options = ParseSendOptions({u"--port", u"5000", u"CLOSEQB:"});

  EXPECT_FALSE(options.folders);
  EXPECT_EQ(options.port, 5000);
}

TEST(SendOptions, FolderNeedsBothFolders) {
  EXPECT_THROW(ParseSendOptions({u"--folder", u"in"}), UsageError);
  EXPECT_THROW(ParseSendOptions({u"--folder", u"in", u"out"}), UsageError);
}

TEST(SendOptions, ConnectOnlyTakesNoRequest) {
  EXPECT_TRUE(ParseSendOptions({u"--connect-only"}).connectOnly);
  EXPECT_THROW(ParseSendOptions({u"--connect-only", u"X"}), UsageError);
  EXPECT_THROW(ParseSendOptions({u"--connect-only", u"--nonsense"}), UsageError);
}

TEST(SendOptions, EscapeNeedsAText) {
  EXPECT_TRUE(ParseSendOptions({u"--escape", u"X"}).escape);
  EXPECT_THROW(ParseSendOptions({u"--escape"}), UsageError);
  EXPECT_THROW(ParseSendOptions({u"--escape", u"--connect-only", u"X"}), UsageError);
}

TEST(SendOptions, OneWayInOnly) {
  EXPECT_THROW(ParseSendOptions({u"--folder", u"in", u"out", u"--port", u"4999", u"X"}),
               UsageError);
  EXPECT_THROW(ParseSendOptions({u"--host", u"h", u"--folder", u"in", u"out", u"X"}), UsageError);
}

}  // namespace
}  // namespace ostrel
