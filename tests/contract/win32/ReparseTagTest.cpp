// Wine makes no links: what is one is tested by the tags that Windows gives.
#include <gtest/gtest.h>

#include "platform/win32/FileMetadata.h"

namespace ostrel::platform {
namespace {

TEST(ReparseTag, LinksAndJunctionsStandForAnotherName) {
  EXPECT_TRUE(IsLinkTag(IO_REPARSE_TAG_SYMLINK));
  EXPECT_TRUE(IsLinkTag(IO_REPARSE_TAG_MOUNT_POINT));
  EXPECT_TRUE(IsLinkTag(0xA000001D));  // a link that Linux made on the disk
}

TEST(ReparseTag, AFileKeptElsewhereIsThatFile) {
  EXPECT_FALSE(IsLinkTag(0));
  EXPECT_FALSE(IsLinkTag(IO_REPARSE_TAG_DEDUP));
  EXPECT_FALSE(IsLinkTag(IO_REPARSE_TAG_HSM));
  for (DWORD tag = 0x9000001A; tag <= 0x9000F01A; tag += 0x1000) {
    EXPECT_FALSE(IsLinkTag(tag)) << tag;  // in the cloud
  }
}

}  // namespace
}  // namespace ostrel::platform
