#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/FileSystem.h"
#include "platform/Files.h"
#include "platform/SystemError.h"
#include "tests/support/ScratchFolder.h"

namespace ostrel::platform {
namespace {

using testing::Ne;

constexpr FileAccess kEveryAccess[] = {FileAccess::kRead, FileAccess::kWrite,
                                       FileAccess::kReadWrite};

class FilesTest : public testing::Test {
 protected:
  int Open(TextView name, FileAccess access = FileAccess::kReadWrite,
           FileCreation creation = FileCreation::kOpenAlways) {
    return oFile.Open(oFolder.Path(name), access, creation);
  }

  std::string ReadAt(std::int64_t position, std::size_t count) {
    std::string bytes(count, '\0');
    int error = 0;
    bytes.resize(oFile.ReadAt(position, bytes, error).value_or(0));
    EXPECT_EQ(error, 0);
    return bytes;
  }

  int Write(std::int64_t position, std::string_view bytes) {
    return oFile.WriteAt(position, bytes);
  }

  ScratchFolder oFolder;
  File oFile;
};

TEST_F(FilesTest, OpeningAMissingFileFailsAndCreatesNothing) {
  const int error = Open(u"missing.txt", FileAccess::kRead, FileCreation::kOpenExisting);

  EXPECT_EQ(error, kFileNotFound);
  EXPECT_FALSE(oFile.IsOpen());
  EXPECT_EQ(oFolder.EntryCount(), 0u);
}

TEST_F(FilesTest, OpeningInAMissingFolderIsAnotherError) {
  EXPECT_EQ(Open(u"missing\\a.txt", FileAccess::kRead, FileCreation::kOpenExisting), kPathNotFound);
  EXPECT_EQ(Open(u"missing\\a.txt"), kPathNotFound);
}

TEST_F(FilesTest, OpenAlwaysCreatesAnEmptyFile) {
  ASSERT_EQ(Open(u"new.txt", FileAccess::kWrite), 0);

  EXPECT_TRUE(oFolder.Has(u"new.txt"));
  EXPECT_EQ(oFile.Size(), 0);
}

TEST_F(FilesTest, OpenAlwaysKeepsWhatIsThere) {
  oFolder.Write(u"old.txt", "0123456789");

  ASSERT_EQ(Open(u"old.txt", FileAccess::kWrite), 0);

  EXPECT_EQ(oFile.Size(), 10);
}

TEST_F(FilesTest, AFolderIsNoFile) {
  oFolder.MakeFolder(u"folder");

  EXPECT_EQ(Open(u"folder", FileAccess::kRead, FileCreation::kOpenExisting), kAccessDenied);
  EXPECT_EQ(Open(u"folder"), kAccessDenied);
}

TEST_F(FilesTest, APathThatCannotBeOneIsRefused) {
  EXPECT_THAT(oFile.Open({}, FileAccess::kWrite, FileCreation::kOpenAlways), Ne(0));
  EXPECT_THAT(Open(TextView(u"cut\0here", 8)), Ne(0));
  EXPECT_THAT(Open(Text(5000, u'x')), Ne(0));

  EXPECT_EQ(oFolder.EntryCount(), 0u);
}

TEST_F(FilesTest, ASecondOpenIsASharingViolationWhateverItIsFor) {
  oFolder.Write(u"a.txt", "abc");
  for (const FileAccess first : kEveryAccess) {
    ASSERT_EQ(Open(u"a.txt", first), 0);

    for (const FileAccess second : kEveryAccess) {
      EXPECT_EQ(File().Open(oFolder.Path(u"a.txt"), second, FileCreation::kOpenExisting),
                kSharingViolation);
    }
  }
}

TEST_F(FilesTest, AClosedFileIsFreeAgain) {
  ASSERT_EQ(Open(u"a.txt"), 0);

  oFile.Close();

  EXPECT_FALSE(oFile.IsOpen());
  EXPECT_EQ(File().Open(oFolder.Path(u"a.txt"), FileAccess::kRead, FileCreation::kOpenExisting), 0);
}

TEST_F(FilesTest, OpeningClosesWhatWasOpen) {
  ASSERT_EQ(Open(u"a.txt"), 0);
  ASSERT_EQ(Open(u"b.txt"), 0);

  EXPECT_EQ(File().Open(oFolder.Path(u"a.txt"), FileAccess::kRead, FileCreation::kOpenExisting), 0);
}

TEST_F(FilesTest, AMovedFileStaysOpenInItsNewPlaceOnly) {
  ASSERT_EQ(Open(u"a.txt"), 0);

  File moved(std::move(oFile));

  EXPECT_TRUE(moved.IsOpen());
  EXPECT_FALSE(oFile.IsOpen());  // NOLINT(bugprone-use-after-move)
  EXPECT_EQ(moved.WriteAt(0, std::string_view("x")), 0);
}

TEST_F(FilesTest, AnAssignedFileClosesWhatWasOpen) {
  ASSERT_EQ(Open(u"a.txt"), 0);

  oFile = File();

  EXPECT_FALSE(oFile.IsOpen());
  EXPECT_EQ(File().Open(oFolder.Path(u"a.txt"), FileAccess::kRead, FileCreation::kOpenExisting), 0);
}

TEST_F(FilesTest, ReadsFromAnyPositionAndLessAtTheEnd) {
  oFolder.Write(u"a.txt", "0123456789");
  ASSERT_EQ(Open(u"a.txt", FileAccess::kRead), 0);

  EXPECT_EQ(ReadAt(2, 3), "234");
  EXPECT_EQ(ReadAt(8, 5), "89");
  EXPECT_EQ(ReadAt(10, 5), "");
  EXPECT_EQ(ReadAt(1000, 5), "");
}

TEST_F(FilesTest, WritesAtAnyPositionAndZerosFillTheGap) {
  ASSERT_EQ(Open(u"a.txt"), 0);

  EXPECT_EQ(Write(4, "xy"), 0);
  EXPECT_EQ(Write(0, "ab"), 0);

  EXPECT_EQ(ReadAt(0, 10), std::string("ab\0\0xy", 6));
}

TEST_F(FilesTest, EveryByteValueIsKept) {
  std::string bytes;
  for (int byte = 0; byte < 256; ++byte) bytes.push_back(static_cast<char>(byte));
  ASSERT_EQ(Open(u"a.bin"), 0);

  ASSERT_EQ(Write(0, bytes), 0);

  EXPECT_EQ(ReadAt(0, 300), bytes);
}

TEST_F(FilesTest, AMegabyteIsWrittenAndReadWhole) {
  const std::string bytes(1 << 20, 'm');
  ASSERT_EQ(Open(u"a.bin"), 0);

  ASSERT_EQ(Write(0, bytes), 0);

  EXPECT_EQ(ReadAt(0, bytes.size() + 1), bytes);
}

TEST_F(FilesTest, AClosedFileFailsInsteadOfReadingOrWriting) {
  char byte = 0;
  int error = 0;

  EXPECT_FALSE(oFile.ReadAt(0, std::span(&byte, 1), error));
  EXPECT_EQ(error, kInvalidHandle);
  EXPECT_EQ(Write(0, "x"), kInvalidHandle);
  EXPECT_THAT(oFile.CutAt(0), Ne(0));
  EXPECT_THAT(oFile.Flush(), Ne(0));
  EXPECT_EQ(oFile.Size(), std::nullopt);
  EXPECT_FALSE(oFile.Times());
}

TEST_F(FilesTest, AccessIsKeptTo) {
  oFolder.Write(u"a.txt", "abc");
  char byte = 0;
  int error = 0;

  ASSERT_EQ(Open(u"a.txt", FileAccess::kRead), 0);
  EXPECT_THAT(Write(0, "x"), Ne(0));
  ASSERT_EQ(Open(u"a.txt", FileAccess::kWrite), 0);
  EXPECT_FALSE(oFile.ReadAt(0, std::span(&byte, 1), error));

  EXPECT_THAT(error, Ne(0));
  oFile.Close();
  EXPECT_EQ(oFolder.Read(u"a.txt"), "abc");
}

TEST_F(FilesTest, CutsAndLengthens) {
  oFolder.Write(u"a.txt", "0123456789");
  ASSERT_EQ(Open(u"a.txt"), 0);

  ASSERT_EQ(oFile.CutAt(3), 0);
  EXPECT_EQ(ReadAt(0, 10), "012");
  ASSERT_EQ(oFile.CutAt(5), 0);

  EXPECT_EQ(ReadAt(0, 10), std::string("012\0\0", 5));
  EXPECT_EQ(oFile.Flush(), 0);
}

TEST_F(FilesTest, PositionsGoBeyondFourGigabytes) {
  constexpr std::int64_t kFar = (5LL << 30) + 7;
  ASSERT_EQ(Open(u"sparse.bin"), 0);

  ASSERT_EQ(oFile.CutAt(kFar), 0);
  ASSERT_EQ(Write(kFar, "end"), 0);

  EXPECT_EQ(oFile.Size(), kFar + 3);
  EXPECT_EQ(ReadAt(kFar - 1, 9), std::string("\0end", 4));
}

TEST_F(FilesTest, TimesAreThoseOfTheFile) {
  ASSERT_EQ(Open(u"a.txt"), 0);
  ASSERT_EQ(Write(0, "x"), 0);

  const auto times = oFile.Times();

  ASSERT_TRUE(times);
  const TimePoint now = SystemClock().Now();
  for (const TimePoint time : {times->created, times->accessed, times->modified}) {
    EXPECT_LT(time, now + std::chrono::minutes(10));
    EXPECT_GT(time, now - std::chrono::minutes(10));
  }
}

TEST_F(FilesTest, EitherSeparatorWillDoAndManyCountOnce) {
  oFolder.MakeFolder(u"sub");
  oFolder.Write(u"sub/a.txt", "abc");

  for (const TextView path : {u"sub\\a.txt", u"sub/a.txt", u"sub\\\\a.txt", u"sub\\/a.txt"}) {
    EXPECT_EQ(Open(path, FileAccess::kRead, FileCreation::kOpenExisting), 0);
  }
}

TEST_F(FilesTest, FoldersAreFoundIgnoringCase) {
  oFolder.MakeFolder(u"Sub Caf\u00C9");
  oFolder.Write(u"Sub Caf\u00C9/A.TXT", "abc");

  ASSERT_EQ(Open(u"sUB caf\u00E9\\A.TXT"), 0);

  EXPECT_EQ(ReadAt(0, 3), "abc");
}

TEST_F(FilesTest, ANewFileIsCreatedUnlessThereIsOne) {
  oFolder.Write(u"old.txt", "abc");
  oFolder.MakeFolder(u"folder");

  EXPECT_EQ(Open(u"new.txt", FileAccess::kWrite, FileCreation::kCreateNew), 0);
  EXPECT_EQ(Open(u"old.txt", FileAccess::kWrite, FileCreation::kCreateNew), kFileExists);
  EXPECT_THAT(Open(u"folder", FileAccess::kWrite, FileCreation::kCreateNew), Ne(0));

  EXPECT_TRUE(oFolder.Has(u"new.txt"));
  EXPECT_EQ(oFolder.Read(u"old.txt"), "abc");
}

TEST_F(FilesTest, AFileIsOpenedWhereLinksAreRefused) {
  oFolder.Write(u"a.txt", "abc");

  ASSERT_EQ(oFile.Open(oFolder.Path(u"a.txt"), FileAccess::kRead, FileCreation::kOpenExisting,
                       FileLinks::kRefuse),
            0);

  EXPECT_EQ(ReadAt(0, 5), "abc");
}

TEST_F(FilesTest, ALinkIsNotOpenedWhereLinksAreRefused) {
  oFolder.Write(u"secret", "abc");
  if (!oFolder.MakeLink(u"secret", u"link") || !oFolder.MakeLink(u"none", u"dangling")) {
    return;  // Wine makes no links
  }

  for (const TextView name : {u"link", u"dangling"}) {
    for (const FileAccess access : kEveryAccess) {
      EXPECT_EQ(
          oFile.Open(oFolder.Path(name), access, FileCreation::kOpenExisting, FileLinks::kRefuse),
          kStoppedOnLink);
      EXPECT_EQ(
          oFile.Open(oFolder.Path(name), access, FileCreation::kOpenAlways, FileLinks::kRefuse),
          kStoppedOnLink);
      EXPECT_EQ(Open(name, access, FileCreation::kCreateNew), kFileExists);
    }
  }

  EXPECT_EQ(oFolder.Read(u"secret"), "abc");
  EXPECT_FALSE(oFolder.Has(u"none"));
}

TEST_F(FilesTest, ANewFileGoesIntoTheFolderThatDiffersInCase) {
  oFolder.MakeFolder(u"Process");

  ASSERT_EQ(Open(u"process\\new.txt"), 0);

  EXPECT_EQ(oFolder.EntryCount(), 1u);
  EXPECT_TRUE(oFolder.Has(u"Process/new.txt"));
}

TEST_F(FilesTest, NamesMayHaveAnyCharacter) {
  const Text name = u"\u0416\u6F22 \U0001F600.txt";

  ASSERT_EQ(Open(name), 0);
  ASSERT_EQ(Write(0, "abc"), 0);
  oFile.Close();

  EXPECT_EQ(oFolder.Read(name), "abc");
}

TEST_F(FilesTest, PathsMayBeLong) {
  Text name = Text(100, u'a');
  for (int depth = 0; depth < 4; ++depth) {
    ASSERT_EQ(MakeFolder(oFolder.Path(name)), 0);
    name += u"\\" + Text(100, u'b');
  }

  ASSERT_EQ(Open(name), 0);
  EXPECT_EQ(Write(0, "abc"), 0);
  EXPECT_EQ(ReadAt(0, 5), "abc");
}

}  // namespace
}  // namespace ostrel::platform
