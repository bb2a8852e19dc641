// Transactions: lines, sums, balances, payments.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "simulator/kinds/Kinds.h"
#include "tests/unit/simulator/Books.h"

namespace ostrel {
namespace {

using testing::HasSubstr;

const std::string kAbbott = Books::Ref("CustomerRef", "Abbott");

std::string Line(const std::string& fields) { return Books::Leaf("InvoiceLineAdd", fields); }
std::string Item(const std::string& name) { return Books::Ref("ItemRef", name); }

// The fields that an AddRq of each kind of transaction needs.
std::string FieldsOfNew(const std::string& kind) {
  const std::string expense = "<ExpenseLineAdd>" + Books::Ref("AccountRef", "Supplies") +
                              "<Amount>5.00</Amount>" + "</ExpenseLineAdd>";
  const auto entry = [](const std::string& side, const std::string& account) {
    return Books::Leaf(side, Books::Ref("AccountRef", account) + "<Amount>5.00</Amount>");
  };
  if (kind == "PurchaseOrder") {
    return Books::Ref("VendorRef", "Mill") +
           Books::Leaf("PurchaseOrderLineAdd", Item("Hammer") + "<Quantity>1</Quantity>");
  }
  if (kind == "Charge") return kAbbott + Item("Hammer");
  if (kind == "ItemReceipt") return Books::Ref("VendorRef", "Mill") + expense;
  if (kind == "Transfer") {
    return Books::Ref("TransferFromAccountRef", "Checking") +
           Books::Ref("TransferToAccountRef", "Stock") + "<Amount>5.00</Amount>";
  }
  if (kind == "Deposit") {
    return Books::Ref("DepositToAccountRef", "Checking") +
           Books::Leaf("DepositLineAdd",
                       Books::Ref("AccountRef", "Sales") + "<Amount>5.00</Amount>");
  }
  if (kind == "InventoryAdjustment") {
    return Books::Ref("AccountRef", "Supplies") +
           Books::Leaf("InventoryAdjustmentLineAdd",
                       Item("Hammer") +
                           "<QuantityAdjustment><QuantityDifference>2"
                           "</QuantityDifference></QuantityAdjustment>");
  }
  if (kind == "TransferInventory") {
    return Books::Ref("FromInventorySiteRef", "Yard") + Books::Ref("ToInventorySiteRef", "Shop") +
           Books::Leaf("TransferInventoryLineAdd",
                       Item("Hammer") + "<QuantityToTransfer>1</QuantityToTransfer>");
  }
  if (kind == "SalesTaxPaymentCheck") {
    return Books::Ref("PayeeEntityRef", "Mill") + "<TxnDate>2010-01-05</TxnDate>" +
           Books::Ref("BankAccountRef", "Checking") + "<IsToBePrinted>true</IsToBePrinted>" +
           Books::Leaf("SalesTaxPaymentCheckLineAdd",
                       Books::Ref("ItemSalesTaxRef", "County") + "<Amount>5.00</Amount>");
  }
  if (kind == "BuildAssembly") {
    return Books::Ref("ItemInventoryAssemblyRef", "Kit") + "<QuantityToBuild>2</QuantityToBuild>";
  }
  if (kind == "TimeTracking") return Books::Ref("EntityRef", "Mill") + "<Duration>PT1H</Duration>";
  if (kind == "VehicleMileage") {
    return Books::Ref("VehicleRef", "Van") + "<TotalMiles>7</TotalMiles>";
  }
  if (kind.starts_with("CreditCard")) return Books::Ref("AccountRef", "Card") + expense;
  if (kind == "VendorCredit" || kind == "Bill") return Books::Ref("VendorRef", "Mill") + expense;
  if (kind == "Check") return Books::Ref("AccountRef", "Checking") + expense;
  if (kind == "ReceivePayment") {
    return kAbbott + "<TotalAmount>5.00</TotalAmount><IsAutoApply>true</IsAutoApply>";
  }
  if (kind == "JournalEntry") {
    return entry("JournalDebitLine", "Checking") + entry("JournalCreditLine", "Sales");
  }
  return kAbbott + Books::Leaf(kind + "LineAdd", Item("Hammer") + "<Quantity>1</Quantity>");
}

// The file without what is counted up.
std::string Amounts(Books& books) {
  std::string amounts;
  for (const char* query : {"Account", "Customer", "Vendor", "ItemInventory"}) {
    const QbxmlResponse response = books.Query(query);
    amounts += response.All("Balance") + response.All("TotalBalance") +
               response.All("QuantityOnHand") + response.All("QuantityOnOrder") +
               response.All("QuantityOnSalesOrder");
  }
  return amounts;
}

// The file, written by a change that leaves no trace.
std::string SavedAnew(Books& books) {
  const QbxmlResponse last = books.Add("Class", "<Name>Last</Name>");
  books.Delete("List", "Class", last.Text("ListID"));
  return books.File();
}

// What pays another transaction has tests of its own.
bool StandsAlone(const simulator::Kind& kind) {
  const bool pays = !kind.pays.empty() && kind.name != "ReceivePayment";
  return kind.category == simulator::Category::kTransaction && !pays;
}

TEST(Transactions, OfEveryKindAreAddedFoundModifiedAndDeleted) {
  for (const simulator::Kind* kind : simulator::AllKinds()) {
    if (!StandsAlone(*kind) || kind->name == "Transfer") continue;  // which cannot be deleted
    const std::string name(kind->name);
    SCOPED_TRACE(name);
    Books books;
    const std::string before = Amounts(books);

    const QbxmlResponse added = books.Add(name, FieldsOfNew(name));
    const QbxmlResponse found = books.Query(name, Books::Leaf("TxnID", added.Text("TxnID")));
    const bool hasMod = simulator::FindContent(name + "Mod") != nullptr;
    const bool hasMemo =
        simulator::FindField(kind->fields, "Memo", simulator::Use::kMod) != nullptr;
    if (hasMod && hasMemo) {
      const QbxmlResponse changed = books.Modify(name, found, "<Memo>noted</Memo>");
      EXPECT_EQ(changed.Text("Memo"), "noted") << changed.Message();
    }
    const std::string meanwhile = Amounts(books);
    const QbxmlResponse deleted = books.Delete("Txn", name, added.Text("TxnID"));

    EXPECT_EQ(added.Code(), "0") << added.Message();
    EXPECT_EQ(found.Text("EditSequence"), added.Text("EditSequence"));
    EXPECT_EQ(meanwhile == before, kind->postings.empty());
    EXPECT_EQ(deleted.Code(), "0") << deleted.Message();
    EXPECT_EQ(Amounts(books), before);
    EXPECT_EQ(books.Query(name).Code(), "1");
  }
}

TEST(Transactions, OfEveryKindOutliveTheirSession) {
  Books books;
  for (const simulator::Kind* kind : simulator::AllKinds()) {
    if (!StandsAlone(*kind)) continue;
    const std::string name(kind->name);
    ASSERT_EQ(books.Add(name, FieldsOfNew(name)).Code(), "0") << name;
  }
  const std::string before = SavedAnew(books);
  Books later(before);

  EXPECT_EQ(Books::WithoutDeletions(SavedAnew(later)), Books::WithoutDeletions(before));
}

TEST(Invoice, ReturnsItsFieldsInOrder) {
  Books books;

  const QbxmlResponse invoice = books.InvoiceTwoHammers();

  EXPECT_EQ(invoice.Order(),
            "TxnID TimeCreated TimeModified EditSequence TxnNumber CustomerRef ARAccountRef "
            "TxnDate RefNumber IsPending IsFinanceCharge TermsRef DueDate ShipDate Subtotal "
            "SalesTaxTotal "
            "AppliedAmount BalanceRemaining IsPaid IsToBePrinted IsToBeEmailed "
            "CustomerSalesTaxCodeRef InvoiceLineRet ");
}

TEST(Invoice, HasIdsOfTheirForm) {
  Books books;

  const QbxmlResponse invoice = books.InvoiceTwoHammers();

  EXPECT_EQ(invoice.Text("TxnID"), "1-1262682187");
  EXPECT_EQ(invoice.Text("InvoiceLineRet/TxnLineID"), "2-1262682187");
  EXPECT_EQ(invoice.Text("TxnNumber"), "1");
}

TEST(Invoice, TakesFromItsCustomerAndItemsWhatIsNotGiven) {
  Books books;

  const QbxmlResponse invoice = books.InvoiceTwoHammers();

  EXPECT_EQ(invoice.Text("TxnDate"), "2010-01-05");
  EXPECT_EQ(invoice.Text("TermsRef/FullName"), "Net 30");
  EXPECT_EQ(invoice.Text("DueDate"), "2010-02-04");
  EXPECT_EQ(invoice.Text("ARAccountRef/FullName"), "Receivables");
  EXPECT_EQ(invoice.Text("InvoiceLineRet/Desc"), "Claw hammer");
  EXPECT_EQ(invoice.Text("InvoiceLineRet/Rate"), "12.50");
  EXPECT_EQ(invoice.Text("InvoiceLineRet/SalesTaxCodeRef/FullName"), "Tax");
}

TEST(Invoice, ComputesAmountsOfLines) {
  Books books;

  const QbxmlResponse invoice = books.Add(
      "Invoice", kAbbott + Line(Item("Hammer") + "<Quantity>2.5</Quantity><Rate>3.333</Rate>") +
                     Line(Item("Hammer") + "<Quantity>4</Quantity><Amount>10.00</Amount>") +
                     Line(Item("Repair")) + Line("<Desc>Only words</Desc>"));

  EXPECT_EQ(invoice.Text("InvoiceLineRet[0]/Amount"), "8.33");
  EXPECT_EQ(invoice.Text("InvoiceLineRet[1]/Rate"), "2.50");
  EXPECT_EQ(invoice.Text("InvoiceLineRet[2]/Amount"), "40.00");
  EXPECT_EQ(invoice.Text("InvoiceLineRet[3]/Amount"), "");
  EXPECT_EQ(invoice.Text("Subtotal"), "58.33");
}

TEST(Invoice, TakesADiscountOffTheLineBeforeIt) {
  Books books;

  const QbxmlResponse invoice =
      books.Add("Invoice", kAbbott + Books::InvoiceLine("Hammer", "2") + Line(Item("Trade")));

  EXPECT_EQ(invoice.Text("InvoiceLineRet[1]/RatePercent"), "-10.00");
  EXPECT_EQ(invoice.Text("InvoiceLineRet[1]/Amount"), "-2.50");
  EXPECT_EQ(invoice.Text("Subtotal"), "22.50");
}

TEST(Invoice, TaxesTheTaxableLines) {
  Books books;

  const QbxmlResponse invoice =
      books.Add("Invoice", kAbbott + Books::Ref("ItemSalesTaxRef", "County") +
                               Books::InvoiceLine("Hammer", "2") + Line(Item("Repair")));

  EXPECT_EQ(invoice.Text("Subtotal"), "65.00");
  EXPECT_EQ(invoice.Text("SalesTaxPercentage"), "8.00");
  EXPECT_EQ(invoice.Text("SalesTaxTotal"), "2.00");
  EXPECT_EQ(invoice.Text("BalanceRemaining"), "67.00");
}

TEST(Invoice, DoesNotTaxACustomerWhoIsExempt) {
  Books books;

  const QbxmlResponse invoice =
      books.Add("Invoice", kAbbott + Books::Ref("ItemSalesTaxRef", "County") +
                               Books::Ref("CustomerSalesTaxCodeRef", "Non") +
                               Books::InvoiceLine("Hammer", "2"));

  EXPECT_EQ(invoice.Text("SalesTaxTotal"), "0.00");
}

TEST(Invoice, MovesTheBalancesOfCustomerAccountsAndStock) {
  Books books;

  books.InvoiceTwoHammers();

  EXPECT_EQ(books.Balance("Customer", "Abbott"), "25.00");
  EXPECT_EQ(books.Balance("Account", "Receivables"), "25.00");
  EXPECT_EQ(books.Balance("Account", "Sales"), "25.00");
  EXPECT_EQ(books.Find("ItemInventory", "Hammer").Text("QuantityOnHand"), "18");
}

TEST(Invoice, MovesTheTotalBalanceOfTheCustomerAboveAJob) {
  Books books;

  books.Add("Invoice",
            Books::Ref("CustomerRef", "Abbott:Barn") + Books::InvoiceLine("Hammer", "1"));

  EXPECT_EQ(books.Find("Customer", "Abbott:Barn").Text("Balance"), "12.50");
  EXPECT_EQ(books.Find("Customer", "Abbott").Text("Balance"), "0.00");
  EXPECT_EQ(books.Find("Customer", "Abbott").Text("TotalBalance"), "12.50");
}

TEST(Invoice, GetsTheNextNumber) {
  Books books;
  books.Add("Invoice", kAbbott + "<RefNumber>1041</RefNumber>");
  books.Add("Invoice", kAbbott + "<RefNumber>X9</RefNumber>");

  EXPECT_EQ(books.Add("Invoice", kAbbott).Text("RefNumber"), "1042");
}

TEST(Invoice, RefusesSumsThatAreTooLarge) {
  Books books;
  const std::string much = "9999999999.99";

  EXPECT_EQ(books.Add("Invoice", kAbbott + Line("<Quantity>2</Quantity><Rate>" + much + "</Rate>"))
                .Code(),
            "3040");
  EXPECT_EQ(books
                .Add("Invoice", kAbbott + Line("<Amount>" + much + "</Amount>") +
                                    Line("<Amount>" + much + "</Amount>"))
                .Code(),
            "3040");
}

TEST(Invoice, ChangesNothingWhenItCannotBeSaved) {
  Books books;
  books.oStorage.iWriteError = platform::kDiskFull;

  const QbxmlResponse refused = books.InvoiceTwoHammers();

  EXPECT_EQ(refused.Code(), "3180");
  EXPECT_THAT(refused.Message(), HasSubstr("error when saving a Invoice."));
  EXPECT_EQ(books.Balance("Customer", "Abbott"), "0.00");
  EXPECT_EQ(books.Query("Invoice").Code(), "1");
}

TEST(TxnMod, ComputesAChangedLineAnewAndMovesTheDifference) {
  Books books;
  const QbxmlResponse before = books.InvoiceTwoHammers();
  const std::string line = Books::Leaf("TxnLineID", before.Text("InvoiceLineRet/TxnLineID"));

  const QbxmlResponse after = books.Modify(
      "Invoice", before, Books::Leaf("InvoiceLineMod", line + "<Quantity>3</Quantity>"));

  EXPECT_EQ(after.Text("InvoiceLineRet/Amount"), "37.50") << after.Message();
  EXPECT_EQ(after.Text("InvoiceLineRet/Desc"), "Claw hammer");
  EXPECT_EQ(books.Balance("Customer", "Abbott"), "37.50");
  EXPECT_EQ(books.Find("ItemInventory", "Hammer").Text("QuantityOnHand"), "17");
}

TEST(TxnMod, TakesTextAndPriceOfANewItem) {
  Books books;
  const QbxmlResponse before = books.InvoiceTwoHammers();
  const std::string line = Books::Leaf("TxnLineID", before.Text("InvoiceLineRet/TxnLineID"));

  const QbxmlResponse after =
      books.Modify("Invoice", before, Books::Leaf("InvoiceLineMod", line + Item("Repair")));

  EXPECT_EQ(after.Text("InvoiceLineRet/Desc"), "Repair work");
  EXPECT_EQ(after.Text("InvoiceLineRet/Amount"), "80.00");
}

TEST(TxnMod, AddsLinesAndDeletesThoseLeftOut) {
  Books books;
  const QbxmlResponse before = books.InvoiceTwoHammers();

  const QbxmlResponse after =
      books.Modify("Invoice", before,
                   Books::Leaf("InvoiceLineMod", "<TxnLineID>-1</TxnLineID>" + Item("Repair")));

  EXPECT_EQ(after.Text("InvoiceLineRet[0]/Desc"), "Repair work");
  EXPECT_EQ(after.Text("InvoiceLineRet[1]/TxnLineID"), "");
  EXPECT_NE(after.Text("InvoiceLineRet/TxnLineID"), before.Text("InvoiceLineRet/TxnLineID"));
}

TEST(TxnMod, KeepsTheLinesWhenItGivesNone) {
  Books books;

  const QbxmlResponse after = books.Modify("Invoice", books.InvoiceTwoHammers(), "<Memo>x</Memo>");

  EXPECT_EQ(after.Text("InvoiceLineRet/Amount"), "25.00");
}

TEST(TxnMod, RefusesALineThatIsNotThere) {
  Books books;
  const QbxmlResponse invoice = books.InvoiceTwoHammers();

  EXPECT_EQ(books
                .Modify("Invoice", invoice,
                        "<InvoiceLineMod><TxnLineID>FF-1</TxnLineID></InvoiceLineMod>")
                .Code(),
            "3120");
}

TEST(TxnMod, IsRefusedWithAStaleEditSequence) {
  Books books;
  const QbxmlResponse stale = books.InvoiceTwoHammers();
  books.Modify("Invoice", stale, "<Memo>1</Memo>");

  EXPECT_EQ(books.Modify("Invoice", stale, "<Memo>2</Memo>").Code(), "3200");
}

TEST(Payment, PaysAnInvoice) {
  Books books;
  const QbxmlResponse invoice = books.InvoiceTwoHammers();

  const QbxmlResponse payment = books.Pay(invoice, "10.00");

  EXPECT_EQ(payment.Code(), "0") << payment.Message();
  EXPECT_EQ(payment.Text("UnusedPayment"), "0.00");
  EXPECT_EQ(payment.Text("AppliedToTxnRet/TxnType"), "Invoice");
  EXPECT_EQ(payment.Text("AppliedToTxnRet/BalanceRemaining"), "15.00");
  EXPECT_EQ(payment.Text("AppliedToTxnRet/Amount"), "10.00");
  const QbxmlResponse paid = books.Query("Invoice");
  EXPECT_EQ(paid.Text("AppliedAmount"), "-10.00");
  EXPECT_EQ(paid.Text("BalanceRemaining"), "15.00");
  EXPECT_EQ(paid.Text("IsPaid"), "false");
  EXPECT_NE(paid.Text("EditSequence"), invoice.Text("EditSequence"));
  EXPECT_EQ(books.Balance("Customer", "Abbott"), "15.00");
}

TEST(Payment, MarksAnInvoicePaid) {
  Books books;

  books.Pay(books.InvoiceTwoHammers(), "25.00");

  EXPECT_EQ(books.Query("Invoice").Text("IsPaid"), "true");
  EXPECT_EQ(books.Balance("Account", "Checking"), "25.00");
  EXPECT_EQ(books.Balance("Account", "Receivables"), "0.00");
}

TEST(Payment, ShowsWhatIsOpenNow) {
  Books books;
  const QbxmlResponse invoice = books.InvoiceTwoHammers();
  books.Pay(invoice, "10.00");
  books.Pay(invoice, "5.00");

  EXPECT_EQ(books.Query("ReceivePayment", "<IncludeLineItems>1</IncludeLineItems>")
                .All("AppliedToTxnRet/BalanceRemaining"),
            "10.00 10.00 ");
}

TEST(Payment, AppliesItselfToTheOldestInvoices) {
  Books books;
  books.InvoiceTwoHammers();
  books.Add("Invoice",
            kAbbott + "<TxnDate>2009-12-01</TxnDate>" + Books::InvoiceLine("Hammer", "2"));

  const QbxmlResponse payment =
      books.Add("ReceivePayment",
                kAbbott + "<TotalAmount>30.00</TotalAmount><IsAutoApply>true</IsAutoApply>");

  EXPECT_EQ(payment.Code(), "0") << payment.Message();
  EXPECT_EQ(books.Query("Invoice").All("BalanceRemaining"), "0.00 20.00 ");
}

TEST(Payment, KeepsWhatItDoesNotUse) {
  Books books;

  const QbxmlResponse payment = books.Add(
      "ReceivePayment", kAbbott + "<TotalAmount>7.00</TotalAmount><IsAutoApply>true</IsAutoApply>");

  EXPECT_EQ(payment.Text("UnusedPayment"), "7.00");
  EXPECT_EQ(books.Balance("Customer", "Abbott"), "-7.00");
}

TEST(Payment, RefusesWhatCannotBeApplied) {
  Books books;
  const QbxmlResponse invoice = books.InvoiceTwoHammers();
  const auto pay = [&](const std::string& customer, const std::string& total, const std::string& id,
                       const std::string& amount) {
    return books
        .Add("ReceivePayment",
             Books::Ref("CustomerRef", customer) + Books::Leaf("TotalAmount", total) +
                 Books::Leaf("AppliedToTxnAdd",
                             Books::Leaf("TxnID", id) + Books::Leaf("PaymentAmount", amount)))
        .Code();
  };
  const std::string id = invoice.Text("TxnID");

  EXPECT_EQ(pay("Abbott", "30.00", id, "25.01"), "3210");
  EXPECT_EQ(pay("Abbott", "10.00", id, "11.00"), "3210");
  EXPECT_EQ(pay("Abbott", "10.00", id, "0.00"), "3210");
  EXPECT_EQ(pay("Abbott", "10.00", "FF-1", "10.00"), "3120");
  EXPECT_EQ(pay("Zeller", "10.00", id, "10.00"), "3140");
  EXPECT_EQ(books.Query("Invoice").Text("BalanceRemaining"), "25.00");
}

TEST(Payment, ThatIsModifiedIsAppliedAnew) {
  Books books;
  const QbxmlResponse invoice = books.InvoiceTwoHammers();
  const QbxmlResponse payment = books.Pay(invoice, "10.00");

  const QbxmlResponse modified =
      books.Modify("ReceivePayment", payment,
                   "<TotalAmount>20.00</TotalAmount><AppliedToTxnMod>" +
                       Books::Leaf("TxnID", invoice.Text("TxnID")) +
                       "<PaymentAmount>20.00</PaymentAmount></AppliedToTxnMod>");

  EXPECT_EQ(modified.Code(), "0") << modified.Message();
  EXPECT_EQ(books.Query("Invoice").Text("BalanceRemaining"), "5.00");
  EXPECT_EQ(books.Balance("Customer", "Abbott"), "5.00");
}

TEST(TxnDel, OpensAgainWhatAPaymentHadPaid) {
  Books books;
  const QbxmlResponse payment = books.Pay(books.InvoiceTwoHammers(), "25.00");

  books.Delete("Txn", "ReceivePayment", payment.Text("TxnID"));

  const QbxmlResponse invoice = books.Query("Invoice");
  EXPECT_EQ(invoice.Text("BalanceRemaining"), "25.00");
  EXPECT_EQ(invoice.Text("AppliedAmount"), "0.00");
  EXPECT_EQ(invoice.Text("IsPaid"), "false");
}

TEST(TxnDel, FreesWhatWasAppliedToAnInvoice) {
  Books books;
  const QbxmlResponse invoice = books.InvoiceTwoHammers();
  books.Pay(invoice, "25.00");

  books.Delete("Txn", "Invoice", invoice.Text("TxnID"));

  const QbxmlResponse payment =
      books.Query("ReceivePayment", "<IncludeLineItems>true</IncludeLineItems>");
  EXPECT_EQ(payment.Text("UnusedPayment"), "25.00");
  EXPECT_FALSE(payment.Has("AppliedToTxnRet"));
  EXPECT_EQ(books.Balance("Customer", "Abbott"), "-25.00");
}

TEST(TxnDel, RespondsWithWhatWasDeleted) {
  Books books;
  const std::string id = books.InvoiceTwoHammers().Text("TxnID");

  const std::string response =
      books.Ask("<TxnDelRq><TxnDelType>Invoice</TxnDelType><TxnID>" + id + "</TxnID></TxnDelRq>");

  EXPECT_THAT(response, HasSubstr("<TxnDelType>Invoice</TxnDelType>\n<TxnID>" + id +
                                  "</TxnID>\n"
                                  "<TimeDeleted>2010-01-05T09:03:07+00:00</TimeDeleted>\n"
                                  "<RefNumber>1</RefNumber>\n"));
}

TEST(Bill, OwesTheVendor) {
  Books books;

  const QbxmlResponse bill =
      books.Add("Bill", Books::Ref("VendorRef", "Mill") +
                            Books::Leaf("ExpenseLineAdd", Books::Ref("AccountRef", "Supplies") +
                                                              "<Amount>5.00</Amount>") +
                            Books::Leaf("ItemLineAdd", Item("Hammer") + "<Quantity>10</Quantity>"));

  EXPECT_EQ(bill.Text("AmountDue"), "75.00") << bill.Message();
  EXPECT_EQ(bill.Text("OpenAmount"), "75.00");
  EXPECT_EQ(bill.Text("APAccountRef/FullName"), "Payables");
  EXPECT_EQ(books.Balance("Vendor", "Mill"), "75.00");
  EXPECT_EQ(books.Balance("Account", "Payables"), "75.00");
  EXPECT_EQ(books.Balance("Account", "Supplies"), "5.00");
  EXPECT_EQ(books.Balance("Account", "Stock"), "70.00");
  EXPECT_EQ(books.Find("ItemInventory", "Hammer").Text("QuantityOnHand"), "30");
}

TEST(Check, TakesFromTheBank) {
  Books books;

  const QbxmlResponse check = books.Add("Check", FieldsOfNew("Check"));

  EXPECT_EQ(check.Text("Amount"), "5.00");
  EXPECT_EQ(books.Balance("Account", "Checking"), "-5.00");
}

TEST(CreditMemo, TakesOffTheBalance) {
  Books books;

  const QbxmlResponse credit = books.Add("CreditMemo", FieldsOfNew("CreditMemo"));

  EXPECT_EQ(credit.Text("TotalAmount"), "12.50");
  EXPECT_EQ(credit.Text("CreditRemaining"), "12.50");
  EXPECT_EQ(books.Balance("Customer", "Abbott"), "-12.50");
}

TEST(JournalEntry, MovesBothSides) {
  Books books;

  const QbxmlResponse entry = books.Add("JournalEntry", FieldsOfNew("JournalEntry"));

  EXPECT_EQ(entry.Code(), "0") << entry.Message();
  EXPECT_EQ(books.Balance("Account", "Checking"), "5.00");
  EXPECT_EQ(books.Balance("Account", "Sales"), "5.00");
}

TEST(JournalEntry, TakesDebitsAndCreditsInAnyOrder) {
  Books books;
  const auto entry = [](const std::string& side, const std::string& amount) {
    return Books::Leaf(side, Books::Ref("AccountRef", "Checking") + Books::Leaf("Amount", amount));
  };

  const QbxmlResponse response = books.Add("JournalEntry", entry("JournalCreditLine", "3.00") +
                                                               entry("JournalDebitLine", "5.00") +
                                                               entry("JournalCreditLine", "2.00"));

  EXPECT_EQ(response.Code(), "0") << response.Message();
  EXPECT_EQ(response.Text("JournalCreditLine[1]/Amount"), "2.00");
}

TEST(JournalEntry, IsRefusedOutOfBalance) {
  Books books;

  const QbxmlResponse response = books.Add(
      "JournalEntry", Books::Leaf("JournalDebitLine",
                                  Books::Ref("AccountRef", "Checking") + "<Amount>5.00</Amount>"));

  EXPECT_EQ(response.Code(), "3180");
  EXPECT_THAT(response.Message(), HasSubstr("not in balance"));
}

}  // namespace
}  // namespace ostrel
