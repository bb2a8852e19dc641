#include <gtest/gtest.h>

#include "tests/unit/simulator/Books.h"

namespace ostrel::simulator {
namespace {

// A client that undoes what it has done.
class UndoneBooks : public Books {
 public:
  QbxmlResponse Void(const std::string& type, const QbxmlResponse& transaction) {
    return Tell(
        Leaf("TxnVoidRq", Leaf("TxnVoidType", type) + Leaf("TxnID", transaction.Text("TxnID"))));
  }
  QbxmlResponse Deleted(const std::string& category, const std::string& types,
                        const std::string& filter = "", const std::string& attributes = "") {
    std::string body;
    for (std::size_t at = 0; at < types.size();) {
      const std::size_t end = std::min(types.find(' ', at), types.size());
      body += Leaf(category + "DelType", types.substr(at, end - at));
      at = end + 1;
    }
    return Tell("<" + category + "DeletedQueryRq " + attributes + ">" + body + filter + "</" +
                category + "DeletedQueryRq>");
  }
  QbxmlResponse Merge(const std::string& kind, const std::string& from, const std::string& into) {
    return Tell(Leaf("ListMergeRq", Leaf("ListMergeType", kind) +
                                        Leaf("MergeFrom", Known(kind, from)) +
                                        Leaf("MergeTo", Known(kind, into))));
  }
  std::string Known(const std::string& kind, const std::string& name) {
    const QbxmlResponse found = Find(kind, name);
    return Leaf("ListID", found.Text("ListID")) + Leaf("EditSequence", found.Text("EditSequence"));
  }
  QbxmlResponse Invoice(const QbxmlResponse& known) {
    return Query("Invoice",
                 Leaf("TxnID", known.Text("TxnID")) + "<IncludeLineItems>true</IncludeLineItems>");
  }
};

TEST(TxnVoid, MakesAllAmountsZeroAndUndoesThePostings) {
  UndoneBooks books;
  const QbxmlResponse invoice =
      books.Add("Invoice", Books::Ref("CustomerRef", "Abbott") + "<Memo>first</Memo>" +
                               Books::InvoiceLine("Hammer", "2"));

  const QbxmlResponse response = books.Void("Invoice", invoice);
  EXPECT_EQ(response.Code(), "0");

  const QbxmlResponse found = books.Invoice(invoice);
  EXPECT_EQ(found.Text("Memo"), "VOID:first");
  EXPECT_EQ(found.Text("Subtotal"), "0.00");
  EXPECT_EQ(found.Text("BalanceRemaining"), "0.00");
  EXPECT_EQ(found.Text("InvoiceLineRet/Amount"), "0.00");
  EXPECT_NE(found.Text("EditSequence"), invoice.Text("EditSequence"));
  EXPECT_EQ(books.Balance("Customer", "Abbott"), "0.00");
  EXPECT_EQ(books.Balance("Account", "Receivables"), "0.00");
  EXPECT_EQ(books.Balance("Account", "Sales"), "0.00");
  EXPECT_EQ(books.Find("ItemInventory", "Hammer").Text("QuantityOnHand"), "20");
}

TEST(TxnVoid, ReleasesThePaymentsOfAnInvoice) {
  UndoneBooks books;
  const QbxmlResponse invoice = books.InvoiceTwoHammers();
  const QbxmlResponse payment = books.Pay(invoice, "20.00");

  EXPECT_EQ(books.Void("Invoice", invoice).Code(), "0");

  EXPECT_EQ(books.Query("ReceivePayment", Books::Leaf("TxnID", payment.Text("TxnID")))
                .Text("UnusedPayment"),
            "20.00");
  EXPECT_EQ(books.Balance("Customer", "Abbott"), "-20.00");
  EXPECT_EQ(books.Invoice(invoice).Text("AppliedAmount"), "0.00");
}

TEST(TxnVoid, KeepsAJournalEntryInBalanceAndMarksItsMemoOnce) {
  UndoneBooks books;
  const auto line = [](const std::string& side, const std::string& account) {
    return Books::Leaf("Journal" + side + "Line",
                       Books::Ref("AccountRef", account) + "<Amount>7.00</Amount>");
  };
  const QbxmlResponse entry =
      books.Add("JournalEntry", line("Debit", "Checking") + line("Credit", "Sales"));
  EXPECT_EQ(books.Balance("Account", "Checking"), "7.00");

  EXPECT_EQ(books.Void("JournalEntry", entry).Code(), "0");
  EXPECT_EQ(books.Void("JournalEntry", entry).Code(), "0");
  EXPECT_EQ(books.Balance("Account", "Checking"), "0.00");
  EXPECT_EQ(books.Balance("Account", "Sales"), "0.00");
}

TEST(TxnVoid, RefusesWhatIsNotThere) {
  UndoneBooks books;
  const QbxmlResponse invoice = books.InvoiceTwoHammers();

  EXPECT_EQ(books.Void("Bill", invoice).Code(), "3120");
  EXPECT_EQ(books.Void("Deposit", invoice).Code(), "3120");
}

TEST(TxnDel, RefusesAKindOfWhichThereIsNothing) {
  UndoneBooks books;

  EXPECT_EQ(books.Delete("Txn", "ARRefundCreditCard", "1-1").Code(), "3120");
  EXPECT_EQ(books.Delete("List", "WorkersCompCode", "80000001-1").Code(), "3120");
}

TEST(DeletedQueries, TellWhatWasDeletedAndWhen) {
  UndoneBooks books;
  const QbxmlResponse invoice = books.InvoiceTwoHammers();
  const std::string zeller = books.Find("Customer", "Zeller").Text("ListID");
  books.Delete("Txn", "Invoice", invoice.Text("TxnID"));
  books.Delete("List", "Customer", zeller);

  const QbxmlResponse transactions = books.Deleted("Txn", "Bill Invoice");
  EXPECT_EQ(transactions.Order(), "TxnDelType TxnID TimeCreated TimeDeleted RefNumber ");
  EXPECT_EQ(transactions.Text("TxnID"), invoice.Text("TxnID"));
  const QbxmlResponse lists =
      books.Deleted("List", "Customer", "", "metaData='MetaDataAndResponseData'");
  EXPECT_EQ(lists.Order(), "ListDelType ListID TimeCreated TimeDeleted FullName ");
  EXPECT_EQ(lists.Text("FullName"), "Zeller");
  EXPECT_EQ(lists.Attribute("retCount"), "1");
  EXPECT_EQ(books.Deleted("Txn", "Bill").Code(), "1");
}

TEST(DeletedQueries, FilterByTheTimeOfDeletion) {
  UndoneBooks books;
  books.Delete("Txn", "Invoice", books.InvoiceTwoHammers().Text("TxnID"));
  const auto count = [&](const std::string& name, const std::string& date) {
    return books
        .Deleted("Txn", "Invoice", Books::Leaf("DeletedDateRangeFilter", Books::Leaf(name, date)))
        .Count();
  };

  EXPECT_EQ(count("FromDeletedDate", "2010-01-05"), 1u);
  EXPECT_EQ(count("FromDeletedDate", "2010-01-06"), 0u);
  EXPECT_EQ(count("ToDeletedDate", "2010-01-05"), 1u);
  EXPECT_EQ(count("ToDeletedDate", "2010-01-04"), 0u);
}

TEST(DeletedQueries, RememberAcrossAKillAndARestart) {
  UndoneBooks books;
  books.Delete("Txn", "Invoice", books.InvoiceTwoHammers().Text("TxnID"));

  UndoneBooks other;
  other.OpenAfterKillOf(books);
  EXPECT_EQ(other.Deleted("Txn", "Invoice").Count(), 1u);
  other.Add("Class", "<Name>West</Name>");
  other.File();
  EXPECT_EQ(other.Deleted("Txn", "Invoice").Count(), 1u);
}

TEST(ListMerge, RedirectsWhatReferredToTheOtherObject) {
  UndoneBooks books;
  const QbxmlResponse invoice = books.InvoiceTwoHammers();
  const std::string balance = books.Balance("Customer", "Abbott");
  const std::string abbott = books.Find("Customer", "Abbott").Text("ListID");

  const QbxmlResponse merged = books.Merge("Customer", "Abbott", "Zeller");
  EXPECT_EQ(merged.Code(), "0");
  EXPECT_EQ(merged.Text("ListID", 1), abbott);
  EXPECT_EQ(merged.Text("FullName", 2), "Zeller");

  EXPECT_EQ(books.Find("Customer", "Abbott").Code(), "500");
  EXPECT_EQ(books.Invoice(invoice).Text("CustomerRef/FullName"), "Zeller");
  EXPECT_EQ(books.Balance("Customer", "Zeller"), balance);
  EXPECT_EQ(books.Find("Customer", "Zeller").Text("TotalBalance"), balance);
  EXPECT_EQ(books.Find("Customer", "Zeller:Barn").Text("ParentRef/FullName"), "Zeller");
  EXPECT_EQ(
      books.Query("Invoice", "<EntityFilter><FullName>Zeller</FullName></EntityFilter>").Count(),
      1u);
  EXPECT_EQ(books.Deleted("List", "Customer").Text("FullName"), "Abbott");
}

TEST(ListMerge, AddsUpWhatBothHave) {
  UndoneBooks books;
  books.Add("ItemInventory", "<Name>Mallet</Name>" + Books::Ref("IncomeAccountRef", "Sales") +
                                 Books::Ref("COGSAccountRef", "Goods") +
                                 Books::Ref("AssetAccountRef", "Stock"));
  books.Add("Invoice", Books::Ref("CustomerRef", "Abbott") + Books::InvoiceLine("Mallet", "3"));

  EXPECT_EQ(books.Merge("ItemInventory", "Mallet", "Hammer").Code(), "0");
  EXPECT_EQ(books.Find("ItemInventory", "Hammer").Text("QuantityOnHand"), "17");
}

TEST(ListMerge, RedirectsThePostingsOfAnAccount) {
  UndoneBooks books;
  books.Add("Account", "<Name>Trade</Name><AccountType>Income</AccountType>");
  const QbxmlResponse invoice = books.InvoiceTwoHammers();
  const std::string income = books.Balance("Account", "Sales");

  EXPECT_EQ(books.Merge("Account", "Sales", "Trade").Code(), "0");
  EXPECT_EQ(books.Balance("Account", "Trade"), income);
  books.Void("Invoice", invoice);
  EXPECT_EQ(books.Balance("Account", "Trade"), "0.00");
}

TEST(ListMerge, RefusesWhatDoesNotFit) {
  UndoneBooks books;
  books.Add("Customer", "<Name>Barn</Name>" + Books::Ref("ParentRef", "Zeller"));

  EXPECT_EQ(books.Merge("Customer", "Abbott", "Abbott").Code(), "3170");
  EXPECT_EQ(books.Merge("Customer", "Abbott", "Abbott:Barn").Code(), "3170");
  EXPECT_EQ(books.Merge("Customer", "Abbott", "Zeller").Code(), "3100");
  EXPECT_EQ(books.Merge("Account", "Checking", "Sales").Code(), "3170");
  EXPECT_EQ(books
                .Tell("<ListMergeRq><ListMergeType>Customer</ListMergeType><MergeFrom>" +
                      books.Known("Customer", "Abbott") +
                      "</MergeFrom><MergeTo><ListID>8-1</ListID><EditSequence>1</EditSequence>"
                      "</MergeTo></ListMergeRq>")
                .Code(),
            "3120");
}

TEST(ClearedStatus, IsKeptWithTheTransactionOrItsLine) {
  UndoneBooks books;
  const QbxmlResponse invoice = books.InvoiceTwoHammers();
  const auto mark = [&](const std::string& line) {
    return books
        .Tell(Books::Leaf(
            "ClearedStatusModRq",
            Books::Leaf("ClearedStatusMod", Books::Leaf("TxnID", invoice.Text("TxnID")) + line +
                                                "<ClearedStatus>Cleared</ClearedStatus>")))
        .Code();
  };

  EXPECT_EQ(mark(""), "0");
  EXPECT_EQ(mark(Books::Leaf("TxnLineID", invoice.Text("InvoiceLineRet/TxnLineID"))), "0");
  EXPECT_EQ(mark("<TxnLineID>99-1</TxnLineID>"), "3120");
  const std::string file = books.File();
  const std::size_t first = file.find(" clearedStatus=\"Cleared\">");
  EXPECT_NE(first, std::string::npos);
  EXPECT_NE(file.find(" clearedStatus=\"Cleared\">", first + 1), std::string::npos);
  EXPECT_EQ(books.Invoice(invoice).Text("InvoiceLineRet/Quantity"), "2");
}

}  // namespace
}  // namespace ostrel::simulator
