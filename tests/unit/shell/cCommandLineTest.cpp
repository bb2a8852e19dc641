#include <gtest/gtest.h>

#include <algorithm>

#include "shell/settings/cCommandLine.h"
#include "util/Wire.h"

namespace ostrel {
namespace {

cCommandLine Parsed(TextView text) {
  cCommandLine commandLine;
  commandLine.AddSwitch(u"ini", true);
  commandLine.AddSwitch(u"debug", false);
  commandLine.AddSwitch(u"commmenu", true);
  commandLine.CommandLine(text);
  return commandLine;
}

TEST(cCommandLine, FindsNothingInAnEmptyText) {
  const cCommandLine line = Parsed(u"  ");

  EXPECT_FALSE(line.HasSwitch(u"ini") || line.HasSwitch(u"debug") || line.HasSwitch(u"commmenu"));
  EXPECT_EQ(line.SwitchValue(u"ini"), u"");
  EXPECT_EQ(line.MainArg(), u"");
}

TEST(cCommandLine, TakesTheNextWordAsTheValue) {
  const cCommandLine line = Parsed(u"-ini C:\\osl.ini -debug");

  EXPECT_EQ(line.SwitchValue(u"ini"), u"C:\\osl.ini");
  EXPECT_TRUE(line.HasSwitch(u"debug"));
}

TEST(cCommandLine, TakesAWholeQuotedPathWithBlanks) {
  const cCommandLine line = Parsed(u"-ini \"C:\\My Folder\\osl.ini\" -debug");

  EXPECT_EQ(line.SwitchValue(u"ini"), u"C:\\My Folder\\osl.ini");
  EXPECT_TRUE(line.HasSwitch(u"debug"));
}

TEST(cCommandLine, TakesSwitchesInCapitalsAndWithASlash) {
  const cCommandLine line = Parsed(u"/DEBUG /Ini x");

  EXPECT_TRUE(line.HasSwitch(u"debug"));
  EXPECT_TRUE(line.HasSwitch(u"DEBUG"));
  EXPECT_EQ(line.SwitchValue(u"INI"), u"x");
}

TEST(cCommandLine, TakesAValueThatLooksLikeASwitch) {
  const cCommandLine line = Parsed(u"-ini /etc/osl.ini");

  EXPECT_EQ(line.SwitchValue(u"ini"), u"/etc/osl.ini");
  EXPECT_EQ(line.MainArg(), u"");
}

TEST(cCommandLine, JoinsRepeatedValuesInOrder) {
  const cCommandLine line = Parsed(u"-ini one -ini \"\" -ini three");

  EXPECT_EQ(line.SwitchValue(u"ini"), u"one\u00FE\u00FEthree");
}

TEST(cCommandLine, KeepsFiftyValuesAtMost) {
  Text text;
  for (int i = 1; i <= 60; ++i) text += u"-ini " + ToText(std::int64_t{i}) + u" ";

  const Text value = Parsed(text).SwitchValue(u"ini");

  EXPECT_EQ(std::count(value.begin(), value.end(), kAttributeMark), 49);
  EXPECT_TRUE(
      value.ends_with(u"\u00FE"
                      u"50"));
}

TEST(cCommandLine, KnowsASwitchWithoutItsValue) {
  const cCommandLine line = Parsed(u"-debug -ini");

  EXPECT_TRUE(line.HasSwitch(u"ini"));
  EXPECT_EQ(line.SwitchValue(u"ini"), u"");
}

TEST(cCommandLine, GivesTheRestAsTheMainArgument) {
  const cCommandLine line = Parsed(u"first -debug \"second one\" -other -ini x third");

  EXPECT_EQ(line.MainArg(), u"first second one -other third");
}

TEST(cCommandLine, DoesNotTakeAQuotedTextForASwitch) {
  const cCommandLine line = Parsed(u"\"-debug\"");

  EXPECT_FALSE(line.HasSwitch(u"debug"));
  EXPECT_EQ(line.MainArg(), u"-debug");
}

TEST(cCommandLine, TakesAnUnfinishedQuoteToTheEnd) {
  EXPECT_EQ(Parsed(u"-ini \"C:\\My Folder").SwitchValue(u"ini"), u"C:\\My Folder");
}

TEST(cCommandLine, ForgetsTheLineBefore) {
  cCommandLine line = Parsed(u"-ini one -debug rest");

  line.CommandLine(u"-ini two");

  EXPECT_EQ(line.SwitchValue(u"ini"), u"two");
  EXPECT_FALSE(line.HasSwitch(u"debug"));
  EXPECT_EQ(line.MainArg(), u"");
}

TEST(cCommandLine, LetsBlanksOfAnyNumberSeparate) {
  const cCommandLine line = Parsed(u"   -debug \t  -ini   x  ");

  EXPECT_TRUE(line.HasSwitch(u"debug"));
  EXPECT_EQ(line.SwitchValue(u"ini"), u"x");
}

}  // namespace
}  // namespace ostrel
