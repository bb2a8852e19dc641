#include <gtest/gtest.h>

#include "platform/FileSystem.h"
#include "shell/programs/HeadlessOptions.h"

namespace ostrel {
namespace {

TEST(HeadlessOptions, TakesTheSettingsFileBesideTheProgram) {
  const HeadlessOptions options = ReadHeadlessOptions({});

  EXPECT_EQ(options.sCommandLine, u"");
  EXPECT_EQ(options.sSettingsFile, platform::ProgramFolder() + u"\\osl.ini");
  EXPECT_FALSE(options.bHelp || options.bVersion);
  EXPECT_EQ(options.sUnknown, u"");
}

TEST(HeadlessOptions, QuotesArgumentsWithBlanks) {
  const HeadlessOptions options =
      ReadHeadlessOptions({u"-ini", u"/tmp/my folder/osl.ini", u"-debug"});

  EXPECT_EQ(options.sCommandLine, u"-ini \"/tmp/my folder/osl.ini\" -debug");
  EXPECT_EQ(options.sSettingsFile, u"/tmp/my folder/osl.ini");
  EXPECT_EQ(options.sUnknown, u"");
}

TEST(HeadlessOptions, KeepsAnEmptyArgument) {
  const HeadlessOptions options = ReadHeadlessOptions({u"-ini", u"", u"-debug"});

  EXPECT_EQ(options.sCommandLine, u"-ini \"\" -debug");
  EXPECT_EQ(options.sSettingsFile, u"");
}

TEST(HeadlessOptions, KnowsHelpAndVersion) {
  EXPECT_TRUE(ReadHeadlessOptions({u"--help"}).bHelp);
  EXPECT_TRUE(ReadHeadlessOptions({u"--version"}).bVersion);
}

TEST(HeadlessOptions, TellsWhatItDoesNotKnow) {
  EXPECT_EQ(ReadHeadlessOptions({u"-verbose", u"-debug", u"extra"}).sUnknown, u"-verbose extra");
}

}  // namespace
}  // namespace ostrel
