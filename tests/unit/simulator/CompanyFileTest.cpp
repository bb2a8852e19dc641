#include <gtest/gtest.h>

#include <algorithm>

#include "simulator/company/CompanyFile.h"
#include "tests/unit/simulator/FakeCompanyStorage.h"

namespace ostrel::simulator {
namespace {

using doubles::FakeCompanyStorage;

constexpr char16_t kPath[] = u"C:\\Books\\hale.qbw";
constexpr char16_t kJournal[] = u"C:\\Books\\hale.qbw.journal";
constexpr char16_t kBeside[] = u"C:\\Books\\hale.qbw.new";

Changes Adding(const std::string& name) {
  Element object{.name = "Customer"};
  object.Add("ListID", "8000-" + name);
  object.Add("Name", name);
  return {{.kind = FindKind("Customer"), .id = "8000-" + name, .object = object}};
}

class CompanyFileTest : public testing::Test {
 protected:
  CompanyFileTest() { oStorage.Files[kPath] = "old"; }

  // The company as the next one to open it finds it: the file, and the names that its journal adds.
  std::string Reopened() {
    CompanyFile file(kPath, oStorage);
    CompanyFile::Contents contents;
    if (const int error = file.Read(contents)) return "error " + std::to_string(error);
    for (const Changes& changes : contents.changes) contents.bytes += " " + NameIn(changes);
    state = contents.journal;
    return contents.bytes;
  }
  static std::string NameIn(const Changes& changes) {
    return std::string(changes.front().object->ChildText("Name"));
  }

  CompanyFile Open(RecordLimits limits = {}) {
    CompanyFile file(kPath, oStorage, limits);
    CompanyFile::Contents contents;
    EXPECT_EQ(file.Read(contents), 0);
    return file;
  }

  FakeCompanyStorage oStorage;
  JournalState state = JournalState::kNone;  // as Reopened found it
};

TEST_F(CompanyFileTest, AppendsChangesToAJournalBesideIt) {
  CompanyFile file = Open();

  EXPECT_EQ(file.Append(Adding("a")), 0);
  EXPECT_EQ(file.Append(Adding("b")), 0);

  EXPECT_EQ(oStorage.Files[kPath], "old");
  EXPECT_EQ(Reopened(), "old a b");
  EXPECT_EQ(state, JournalState::kWhole);
}

TEST_F(CompanyFileTest, WritesNothingOfTheFileAnewForAChange) {
  CompanyFile file = Open();
  file.Append(Adding("a"));
  const std::size_t before = oStorage.Files[kJournal].size();

  file.Append(Adding("b"));

  EXPECT_EQ(oStorage.iWritten, 2);
  EXPECT_LT(oStorage.Files[kJournal].size(), 2 * before);
}

TEST_F(CompanyFileTest, GoesOnWithTheJournalThatItFound) {
  Open().Append(Adding("a"));

  Open().Append(Adding("b"));

  EXPECT_EQ(Reopened(), "old a b");
}

TEST_F(CompanyFileTest, WritesNothingWhenItIsOnlyRead) {
  Open().Append(Adding("a"));
  oStorage.Files[kPath] = "edited";
  const auto before = oStorage.Files;

  Reopened();

  EXPECT_EQ(oStorage.Files, before);
}

TEST_F(CompanyFileTest, ReportsAChangeThatCannotBeWrittenAndTakesTheNext) {
  CompanyFile file = Open();
  file.Append(Adding("a"));
  oStorage.iWriteError = platform::kDiskFull;

  EXPECT_EQ(file.Append(Adding("b")), platform::kDiskFull);

  oStorage.iWriteError = 0;
  EXPECT_EQ(file.Append(Adding("c")), 0);
  EXPECT_EQ(Reopened(), "old a c");
}

TEST_F(CompanyFileTest, CutsOffWhatACrashHasTorn) {
  CompanyFile file = Open();
  file.Append(Adding("a"));
  oStorage.Files[kJournal] += "<?record 0000";
  EXPECT_EQ(Reopened(), "old a");
  EXPECT_EQ(state, JournalState::kTorn);

  Open().Append(Adding("b"));

  EXPECT_EQ(Reopened(), "old a b");
  EXPECT_EQ(state, JournalState::kWhole);
}

// Whatever is left of the record of a change, those before it are there.
TEST_F(CompanyFileTest, LosesNoConfirmedChangeToACrashInTheMiddleOfAnother) {
  const auto crashed = [&](std::size_t written) {
    oStorage = FakeCompanyStorage();
    oStorage.Files[kPath] = "old";
    CompanyFile file = Open();
    file.Append(Adding("a"));
    oStorage.iCrashAt = 2;
    oStorage.lWrittenBeforeCrash = written;
    EXPECT_THROW(file.Append(Adding("b")), FakeCompanyStorage::Crash);
  };
  Open().Append(Adding("a"));
  const std::size_t size = oStorage.Files[kJournal].size();

  for (std::size_t written = 0; written < size; ++written) {
    crashed(written);
    const std::string after = Reopened();
    EXPECT_TRUE(after == "old a" || after == "old a b") << written << after;
  }
}

TEST_F(CompanyFileTest, AppliesNoJournalToAFileThatSomebodyHasEdited) {
  Open().Append(Adding("a"));
  oStorage.Files[kPath] = "edited";

  EXPECT_EQ(Reopened(), "edited");
  EXPECT_EQ(state, JournalState::kForeign);
}

TEST_F(CompanyFileTest, KeepsAJournalThatDoesNotCountUnderAnotherName) {
  Open().Append(Adding("a"));
  const std::string foreign = oStorage.Files[kJournal];
  oStorage.Files[kPath] = "edited";

  EXPECT_EQ(Open().Append(Adding("b")), 0);

  EXPECT_EQ(Reopened(), "edited b");
  EXPECT_EQ(oStorage.Files.size(), 3u);
  const auto kept =
      std::ranges::find(oStorage.Files, foreign, &std::pair<const Text, std::string>::second);
  ASSERT_NE(kept, oStorage.Files.end());
  EXPECT_TRUE(kept->first.starts_with(Text(kJournal) + u"-"));
}

TEST_F(CompanyFileTest, KeepsAJournalWhoseBeginningIsDamaged) {
  Open().Append(Adding("a"));
  std::string& journal = oStorage.Files[kJournal];
  journal[journal.find("bytes=")] = 'X';
  EXPECT_EQ(Reopened(), "old");
  EXPECT_EQ(state, JournalState::kForeign);

  EXPECT_EQ(Open().Append(Adding("b")), 0);

  EXPECT_EQ(Reopened(), "old b");
  EXPECT_EQ(oStorage.Files.size(), 3u);
}

// The record behind that line proves what it says.
TEST_F(CompanyFileTest, ReadsAJournalOfWhichOnlyTheFirstLineIsDamaged) {
  Open().Append(Adding("a"));
  oStorage.Files[kJournal][3] = 'X';

  EXPECT_EQ(Reopened(), "old a");
}

TEST_F(CompanyFileTest, ChangesNothingWhenAForeignJournalCannotGiveWay) {
  Open().Append(Adding("a"));
  oStorage.Files[kPath] = "edited";
  CompanyFile file = Open();
  oStorage.iWriteError = platform::kAccessDenied;
  const auto before = oStorage.Files;

  EXPECT_EQ(file.Append(Adding("b")), platform::kAccessDenied);

  EXPECT_EQ(oStorage.Files, before);
}

TEST_F(CompanyFileTest, TakesNoChangesWhileAnotherProgramWritesItsFile) {
  CompanyFile file = Open();
  oStorage.Files[kPath] = "edited";

  EXPECT_EQ(file.Append(Adding("a")), platform::kSharingViolation);
  EXPECT_EQ(file.Fold("new"), platform::kSharingViolation);

  EXPECT_EQ(Reopened(), "edited");
}

// Four records, of which nobody can carry out the third.
std::string HalfBadJournal() {
  JournalWriter writer;
  std::string bytes = writer.Continues(VersionOf("old"));
  bytes += writer.Changed(Adding("a"));
  bytes += writer.Continues({});  // which comes first only
  bytes += writer.Changed(Adding("b"));
  return bytes;
}

TEST_F(CompanyFileTest, LeavesOutARecordThatNobodyCanCarryOut) {
  oStorage.Files[kJournal] = HalfBadJournal();

  EXPECT_EQ(Reopened(), "old a b");
  CompanyFile file = Open();
  ASSERT_EQ(file.RecordsLeftOut().size(), 1u);
  EXPECT_EQ(file.RecordsLeftOut()[0].record.number, 3u);
}

TEST_F(CompanyFileTest, TellsOfRecordsLeftOutInTheirOrder) {
  oStorage.Files[kJournal] = HalfBadJournal();
  CompanyFile file = Open();

  file.LeaveOut({{.number = 4, .position = 9}, "late"});
  file.LeaveOut({{.number = 2, .position = 1}, "early"});

  ASSERT_EQ(file.RecordsLeftOut().size(), 3u);
  EXPECT_EQ(file.RecordsLeftOut()[0].why, "early");
  EXPECT_EQ(file.RecordsLeftOut()[2].why, "late");
}

TEST_F(CompanyFileTest, KeepsAJournalOfWhichRecordsWereLeftOutWhenItIsFolded) {
  const std::string bad = HalfBadJournal();
  oStorage.Files[kJournal] = bad;
  CompanyFile file = Open();

  EXPECT_EQ(file.Fold("old+a+b"), 0);

  EXPECT_EQ(oStorage.Files[kPath], "old+a+b");
  EXPECT_FALSE(oStorage.Files.contains(kJournal));
  ASSERT_EQ(oStorage.Files.size(), 2u);
  EXPECT_TRUE(oStorage.Files.rbegin()->second.starts_with(bad));
  EXPECT_TRUE(file.RecordsLeftOut().empty());
  EXPECT_EQ(file.Append(Adding("c")), 0);
  EXPECT_EQ(Reopened(), "old+a+b c");
}

TEST_F(CompanyFileTest, KeepsItWhereverThatFoldingEnds) {
  constexpr int kSteps = 4;  // note in the journal, new file, its rename, the journal's
  for (int step = 1; step <= kSteps; ++step) {
    oStorage = FakeCompanyStorage();
    oStorage.Files[kPath] = "old";
    oStorage.Files[kJournal] = HalfBadJournal();
    CompanyFile file = Open();
    oStorage.iCrashAt = step;

    EXPECT_THROW(file.Fold("old+a+b"), FakeCompanyStorage::Crash) << step;

    EXPECT_EQ(Reopened(), step < kSteps ? "old a b" : "old+a+b") << step;
    oStorage.iCrashAt = 0;
    CompanyFile again = Open();
    if (step < kSteps) {
      EXPECT_EQ(again.Fold("old+a+b"), 0);
    }
    EXPECT_EQ(again.Append(Adding("c")), 0);
    EXPECT_EQ(Reopened(), "old+a+b c") << step;
    EXPECT_EQ(std::ranges::count_if(
                  oStorage.Files,
                  [](const auto& entry) { return entry.first.starts_with(Text(kJournal) + u"-"); }),
              1)
        << step;
  }
}

TEST_F(CompanyFileTest, TakesNoMoreElementsThanItsLimit) {
  const std::size_t elements = CountElements(Adding("a"));

  EXPECT_EQ(Open({.elements = elements - 1}).Append(Adding("a")), platform::kFileTooLarge);
  EXPECT_FALSE(oStorage.Files.contains(kJournal));

  EXPECT_EQ(Open({.elements = elements}).Append(Adding("a")), 0);
  EXPECT_EQ(Reopened(), "old a");
}

TEST_F(CompanyFileTest, TakesNoMoreBytesThanItsLimit) {
  const std::size_t bytes = JournalWriter().Changed(Adding("a")).size();

  EXPECT_EQ(Open({.bytes = bytes - 1}).Append(Adding("a")), platform::kFileTooLarge);
  EXPECT_FALSE(oStorage.Files.contains(kJournal));

  EXPECT_EQ(Open({.bytes = bytes}).Append(Adding("a")), 0);
  EXPECT_EQ(Reopened(), "old a");
}

TEST_F(CompanyFileTest, CanReadTheLargestRecordThatItTakes) {
  Changes changes = Adding("wide");
  Element& object = *changes.front().object;
  object.children.resize(object.children.size() + RecordLimits().elements - CountElements(changes),
                         Element{.name = "L"});

  EXPECT_EQ(Open().Append(changes), 0);
  EXPECT_EQ(Reopened(), "old wide");

  object.Add("L");
  EXPECT_EQ(Open().Append(changes), platform::kFileTooLarge);
}

TEST_F(CompanyFileTest, IsFoldedIntoOneFile) {
  CompanyFile file = Open();
  file.Append(Adding("a"));

  EXPECT_EQ(file.Fold("old+a"), 0);

  EXPECT_EQ(oStorage.Files, (std::map<Text, std::string>{{kPath, "old+a"}}));
}

TEST_F(CompanyFileTest, TakesChangesAfterItWasFolded) {
  CompanyFile file = Open();
  file.Append(Adding("a"));
  file.Fold("old+a");

  EXPECT_EQ(file.Append(Adding("b")), 0);

  EXPECT_EQ(Reopened(), "old+a b");
}

TEST_F(CompanyFileTest, IsNeverInDoubtWhereverAFoldingEnds) {
  constexpr int kSteps = 4;  // note in the journal, new file, its rename, end of the journal
  for (int step = 1; step <= kSteps; ++step) {
    for (const std::size_t written : {0u, 1u, 3u}) {
      oStorage = FakeCompanyStorage();
      oStorage.Files[kPath] = "old";
      CompanyFile file = Open();
      file.Append(Adding("a"));
      oStorage.iCrashAt = 1 + step;
      oStorage.lWrittenBeforeCrash = written;

      EXPECT_THROW(file.Fold("old+a"), FakeCompanyStorage::Crash) << step;

      EXPECT_EQ(Reopened(), step < kSteps ? "old a" : "old+a") << step;
      oStorage.iCrashAt = 0;
      EXPECT_EQ(Open().Append(Adding("b")), 0);
      EXPECT_EQ(Reopened(), step < kSteps ? "old a b" : "old+a b") << step;
    }
  }
}

TEST_F(CompanyFileTest, TakesChangesAfterAFoldingThatFailed) {
  CompanyFile file = Open();
  file.Append(Adding("a"));
  oStorage.iWriteError = platform::kDiskFull;
  EXPECT_EQ(file.Fold("old+a"), platform::kDiskFull);
  oStorage.iWriteError = 0;

  EXPECT_EQ(file.Append(Adding("b")), 0);

  EXPECT_EQ(Reopened(), "old a b");
  EXPECT_FALSE(oStorage.Files.contains(kBeside));
}

TEST_F(CompanyFileTest, LeavesNothingBesideItWhenAFoldingCannotBePutInPlace) {
  CompanyFile file = Open();
  file.Append(Adding("a"));
  oStorage.iRenameError = platform::kSharingViolation;

  EXPECT_EQ(file.Fold("old+a"), platform::kSharingViolation);

  EXPECT_FALSE(oStorage.Files.contains(kBeside));
  EXPECT_EQ(Reopened(), "old a");
}

// Its end in the journal, the new file, its name, and the journal's end.
TEST_F(CompanyFileTest, FoldsInFourSteps) {
  CompanyFile file = Open();
  file.Append(Adding("a"));
  const int before = oStorage.iWritten;

  EXPECT_EQ(file.Fold("old+a"), 0);

  EXPECT_EQ(oStorage.iWritten - before, 4);
  EXPECT_EQ(oStorage.Files.size(), 1u);
}

TEST_F(CompanyFileTest, HasNoLongJournalWithoutAChange) {
  CompanyFile file = Open();
  EXPECT_FALSE(file.IsLong());

  file.Append(Adding("a"));

  EXPECT_TRUE(file.IsLong());
}

TEST_F(CompanyFileTest, HasALongJournalWhenItIsAnEighthOfALargeFile) {
  oStorage.Files[kPath] = std::string(2'000'000, 'x');
  CompanyFile file = Open();
  file.Append(Adding(std::string(100'000, 'y')));
  EXPECT_FALSE(file.IsLong());

  file.Append(Adding(std::string(100'000, 'z')));

  EXPECT_TRUE(file.IsLong());
  EXPECT_FALSE(file.IsTooLong());
}

}  // namespace
}  // namespace ostrel::simulator
