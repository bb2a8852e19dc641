#include <gtest/gtest.h>

#include "shell/settings/NumberText.h"
#include "util/RunTimeError.h"

namespace ostrel {
namespace {

struct Example {
  TextView sText;
  std::int32_t lNumber;
};

class NumbersWritten : public testing::TestWithParam<Example> {};

TEST_P(NumbersWritten, AreRead) { EXPECT_EQ(ToLong(GetParam().sText), GetParam().lNumber); }

INSTANTIATE_TEST_SUITE_P(
    All, NumbersWritten,
    testing::Values(Example{u"0", 0}, Example{u"300", 300}, Example{u"  42 ", 42},
                    Example{u"+7", 7}, Example{u"-7", -7}, Example{u"007", 7}, Example{u"5.", 5},
                    Example{u".9", 1}, Example{u"1.4", 1}, Example{u"1.6", 2}, Example{u"0.5", 0},
                    Example{u"1.5", 2}, Example{u"2.5", 2}, Example{u"2.50", 2},
                    Example{u"2.501", 3}, Example{u"-2.5", -2}, Example{u"-1.5", -2},
                    Example{u"2147483647", 2147483647}, Example{u"-2147483648", -2147483647 - 1},
                    Example{u"2147483647.4", 2147483647}));

int ErrorOf(TextView text) {
  try {
    ToInteger(text);
  } catch (const RunTimeError& error) {
    return error.Number;
  }
  return 0;
}

TEST(NumberText, RefusesWhatIsNoNumber) {
  for (const TextView text : {u"", u" ", u"abc", u"12x", u"x12", u".", u"-", u"--1", u"1 2",
                              u"1.2.3", u"1,000", u"0x10", u"+-1"}) {
    EXPECT_EQ(ErrorOf(text), 13) << ToUtf8(text);
  }
}

TEST(NumberText, RefusesWhatDoesNotFit) {
  for (const TextView text : {u"32768", u"-32769", u"32767.5", u"99999999999999999999999999"}) {
    EXPECT_EQ(ErrorOf(text), 6) << ToUtf8(text);
  }
}

TEST(NumberText, TakesTheGreatestAndTheSmallestInteger) {
  EXPECT_EQ(ToInteger(u"32767"), 32767);
  EXPECT_EQ(ToInteger(u"-32768"), -32768);
  EXPECT_EQ(ToInteger(u"32767.4"), 32767);
}

TEST(NumberText, NamesTheErrors) {
  try {
    ToLong(u"abc");
    ADD_FAILURE();
  } catch (const RunTimeError& error) {
    EXPECT_EQ(error.Description, u"Type mismatch");
  }
  try {
    ToLong(u"2147483648");
    ADD_FAILURE();
  } catch (const RunTimeError& error) {
    EXPECT_EQ(error.Description, u"Overflow");
  }
}

}  // namespace
}  // namespace ostrel
