#include <gtest/gtest.h>

#include "platform/Files.h"
#include "platform/SystemError.h"
#include "simulator/company/CompanyStorage.h"
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

TEST_F(CompanyFilesTest, CreateAFileAndWriteOnBehindAPosition) {
  EXPECT_EQ(oFiles.WriteFrom(0, oFolder.Path(u"a.journal"), "first"), 0);
  EXPECT_EQ(oFiles.WriteFrom(5, oFolder.Path(u"a.journal"), "second"), 0);

  EXPECT_EQ(oFolder.Read(u"a.journal"), "firstsecond");
}

TEST_F(CompanyFilesTest, LeaveNothingOfWhatStoodBehindThePosition) {
  oFolder.Write(u"a.journal", "first and what a crash has torn");

  EXPECT_EQ(oFiles.WriteFrom(5, oFolder.Path(u"a.journal"), "2"), 0);

  EXPECT_EQ(oFolder.Read(u"a.journal"), "first2");
}

TEST_F(CompanyFilesTest, DoNotWriteWhatAnotherProgramHolds) {
  oFolder.Write(u"a.journal", "first");
  platform::File holder;
  ASSERT_EQ(holder.Open(oFolder.Path(u"a.journal"), platform::FileAccess::kRead,
                        platform::FileCreation::kOpenExisting),
            0);

  EXPECT_EQ(oFiles.WriteFrom(0, oFolder.Path(u"a.journal"), "2"), platform::kSharingViolation);

  holder.Close();
  EXPECT_EQ(oFolder.Read(u"a.journal"), "first");
}

TEST_F(CompanyFilesTest, SeeThatAnotherProgramHasWrittenAFile) {
  oFolder.Write(u"a.qbw", "old");
  FileMark before, same, after;
  ASSERT_EQ(oFiles.CheckWritable(oFolder.Path(u"a.qbw"), before), 0);
  ASSERT_EQ(oFiles.CheckWritable(oFolder.Path(u"a.qbw"), same), 0);

  oFolder.Write(u"a.qbw", "new and longer");

  ASSERT_EQ(oFiles.CheckWritable(oFolder.Path(u"a.qbw"), after), 0);
  EXPECT_EQ(before, same);
  EXPECT_NE(before, after);
}

TEST_F(CompanyFilesTest, SayThatAFileMustNotBeWritten) {
  oFolder.Write(u"a.qbw", "old");
  platform::File holder;
  ASSERT_EQ(holder.Open(oFolder.Path(u"a.qbw"), platform::FileAccess::kRead,
                        platform::FileCreation::kOpenExisting),
            0);
  FileMark mark;

  EXPECT_EQ(oFiles.CheckWritable(oFolder.Path(u"a.qbw"), mark), platform::kSharingViolation);
}

TEST_F(CompanyFilesTest, LockACompanyOnce) {
  oFolder.Write(u"a.qbw", "old");
  const CompanyHold hold = oFiles.Lock(oFolder.Path(u"a.qbw"));
  EXPECT_EQ(hold.error, 0);
  ASSERT_NE(hold.lock, nullptr);

  const CompanyHold second = oFiles.Lock(oFolder.Path(u"a.qbw"));

  EXPECT_EQ(second.error, platform::kSharingViolation);
  EXPECT_EQ(second.lock, nullptr);
  EXPECT_EQ(oFiles.Lock(oFolder.Path(u"b.qbw")).error, 0);
  std::string bytes;
  EXPECT_EQ(oFiles.Read(oFolder.Path(u"a.qbw"), bytes), 0);
}

TEST_F(CompanyFilesTest, LeaveNothingOfALockThatIsGivenBack) {
  oFolder.Write(u"a.qbw", "old");
  CompanyHold hold = oFiles.Lock(oFolder.Path(u"a.qbw"));

  hold.lock.reset();

  EXPECT_EQ(oFolder.EntryCount(), 1u);
  EXPECT_EQ(oFiles.Lock(oFolder.Path(u"a.qbw")).error, 0);
}

// A process that was killed leaves its lock behind.
TEST_F(CompanyFilesTest, TakeALockThatNobodyHolds) {
  oFolder.Write(u".a.qbw.lock", "");

  EXPECT_EQ(oFiles.Lock(oFolder.Path(u"a.qbw")).error, 0);
}

TEST_F(CompanyFilesTest, SayWhyACompanyCannotBeLocked) {
  const CompanyHold hold = oFiles.Lock(oFolder.Path(u"missing\\a.qbw"));

  EXPECT_EQ(hold.error, platform::kPathNotFound);
  EXPECT_EQ(hold.lock, nullptr);
}

TEST_F(CompanyFilesTest, PutAFileInThePlaceOfAnother) {
  oFolder.Write(u"a.qbw", "old");
  oFolder.Write(u"a.qbw.new", "new");

  EXPECT_EQ(oFiles.Rename(oFolder.Path(u"a.qbw.new"), oFolder.Path(u"a.qbw")), 0);

  EXPECT_EQ(oFolder.Read(u"a.qbw"), "new");
  EXPECT_EQ(oFolder.EntryCount(), 1u);
}

}  // namespace
}  // namespace ostrel::simulator
