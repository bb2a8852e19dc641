#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/FileSystem.h"
#include "platform/Files.h"
#include "platform/SystemError.h"
#include "platform/detail/FileNames.h"
#include "tests/support/ScratchFolder.h"

namespace ostrel::platform {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Ne;
using testing::SizeIs;

class FileSystemTest : public testing::Test {
 protected:
  Text Path(TextView name) const { return oFolder.Path(name); }

  ScratchFolder oFolder;
};

TEST_F(FileSystemTest, ErasesAFile) {
  oFolder.Write(u"a.txt", "abc");

  EXPECT_EQ(EraseFile(Path(u"a.txt")), 0);

  EXPECT_FALSE(oFolder.Has(u"a.txt"));
}

TEST_F(FileSystemTest, ErasingWhatIsMissingSaysWhatIsMissing) {
  EXPECT_EQ(EraseFile(Path(u"a.txt")), kFileNotFound);
  EXPECT_EQ(EraseFile(Path(u"folder\\a.txt")), kPathNotFound);
}

TEST_F(FileSystemTest, AFolderIsNotErasedAsAFile) {
  oFolder.MakeFolder(u"folder");

  EXPECT_EQ(EraseFile(Path(u"folder")), kAccessDenied);

  EXPECT_TRUE(oFolder.Has(u"folder"));
}

TEST_F(FileSystemTest, Renames) {
  oFolder.Write(u"a.txt", "abc");

  EXPECT_EQ(RenamePath(Path(u"a.txt"), Path(u"b.txt")), 0);

  EXPECT_FALSE(oFolder.Has(u"a.txt"));
  EXPECT_EQ(oFolder.Read(u"b.txt"), "abc");
}

TEST_F(FileSystemTest, RenamingNeverReplaces) {
  oFolder.Write(u"a.txt", "abc");
  oFolder.Write(u"b.txt", "old");

  EXPECT_EQ(RenamePath(Path(u"a.txt"), Path(u"b.txt")), kFileExists);

  EXPECT_EQ(oFolder.Read(u"a.txt"), "abc");
  EXPECT_EQ(oFolder.Read(u"b.txt"), "old");
}

// Wine takes the new case but leaves the old one on the disk.
TEST_F(FileSystemTest, ANameMayChangeInCaseOnly) {
  oFolder.Write(u"a.txt", "abc");

  EXPECT_EQ(RenamePath(Path(u"a.txt"), Path(u"A.TXT")), 0);

  EXPECT_THAT(ListFiles(oFolder.Path(), u"A.txt"), SizeIs(1));
}

TEST_F(FileSystemTest, RenamingSaysWhatIsMissing) {
  oFolder.Write(u"a.txt", "abc");

  EXPECT_EQ(RenamePath(Path(u"b.txt"), Path(u"c.txt")), kFileNotFound);
  EXPECT_EQ(RenamePath(Path(u"a.txt"), Path(u"missing\\c.txt")), kPathNotFound);
}

TEST_F(FileSystemTest, RenamingOverReplaces) {
  oFolder.Write(u"a.txt", "new");
  oFolder.Write(u"b.txt", "old");

  EXPECT_EQ(RenameOver(Path(u"a.txt"), Path(u"b.txt")), 0);

  EXPECT_FALSE(oFolder.Has(u"a.txt"));
  EXPECT_EQ(oFolder.Read(u"b.txt"), "new");
}

TEST_F(FileSystemTest, RenamingOverNothingMoves) {
  oFolder.Write(u"a.txt", "new");

  EXPECT_EQ(RenameOver(Path(u"a.txt"), Path(u"b.txt")), 0);
  EXPECT_EQ(RenameOver(Path(u"a.txt"), Path(u"c.txt")), kFileNotFound);

  EXPECT_EQ(oFolder.Read(u"b.txt"), "new");
}

TEST_F(FileSystemTest, DuplicatesAndReplaces) {
  oFolder.Write(u"a.txt", "new");
  oFolder.Write(u"b.txt", "older and longer");

  EXPECT_EQ(DuplicateFile(Path(u"a.txt"), Path(u"b.txt")), 0);

  EXPECT_EQ(oFolder.Read(u"a.txt"), "new");
  EXPECT_EQ(oFolder.Read(u"b.txt"), "new");
}

TEST_F(FileSystemTest, DuplicatingSaysWhatIsMissing) {
  oFolder.Write(u"a.txt", "abc");

  EXPECT_EQ(DuplicateFile(Path(u"b.txt"), Path(u"c.txt")), kFileNotFound);
  EXPECT_EQ(DuplicateFile(Path(u"a.txt"), Path(u"missing\\c.txt")), kPathNotFound);
  EXPECT_EQ(oFolder.EntryCount(), 1u);
}

TEST_F(FileSystemTest, RecyclingTakesTheFileAway) {
  oFolder.Write(u"a.txt", "abc");

  EXPECT_EQ(RecyclePath(Path(u"a.txt"), false), 0);

  EXPECT_FALSE(oFolder.Has(u"a.txt"));
  EXPECT_EQ(RecyclePath(Path(u"a.txt"), false), kFileNotFound);
}

TEST_F(FileSystemTest, TemporaryFilesAreNewAndEmpty) {
  const Text first = MakeTemporaryFile(oFolder.Path(), u"ntstail");
  const Text second = MakeTemporaryFile(oFolder.Path(), u"ntstail");

  EXPECT_NE(first, second);
  const auto names = ListFiles(oFolder.Path(), u"nts*.tmp");
  ASSERT_EQ(names.size(), 2u);
  for (const Text& name : names) EXPECT_EQ(oFolder.Read(name), "");
}

TEST_F(FileSystemTest, ATemporaryFileNeedsAFolderAndAPlainPrefix) {
  EXPECT_THAT(MakeTemporaryFile(Path(u"missing"), u"nts"), IsEmpty());
  EXPECT_THAT(MakeTemporaryFile({}, u"nts"), IsEmpty());
  EXPECT_THAT(MakeTemporaryFile(oFolder.Path(), u"..\\"), IsEmpty());
}

TEST_F(FileSystemTest, TheFolderForTemporaryFilesExists) {
  EXPECT_TRUE(FolderExists(TemporaryFolder()));
}

TEST_F(FileSystemTest, TheProgramsFolderHoldsTheProgram) {
  EXPECT_FALSE(ProgramFolder().ends_with(u'/') || ProgramFolder().ends_with(u'\\'));
  EXPECT_THAT(ListFiles(ProgramFolder(), u"contract*"), Ne(std::vector<Text>()));
}

TEST_F(FileSystemTest, AShortPathNamesTheSameFolder) {
  oFolder.MakeFolder(u"a folder with a long name");

  const Text shortPath = ShortPath(Path(u"a folder with a long name"));

  EXPECT_TRUE(FolderExists(shortPath));
  EXPECT_EQ(MakeFolder(shortPath + u"\\inside"), 0);
  EXPECT_TRUE(oFolder.Has(u"a folder with a long name/inside"));
}

TEST_F(FileSystemTest, MakesOneFolder) {
  EXPECT_EQ(MakeFolder(Path(u"a")), 0);
  EXPECT_EQ(MakeFolder(Path(u"a")), kFileExists);
  EXPECT_EQ(MakeFolder(Path(u"A\\b")), 0);
  EXPECT_EQ(MakeFolder(Path(u"c\\d")), kPathNotFound);

  EXPECT_TRUE(oFolder.Has(u"a/b"));
  EXPECT_FALSE(oFolder.Has(u"c"));
}

TEST_F(FileSystemTest, KnowsFoldersFromFiles) {
  oFolder.Write(u"a.txt", "abc");

  EXPECT_TRUE(FolderExists(oFolder.Path()));
  EXPECT_TRUE(FolderExists(oFolder.Path() + u"\\"));
  EXPECT_FALSE(FolderExists(Path(u"a.txt")));
  EXPECT_FALSE(FolderExists(Path(u"missing")));
  EXPECT_FALSE(FolderExists({}));
}

TEST_F(FileSystemTest, ListsMatchingFilesInAlphabeticalOrderIgnoringCase) {
  for (const TextView name : {u"b.osl", u"A.OSL", u"c.oslx", u"d.txt", u"a1.osl", u"C.osl"}) {
    oFolder.Write(name, "");
  }
  oFolder.MakeFolder(u"folder.osl");

  EXPECT_THAT(ListFiles(oFolder.Path(), u"*.osl"),
              ElementsAre(u"A.OSL", u"a1.osl", u"b.osl", u"C.osl"));
  EXPECT_THAT(ListFiles(oFolder.Path(), u"?.osl"), ElementsAre(u"A.OSL", u"b.osl", u"C.osl"));
}

TEST_F(FileSystemTest, ListsNamesWithAnyCharacter) {
  oFolder.Write(u"\u0416\u6F22.osl", "");

  EXPECT_THAT(ListFiles(oFolder.Path(), u"*.OSL"), ElementsAre(u"\u0416\u6F22.osl"));
}

TEST_F(FileSystemTest, AFolderThatCannotBeReadListsNothing) {
  oFolder.Write(u"a.txt", "abc");

  EXPECT_THAT(ListFiles(Path(u"missing"), u"*"), IsEmpty());
  EXPECT_THAT(ListFiles(Path(u"a.txt"), u"*"), IsEmpty());
}

TEST_F(FileSystemTest, SaysWhatStandsAtAPath) {
  oFolder.Write(u"a.txt", "abc");
  oFolder.MakeFolder(u"folder");

  EXPECT_EQ(KindOf(Path(u"a.txt")), EntryKind::kFile);
  EXPECT_EQ(KindOf(Path(u"folder")), EntryKind::kFolder);
  EXPECT_EQ(KindOf(Path(u"missing")), EntryKind::kNone);
  EXPECT_EQ(KindOf({}), EntryKind::kNone);
}

TEST_F(FileSystemTest, ALinkIsNeitherFileNorFolder) {
  oFolder.Write(u"a.txt", "abc");
  oFolder.MakeFolder(u"folder");
  const bool areMade = oFolder.MakeLink(u"a.txt", u"link") &&
                       oFolder.MakeLink(u"no", u"dangling") &&
                       oFolder.MakeFolderLink(u"folder", u"folder link");
  if (!areMade) return;  // Wine makes no links

  for (const TextView name : {u"link", u"dangling", u"folder link"}) {
    EXPECT_EQ(KindOf(Path(name)), EntryKind::kLink);
  }
  EXPECT_THAT(ListFiles(oFolder.Path(), u"*"), ElementsAre(u"a.txt", u"dangling", u"link"));
  EXPECT_TRUE(IsSameFolder(Path(u"folder"), Path(u"folder link")));
}

TEST_F(FileSystemTest, KnowsAFolderUnderEachOfItsNames) {
  oFolder.MakeFolder(u"a folder with a long name");
  oFolder.MakeFolder(u"other");
  oFolder.Write(u"a.txt", "abc");
  const Text folder = Path(u"a folder with a long name");

  for (const Text& name :
       {folder + u"\\", folder + u"\\.", Path(u"other\\..\\A Folder with a LONG name"),
        ShortPath(folder), ReplaceAll(folder, u"\\", u"/")}) {
    EXPECT_TRUE(IsSameFolder(folder, name)) << ToUtf8(name);
  }
  EXPECT_FALSE(IsSameFolder(folder, Path(u"other")));
  EXPECT_FALSE(IsSameFolder(Path(u"missing"), Path(u"missing")));
  EXPECT_FALSE(IsSameFolder(Path(u"a.txt"), Path(u"a.txt")));
}

TEST_F(FileSystemTest, NamesThatDifferAreOneFileWhereTheSystemSaysSo) {
  oFolder.Write(u"name", "1");
  const bool isOne = oFolder.Has(u"NAME");

  EXPECT_EQ(IsSameName(u"name", u"NAME"), isOne);
  EXPECT_TRUE(IsSameName(u"name", u"name"));
  EXPECT_FALSE(IsSameName(u"name", u"names"));
}

TEST_F(FileSystemTest, TheLongestNameIsTakenAndALongerOneIsNot) {
  const Text longest = Text(255, u'n');
  oFolder.Write(u"a", "abc");

  EXPECT_FALSE(IsNameTooLong(longest));
  EXPECT_TRUE(IsNameTooLong(longest + u"n"));
  EXPECT_EQ(RenamePath(Path(u"a"), Path(longest)), 0);
  EXPECT_THAT(RenamePath(Path(longest), Path(longest + u"n")), Ne(0));
}

TEST_F(FileSystemTest, EveryNameThatAFileCanHaveHereIsReachable) {
  oFolder.Write(u"a.osl", "");
  std::vector<Text> unreachable = {u"of before"};

  EXPECT_THAT(ListFiles(oFolder.Path(), u"*", &unreachable), ElementsAre(u"a.osl"));

  EXPECT_THAT(unreachable, IsEmpty());
}

TEST(FileNames, PatternsMatchWholeNames) {
  EXPECT_TRUE(MatchesPattern(u"", u""));
  EXPECT_TRUE(MatchesPattern(u"", u"**"));
  EXPECT_TRUE(MatchesPattern(u"request.osl", u"*.osl"));
  EXPECT_TRUE(MatchesPattern(u"a.osl.osl", u"*.osl"));
  EXPECT_TRUE(MatchesPattern(u"abcabd", u"*ab?"));
  EXPECT_FALSE(MatchesPattern(u"request.oslx", u"*.osl"));
  EXPECT_FALSE(MatchesPattern(u"osl", u"*.osl"));
  EXPECT_FALSE(MatchesPattern(u"a", u"a?"));
  EXPECT_FALSE(MatchesPattern(u"ab", u"a"));
}

TEST(SystemError, EveryNumberHasASentenceOnOneLine) {
  for (const int number : {kFileNotFound, kAccessDenied, kDiskFull, kSharingViolation, 987654}) {
    const Text sentence = SystemErrorText(number);

    EXPECT_FALSE(sentence.empty());
    EXPECT_EQ(sentence.find_first_of(u"\r\n"), Text::npos);
  }
  EXPECT_NE(SystemErrorText(kFileNotFound), SystemErrorText(kDiskFull));
}

TEST_F(FileSystemTest, TheModifiedTimeIsTheLastWrites) {
  oFolder.Write(u"a.txt", "abc");
  File file;
  ASSERT_EQ(file.Open(Path(u"a.txt"), FileAccess::kRead, FileCreation::kOpenExisting), 0);

  const auto modified = ModifiedTime(Path(u"a.txt"));

  ASSERT_TRUE(modified);  // although the file is open and not shared
  EXPECT_EQ(*modified, file.Times()->modified);
}

TEST_F(FileSystemTest, WhatIsMissingHasNoModifiedTime) {
  EXPECT_FALSE(ModifiedTime(Path(u"a.txt")));
}

}  // namespace
}  // namespace ostrel::platform
