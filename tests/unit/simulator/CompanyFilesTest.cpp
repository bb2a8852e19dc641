#include <gtest/gtest.h>

#include "platform/Files.h"
#include "platform/SystemError.h"
#include "simulator/CompanyStorage.h"
#include "tests/support/ScratchFolder.h"

namespace ostrel::simulator {
namespace {

class CompanyFilesTest : public testing::Test {
 protected:
  ScratchFolder oFolder;
  CompanyFiles oFiles;
};

TEST_F(CompanyFilesTest, ReadAWholeFile) {
  const std::string whole(300'000, 'x');
  oFolder.Write(u"a.qbw", whole);
  std::string bytes;

  EXPECT_EQ(oFiles.Read(oFolder.Path(u"a.qbw"), bytes), 0);

  EXPECT_EQ(bytes, whole);
}

TEST_F(CompanyFilesTest, SayThatAFileIsMissing) {
  std::string bytes;

  EXPECT_EQ(oFiles.Read(oFolder.Path(u"a.qbw"), bytes), platform::kFileNotFound);
}

TEST_F(CompanyFilesTest, ReplaceAFileAndLeaveNothingBeside) {
  oFolder.Write(u"a.qbw", "what was there before");

  EXPECT_EQ(oFiles.Replace(oFolder.Path(u"a.qbw"), "new"), 0);

  EXPECT_EQ(oFolder.Read(u"a.qbw"), "new");
  EXPECT_EQ(oFolder.EntryCount(), 1u);
}

TEST_F(CompanyFilesTest, DoNotMindWhatACrashLeftBeside) {
  oFolder.Write(u"a.qbw", "old");
  oFolder.Write(u"a.qbw.new", "half of something long");

  EXPECT_EQ(oFiles.Replace(oFolder.Path(u"a.qbw"), "new"), 0);

  EXPECT_EQ(oFolder.Read(u"a.qbw"), "new");
}

TEST_F(CompanyFilesTest, KeepTheOldFileWhenAnotherProgramHoldsIt) {
  oFolder.Write(u"a.qbw", "old");
  platform::File holder;
  ASSERT_EQ(holder.Open(oFolder.Path(u"a.qbw"), platform::FileAccess::kRead,
                        platform::FileCreation::kOpenExisting),
            0);

  EXPECT_EQ(oFiles.Replace(oFolder.Path(u"a.qbw"), "new"), platform::kSharingViolation);

  holder.Close();
  EXPECT_EQ(oFolder.Read(u"a.qbw"), "old");
  EXPECT_EQ(oFolder.EntryCount(), 1u);
}

TEST_F(CompanyFilesTest, KeepTheOldFileWhenTheNewOneCannotBeWritten) {
  oFolder.Write(u"a.qbw", "old");
  oFolder.MakeFolder(u"a.qbw.new");

  EXPECT_NE(oFiles.Replace(oFolder.Path(u"a.qbw"), "new"), 0);

  EXPECT_EQ(oFolder.Read(u"a.qbw"), "old");
}

}  // namespace
}  // namespace ostrel::simulator
