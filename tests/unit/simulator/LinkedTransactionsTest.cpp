// Transactions that carry out, pay or move others, and the books that they leave behind.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/unit/simulator/Books.h"

namespace ostrel {
namespace {

using testing::HasSubstr;

const std::string kToAbbott = Books::Ref("CustomerRef", "Abbott");
const std::string kFromMill = Books::Ref("VendorRef", "Mill");

std::string Sold(const std::string& kind, const std::string& item, const std::string& quantity) {
  return Books::Leaf(kind + "LineAdd",
                     Books::Ref("ItemRef", item) + Books::Leaf("Quantity", quantity));
}

std::string LinkedTo(const QbxmlResponse& to) {
  return Books::Leaf("LinkToTxnID", to.Text("TxnID"));
}

QbxmlResponse Again(Books& books, const std::string& kind, const QbxmlResponse& known) {
  return books.Query(kind, Books::Leaf("TxnID", known.Text("TxnID")) +
                               "<IncludeLineItems>true</IncludeLineItems>"
                               "<IncludeLinkedTxns>true</IncludeLinkedTxns>");
}

// Every account in debits, which come to nothing in all.
std::string Hammers(Books& books) {
  return books.Find("ItemInventory", "Hammer").Text("QuantityOnHand");
}

TEST(SalesOrder, IsInvoicedInParts) {
  Books books;
  const QbxmlResponse order =
      books.Add("SalesOrder", kToAbbott + Sold("SalesOrder", "Hammer", "5"));
  EXPECT_EQ(books.Find("ItemInventory", "Hammer").Text("QuantityOnSalesOrder"), "5");
  EXPECT_EQ(Hammers(books), "20");

  const QbxmlResponse part = books.Add(
      "Invoice",
      kToAbbott +
          Books::Leaf("InvoiceLineAdd",
                      "<Quantity>2</Quantity>" +
                          Books::Leaf("LinkToTxn",
                                      Books::Leaf("TxnID", order.Text("TxnID")) +
                                          Books::Leaf("TxnLineID",
                                                      order.Text("SalesOrderLineRet/TxnLineID")))));

  ASSERT_EQ(part.Code(), "0") << part.Message();
  EXPECT_EQ(part.Text("InvoiceLineRet/ItemRef/FullName"), "Hammer");
  EXPECT_EQ(part.Text("LinkedTxn/TxnType"), "SalesOrder");
  EXPECT_EQ(part.Text("LinkedTxn/LinkType"), "QUANTYPE");
  QbxmlResponse now = Again(books, "SalesOrder", order);
  EXPECT_EQ(now.Text("SalesOrderLineRet/Invoiced"), "2");
  EXPECT_EQ(now.Text("IsFullyInvoiced"), "false");
  EXPECT_EQ(now.Text("LinkedTxn/TxnID"), part.Text("TxnID"));
  EXPECT_EQ(books.Find("ItemInventory", "Hammer").Text("QuantityOnSalesOrder"), "3");

  const QbxmlResponse rest = books.Add("Invoice", kToAbbott + LinkedTo(order));

  EXPECT_EQ(rest.Text("InvoiceLineRet/Quantity"), "3");
  now = Again(books, "SalesOrder", order);
  EXPECT_EQ(now.Text("SalesOrderLineRet/Invoiced"), "5");
  EXPECT_EQ(now.Text("IsFullyInvoiced"), "true");
  EXPECT_EQ(Hammers(books), "15");

  books.Delete("Txn", "Invoice", rest.Text("TxnID"));

  now = Again(books, "SalesOrder", order);
  EXPECT_EQ(now.Text("SalesOrderLineRet/Invoiced"), "2");
  EXPECT_EQ(now.Text("IsFullyInvoiced"), "false");
  EXPECT_EQ(now.All("LinkedTxn/TxnID"), part.Text("TxnID") + " ");
  EXPECT_EQ(books.Find("ItemInventory", "Hammer").Text("QuantityOnSalesOrder"), "3");
}

TEST(SalesOrder, IsNotShownWithItsLinksUnlessAskedFor) {
  Books books;
  const QbxmlResponse order =
      books.Add("SalesOrder", kToAbbott + Sold("SalesOrder", "Hammer", "5"));
  books.Add("Invoice", kToAbbott + LinkedTo(order));

  EXPECT_FALSE(
      books.Query("SalesOrder", Books::Leaf("TxnID", order.Text("TxnID"))).Has("LinkedTxn"));
  EXPECT_TRUE(Again(books, "SalesOrder", order).Has("LinkedTxn"));
}

TEST(Estimate, BecomesAnInvoice) {
  Books books;
  const QbxmlResponse estimate = books.Add("Estimate", kToAbbott + Sold("Estimate", "Hammer", "2"));

  const QbxmlResponse invoice = books.Add("Invoice", kToAbbott + LinkedTo(estimate));

  EXPECT_EQ(invoice.Text("Subtotal"), "25.00");
  EXPECT_EQ(invoice.Text("LinkedTxn/TxnType"), "Estimate");
  EXPECT_EQ(Again(books, "Estimate", estimate).Text("LinkedTxn/TxnType"), "Invoice");
}

TEST(Links, ToWhatIsNotThereAreRefused) {
  Books books;

  EXPECT_EQ(books.Add("Invoice", kToAbbott + "<LinkToTxnID>77-1</LinkToTxnID>").Code(), "3120");
  EXPECT_EQ(books.Query("Invoice").Code(), "1");
}

TEST(PurchaseOrder, IsReceivedThenBilled) {
  Books books;
  const QbxmlResponse order =
      books.Add("PurchaseOrder", kFromMill + Sold("PurchaseOrder", "Hammer", "10"));
  EXPECT_EQ(books.Find("ItemInventory", "Hammer").Text("QuantityOnOrder"), "10");

  const QbxmlResponse receipt = books.Add("ItemReceipt", kFromMill + LinkedTo(order));

  EXPECT_EQ(receipt.Text("TotalAmount"), "70.00") << receipt.Message();
  EXPECT_EQ(Hammers(books), "30");
  EXPECT_EQ(books.Find("ItemInventory", "Hammer").Text("QuantityOnOrder"), "0");
  EXPECT_EQ(Again(books, "PurchaseOrder", order).Text("IsFullyReceived"), "true");
  EXPECT_EQ(books.Balance("Account", "Stock"), "70.00");

  const QbxmlResponse bill = books.Add("Bill", kFromMill + LinkedTo(receipt));

  EXPECT_EQ(bill.Text("AmountDue"), "70.00") << bill.Message();
  EXPECT_EQ(books.Query("ItemReceipt").Code(), "1");
  EXPECT_EQ(Hammers(books), "30");
  EXPECT_EQ(books.Balance("Vendor", "Mill"), "70.00");
  EXPECT_EQ(Again(books, "PurchaseOrder", order).Text("PurchaseOrderLineRet/ReceivedQuantity"),
            "10");
  EXPECT_EQ(Again(books, "PurchaseOrder", order).Text("LinkedTxn/TxnType"), "Bill");
}

std::string Expense(const std::string& amount) {
  return Books::Leaf("ExpenseLineAdd",
                     Books::Ref("AccountRef", "Supplies") + Books::Leaf("Amount", amount));
}

std::string Pays(const QbxmlResponse& bill, const std::string& rest) {
  return Books::Leaf("AppliedToTxnAdd", Books::Leaf("TxnID", bill.Text("TxnID")) + rest);
}

std::string ByCheck(const std::string& applied) {
  return Books::Ref("PayeeEntityRef", "Mill") + Books::Ref("BankAccountRef", "Checking") +
         "<RefNumber>7</RefNumber>" + applied;
}

TEST(BillPaymentCheck, PaysABill) {
  Books books;
  const QbxmlResponse bill = books.Add("Bill", kFromMill + Expense("30.00"));

  const QbxmlResponse check =
      books.Add("BillPaymentCheck", ByCheck(Pays(bill, "<PaymentAmount>20.00</PaymentAmount>")));

  EXPECT_EQ(check.Text("Amount"), "20.00") << check.Message();
  EXPECT_EQ(check.Text("AppliedToTxnRet/BalanceRemaining"), "10.00");
  EXPECT_EQ(Again(books, "Bill", bill).Text("OpenAmount"), "10.00");
  EXPECT_EQ(Again(books, "Bill", bill).Text("LinkedTxn/TxnType"), "BillPaymentCheck");
  EXPECT_EQ(books.Balance("Vendor", "Mill"), "10.00");
  EXPECT_EQ(books.Balance("Account", "Checking"), "-20.00");

  books.Delete("Txn", "BillPaymentCheck", check.Text("TxnID"));

  EXPECT_EQ(Again(books, "Bill", bill).Text("OpenAmount"), "30.00");
  EXPECT_FALSE(Again(books, "Bill", bill).Has("LinkedTxn"));
  EXPECT_EQ(books.Balance("Account", "Checking"), "0.00");
}

TEST(BillPaymentCheck, TakesACreditAndADiscount) {
  Books books;
  const QbxmlResponse bill = books.Add("Bill", kFromMill + Expense("30.00"));
  const QbxmlResponse credit = books.Add("VendorCredit", kFromMill + Expense("8.00"));

  const QbxmlResponse check = books.Add(
      "BillPaymentCheck", ByCheck(Pays(bill, "<PaymentAmount>20.00</PaymentAmount><SetCredit>" +
                                                 Books::Leaf("CreditTxnID", credit.Text("TxnID")) +
                                                 "<AppliedAmount>8.00</AppliedAmount></SetCredit>"
                                                 "<DiscountAmount>2.00</DiscountAmount>" +
                                                 Books::Ref("DiscountAccountRef", "Sales"))));

  EXPECT_EQ(check.Text("Amount"), "20.00") << check.Message();
  EXPECT_EQ(Again(books, "Bill", bill).Text("IsPaid"), "true");
  EXPECT_EQ(Again(books, "VendorCredit", credit).Text("OpenAmount"), "0.00");
  EXPECT_EQ(books.Balance("Vendor", "Mill"), "0.00");
  EXPECT_EQ(books.Balance("Account", "Payables"), "0.00");
  EXPECT_EQ(books.Balance("Account", "Sales"), "2.00");

  books.Delete("Txn", "BillPaymentCheck", check.Text("TxnID"));

  EXPECT_EQ(Again(books, "Bill", bill).Text("OpenAmount"), "30.00");
  EXPECT_EQ(Again(books, "VendorCredit", credit).Text("OpenAmount"), "8.00");
  EXPECT_EQ(books.Balance("Vendor", "Mill"), "22.00");
}

TEST(Invoice, TakesACreditMemo) {
  Books books;
  const QbxmlResponse credit =
      books.Add("CreditMemo", kToAbbott + Sold("CreditMemo", "Hammer", "1"));

  const QbxmlResponse invoice = books.Add(
      "Invoice", kToAbbott + "<SetCredit>" + Books::Leaf("CreditTxnID", credit.Text("TxnID")) +
                     "<AppliedAmount>12.50</AppliedAmount></SetCredit>" +
                     Sold("Invoice", "Hammer", "2"));

  EXPECT_EQ(invoice.Text("BalanceRemaining"), "12.50") << invoice.Message();
  EXPECT_EQ(invoice.Text("LinkedTxn/TxnType"), "CreditMemo");
  EXPECT_EQ(Again(books, "CreditMemo", credit).Text("CreditRemaining"), "0.00");
  EXPECT_EQ(books.Balance("Customer", "Abbott"), "12.50");

  const QbxmlResponse again = books.Add(
      "Invoice", kToAbbott + "<SetCredit>" + Books::Leaf("CreditTxnID", credit.Text("TxnID")) +
                     "<AppliedAmount>1.00</AppliedAmount></SetCredit>" +
                     Sold("Invoice", "Hammer", "2"));
  EXPECT_EQ(again.Code(), "3210");
}

TEST(Invoice, CostsWhatItsGoodsHaveCost) {
  Books books;

  const QbxmlResponse invoice = books.InvoiceTwoHammers();

  EXPECT_EQ(books.Balance("Account", "Goods"), "14.00");
  EXPECT_EQ(books.Balance("Account", "Stock"), "-14.00");
  books.Add("Bill", kFromMill + Books::Leaf("ItemLineAdd", Books::Ref("ItemRef", "Hammer") +
                                                               "<Quantity>2</Quantity>"
                                                               "<Cost>17.00</Cost>"));
  EXPECT_EQ(books.Find("ItemInventory", "Hammer").Text("AverageCost"), "8.00");
  books.Delete("Txn", "Invoice", invoice.Text("TxnID"));
  EXPECT_EQ(books.Balance("Account", "Goods"), "0.00");
}

TEST(Invoice, PostsItsSalesTax) {
  Books books;

  const QbxmlResponse invoice =
      books.Add("Invoice", kToAbbott + Books::Ref("ItemSalesTaxRef", "County") +
                               Sold("Invoice", "Hammer", "2"));

  EXPECT_EQ(invoice.Text("SalesTaxTotal"), "2.00");
  EXPECT_EQ(books.Balance("Account", "Sales Tax Payable"), "2.00");
  books.Add("SalesTaxPaymentCheck",
            Books::Ref("PayeeEntityRef", "Mill") + "<TxnDate>2010-01-05</TxnDate>" +
                Books::Ref("BankAccountRef", "Checking") + "<IsToBePrinted>1</IsToBePrinted>" +
                Books::Leaf("SalesTaxPaymentCheckLineAdd",
                            Books::Ref("ItemSalesTaxRef", "County") + "<Amount>2.00</Amount>"));
  EXPECT_EQ(books.Balance("Account", "Sales Tax Payable"), "0.00");
}

TEST(Invoice, HoldsTheLinesOfAnItemGroup) {
  Books books;
  books.Add(
      "ItemGroup",
      "<Name>Pair</Name><ItemDesc>Two of each</ItemDesc>"
      "<IsPrintItemsInGroup>true</IsPrintItemsInGroup>" +
          Books::Leaf("ItemGroupLine", Books::Ref("ItemRef", "Hammer") + "<Quantity>2</Quantity>") +
          Books::Leaf("ItemGroupLine", Books::Ref("ItemRef", "Repair")));

  const QbxmlResponse invoice = books.Add(
      "Invoice", kToAbbott + Books::Leaf("InvoiceLineGroupAdd", Books::Ref("ItemGroupRef", "Pair") +
                                                                    "<Quantity>2</Quantity>"));

  EXPECT_EQ(invoice.Text("InvoiceLineGroupRet/TotalAmount"), "130.00") << invoice.Message();
  EXPECT_EQ(invoice.Text("InvoiceLineGroupRet/Desc"), "Two of each");
  EXPECT_EQ(invoice.Text("InvoiceLineGroupRet/InvoiceLineRet/Quantity"), "4");
  EXPECT_EQ(invoice.Text("Subtotal"), "130.00");
  EXPECT_EQ(Hammers(books), "16");
  EXPECT_EQ(books.Balance("Account", "Sales"), "130.00");
}

TEST(Deposit, TakesAPaymentOutOfUndepositedFunds) {
  Books books;
  books.Add("Account",
            "<Name>Undeposited Funds</Name><AccountType>OtherCurrentAsset</AccountType>");
  const QbxmlResponse payment = books.Add(
      "ReceivePayment", kToAbbott + "<TotalAmount>9.00</TotalAmount><IsAutoApply>1</IsAutoApply>");
  EXPECT_EQ(payment.Text("DepositToAccountRef/FullName"), "Undeposited Funds");
  const std::string deposit =
      Books::Ref("DepositToAccountRef", "Checking") +
      Books::Leaf("DepositLineAdd", Books::Leaf("PaymentTxnID", payment.Text("TxnID")));

  const QbxmlResponse made = books.Add("Deposit", deposit);

  EXPECT_EQ(made.Text("DepositTotal"), "9.00") << made.Message();
  EXPECT_EQ(made.Text("DepositLineRet/TxnID"), payment.Text("TxnID"));
  EXPECT_EQ(made.Text("DepositLineRet/EntityRef/FullName"), "Abbott");
  EXPECT_EQ(books.Balance("Account", "Undeposited Funds"), "0.00");
  EXPECT_EQ(books.Balance("Account", "Checking"), "9.00");
  EXPECT_EQ(books.Balance("Customer", "Abbott"), "-9.00");
  EXPECT_EQ(books.Add("Deposit", deposit).Code(), "3210");

  books.Delete("Txn", "Deposit", made.Text("TxnID"));

  EXPECT_EQ(books.Add("Deposit", deposit).Code(), "0");
}

TEST(Transfer, MovesMoney) {
  Books books;

  const QbxmlResponse transfer = books.Add(
      "Transfer", Books::Ref("TransferFromAccountRef", "Checking") +
                      Books::Ref("TransferToAccountRef", "Stock") + "<Amount>5.00</Amount>");

  EXPECT_EQ(transfer.Text("Amount"), "5.00") << transfer.Message();
  EXPECT_EQ(books.Balance("Account", "Checking"), "-5.00");
  EXPECT_EQ(books.Balance("Account", "Stock"), "5.00");
}

TEST(ARRefund, GivesACreditBack) {
  Books books;
  const QbxmlResponse credit =
      books.Add("CreditMemo", kToAbbott + Sold("CreditMemo", "Hammer", "1"));

  const QbxmlResponse refund = books.Add(
      "ARRefundCreditCard",
      kToAbbott + Books::Ref("RefundFromAccountRef", "Card") +
          Books::Leaf("RefundAppliedToTxnAdd", Books::Leaf("TxnID", credit.Text("TxnID")) +
                                                   "<RefundAmount>12.50</RefundAmount>"));

  EXPECT_EQ(refund.Text("TotalAmount"), "12.50") << refund.Message();
  EXPECT_EQ(refund.Text("RefundAppliedToTxnRet/CreditRemaining"), "0.00");
  EXPECT_EQ(books.Balance("Customer", "Abbott"), "0.00");
  EXPECT_EQ(books.Balance("Account", "Card"), "12.50");
}

TEST(InventoryAdjustment, CountsAnew) {
  Books books;

  const QbxmlResponse adjusted = books.Add(
      "InventoryAdjustment",
      Books::Ref("AccountRef", "Supplies") +
          Books::Leaf(
              "InventoryAdjustmentLineAdd",
              Books::Ref("ItemRef", "Hammer") +
                  "<QuantityAdjustment><NewQuantity>18</NewQuantity></QuantityAdjustment>"));

  EXPECT_EQ(adjusted.Text("InventoryAdjustmentLineRet/QuantityDifference"), "-2")
      << adjusted.Message();
  EXPECT_EQ(adjusted.Text("InventoryAdjustmentLineRet/ValueDifference"), "-14.00");
  EXPECT_EQ(Hammers(books), "18");
  EXPECT_EQ(books.Balance("Account", "Supplies"), "14.00");
  EXPECT_EQ(books.Balance("Account", "Stock"), "-14.00");
}

TEST(BuildAssembly, UsesItsComponentsUp) {
  Books books;
  const std::string kit = Books::Ref("ItemInventoryAssemblyRef", "Kit");

  const QbxmlResponse built =
      books.Add("BuildAssembly", kit + "<QuantityToBuild>3</QuantityToBuild>");

  EXPECT_EQ(built.Text("ComponentItemLineRet/QuantityNeeded"), "2") << built.Message();
  EXPECT_EQ(Hammers(books), "14");
  const QbxmlResponse assembly = books.Find("ItemInventoryAssembly", "Kit");
  EXPECT_EQ(assembly.Text("QuantityOnHand"), "3");
  EXPECT_EQ(assembly.Text("AverageCost"), "14.00");
  EXPECT_EQ(books.Add("BuildAssembly", kit + "<QuantityToBuild>8</QuantityToBuild>").Code(),
            "3180");
  const QbxmlResponse pending =
      books.Add("BuildAssembly", kit +
                                     "<QuantityToBuild>8</QuantityToBuild>"
                                     "<MarkPendingIfRequired>true</MarkPendingIfRequired>");
  EXPECT_EQ(pending.Text("IsPending"), "true") << pending.Message();
  EXPECT_EQ(Hammers(books), "14");
}

TEST(JournalEntry, HasLinesThatAreModified) {
  Books books;
  const auto line = [](const std::string& side, const std::string& account) {
    return Books::Leaf(side, Books::Ref("AccountRef", account) + "<Amount>5.00</Amount>");
  };
  const QbxmlResponse entry = books.Add(
      "JournalEntry", line("JournalDebitLine", "Checking") + line("JournalCreditLine", "Sales"));
  const auto changed = [&](const std::string& name, const std::string& rest) {
    return Books::Leaf("JournalLineMod",
                       Books::Leaf("TxnLineID", entry.Text(name + "/TxnLineID")) + rest);
  };

  const QbxmlResponse modified = books.Modify(
      "JournalEntry", entry,
      changed("JournalDebitLine", "<Amount>7.00</Amount>") +
          changed("JournalCreditLine", "<Amount>6.00</Amount>") +
          Books::Leaf("JournalLineMod",
                      "<TxnLineID>-1</TxnLineID><JournalLineType>Credit"
                      "</JournalLineType>" +
                          Books::Ref("AccountRef", "Supplies") + "<Amount>1.00</Amount>"));

  EXPECT_EQ(modified.Code(), "0") << modified.Message();
  EXPECT_EQ(books.Balance("Account", "Checking"), "7.00");
  EXPECT_EQ(books.Balance("Account", "Supplies"), "-1.00");
  EXPECT_EQ(books.Balance("Account", "Sales"), "6.00");
}

TEST(JournalEntry, MovesTheBalanceOfACustomerOfReceivables) {
  Books books;

  books.Add("JournalEntry",
            Books::Leaf("JournalDebitLine", Books::Ref("AccountRef", "Receivables") +
                                                "<Amount>5.00</Amount>" +
                                                Books::Ref("EntityRef", "Abbott")) +
                Books::Leaf("JournalCreditLine", Books::Ref("AccountRef", "Sales") +
                                                     "<Amount>5.00</Amount>" +
                                                     Books::Ref("EntityRef", "Zeller")));

  EXPECT_EQ(books.Balance("Customer", "Abbott"), "5.00");
  EXPECT_EQ(books.Balance("Customer", "Zeller"), "0.00");
}

TEST(Bill, LosesTheLinesThatAreCleared) {
  Books books;
  const QbxmlResponse bill = books.Add(
      "Bill",
      kFromMill + Expense("3.00") +
          Books::Leaf("ItemLineAdd", Books::Ref("ItemRef", "Hammer") + "<Quantity>1</Quantity>"));

  const QbxmlResponse changed =
      books.Modify("Bill", bill, "<ClearExpenseLines>true</ClearExpenseLines>");

  EXPECT_EQ(changed.Text("AmountDue"), "7.00") << changed.Message();
  EXPECT_FALSE(changed.Has("ExpenseLineRet"));
}

TEST(Item, KeepsWhatAModOfItsGroupLeavesOut) {
  Books books;
  const QbxmlResponse repair = books.Find("ItemService", "Repair");

  const QbxmlResponse changed = books.Modify(
      "ItemService", repair, "<SalesOrPurchaseMod><Price>45.00</Price></SalesOrPurchaseMod>");

  EXPECT_EQ(changed.Text("SalesOrPurchase/Price"), "45.00");
  EXPECT_EQ(changed.Text("SalesOrPurchase/AccountRef/FullName"), "Sales");
  EXPECT_EQ(changed.Text("SalesOrPurchase/Desc"), "Repair work");
}

TEST(Invoice, ShowsItsAddressAsItIsPrinted) {
  Books books;

  const QbxmlResponse invoice =
      books.Add("Invoice", kToAbbott +
                               "<BillAddress><Addr1>J. Abbott</Addr1><Addr2>1 Main</Addr2>"
                               "<City>Napa</City><State>CA</State><PostalCode>94559</PostalCode>"
                               "</BillAddress>" +
                               Sold("Invoice", "Hammer", "1"));

  EXPECT_EQ(invoice.Text("BillAddressBlock/Addr2"), "1 Main");
  EXPECT_EQ(invoice.Text("BillAddressBlock/Addr3"), "Napa, CA 94559");
  EXPECT_EQ(invoice.Text("ShipDate"), invoice.Text("TxnDate"));
  EXPECT_EQ(invoice.Text("CustomerSalesTaxCodeRef/FullName"), "Tax");
}

TEST(Account, ComesInTheOrderOfTheChart) {
  Books books;

  EXPECT_EQ(books.Query("Account").All("AccountType"),
            "Bank AccountsReceivable OtherCurrentAsset AccountsPayable CreditCard "
            "OtherCurrentLiability Income CostOfGoodsSold Expense ");
  EXPECT_EQ(books.Query("Account", "<MaxReturned>2</MaxReturned>").All("Name"),
            "Checking Receivables ");
}

TEST(Item, BeginsWithItsStock) {
  Books books;

  books.Add("ItemInventory",
            "<Name>Saw</Name>" + Books::Ref("IncomeAccountRef", "Sales") +
                Books::Ref("COGSAccountRef", "Goods") + Books::Ref("AssetAccountRef", "Stock") +
                "<QuantityOnHand>4</QuantityOnHand><TotalValue>50.00</TotalValue>");

  EXPECT_EQ(books.Find("ItemInventory", "Saw").Text("AverageCost"), "12.50");
  EXPECT_EQ(books.Balance("Account", "Stock"), "50.00");
  EXPECT_EQ(books.Balance("Account", "Opening Balance Equity"), "50.00");
}

}  // namespace
}  // namespace ostrel
