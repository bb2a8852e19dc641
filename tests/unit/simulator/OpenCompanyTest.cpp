// What becomes of an open company's changes on disk.
#include <gtest/gtest.h>

#include "Books.h"
#include "simulator/Journal.h"
#include "simulator/OpenCompany.h"

namespace ostrel {
namespace {

const Text kJournal = Text(Conversation::kPath) + u".journal";

// What the disk held when the process was killed, in the hands of another one an hour later.
class Survivor : public Books {
 public:
  explicit Survivor(const Books& killed) : Books("<Company/>") {
    CloseSession();
    oStorage.Files = killed.oStorage.Files;
    oClock.Advance(std::chrono::hours(1));
    sTicket = oProcessor.BeginSession(kPath, platform::FileMode::kDoNotCare);
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
  const QbxmlAnswer invoice = killed.InvoiceTwoHammers();
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
  const QbxmlAnswer gone = killed.Add("Customer", "<Name>Gone</Name>");
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

TEST(OpenCompany, CannotBeOpenedWhenItsJournalGivesANameTwice) {
  Books killed;
  killed.Add("Customer", "<Name>First</Name>");
  auto& files = killed.oStorage.Files;
  simulator::JournalWriter writer = simulator::ReadJournal(files[kJournal])->writer;
  simulator::Element twin{.name = "Customer"};
  twin.Add("ListID", "8000FFFF-1");
  twin.Add("FullName", "FIRST");
  files[kJournal] += writer.Changed(
      {{.kind = simulator::FindKind("Customer"), .id = "8000FFFF-1", .object = twin}});

  EXPECT_EQ(FailureOf([&] { Survivor{killed}; }), 0x80040409);
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
