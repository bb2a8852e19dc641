#include <gtest/gtest.h>

#include <filesystem>

#include "platform/FileSystem.h"
#include "platform/SystemError.h"
#include "tests/support/MemoryLimit.h"
#include "tests/support/ScratchFolder.h"
#include "util/CodePage.h"
#include "util/cFileIO.h"

namespace ostrel {
namespace {

using namespace std::string_literals;

constexpr TextView kName = u"data.txt";

// cFileIO turns folders to lower case, which these names already are.
class cFileIOTest : public testing::Test {
 protected:
  cFileIOTest() { oFile.FullFileName(oFolder.Path(kName)); }

  void Given(std::string_view bytes) { oFolder.Write(kName, bytes); }
  std::string Bytes() const { return oFolder.Read(kName); }

  void OpenFor(TextView readWrite) { ASSERT_TRUE(oFile.OpenFile({}, readWrite)); }
  void WriteData(Text text, std::int64_t offset = -1, TextView option = {}) {
    oFile.WriteData(text, offset, option);
  }
  Text ReadData(std::int64_t offset, std::int64_t count, TextView option = {}) {
    Text text = u"unread";
    oFile.ReadData(text, offset, count, option);
    return text;
  }
  Text InputLine() {
    Text line = u"unread";
    oFile.InputLine(line);
    return line;
  }

  int ErrorNumber() const {
    Text message;
    std::int32_t number = -1;
    oFile.ReadErrorHandler(message, number);
    return number;
  }
  Text ErrorMessage() const {
    Text message;
    std::int32_t number = -1;
    oFile.ReadErrorHandler(message, number);
    return message;
  }

  ScratchFolder oFolder;
  cFileIO oFile;
};

Text ProgramFolderInLowerCase() { return LowerCase(platform::ProgramFolder()); }

Text WithEveryDigitNine(Text text) {
  for (char16_t& c : text) c = c >= u'0' && c <= u'9' ? u'9' : c;
  return text;
}

// Names

TEST(cFileIONames, ANewObjectIsInTheProgramsFolderWithoutAName) {
  cFileIO file;

  EXPECT_EQ(file.FilePath(), platform::ProgramFolder() + u"\\");
  EXPECT_EQ(file.FileName(), u"");
  EXPECT_FALSE(file.IsOpen());
  EXPECT_EQ(file.CurrentPos(), 0);
}

TEST(cFileIONames, TheFolderIsWhatStandsBeforeTheLastSeparator) {
  cFileIO file;

  file.FullFileName(u"c:\\data\\in\\a.b.osl");

  EXPECT_EQ(file.FilePath(), u"c:\\data\\in\\");
  EXPECT_EQ(file.FileName(), u"a.b.osl");
  EXPECT_EQ(file.FileNameNoExt(), u"a.b");
  EXPECT_EQ(file.FullFileName(), u"c:\\data\\in\\a.b.osl");
}

TEST(cFileIONames, SlashesSeparateToo) {
  cFileIO file;

  file.FullFileName(u"/srv/data\\in/a.osl");
  EXPECT_EQ(file.FileName(), u"a.osl");
  EXPECT_EQ(file.FilePath(), u"/srv/data\\in/\\");

  file.FullFileName(u"/srv/data/in\\a.osl");
  EXPECT_EQ(file.FilePath(), u"/srv/data/in\\");
}

TEST(cFileIONames, ANameWithoutASeparatorKeepsTheProgramsFolder) {
  cFileIO file;

  file.FullFileName(u"osl.ini");

  EXPECT_EQ(file.FileName(), u"osl.ini");
  EXPECT_EQ(file.FullFileName(), ProgramFolderInLowerCase() + u"\\osl.ini");
}

TEST(cFileIONames, TheFolderIsTurnedToLowerCaseAndTheNameIsNot) {
  cFileIO file;

  file.FullFileName(u"C:\\Data\\IN\\Comm.LOG");

  EXPECT_EQ(file.FullFileName(), u"c:\\data\\in\\Comm.LOG");
}

TEST(cFileIONames, TheMarkerInAnyCaseIsTheProgramsFolderInItsOwn) {
  cFileIO file;

  file.FullFileName(u"%AppPath%\\History\\Comm.log");

  EXPECT_EQ(file.FullFileName(), platform::ProgramFolder() + u"\\history\\Comm.log");
}

TEST(cFileIONames, ANameWithoutAnExtensionHasNothingToLose) {
  cFileIO file;

  file.FullFileName(u"c:\\data.d\\file");

  EXPECT_EQ(file.FileNameNoExt(), u"file");
}

TEST(cFileIO, WithoutAFileHasNoEndToGoTo) {
  cFileIO file;
  Text message;
  std::int32_t number = 0;

  EXPECT_FALSE(file.SetCursorToEnd());

  EXPECT_TRUE(file.ReadErrorHandler(message, number));
}

TEST(cFileIONames, ReadingTheFolderAppendsTheSeparatorThatIsMissing) {
  ScratchFolder folder;
  cFileIO file;
  file.OpenFile(u"x.txt", u"R", folder.Path());

  EXPECT_EQ(file.FullFileName(), LowerCase(folder.Path(u"x.txt")));
  EXPECT_EQ(file.FilePath(), LowerCase(folder.Path()) + u"\\");
  EXPECT_EQ(file.FullFileName(), LowerCase(folder.Path(u"x.txt")));
}

TEST_F(cFileIOTest, TheShortFolderIsTheSameFolder) {
  EXPECT_TRUE(platform::FolderExists(oFile.FilePathShort()));
}

// Opening and closing

TEST_F(cFileIOTest, OpeningAMissingFileToReadFailsAndCreatesNothing) {
  EXPECT_FALSE(oFile.OpenFile({}, u"R"));

  EXPECT_FALSE(oFile.IsOpen());
  EXPECT_FALSE(oFolder.Has(kName));
}

TEST_F(cFileIOTest, AFailedOpenTellsTheFileAndWhy) {
  oFile.OpenFile({}, u"R");

  EXPECT_EQ(ErrorNumber(), platform::kFileNotFound);
  EXPECT_EQ(ErrorMessage(), u"modMain.OpenFile(" + oFile.FullFileName() + u"):" +
                                platform::SystemErrorText(platform::kFileNotFound));
}

TEST_F(cFileIOTest, OpeningToWriteCreatesTheFile) {
  for (const TextView readWrite : {u"W", u"RW", u"WR", u""}) {
    cFileIO file;

    EXPECT_TRUE(file.OpenFile(oFolder.Path(u"new" + Text(readWrite)), readWrite));

    EXPECT_TRUE(oFolder.Has(u"new" + Text(readWrite)));
  }
}

TEST_F(cFileIOTest, TheAccessIsComparedExactly) {
  EXPECT_FALSE(oFile.OpenFile({}, u"w"));
  EXPECT_FALSE(oFile.OpenFile({}, u"rw"));

  EXPECT_FALSE(oFolder.Has(kName));
}

TEST_F(cFileIOTest, TheFolderMayBeOverridden) {
  oFolder.MakeFolder(u"other");
  oFolder.Write(u"other/data.txt", "abc");

  ASSERT_TRUE(oFile.OpenFile(u"c:\\nowhere\\data.txt", u"R", oFolder.Path(u"OTHER")));

  EXPECT_EQ(oFile.ReadAllData(), u"abc");
}

TEST_F(cFileIOTest, AnOpenFileCannotBeOpenedAgain) {
  OpenFor(u"W");
  cFileIO second;

  EXPECT_FALSE(second.OpenFile(oFolder.Path(kName), u"R"));

  Text message;
  std::int32_t number = 0;
  EXPECT_TRUE(second.ReadErrorHandler(message, number));
  EXPECT_EQ(number, platform::kSharingViolation);
}

TEST_F(cFileIOTest, AnObjectThatIsOpenClosesBeforeItOpensAnother) {
  Given("0123456789");
  OpenFor(u"W");
  WriteData(u"abc");

  ASSERT_TRUE(oFile.OpenFile(oFolder.Path(u"other.txt"), u"W"));

  EXPECT_EQ(Bytes(), "abc");
}

TEST_F(cFileIOTest, OpeningToReadStartsAtTheBeginning) {
  Given("abc");
  oFile.SetCursorPos(2);

  OpenFor(u"R");

  EXPECT_EQ(oFile.CurrentPos(), 0);
}

// Kept: the cursor of an object that is used again decides where the file ends.
TEST_F(cFileIOTest, OpeningToWriteOnlyLeavesTheCursorWhereItWas) {
  Given("0123456789");
  oFile.SetCursorPos(4);

  OpenFor(u"W");
  oFile.CloseFile();

  EXPECT_EQ(Bytes(), "0123");
}

TEST_F(cFileIOTest, AFileEndsWhereItsLastWriteEnded) {
  Given("0123456789");
  OpenFor(u"W");

  WriteData(u"abc", 0);
  oFile.CloseFile();

  EXPECT_EQ(Bytes(), "abc");
}

TEST_F(cFileIOTest, AFileOpenedForBothAndOnlyReadEndsWhereReadingEnded) {
  Given("0123456789");
  OpenFor(u"RW");

  ReadData(0, 4);
  oFile.CloseFile();

  EXPECT_EQ(Bytes(), "0123");
}

TEST_F(cFileIOTest, AppendingStartsAtTheSize) {
  Given("0123456789");
  OpenFor(u"W");

  EXPECT_TRUE(oFile.SetCursorToEnd());
  oFile.PrintLine(u"abc");
  oFile.CloseFile();

  EXPECT_EQ(Bytes(), "0123456789abc\r\n");
}

TEST_F(cFileIOTest, ReadingLeavesTheFileAsItIs) {
  Given("0123456789");
  OpenFor(u"R");

  ReadData(0, 4);
  oFile.CloseFile();

  EXPECT_EQ(Bytes(), "0123456789");
}

TEST_F(cFileIOTest, AFailedOpenCutsNothing) {
  Given("0123456789");
  {
    cFileIO holder;
    ASSERT_TRUE(holder.OpenFile(oFolder.Path(kName), u"R"));
    EXPECT_FALSE(oFile.OpenFile({}, u"W"));
    oFile.CloseFile();
  }

  EXPECT_EQ(Bytes(), "0123456789");
}

TEST_F(cFileIOTest, ANegativeCursorEndsTheFileAtItsBeginning) {
  Given("0123456789");
  OpenFor(u"W");

  oFile.SetCursorPos(-5);
  oFile.CloseFile();

  EXPECT_EQ(Bytes(), "");
}

TEST_F(cFileIOTest, DestroyingTheObjectClosesTheFile) {
  {
    cFileIO file;
    ASSERT_TRUE(file.OpenFile(oFolder.Path(kName), u"W"));
    file.PrintLine(u"abc");
  }

  OpenFor(u"R");
  EXPECT_EQ(oFile.ReadAllData(), u"abc\r\n");
}

TEST_F(cFileIOTest, AMovedObjectTakesTheOpenFileAlong) {
  OpenFor(u"W");
  WriteData(u"abc");

  cFileIO moved(std::move(oFile));
  moved.PrintLine(u"d");
  moved.CloseFile();

  EXPECT_EQ(Bytes(), "abcd\r\n");
}

TEST_F(cFileIOTest, EachOperationClearsTheError) {
  EXPECT_FALSE(oFile.OpenFile({}, u"R"));
  Text message;
  std::int32_t number = 0;
  ASSERT_TRUE(oFile.ReadErrorHandler(message, number));

  OpenFor(u"W");

  EXPECT_FALSE(oFile.ReadErrorHandler(message, number));
  EXPECT_EQ(message, u"");
  EXPECT_EQ(number, 0);
}

// Reading

TEST_F(cFileIOTest, ReadsAtAPositionAndMovesTheCursorBehindIt) {
  Given("0123456789");
  OpenFor(u"R");

  EXPECT_EQ(ReadData(2, 3), u"234");
  EXPECT_EQ(oFile.CurrentPos(), 5);
  EXPECT_EQ(ReadData(-1, 2), u"56");
}

TEST_F(cFileIOTest, ReadsNoMoreThanThereIs) {
  Given("0123456789");
  OpenFor(u"R");

  EXPECT_EQ(ReadData(8, 1000), u"89");
  EXPECT_EQ(oFile.CurrentPos(), 10);
  EXPECT_TRUE(oFile.IsEOF());
  EXPECT_EQ(ReadData(-1, 1), u"");
  EXPECT_EQ(ReadData(50, 1), u"");
  EXPECT_EQ(ReadData(0, -1), u"");
}

TEST_F(cFileIOTest, ANegativePositionIsTheBeginning) {
  Given("0123456789");
  OpenFor(u"R");

  EXPECT_EQ(ReadData(-2, 3), u"012");
  oFile.SetCursorPos(-9);
  EXPECT_EQ(ReadData(-1, 3), u"012");
}

TEST_F(cFileIOTest, ResetGoesBackToTheBeginning) {
  Given("abc");
  OpenFor(u"R");
  ReadData(0, 3);

  oFile.Reset();

  EXPECT_FALSE(oFile.IsEOF());
  EXPECT_EQ(ReadData(-1, 3), u"abc");
}

TEST_F(cFileIOTest, BytesAreCharactersOfTheCodePage) {
  Given("a\xFE\x1Fz");
  OpenFor(u"R");

  EXPECT_EQ(oFile.ReadAllData(), u"a\u00FE\u001Fz");
}

TEST_F(cFileIOTest, HexadecimalIsTwoCapitalDigitsAByte) {
  Given("A\x0F\xFE");
  OpenFor(u"R");

  EXPECT_EQ(ReadData(0, 3, u"X"), u"410FFE");
  EXPECT_EQ(ReadData(0, 1, u"x"), u"41");
}

TEST_F(cFileIOTest, AFileWithTheMarkIsReadAsUtf16FromBehindIt) {
  Given("\xFF\xFE\x41\x00\xAC\x20"s);
  OpenFor(u"R");

  EXPECT_EQ(ReadData(0, 4), u"A\u20AC");
  EXPECT_EQ(oFile.ReadAllData(), u"A\u20AC");
  EXPECT_EQ(oFile.CurrentPos(), 6);
}

TEST_F(cFileIOTest, AFileWithTheMarkLeavesTheCursorWhereItWas) {
  Given("\xFF\xFE\x41\x00\x42\x00"s);
  oFile.SetCursorPos(4);

  OpenFor(u"R");

  EXPECT_EQ(ReadData(-1, 2), u"B");
}

TEST_F(cFileIOTest, AnOddByteAtTheEndOfUtf16IsDropped) {
  Given("\xFF\xFE\x41\x00\x42"s);
  OpenFor(u"R");

  EXPECT_EQ(oFile.ReadAllData(), u"A");
  EXPECT_TRUE(oFile.IsEOF());
}

TEST_F(cFileIOTest, TheMarkDoesNotCountWhenAFileIsOpenedToWriteOnly) {
  Given("\xFF\xFE\x41\x00"s);
  OpenFor(u"R");
  OpenFor(u"W");

  WriteData(u"abc", 0);
  oFile.CloseFile();

  EXPECT_EQ(Bytes(), "abc");
}

TEST_F(cFileIOTest, WritingAtTheBeginningOfAFileWithTheMarkKeepsTheMark) {
  Given("\xFF\xFE\x41\x00"s);
  OpenFor(u"RW");

  WriteData(u"ab", 0);
  oFile.CloseFile();

  EXPECT_EQ(Bytes(),
            "\xFF\xFE"
            "ab");
}

TEST_F(cFileIOTest, LongTextsComeBackWhole) {
  Text text;
  for (int i = 0; i < 50000; ++i) text += BytesToText("\xE9\x80x\r\n");
  OpenFor(u"RW");

  WriteData(text);

  EXPECT_EQ(oFile.FileSize(), 250000);
  EXPECT_EQ(oFile.ReadAllData() == text, true);
}

TEST_F(cFileIOTest, ReadingAFileThatIsNotOpenIsAnErrorAndLeavesTheText) {
  EXPECT_EQ(ReadData(0, 10), u"unread");

  EXPECT_EQ(ErrorNumber(), platform::kInvalidHandle);
  EXPECT_EQ(ErrorMessage(),
            u"modMain.ReadData(unread):" + platform::SystemErrorText(platform::kInvalidHandle));
}

TEST_F(cFileIOTest, AFileIsCreatedNewOrNotAtAll) {
  oFile.CreateNew = true;
  OpenFor(u"W");
  oFile.CloseFile();

  EXPECT_FALSE(oFile.OpenFile({}, u"W"));
  EXPECT_EQ(ErrorNumber(), platform::kFileExists);
  EXPECT_FALSE(oFile.OpenFile({}, u"RW"));
  EXPECT_TRUE(oFile.OpenFile({}, u"R"));
}

TEST_F(cFileIOTest, ALinkIsOpenedUnlessLinksAreRefused) {
  oFolder.Write(u"target", "abc");
  if (!oFolder.MakeLink(u"target", kName)) return;  // Wine makes no links
  OpenFor(u"R");

  oFile.RefuseLinks = true;

  EXPECT_FALSE(oFile.OpenFile({}, u"W"));
  EXPECT_EQ(ErrorNumber(), platform::kStoppedOnLink);
  EXPECT_EQ(oFolder.Read(u"target"), "abc");
}

TEST_F(cFileIOTest, AFileThatCannotBeReadIsClosedAgain) {
  // A file whose first bytes nobody can read; there is one on Linux.
  if (!platform::FolderExists(u"/proc/self")) return;  // Windows has none

  EXPECT_FALSE(oFile.OpenFile(u"/proc/self/mem", u"R"));

  EXPECT_NE(ErrorNumber(), 0);
  EXPECT_FALSE(oFile.IsOpen());
}

TEST_F(cFileIOTest, AFailedReadIsToldAndLeavesTheText) {
  OpenFor(u"W");  // and not to be read from
  WriteData(u"abc");

  EXPECT_EQ(ReadData(0, 3), u"unread");

  EXPECT_NE(ErrorNumber(), 0);
  EXPECT_TRUE(ErrorMessage().starts_with(u"modMain.ReadData(unread):"));
}

TEST_F(cFileIOTest, WantOfMemoryToReadIsToldAndLeavesTheText) {
  Given(std::string(1'000'000, 'x'));
  OpenFor(u"R");
  {
    const MemoryLimit limit(500'000);

    EXPECT_EQ(ReadData(0, 1'000'000), u"unread");
    EXPECT_EQ(ErrorNumber(), platform::kOutOfMemory);
    EXPECT_EQ(InputLine(), u"unread");
    EXPECT_EQ(ErrorNumber(), platform::kOutOfMemory);
  }

  EXPECT_EQ(oFile.ReadAllData().size(), 1'000'000u);
}

TEST_F(cFileIOTest, WantOfMemoryToWriteIsTold) {
  Text text(1'000'000, u'\u00FE');
  OpenFor(u"W");
  const MemoryLimit limit(500'000);

  oFile.WriteData(text, -1, u"A");
  EXPECT_EQ(ErrorNumber(), platform::kOutOfMemory);
  oFile.PrintLine(text);
  EXPECT_EQ(ErrorNumber(), platform::kOutOfMemory);
  EXPECT_EQ(oFile.FileSize(), 0);
}

TEST_F(cFileIOTest, AFileTooLongForATextIsAnErrorAndNotTheProgramsEnd) {
  {
    platform::File file;
    ASSERT_EQ(file.Open(oFolder.Path(kName), platform::FileAccess::kWrite,
                        platform::FileCreation::kOpenAlways),
              0);
    ASSERT_EQ(file.CutAt(3LL << 30), 0);
  }
  OpenFor(u"R");

  EXPECT_EQ(oFile.ReadAllData(), u"");

  EXPECT_EQ(ErrorNumber(), platform::kOutOfMemory);
  EXPECT_EQ(oFile.FileSize(), 3LL << 30);
  EXPECT_EQ(ReadData((3LL << 30) - 2, 5, u"X"), u"0000");
}

// Lines

TEST_F(cFileIOTest, ALineEndsAtCrLf) {
  Given("one\r\n\r\nthree");
  oFile.InputLineCRLFOnly = true;
  OpenFor(u"R");

  EXPECT_EQ(InputLine(), u"one");
  EXPECT_EQ(oFile.CurrentPos(), 5);
  EXPECT_EQ(InputLine(), u"");
  EXPECT_FALSE(oFile.IsEOF());
  EXPECT_EQ(InputLine(), u"three");
  EXPECT_TRUE(oFile.IsEOF());
  EXPECT_EQ(InputLine(), u"");
}

TEST_F(cFileIOTest, ALoneCrOrLfEndsALineToo) {
  Given("one\ntwo\rthree\r\n\n\rlast\r");
  OpenFor(u"R");

  for (const TextView line : {u"one", u"two", u"three", u"", u"", u"last"}) {
    EXPECT_EQ(InputLine(), line);
  }
  EXPECT_TRUE(oFile.IsEOF());
}

TEST_F(cFileIOTest, ALoneCrOrLfIsTextWhenOnlyCrLfCounts) {
  Given("one\ntwo\rthree\r\r\nlast\r");
  oFile.InputLineCRLFOnly = true;
  OpenFor(u"R");

  EXPECT_EQ(InputLine(), u"one\ntwo\rthree\r");
  EXPECT_EQ(InputLine(), u"last\r");
}

// Lines are looked for block by block; the end of one may fall anywhere in a block.
TEST_F(cFileIOTest, ALineOfAnyLengthIsFoundWhole) {
  for (const bool crLfOnly : {true, false}) {
    for (std::size_t length = 500; length < 520; ++length) {
      Given(std::string(length, 'x') + "\r\nnext\r\n");
      oFile.InputLineCRLFOnly = crLfOnly;
      OpenFor(u"R");

      EXPECT_EQ(InputLine(), Text(length, u'x'));
      EXPECT_EQ(InputLine(), u"next");
      oFile.CloseFile();
    }
  }
}

TEST_F(cFileIOTest, AVeryLongLineIsFoundWhole) {
  Given(std::string(300000, 'x') + "\r\nnext");
  OpenFor(u"R");

  EXPECT_EQ(InputLine().size(), 300000u);
  EXPECT_EQ(InputLine(), u"next");
}

TEST_F(cFileIOTest, LinesOfUtf16AreReadAsSuch) {
  Given("\xFF\xFE\x41\x00\x0D\x00\x0A\x00\xAC\x20\x42"s);
  OpenFor(u"R");

  EXPECT_EQ(InputLine(), u"A");
  EXPECT_EQ(InputLine(), u"\u20AC");
  EXPECT_TRUE(oFile.IsEOF());
}

TEST_F(cFileIOTest, ALineOfAFileThatIsNotOpenIsAnError) {
  EXPECT_EQ(InputLine(), u"unread");

  EXPECT_EQ(ErrorMessage(),
            u"InputLine(unread):" + platform::SystemErrorText(platform::kInvalidHandle));
}

// Writing

TEST_F(cFileIOTest, WritesAtTheCursorAndMovesItBehind) {
  OpenFor(u"W");

  WriteData(u"abc");
  WriteData(u"def");
  WriteData(u"X", 1);

  EXPECT_EQ(oFile.CurrentPos(), 2);
  oFile.CloseFile();
  EXPECT_EQ(Bytes(), "aX");
}

TEST_F(cFileIOTest, ACharacterOutsideTheCodePageIsWrittenAsAQuestionMark) {
  OpenFor(u"W");

  WriteData(u"a\u6F22\u00FE");
  oFile.CloseFile();

  EXPECT_EQ(Bytes(), "a?\xFE");
}

TEST_F(cFileIOTest, OptionATurnsMarksIntoLineEndsInTheCallersTextToo) {
  Text text = u"one\u00FEtwo\u00FE";
  OpenFor(u"W");

  oFile.WriteData(text, -1, u"A");
  oFile.CloseFile();

  EXPECT_EQ(Bytes(), "one\r\ntwo\r\n");
  EXPECT_EQ(text, u"one\r\ntwo\r\n");
}

TEST_F(cFileIOTest, OptionXWritesAByteAPairOfDigits) {
  OpenFor(u"W");

  WriteData(u"414243", -1, u"X");
  WriteData(u"00FE", -1, u"X");
  oFile.CloseFile();

  EXPECT_EQ(Bytes(), "ABC\0\xFE"s);
}

// Half of an odd count is rounded to the even number; a digit that is missing counts as 0.
TEST_F(cFileIOTest, OptionXWithAnOddCountOfDigitsRoundsToEven) {
  OpenFor(u"W");
  for (const TextView digits : {u"4", u"414", u"41424", u"4142434"}) {
    WriteData(Text(digits), -1, u"X");
  }
  oFile.CloseFile();

  EXPECT_EQ(Bytes(),
            "A@"
            "AB"
            "ABC@");
}

TEST_F(cFileIOTest, OptionXWithSomethingElseThanDigitsWritesNothing) {
  OpenFor(u"W");

  WriteData(u"4142zz", -1, u"X");

  EXPECT_EQ(ErrorNumber(), platform::kInvalidData);
  EXPECT_EQ(oFile.FileSize(), 0);
}

TEST_F(cFileIOTest, OptionsAreCapitalLetters) {
  OpenFor(u"W");

  WriteData(u"41\u00FE", -1, u"ax");
  oFile.CloseFile();

  EXPECT_EQ(Bytes(), "41\xFE");
}

TEST_F(cFileIOTest, AFailedWriteIsTold) {
  WriteData(u"abc");
  EXPECT_EQ(ErrorNumber(), platform::kInvalidHandle);
  EXPECT_EQ(ErrorMessage(),
            u"modMain.WriteData():" + platform::SystemErrorText(platform::kInvalidHandle));

  oFile.PrintLine(u"abc");
  EXPECT_EQ(ErrorNumber(), platform::kInvalidHandle);
  EXPECT_EQ(ErrorMessage(),
            u"modMain.PrintLine():" + platform::SystemErrorText(platform::kInvalidHandle));
}

TEST_F(cFileIOTest, AWriteToAFileOpenedToReadIsToldAndMovesNothing) {
  Given("abc");
  OpenFor(u"R");

  WriteData(u"xyz", 0);

  EXPECT_NE(ErrorNumber(), 0);
  EXPECT_EQ(oFile.CurrentPos(), 0);
  oFile.CloseFile();
  EXPECT_EQ(Bytes(), "abc");
}

TEST_F(cFileIOTest, WhatCannotReachTheDiskIsToldWhenTheFileIsClosed) {
  // A file that can be cut and not flushed; there is one on Linux.
  if (!platform::FolderExists(u"/proc/self")) return;  // Windows has none
  ASSERT_TRUE(oFile.OpenFile(u"/proc/self/comm", u"W"));

  oFile.CloseFile();

  EXPECT_NE(ErrorNumber(), 0);
  EXPECT_TRUE(ErrorMessage().starts_with(u"modMain.CloseFile():"));
  EXPECT_FALSE(oFile.IsOpen());
}

// Files and folders as a whole

TEST_F(cFileIOTest, DeletingClosesAndDeletes) {
  OpenFor(u"W");

  oFile.DeleteFile();

  EXPECT_FALSE(oFile.IsOpen());
  EXPECT_FALSE(oFolder.Has(kName));
  EXPECT_EQ(ErrorNumber(), 0);
}

TEST_F(cFileIOTest, DeletingAMissingFileIsTold) {
  oFile.DeleteFile();

  EXPECT_EQ(ErrorNumber(), platform::kFileNotFound);
}

TEST_F(cFileIOTest, RenamingStaysInTheFolder) {
  Given("abc");

  EXPECT_TRUE(oFile.RenameFile(u"New Name.txt"));

  EXPECT_EQ(oFile.FileName(), u"New Name.txt");
  EXPECT_EQ(oFolder.Read(u"New Name.txt"), "abc");
  EXPECT_FALSE(oFolder.Has(kName));
}

TEST_F(cFileIOTest, RenamingTakesNoFolderAndReplacesNothing) {
  Given("abc");
  oFolder.Write(u"other.txt", "old");

  EXPECT_FALSE(oFile.RenameFile(u"..\\escaped.txt"));
  EXPECT_FALSE(oFile.RenameFile(u""));
  EXPECT_FALSE(oFile.RenameFile(u"other.txt"));

  EXPECT_EQ(oFile.FileName(), kName);
  EXPECT_EQ(oFolder.Read(u"other.txt"), "old");
}

TEST_F(cFileIOTest, MovingBindsTheObjectToTheNewPlace) {
  Given("abc");
  oFolder.MakeFolder(u"sub");

  EXPECT_TRUE(oFile.MoveFile(oFolder.Path(u"sub")));

  EXPECT_FALSE(oFolder.Has(kName));
  EXPECT_EQ(oFolder.Read(u"sub/data.txt"), "abc");
  EXPECT_EQ(oFile.FullFileName(), LowerCase(oFolder.Path(u"sub\\data.txt")));
}

TEST_F(cFileIOTest, MovingToAnotherDiskLeavesNothingBehind) {
  const std::filesystem::path disk = "/dev/shm";
  if (!std::filesystem::is_directory(disk)) return;  // Linux alone has a second disk for sure
  const auto folder = disk / std::filesystem::path(oFolder.Path()).filename();
  std::filesystem::create_directory(folder);
  Given("abc");

  EXPECT_TRUE(oFile.MoveFile(folder.u16string()));

  EXPECT_FALSE(oFolder.Has(kName));
  EXPECT_EQ(std::filesystem::file_size(folder / kName), 3u);
  std::filesystem::remove_all(folder);
}

TEST_F(cFileIOTest, CopyingLeavesTheFileAndReplacesNothing) {
  Given("abc");
  oFolder.MakeFolder(u"sub");

  EXPECT_TRUE(oFile.CopyFile(oFolder.Path(u"sub\\")));
  EXPECT_EQ(oFolder.Read(u"sub/data.txt"), "abc");
  Given("new");
  EXPECT_FALSE(oFile.CopyFile(oFolder.Path(u"sub")));

  EXPECT_EQ(Bytes(), "new");
  EXPECT_EQ(oFolder.Read(u"sub/data.txt"), "abc");
}

TEST_F(cFileIOTest, MovingReplacesNothing) {
  Given("abc");
  oFolder.MakeFolder(u"sub");
  oFolder.Write(u"sub/data.txt", "old");

  EXPECT_FALSE(oFile.MoveFile(oFolder.Path(u"sub")));
  EXPECT_FALSE(oFile.MoveFile(oFolder.Path(u"missing")));

  EXPECT_EQ(Bytes(), "abc");
  EXPECT_EQ(oFolder.Read(u"sub/data.txt"), "old");
}

TEST_F(cFileIOTest, RecyclingTakesTheFileAway) {
  Given("abc");

  EXPECT_TRUE(oFile.Recycle());
  EXPECT_FALSE(oFolder.Has(kName));

  EXPECT_FALSE(oFile.Recycle());
}

TEST_F(cFileIOTest, MakesEveryMissingFolderAlongAPath) {
  EXPECT_EQ(oFile.ValidateDirectory(oFolder.Path(u"One\\two\\\\three")), 0);

  EXPECT_TRUE(oFolder.Has(u"one/two/three"));  // Kept: folders are made in lower case
  EXPECT_EQ(oFile.ValidateDirectory(oFolder.Path(u"one\\TWO\\three\\")), 0);
}

TEST_F(cFileIOTest, MakesFoldersOfAPathWithSlashes) {
  EXPECT_EQ(oFile.ValidateDirectory(oFolder.Path(u"one/two")), 0);

  EXPECT_TRUE(oFolder.Has(u"one/two"));
}

// "\\?\C:" reads as a server and its share on Windows, and so does "\\tmp\folder" on POSIX.
TEST_F(cFileIOTest, MakesFoldersOfANetworkPathBelowItsShare) {
  const bool isDrive = !oFolder.Path().starts_with(u'/');

  EXPECT_EQ(oFile.ValidateDirectory((isDrive ? u"\\\\?\\" : u"\\") +
                                    ReplaceAll(oFolder.Path(u"one\\two"), u"/", u"\\")),
            0);

  EXPECT_TRUE(oFolder.Has(u"one/two"));
}

TEST_F(cFileIOTest, ANetworkPathUpToItsShareHasNothingToMake) {
  EXPECT_EQ(oFile.ValidateDirectory(u"\\\\server.invalid\\share"), 0);

  EXPECT_FALSE(platform::FolderExists(u"\\\\server.invalid\\share"));
}

TEST_F(cFileIOTest, APathWithoutADriveStartsInTheCurrentFolder) {
  const auto before = std::filesystem::current_path();
  std::filesystem::current_path(oFolder.Path());

  EXPECT_EQ(oFile.ValidateDirectory(u"one\\two"), 0);

  std::filesystem::current_path(before);
  EXPECT_TRUE(oFolder.Has(u"one/two"));
}

TEST_F(cFileIOTest, AFolderThatCannotBeMadeIsTold) {
  Given("abc");

  EXPECT_EQ(oFile.ValidateDirectory(oFolder.Path(kName) + u"\\sub"), platform::kFileExists);
}

TEST_F(cFileIOTest, ValidatingAFileCreatesItEmpty) {
  oFile.SetCursorPos(5);
  oFile.ValidateFile(oFolder.Path(u"new.txt"));

  EXPECT_TRUE(oFolder.Has(u"new.txt"));
  EXPECT_EQ(oFolder.Read(u"new.txt"), "");
  EXPECT_FALSE(oFile.IsOpen());
}

TEST_F(cFileIOTest, ValidatingAFileThatExistsLeavesItAsItIs) {
  Given("abc");

  oFile.ValidateFile(oFolder.Path(kName));

  EXPECT_EQ(Bytes(), "abc");
}

TEST_F(cFileIOTest, ValidatingAFileIgnoresErrors) {
  oFile.ValidateFile(oFolder.Path(u"missing\\new.txt"));

  EXPECT_EQ(ErrorNumber(), 0);
  EXPECT_FALSE(oFile.IsOpen());
}

TEST_F(cFileIOTest, TimesAreTwoDigitFields) {
  OpenFor(u"W");
  Text created, accessed, modified;

  oFile.FileDateTime(created, accessed, modified);

  for (const Text& time : {created, accessed, modified}) {
    EXPECT_EQ(WithEveryDigitNine(time), u"99/99/9999 99:99:99");
  }
}

TEST_F(cFileIOTest, AClosedFileHasNoTimesAndNoSize) {
  Given("abc");
  Text created = u"x", accessed = u"x", modified = u"x";

  oFile.FileDateTime(created, accessed, modified);

  EXPECT_EQ(created + accessed + modified, u"");
  EXPECT_EQ(oFile.FileSize(), 0);
  EXPECT_TRUE(oFile.IsEOF());
}

TEST_F(cFileIOTest, ATemporaryFileIsNewAndTheObjectsOwn) {
  oFile.SetTempFileInfo();
  const Text name = oFile.FullFileName();

  ASSERT_TRUE(oFile.OpenTempFile(u"RW"));
  WriteData(u"abc");
  EXPECT_EQ(oFile.ReadAllData(), u"abc");
  oFile.DeleteFile();

  EXPECT_TRUE(oFile.FileName().starts_with(u"nts"));
  EXPECT_NE(name, oFolder.Path(kName));
}

TEST_F(cFileIOTest, ATemporaryFileTakesAPrefix) {
  oFile.SetTempFileInfo(u"osl");

  EXPECT_TRUE(oFile.FileName().starts_with(u"osl"));
  oFile.DeleteFile();
}

TEST_F(cFileIOTest, WithoutATemporaryFileNoneIsOpened) {
  Given("abc");

  EXPECT_FALSE(oFile.OpenTempFile(u"R"));

  EXPECT_EQ(ErrorNumber(), platform::kFileNotFound);
}

}  // namespace
}  // namespace ostrel
