#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "shell/commands/DefaultCompanyFile.h"
#include "tests/unit/shell/SessionCommandTest.h"

namespace ostrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class DefaultCompanyFileTest : public SessionCommandTest {};

TEST_F(DefaultCompanyFileTest, OffersCompanyFiles) {
  CompanyFile.mnuToolsQBFile_Click();

  // Kept: the "!".
  ASSERT_THAT(Dialogs.FileQuestions, SizeIs(1));
  EXPECT_EQ(Dialogs.FileQuestions[0].sFilter, u"Quickbooks Database (*.QBW)|*.QBW|All Files!*.*");
}

// Kept: one entry, whose pattern ends in what looks like a second one.
TEST(FilterEntries, IsOneForTheCompanyFiles) {
  const auto entries = platform::FilterEntries(u"Quickbooks Database (*.QBW)|*.QBW|All Files!*.*");

  ASSERT_THAT(entries, SizeIs(1));
  EXPECT_EQ(entries[0].sDescription, u"Quickbooks Database (*.QBW)");
  EXPECT_EQ(entries[0].sPattern, u"*.QBW;*.QBW|All Files!*.*");
}

TEST(FilterEntries, ArePairs) {
  const auto entries = platform::FilterEntries(u"A|*.a|B|*.b");

  ASSERT_THAT(entries, SizeIs(2));
  EXPECT_EQ(entries[0].sPattern, u"*.a");
  EXPECT_EQ(entries[1].sDescription, u"B");
  EXPECT_EQ(entries[1].sPattern, u"*.b");
  EXPECT_TRUE(platform::FilterEntries(u"A").empty());
  EXPECT_TRUE(platform::FilterEntries(u"").empty());
}

TEST_F(DefaultCompanyFileTest, BeginsWithTheFileOfTheSettings) {
  CompanyFile.mnuToolsQBFile_Click();

  EXPECT_EQ(Dialogs.FileQuestions.at(0).sFileName, u"C:\\a.qbw");
  EXPECT_EQ(Dialogs.FileQuestions.at(0).sFolder, u"");
}

TEST_F(DefaultCompanyFileTest, BeginsInTheUsualFolderWithoutOne) {
  Settings.sQBFileName.clear();

  CompanyFile.mnuToolsQBFile_Click();

  EXPECT_EQ(Dialogs.FileQuestions.at(0).sFileName, u"");
  EXPECT_EQ(Dialogs.FileQuestions.at(0).sFolder, u"C:\\Program Files\\Intuit\\QuickBooks\\");
}

TEST_F(DefaultCompanyFileTest, TakesTheFileChosenAndWritesItBack) {
  Dialogs.FileAnswer = u"C:\\Books\\My Company.QBW";

  CompanyFile.mnuToolsQBFile_Click();

  EXPECT_EQ(Settings.sQBFileName, u"C:\\Books\\My Company.QBW");
  EXPECT_NE(Ini().find("FileName=C:\\Books\\My Company.QBW"), std::string::npos);
}

TEST_F(DefaultCompanyFileTest, ChangesNothingWhenCancelled) {
  CompanyFile.mnuToolsQBFile_Click();

  EXPECT_EQ(Settings.sQBFileName, u"C:\\a.qbw");
  EXPECT_EQ(Ini(), "");
}

TEST_F(DefaultCompanyFileTest, TakesTheFileThoughItCannotBeWrittenBack) {
  Settings.sIniFile.clear();
  Dialogs.FileAnswer = u"C:\\b.qbw";

  EXPECT_NO_THROW(CompanyFile.mnuToolsQBFile_Click());

  EXPECT_EQ(Settings.sQBFileName, u"C:\\b.qbw");
}

TEST_F(DefaultCompanyFileTest, StartsQuickBooks) {
  CompanyFile.mnuToolsStartQB_Click();

  ASSERT_THAT(Processes.Documents, SizeIs(1));
  EXPECT_EQ(Processes.Documents[0].sFile, u"C:\\a.qbw");
  EXPECT_EQ(Processes.Documents[0].sVerb, u"");
  EXPECT_EQ(Processes.Documents[0].iShowCommand, 0);
  EXPECT_THAT(Window.Messages, IsEmpty());
}

TEST_F(DefaultCompanyFileTest, StartsNothingWithoutACompanyFile) {
  Settings.sQBFileName.clear();

  CompanyFile.mnuToolsStartQB_Click();

  EXPECT_THAT(Window.Messages, ElementsAre(u"You must assign a default Quickbooks Database."));
  EXPECT_THAT(Processes.Documents, IsEmpty());
}

TEST_F(DefaultCompanyFileTest, TellsThatQuickBooksCouldNotBeStarted) {
  Processes.bCanStart = false;

  CompanyFile.mnuToolsStartQB_Click();

  EXPECT_THAT(Trace.Status, ElementsAre(u"Unable to start Quickbooks with C:\\a.qbw"));
}

}  // namespace
}  // namespace ostrel
