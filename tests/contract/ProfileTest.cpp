#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <thread>

#include "platform/Files.h"
#include "platform/Profile.h"
#include "platform/SystemError.h"
#include "tests/support/ScratchFolder.h"

namespace ostrel::platform {
namespace {

using testing::HasSubstr;
using testing::Ne;
using testing::StartsWith;
using namespace std::string_literals;

class ProfileTest : public testing::Test {
 protected:
  void Given(std::string_view bytes) { oFolder.Write(kName, bytes); }
  std::string Bytes() const { return oFolder.Read(kName); }
  Text Path() const { return oFolder.Path(kName); }

  std::string Value(std::string_view section, std::string_view key, std::size_t size = 100) {
    std::string value = "unread";
    iError = ReadProfileValue(Path(), section, key, "fallback", size, value);
    return value;
  }
  std::string Section(std::string_view section, std::size_t size = 1000) {
    std::string entries = "unread";
    iError = ReadProfileSection(Path(), section, size, entries);
    return entries;
  }
  int Write(std::string_view section, std::string_view key, const std::string& value) const {
    return WriteProfileValue(Path(), section, key, &value);
  }
  int Erase(std::string_view section, std::string_view key) const {
    return WriteProfileValue(Path(), section, key, nullptr);
  }

  static constexpr TextView kName = u"osl.ini";
  ScratchFolder oFolder;
  int iError = 0;  // of the last reading
};

// The text as UTF-16, low byte first, behind the mark that says so.
std::string Utf16(TextView text) {
  std::string bytes = "\xFF\xFE";
  for (const char16_t c : text) {
    bytes += static_cast<char>(c & 0xFF);
    bytes += static_cast<char>(c >> 8);
  }
  return bytes;
}

TEST_F(ProfileTest, ReadsAValue) {
  Given("[General]\r\nHistory=1\r\n");

  EXPECT_EQ(Value("General", "History"), "1");
}

TEST_F(ProfileTest, WhatIsMissingReadsAsTheFallback) {
  EXPECT_EQ(Value("General", "History"), "fallback");

  Given("[General]\r\nHistory=1\r\n");

  EXPECT_EQ(Value("General", "Other"), "fallback");
  EXPECT_EQ(Value("Other", "History"), "fallback");
}

TEST_F(ProfileTest, WhatIsMissingIsNoError) {
  Value("General", "History");
  EXPECT_EQ(iError, 0);
  Section("General");
  EXPECT_EQ(iError, 0);
  Given("[General]\r\n");

  Value("General", "History");

  EXPECT_EQ(iError, 0);
}

TEST_F(ProfileTest, AFileThatIsThereAndCannotBeReadIsAnError) {
  oFolder.MakeFolder(kName);

  EXPECT_EQ(Value("General", "History"), "fallback");
  EXPECT_THAT(iError, Ne(0));
  EXPECT_EQ(Section("General"), "");
  EXPECT_THAT(iError, Ne(0));
}

TEST_F(ProfileTest, AFileThatStaysInUseIsAnError) {
  Given("[General]\r\nHistory=1\r\n");
  File file;
  ASSERT_EQ(file.Open(Path(), FileAccess::kReadWrite, FileCreation::kOpenExisting), 0);

  EXPECT_EQ(Value("General", "History"), "fallback");
  EXPECT_EQ(iError, kSharingViolation);
  EXPECT_EQ(Section("General"), "");
  EXPECT_EQ(iError, kSharingViolation);
}

TEST_F(ProfileTest, AFileInUseForAMomentIsReadWhenItIsFree) {
  Given("[General]\r\nHistory=1\r\n");
  auto file = std::make_unique<File>();
  ASSERT_EQ(file->Open(Path(), FileAccess::kReadWrite, FileCreation::kOpenExisting), 0);
  std::jthread user([&file] {
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    file.reset();
  });

  EXPECT_EQ(Value("General", "History"), "1");
  EXPECT_EQ(iError, 0);
}

TEST_F(ProfileTest, UnicodeIsReadInTheCodePage) {
  Given(Utf16(u"[G\u00E9n]\r\na=caf\u00E9 \u20AC\r\nb=2\r\n"));

  EXPECT_EQ(Value("G\xE9n", "a"), "caf\xE9 \x80");
  EXPECT_EQ(Value("G\xE9n", "b"), "2");
  EXPECT_EQ(Section("G\xE9n"), "a=caf\xE9 \x80\0b=2\0"s);
}

TEST_F(ProfileTest, AFileInUnicodeStaysSo) {
  Given(Utf16(u"; \u6F22\r\n[G]\r\na=1\r\nb=2\r\n"));

  ASSERT_EQ(Write("G", "a", "caf\xE9"), 0);

  EXPECT_EQ(Bytes(), Utf16(u"; \u6F22\r\n[G]\r\na=caf\u00E9\r\nb=2\r\n"));
}

TEST_F(ProfileTest, AKeyWithoutAnEqualsSignHasNoValue) {
  Given("[General]\r\nHistory\r\n");

  EXPECT_EQ(Value("General", "History"), "fallback");
}

TEST_F(ProfileTest, ReadingCreatesNothing) {
  Value("General", "History");

  EXPECT_FALSE(oFolder.Has(kName));
}

TEST_F(ProfileTest, TheFallbackLosesBlanksAtItsEnd) {
  std::string value;

  EXPECT_EQ(ReadProfileValue(Path(), "General", "History", "x  ", 100, value), 0);

  EXPECT_EQ(value, "x");
}

TEST_F(ProfileTest, AnEmptyValueIsEmpty) {
  Given("[General]\r\nHistory=\r\nOther=  \r\n");

  EXPECT_EQ(Value("General", "History"), "");
  EXPECT_EQ(Value("General", "Other"), "");
}

TEST_F(ProfileTest, NamesIgnoreCase) {
  Given("[GENERAL]\r\nhistory=1\r\n");

  EXPECT_EQ(Value("general", "History"), "1");
}

TEST_F(ProfileTest, BlanksAroundNamesAndValuesDoNotCount) {
  Given(" [General] \r\n  History  =  some text  \r\n");

  EXPECT_EQ(Value("General", "History"), "some text");
}

TEST_F(ProfileTest, APairOfQuotesAroundAValueIsTakenOff) {
  Given("[G]\r\na=\"  x  \"\r\nb='y'\r\nc=\"z\r\nd=\"\"q\"\"\r\ne=\"\r\nf=\"\"\r\n");

  EXPECT_EQ(Value("G", "a"), "  x  ");
  EXPECT_EQ(Value("G", "b"), "y");
  EXPECT_EQ(Value("G", "c"), "\"z");
  EXPECT_EQ(Value("G", "d"), "\"q\"");
  EXPECT_EQ(Value("G", "e"), "\"");
  EXPECT_EQ(Value("G", "f"), "");
}

TEST_F(ProfileTest, AValueMayHoldEqualsSignsAndSemicolons) {
  Given("[G]\r\na=b=c;d\r\n");

  EXPECT_EQ(Value("G", "a"), "b=c;d");
}

TEST_F(ProfileTest, TheFirstMatchingKeyCounts) {
  Given("[G]\r\na=1\r\na=2\r\n");

  EXPECT_EQ(Value("G", "a"), "1");
}

TEST_F(ProfileTest, OnlyTheFirstMatchingSectionCounts) {
  Given("[G]\r\na=1\r\n[H]\r\n[G]\r\na=2\r\nb=3\r\n");

  EXPECT_EQ(Value("G", "a"), "1");
  EXPECT_EQ(Value("G", "b"), "fallback");
}

TEST_F(ProfileTest, CommentsAreNoEntries) {
  Given("; a=0\r\n[G]\r\n;a=1\r\na=2\r\n");

  EXPECT_EQ(Value("G", "a"), "2");
}

TEST_F(ProfileTest, LinesMayEndInLfOrNotAtAll) {
  Given("[G]\na=1\nb=2");

  EXPECT_EQ(Value("G", "a"), "1");
  EXPECT_EQ(Value("G", "b"), "2");
}

TEST_F(ProfileTest, AValueIsCutToTheSize) {
  Given("[G]\r\na=" + std::string(120, 'x') + "\r\n");

  EXPECT_EQ(Value("G", "a", 100), std::string(99, 'x'));
  EXPECT_EQ(iError, kMoreData);
}

TEST_F(ProfileTest, AValueThatJustFitsIsWhole) {
  Given("[G]\r\na=" + std::string(99, 'x') + "\r\n");

  EXPECT_EQ(Value("G", "a", 100), std::string(99, 'x'));
  EXPECT_EQ(iError, 0);
}

TEST_F(ProfileTest, BytesAboveAsciiComeBackAsTheyAre) {
  ASSERT_EQ(Write("G", "a", "caf\xE9"), 0);

  EXPECT_EQ(Value("G", "a"), "caf\xE9");
  EXPECT_THAT(Bytes(), HasSubstr("a=caf\xE9\r\n"));
}

TEST_F(ProfileTest, ASectionListsItsEntries) {
  Given("[G]\r\na = 1\r\n\r\n; comment\r\nb=2=3\r\nname only\r\nc=\"q\"\r\n[H]\r\nd=4\r\n");

  EXPECT_EQ(Section("g"), "a=1\0b=2=3\0name only\0c=\"q\"\0"s);
}

TEST_F(ProfileTest, ASectionWithoutEntriesListsNothing) {
  Given("[G]\r\n[H]\r\nd=4\r\n");

  EXPECT_EQ(Section("G"), "");
  EXPECT_EQ(Section("Missing"), "");
}

TEST_F(ProfileTest, AListTooLongIsCut) {
  Given("[G]\r\na=1\r\nb=" + std::string(50, 'x') + "\r\n");

  EXPECT_EQ(Section("G", 20), "a=1\0b="s + std::string(12, 'x'));
  EXPECT_EQ(iError, kMoreData);
}

TEST_F(ProfileTest, AListThatJustFitsIsWhole) {
  Given("[G]\r\na=1\r\n");

  EXPECT_EQ(Section("G", 6), "a=1\0"s);
  EXPECT_EQ(Section("G", 5), "a=1");
}

TEST_F(ProfileTest, WritingCreatesFileSectionAndKey) {
  ASSERT_EQ(Write("General", "History", "1"), 0);

  EXPECT_EQ(Bytes(), "[General]\r\nHistory=1\r\n");
}

TEST_F(ProfileTest, WritingChangesTheValueAndNothingElse) {
  Given("; settings\r\n[General]\r\nHistory=0\r\nb=2\r\n[Other]\r\nHistory=7\r\n");

  ASSERT_EQ(Write("general", "HISTORY", "1"), 0);

  EXPECT_EQ(Bytes(), "; settings\r\n[General]\r\nHistory=1\r\nb=2\r\n[Other]\r\nHistory=7\r\n");
}

TEST_F(ProfileTest, ANewKeyGoesToTheEndOfItsSection) {
  Given("[G]\r\na=1\r\n[H]\r\nc=3\r\n");

  ASSERT_EQ(Write("G", "b", "2"), 0);

  EXPECT_EQ(Bytes(), "[G]\r\na=1\r\nb=2\r\n[H]\r\nc=3\r\n");
}

TEST_F(ProfileTest, ANewSectionGoesToTheEndOfTheFile) {
  Given("[G]\r\na=1");

  ASSERT_EQ(Write("H", "b", "2"), 0);

  EXPECT_THAT(Bytes(), StartsWith("[G]\r\na=1\r\n"));
  EXPECT_THAT(Bytes(), HasSubstr("[H]\r\nb=2\r\n"));
}

TEST_F(ProfileTest, AnEmptyValueIsWritten) {
  ASSERT_EQ(Write("G", "a", ""), 0);

  EXPECT_EQ(Value("G", "a"), "");
}

TEST_F(ProfileTest, ErasingAKeyLeavesTheRest) {
  Given("[G]\r\na=1\r\nb=2\r\n[H]\r\na=3\r\n");

  ASSERT_EQ(Erase("G", "A"), 0);

  EXPECT_EQ(Bytes(), "[G]\r\nb=2\r\n[H]\r\na=3\r\n");
}

TEST_F(ProfileTest, ErasingWhatIsMissingLeavesTheFile) {
  Given("[G]\r\na=1\r\n");

  Erase("G", "b");
  Erase("H", "a");
  EraseProfileSection(Path(), "H");

  EXPECT_EQ(Bytes(), "[G]\r\na=1\r\n");
}

TEST_F(ProfileTest, ErasingASectionLeavesTheOthers) {
  Given("[G]\r\na=1\r\n[H]\r\nb=2\r\n[I]\r\nc=3\r\n");

  ASSERT_EQ(EraseProfileSection(Path(), "h"), 0);

  EXPECT_EQ(Bytes(), "[G]\r\na=1\r\n[I]\r\nc=3\r\n");
}

TEST_F(ProfileTest, EditsFromOutsideAreSeen) {
  Given("[G]\r\na=1\r\n");
  ASSERT_EQ(Value("G", "a"), "1");

  Given("[G]\r\na=12\r\n");

  EXPECT_EQ(Value("G", "a"), "12");
}

TEST_F(ProfileTest, NothingIsLeftBesideTheFile) {
  Given("[G]\r\na=1\r\n");

  ASSERT_EQ(Write("G", "a", "2"), 0);

  EXPECT_EQ(oFolder.EntryCount(), 1u);
}

TEST_F(ProfileTest, AFileOpenElsewhereIsNotWritten) {
  Given("[G]\r\na=1\r\n");
  File file;
  ASSERT_EQ(file.Open(Path(), FileAccess::kRead, FileCreation::kOpenExisting), 0);

  EXPECT_THAT(Write("G", "a", "2"), Ne(0));

  file.Close();
  EXPECT_EQ(Bytes(), "[G]\r\na=1\r\n");
}

TEST_F(ProfileTest, AMissingFolderIsAnError) {
  const std::string value = "1";

  EXPECT_THAT(WriteProfileValue(oFolder.Path(u"missing\\osl.ini"), "G", "a", &value), Ne(0));
}

TEST_F(ProfileTest, AFileNameMayHaveAnyCharacter) {
  const Text name = u"\u0416\u6F22.ini";
  const std::string value = "1";

  ASSERT_EQ(WriteProfileValue(oFolder.Path(name), "G", "a", &value), 0);

  EXPECT_EQ(oFolder.Read(name), "[G]\r\na=1\r\n");
  std::string read;
  EXPECT_EQ(ReadProfileValue(oFolder.Path(name), "G", "a", "fallback", 100, read), 0);
  EXPECT_EQ(read, "1");
}

}  // namespace
}  // namespace ostrel::platform
