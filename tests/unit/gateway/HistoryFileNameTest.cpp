#include <gtest/gtest.h>

#include "gateway/HistoryFiles.h"

namespace ostrel {
namespace {

// Required: the slashes become zeros, and so the parts run together.
TEST(HistoryFileName, IsTheDateWithoutSigns) {
  EXPECT_EQ(HistoryFileName(u"1/5/2010 9:03:07 AM"), u"1050201090307AM.txt");
  EXPECT_EQ(HistoryFileName(u"12/31/2010"), u"1203102010.txt");
}

TEST(HistoryFileName, EndsInItsNumberFromTheSecondFileOfASecondOn) {
  EXPECT_EQ(HistoryFileName(u"1/5/2010 9:03:07 AM", 1), u"1050201090307AM.txt");
  EXPECT_EQ(HistoryFileName(u"1/5/2010 9:03:07 AM", 2), u"1050201090307AM-2.txt");
  EXPECT_EQ(HistoryFileName(u"1/5/2010 9:03:07 AM", 11), u"1050201090307AM-11.txt");
}

TEST(HistoryFileName, KeepsWhatAFileNameMayHold) {
  EXPECT_EQ(HistoryFileName(u"05.01.2010 09:03:07"), u"05.01.2010090307.txt");
  EXPECT_EQ(HistoryFileName(u"2010-01-05 \u4E0A\u5348 9:03:07"),
            u"2010-01-05\u4E0A\u534890307.txt");
}

TEST(HistoryFileName, LeavesOutWhatNoFileNameMayHold) {
  EXPECT_EQ(HistoryFileName(u"a\\b*c?d\"e<f>g|h\ti\u007Fj"), u"abcdefghij.txt");
}

TEST(HistoryFileName, LeavesOutExactlyTheControlCharacters) {
  EXPECT_EQ(HistoryFileName(u"a\u001Fb!c~d\u007Fe\u0080f\u009Fg\u00A1"), u"ab!c~defg\u00A1.txt");
}

TEST(HistoryFileName, LeavesOutExactlyTheInvisibleSigns) {
  Text ends;
  for (const int c :
       {0x1FFF, 0x2000, 0x206F, 0x2070, 0xD7FF, 0xD800, 0xDFFF, 0xE000, 0xFDFF, 0xFE00}) {
    ends.push_back(static_cast<char16_t>(c));
  }

  EXPECT_EQ(HistoryFileName(ends), u"\u1FFF\u2070\uD7FF\uE000\uFDFF.txt");
}

TEST(HistoryFileName, LeavesOutBlanksOfOtherKindsAndInvisibleSigns) {
  EXPECT_EQ(HistoryFileName(u"1\u00A02\u202F3\u200E4\xD83D"
                            u"5\uFEFF"),
            u"12345.txt");
}

}  // namespace
}  // namespace ostrel
