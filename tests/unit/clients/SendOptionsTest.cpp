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

TEST(SendOptions, OneWayInOnly) {
  EXPECT_THROW(ParseSendOptions({u"--folder", u"in", u"out", u"--port", u"4999", u"X"}),
               UsageError);
  EXPECT_THROW(ParseSendOptions({u"--host", u"h", u"--folder", u"in", u"out", u"X"}), UsageError);
}

}  // namespace
}  // namespace ostrel
