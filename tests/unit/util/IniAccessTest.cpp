#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/Files.h"
#include "platform/SystemError.h"
#include "tests/support/MemoryLimit.h"
#include "tests/support/ScratchFolder.h"
#include "util/CodePage.h"
#include "util/RunTimeError.h"
#include "util/cFileIO.h"

namespace ostrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using Table = std::vector<std::pair<Text, Text>>;

class IniAccessTest : public testing::Test {
 protected:
  IniAccessTest() { oFile.FullFileName(oFolder.Path(kName)); }

  void Given(std::string_view bytes) { oFolder.Write(kName, bytes); }
  std::string Bytes() const { return oFolder.Read(kName); }

  Text Value(TextView item, TextView fallback = u"fallback") {
    Text value = u"unread";
    oFile.ReadINI(u"General", item, value, fallback);
    return value;
  }
  Table Section(TextView section) {
    Table table;
    oFile.ReadINISection(section, table);
    return table;
  }

  std::int32_t Error() const {
    Text message;
    std::int32_t number = 0;
    oFile.ReadErrorHandler(message, number);
    return number;
  }

  template <typename Operation>
  RunTimeError Raised(Operation operation) {
    try {
      operation();
    } catch (const RunTimeError& error) {
      return error;
    }
    ADD_FAILURE() << "nothing was raised";
    return RunTimeError(0);
  }

  static constexpr TextView kName = u"osl.ini";
  ScratchFolder oFolder;
  cFileIO oFile;
};

// An object whose name is a folder's: there is no file that could hold a profile.
class NamelessIniAccessTest : public IniAccessTest {
 protected:
  NamelessIniAccessTest() { oFile.FullFileName(oFolder.Path() + u"\\"); }
};

TEST_F(IniAccessTest, ReadsAValue) {
  Given("[General]\r\nHistory=1\r\n");

  EXPECT_EQ(Value(u"history"), u"1");
}

TEST_F(IniAccessTest, AMissingKeyReadsAsTheDefault) {
  Given("[General]\r\n");

  EXPECT_EQ(Value(u"History"), u"fallback");
  EXPECT_EQ(Value(u"History", {}), u"");
}

TEST_F(IniAccessTest, AnEmptyValueIsNotTheDefault) {
  Given("[General]\r\nHistory=\r\n");

  EXPECT_EQ(Value(u"History"), u"");
}

TEST_F(IniAccessTest, AValueIsCutTo99Characters) {
  Given("[General]\r\nHistPath=" + std::string(120, 'x') + "\r\n");

  EXPECT_EQ(Value(u"HistPath"), Text(99, u'x'));
  EXPECT_EQ(Value(u"Other", Text(120, u'y')), Text(99, u'y'));
}

TEST_F(IniAccessTest, ThatAValueWasCutIsAnErrorOfTheObject) {
  Given("[General]\r\na=" + std::string(100, 'x') + "\r\nb=" + std::string(99, 'x') + "\r\n");

  Value(u"a");
  EXPECT_EQ(Error(), platform::kMoreData);
  Value(u"b");
  EXPECT_EQ(Error(), 0);
}

TEST_F(IniAccessTest, AFileThatCannotBeReadIsTheDefaultAndAnErrorOfTheObject) {
  Given("[General]\r\nHistory=1\r\n");
  platform::File holder;
  ASSERT_EQ(holder.Open(oFolder.Path(kName), platform::FileAccess::kReadWrite,
                        platform::FileCreation::kOpenExisting),
            0);

  EXPECT_EQ(Value(u"History"), u"fallback");
  EXPECT_EQ(Error(), platform::kSharingViolation);
  EXPECT_THAT(Section(u"General"), IsEmpty());
  EXPECT_EQ(Error(), platform::kSharingViolation);

  holder.Close();
  EXPECT_EQ(Value(u"History"), u"1");
  EXPECT_EQ(Error(), 0);
  EXPECT_EQ(Section(u"General").size(), 1u);
  EXPECT_EQ(Error(), 0);
}

TEST_F(IniAccessTest, BlanksAroundAValueAreRemoved) {
  Given("[General]\r\na=  abc  \r\nb=\"  abc  \"\r\n");

  EXPECT_EQ(Value(u"a"), u"abc");
  EXPECT_EQ(Value(u"b"), u"abc");
  EXPECT_EQ(Value(u"c", u" x "), u"x");
}

// Kept: reading a setting leaves an empty file behind.
TEST_F(IniAccessTest, ReadingAMissingFileCreatesItEmpty) {
  EXPECT_EQ(Value(u"History"), u"fallback");

  EXPECT_TRUE(oFolder.Has(kName));
  EXPECT_EQ(Bytes(), "");
}

TEST_F(IniAccessTest, ReadingInAMissingFolderIsTheDefault) {
  oFile.FullFileName(oFolder.Path(u"missing\\osl.ini"));

  EXPECT_EQ(Value(u"History"), u"fallback");
}

TEST_F(IniAccessTest, TheValueMayBeItsOwnDefault) {
  Text value = u"kept";

  oFile.ReadINI(u"General", u"History", value, value);

  EXPECT_EQ(value, u"kept");
}

TEST_F(IniAccessTest, CharactersOfTheCodePageComeBack) {
  const Text folder = BytesToText("C:\\Caf\xE9\\");

  oFile.WriteIni(u"General", u"FileName", folder + u"\u6F22.QBW");

  EXPECT_EQ(Value(u"FileName"), folder + u"?.QBW");
  EXPECT_EQ(Bytes(), "[General]\r\nFileName=C:\\Caf\xE9\\?.QBW\r\n");
}

TEST_F(IniAccessTest, ASectionIsATableOfNamesAndValues) {
  Given("[General]\r\na=1\r\nb=2=3\r\nc=\r\n[Other]\r\nd=4\r\n");

  // Kept: a value is cut at its first "="
  EXPECT_THAT(Section(u"General"),
              ElementsAre(Pair(u"a", u"1"), Pair(u"b", u"2"), Pair(u"c", u"")));
}

// Kept: the table has the size of the section, but is not filled beyond such an entry.
TEST_F(IniAccessTest, AnEntryWithoutAnEqualsSignEndsTheTable) {
  Given("[General]\r\na=1\r\nb\r\nc=3\r\n");

  EXPECT_THAT(Section(u"General"), ElementsAre(Pair(u"a", u"1"), Pair(u"b", u""), Pair(u"", u"")));
}

TEST_F(IniAccessTest, ASectionThatIsMissingOrEmptyIsAnEmptyTable) {
  Given("[General]\r\n[Other]\r\nd=4\r\n");

  EXPECT_THAT(Section(u"General"), IsEmpty());
  EXPECT_THAT(Section(u"Missing"), IsEmpty());
}

TEST_F(IniAccessTest, ASectionIsReadUpToItsLimit) {
  std::string bytes = "[General]\r\n";
  for (int i = 0; i < 5000; ++i) bytes += "key" + std::to_string(10000 + i) + "=1\r\n";
  Given(bytes);

  const Table table = Section(u"General");

  EXPECT_EQ(table.size(), 2979u);
  EXPECT_EQ(table.front().first, u"key10000");
  EXPECT_EQ(table[2977], std::pair(Text(u"key12977"), Text(u"1")));
  EXPECT_EQ(table.back(), std::pair(Text(u"key1297"), Text()));  // cut
  EXPECT_EQ(Error(), platform::kMoreData);
}

TEST_F(IniAccessTest, ReadingASectionCreatesNothing) {
  Section(u"General");

  EXPECT_FALSE(oFolder.Has(kName));
}

TEST_F(IniAccessTest, WritingCreatesFileSectionAndKey) {
  oFile.WriteIni(u"General", u"History", u"1");

  EXPECT_EQ(Bytes(), "[General]\r\nHistory=1\r\n");
}

TEST_F(IniAccessTest, WritingChangesOneKey) {
  Given("[General]\r\nHistory=0\r\n[Communication]\r\nType=1\r\nFolder=1\r\n");

  oFile.WriteIni(u"Communication", u"Type", u"2");

  EXPECT_EQ(Bytes(), "[General]\r\nHistory=0\r\n[Communication]\r\nType=2\r\nFolder=1\r\n");
}

TEST_F(IniAccessTest, DeletesAKeyOrASection) {
  Given("[General]\r\na=1\r\nb=2\r\n[Other]\r\nc=3\r\n");

  oFile.DeleteIni(u"General", u"a");
  EXPECT_EQ(Bytes(), "[General]\r\nb=2\r\n[Other]\r\nc=3\r\n");
  oFile.DeleteIniAll(u"General");

  EXPECT_EQ(Bytes(), "[Other]\r\nc=3\r\n");
}

TEST_F(IniAccessTest, WhatTheSystemRefusesIsNotRaised) {
  Given("[General]\r\na=1\r\n");
  cFileIO holder;
  ASSERT_TRUE(holder.OpenFile(oFolder.Path(kName), u"R"));

  oFile.WriteIni(u"General", u"a", u"2");
  oFile.DeleteIni(u"General", u"a");
  oFile.DeleteIniAll(u"General");

  holder.CloseFile();
  EXPECT_EQ(Bytes(), "[General]\r\na=1\r\n");
}

TEST_F(IniAccessTest, WantOfMemoryToReadIsAnErrorOfTheObjectAndLeavesTheValue) {
  Given("[General]\r\nHistory=1\r\n");
  const Text longName(100'000, u'x');
  Text value = u"kept";
  Table table = {{u"kept", u""}};
  const MemoryLimit limit(50'000);

  oFile.ReadINI(u"General", longName, value);
  EXPECT_EQ(value, u"kept");
  EXPECT_EQ(Error(), platform::kOutOfMemory);

  Value(u"History");
  EXPECT_EQ(Error(), 0);

  oFile.ReadINISection(longName, table);
  EXPECT_THAT(table, ElementsAre(Pair(u"kept", u"")));
  EXPECT_EQ(Error(), platform::kOutOfMemory);
}

TEST_F(IniAccessTest, WantOfMemoryToWriteIsRaised) {
  Given("[General]\r\na=1\r\n");
  const Text longName(100'000, u'x');
  std::vector<RunTimeError> errors;
  {
    const MemoryLimit limit(50'000);
    errors = {Raised([&] { oFile.WriteIni(u"General", u"a", longName); }),
              Raised([&] { oFile.DeleteIni(u"General", longName); }),
              Raised([&] { oFile.DeleteIniAll(longName); })};
  }

  EXPECT_EQ(errors[0].Source, u"IniFile::WriteIni");
  EXPECT_EQ(errors[1].Source, u"IniFile::DeleteIni");
  EXPECT_EQ(errors[2].Source, u"IniFile::DeleteIniAll");
  for (const RunTimeError& error : errors) {
    EXPECT_EQ(error.Number, 7);
    EXPECT_EQ(error.Description, u"Out of memory");
  }
  EXPECT_EQ(Bytes(), "[General]\r\na=1\r\n");
}

TEST_F(NamelessIniAccessTest, ReadingRaisesFileNotFoundAndSetsTheDefault) {
  Text value;

  const RunTimeError error =
      Raised([&] { oFile.ReadINI(u"General", u"History", value, u"fallback"); });

  EXPECT_EQ(value, u"fallback");
  EXPECT_EQ(error.Number, 53);
  EXPECT_EQ(error.Source, u"IniFile::ReadIni");
  EXPECT_EQ(error.Description, oFile.FullFileName() + u" not Found");
}

// Kept: the section is read under the same source.
TEST_F(NamelessIniAccessTest, ReadingASectionRaisesUnderTheSourceOfReading) {
  const RunTimeError error = Raised([&] { Section(u"General"); });

  EXPECT_EQ(error.Number, 53);
  EXPECT_EQ(error.Source, u"IniFile::ReadIni");
  EXPECT_EQ(error.Description, oFile.FullFileName() + u" not Found");
}

TEST_F(NamelessIniAccessTest, WritingAndDeletingRaiseUnderTheirOwnSources) {
  const RunTimeError writing = Raised([&] { oFile.WriteIni(u"G", u"a", u"1"); });
  const RunTimeError deleting = Raised([&] { oFile.DeleteIni(u"G", u"a"); });
  const RunTimeError deletingAll = Raised([&] { oFile.DeleteIniAll(u"G"); });

  EXPECT_EQ(writing.Source, u"IniFile::WriteIni");
  EXPECT_EQ(deleting.Source, u"IniFile::DeleteIni");
  EXPECT_EQ(deletingAll.Source, u"IniFile::DeleteIniAll");
  for (const RunTimeError& error : {writing, deleting, deletingAll}) {
    EXPECT_EQ(error.Number, 53);
    EXPECT_EQ(error.Description, u"File not found");
  }
}

}  // namespace
}  // namespace ostrel
