// The changes of an open company on disk.
#include <gtest/gtest.h>

#include "simulator/company/Journal.h"
#include "simulator/company/OpenCompany.h"
#include "tests/unit/simulator/Books.h"

namespace ostrel {
namespace {

const Text kJournal = Text(Conversation::kPath) + u".journal";

// The disk of a process that was killed, in the hands of another one an hour later.
class Survivor : public Books {
 public:
  explicit Survivor(const Books& killed) : Books("<Company/>") {
    CloseSession();
    oStorage.Files = killed.oStorage.Files;
    oClock.Advance(std::chrono::hours(1));
    sTicket = oProcessor.BeginSession(kPath, FileMode::kDoNotCare);
  }

  void CloseSession() { oProcessor.EndSession(sTicket); }
};

TEST(OpenCompany, WritesARecordAndNotTheFileForAChange) {
  Books books;
  books.Add("Customer", "<Name>First</Name>");
  const std::string file = books.oStorage.Files[Conversation::kPath];

  books.Add("Customer", "<Name>Second</Name>");

  EXPECT_EQ(books.oStorage.Files[Conversation::kPath], file);
  EXPECT_NE(books.oStorage.Files[kJournal].find("<Name>Second</Name>"), std::string::npos);
}

TEST(OpenCompany, FoldsItsJournalWhenItCloses) {
  Books books;
  books.Add("Customer", "<Name>First</Name>");

  const std::string file = books.File();

  EXPECT_NE(file.find("<Name>First</Name>"), std::string::npos);
  EXPECT_FALSE(books.oStorage.Files.contains(kJournal));
}

TEST(OpenCompany, IsLeftAsItIsWhenNothingHasChanged) {
  Books books;
  books.Query("Customer");

  books.File();

  EXPECT_EQ(books.oStorage.iWritten, 0);
}

TEST(OpenCompany, LosesNothingWhenItsProcessIsKilled) {
  Books killed;
  const QbxmlResponse invoice = killed.InvoiceTwoHammers();
  killed.Pay(invoice, "7.00");
  killed.Modify("Customer", killed.Find("Customer", "Abbott"), "<Name>Abbot</Name>");
  killed.Delete("List", "Customer", killed.Find("Customer", "Zeller").Text("ListID"));

  Survivor survivor(killed);

  for (const char* query : {"Customer", "Account", "ItemInventory"}) {
    EXPECT_EQ(survivor.Ask("<" + std::string(query) + "QueryRq/>"),
              killed.Ask("<" + std::string(query) + "QueryRq/>"));
  }
  EXPECT_EQ(survivor.Query("Invoice").Text("AppliedAmount"), "-7.00");
  EXPECT_EQ(survivor.Find("Customer", "Abbot:Barn").Code(), "0");
  EXPECT_FALSE(survivor.Has("Zeller"));
}

TEST(OpenCompany, GivesTheNumbersOfWhatAJournalHasRemovedToNobodyElse) {
  Books killed;
  const QbxmlResponse gone = killed.Add("Customer", "<Name>Gone</Name>");
  killed.Delete("List", "Customer", gone.Text("ListID"));

  Survivor survivor(killed);

  EXPECT_NE(survivor.Add("Customer", "<Name>New</Name>").Text("ListID"), gone.Text("ListID"));
}

// Without the first writing, the IDs in the journal would mean nothing to the next reader.
TEST(OpenCompany, WritesDownTheIdsThatItGaveBeforeAJournalNamesThem) {
  Books killed;
  killed.InvoiceTwoHammers();

  Survivor survivor(killed);

  EXPECT_EQ(survivor.Find("Customer", "Abbott").Text("ListID"),
            killed.Find("Customer", "Abbott").Text("ListID"));
  EXPECT_EQ(survivor.Balance("Customer", "Abbott"), killed.Balance("Customer", "Abbott"));
}

simulator::Change Putting(const std::string& kind, const std::string& id, const std::string& name) {
  simulator::Element object{.name = kind};
  object.Add("ListID", id);
  object.Add("FullName", name);
  object.Add("IsActive", "true");
  return {.kind = simulator::FindKind(kind), .id = id, .object = object};
}

TEST(OpenCompany, LeavesOutARecordThatGivesANameTwiceAndKeepsTheOthers) {
  Books killed;
  killed.Add("Customer", "<Name>First</Name>");
  auto& files = killed.oStorage.Files;
  simulator::JournalWriter writer = simulator::ReadJournal(files[kJournal]).writer;
  files[kJournal] += writer.Changed(
      {Putting("Customer", "8000FFFE-1", "Beside"), Putting("Customer", "8000FFFF-1", "FIRST")});
  files[kJournal] += writer.Changed({Putting("Customer", "8000FFFD-1", "Later")});

  Survivor survivor(killed);

  EXPECT_TRUE(survivor.Has("First"));
  EXPECT_TRUE(survivor.Has("Later"));
  EXPECT_FALSE(survivor.Has("Beside"));
  // A client may know the numbers of what was left out.
  EXPECT_EQ(survivor.Add("Customer", "<Name>New</Name>").Text("ListID").substr(0, 8), "80010000");
}

TEST(OpenCompany, TakesNoNameTwiceFromOneRecord) {
  Books killed;
  killed.Add("Customer", "<Name>First</Name>");
  auto& files = killed.oStorage.Files;
  simulator::JournalWriter writer = simulator::ReadJournal(files[kJournal]).writer;
  files[kJournal] += writer.Changed(
      {Putting("Customer", "8000FFFE-1", "Twin"), Putting("Customer", "8000FFFF-1", "twin")});

  EXPECT_FALSE(Survivor(killed).Has("Twin"));
}

// Where in the journal the record with this text begins.
std::size_t RecordWith(const std::string& journal, const std::string& text) {
  return journal.rfind("<?record", journal.find(text));
}

TEST(OpenCompany, LeavesOutWhatRefersToADamagedRecordAndKeepsTheRest) {
  Books killed;
  killed.Add("Class", "<Name>Wood</Name>");
  killed.Add("Class", "<Name>Oak</Name>" + Books::Ref("ParentRef", "Wood"));
  killed.Add("Customer", "<Name>Later</Name>");
  std::string& journal = killed.oStorage.Files[kJournal];
  journal[journal.find("<Name>Wood") + 7] = 'X';

  Survivor survivor(killed);

  EXPECT_EQ(survivor.Find("Class", "Wood").Code(), "500");
  EXPECT_EQ(survivor.Find("Class", "Wood:Oak").Code(), "500");
  EXPECT_TRUE(survivor.Has("Later"));
}

TEST(OpenCompany, KeepsPaymentsOutOfWhatIsNotThere) {
  Books killed;
  const QbxmlResponse invoice = killed.InvoiceTwoHammers();
  killed.Pay(invoice, "7.00");
  std::string& journal = killed.oStorage.Files[kJournal];
  // Its second record is the payment, with the invoice as it is then: it stands by itself.
  journal[journal.find("<RefNumber>1<", RecordWith(journal, "<Invoice ")) + 1] = 'X';
  EXPECT_EQ(Survivor(killed).Query("Invoice").Text("AppliedAmount"), "-7.00");
  // Without the invoice in it, it does not.
  simulator::JournalWriter writer = simulator::ReadJournal(journal).writer;
  simulator::Element payment{.name = "ReceivePayment"};
  payment.Add("TxnID", "FF-1");
  payment.Add("TxnDate", "2010-01-05");
  payment.Add("AppliedToTxnRet").Add("TxnID", "FE-1");
  journal += writer.Changed(
      {{.kind = simulator::FindKind("ReceivePayment"), .id = "FF-1", .object = payment}});

  EXPECT_EQ(Survivor(killed).Query("ReceivePayment", "<TxnID>FF-1</TxnID>").Code(), "500");
}

// The next reader finds neither the damage nor any doubt.
TEST(OpenCompany, IsWrittenAnewWithoutWhatWasLeftOutBeforeItIsChanged) {
  Books killed;
  killed.Add("Class", "<Name>Wood</Name>");
  killed.Add("Class", "<Name>Stone</Name>");
  std::string& journal = killed.oStorage.Files[kJournal];
  journal[journal.find("<Name>Wood") + 7] = 'X';
  Survivor survivor(killed);

  EXPECT_EQ(survivor.Add("Class", "<Name>Wood</Name>").Code(), "0");

  Survivor next(survivor);
  EXPECT_EQ(next.Query("Class").Count(), 2u);
  EXPECT_EQ(next.oStorage.Files.size(), 3u);  // with the damaged journal under its own name
}

TEST(OpenCompany, ThatCannotBeLockedTakesNoChanges) {
  Books books;
  books.oProcessor.EndSession(books.sTicket);
  books.oStorage.iLockError = platform::kAccessDenied;
  books.sTicket = books.oProcessor.BeginSession(Books::kPath, FileMode::kDoNotCare);

  EXPECT_EQ(books.Add("Customer", "<Name>First</Name>").Code(), "3180");

  EXPECT_EQ(books.Query("Customer").Count(), 3u);
}

// Opened in a moment in which the lock cannot be had, of which the moment has passed.
class LockedLate : public Books {
 public:
  LockedLate() {
    oProcessor.EndSession(sTicket);
    oStorage.iLockError = platform::kAccessDenied;
    sTicket = oProcessor.BeginSession(kPath, FileMode::kDoNotCare);
    oStorage.iLockError = 0;
  }
};

TEST(OpenCompany, TakesChangesOnceItCanBeLocked) {
  LockedLate books;

  EXPECT_EQ(books.Add("Customer", "<Name>First</Name>").Code(), "0");

  EXPECT_EQ(books.oStorage.Locked, std::vector<Text>{Conversation::kPath});
}

TEST(OpenCompany, ThatIsLockedLateRefusesChangesWhenAnotherHasChangedItBefore) {
  LockedLate books;
  books.oStorage.Files[kJournal] = "the record of another one";

  EXPECT_EQ(books.Add("Customer", "<Name>First</Name>").Code(), "3180");

  EXPECT_TRUE(books.oStorage.Locked.empty());
}

TEST(OpenCompany, RefusesChangesAfterAnotherProgramHasWrittenItsFile) {
  Books books;
  books.Add("Customer", "<Name>First</Name>");
  books.oStorage.Files[Conversation::kPath] = "<Company name='Edited'/>";

  EXPECT_EQ(books.Add("Customer", "<Name>Second</Name>").Code(), "3180");

  EXPECT_EQ(books.File(), "<Company name='Edited'/>");
}

}  // namespace
}  // namespace ostrel
