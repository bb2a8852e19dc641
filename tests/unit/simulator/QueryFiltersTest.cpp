#include <gtest/gtest.h>

#include "tests/unit/simulator/Books.h"

namespace ostrel::simulator {
namespace {

std::string Named(const std::string& filter, const std::string& name) {
  return Books::Leaf(filter, Books::Leaf("FullName", name));
}

TEST(QueryFilters, FindTransactionsByAccountItemAndClass) {
  Books books;
  books.Add("Class", "<Name>West</Name>");
  books.InvoiceTwoHammers();
  books.Add("Invoice", Books::Ref("CustomerRef", "Abbott") + Books::Ref("ClassRef", "West") +
                           Books::InvoiceLine("Repair", "1"));
  const auto numbers = [&](const std::string& kind, const std::string& filter) {
    return books.Query(kind, filter).All("RefNumber");
  };

  EXPECT_EQ(numbers("Invoice", Named("AccountFilter", "Receivables")), "1 2 ");
  EXPECT_EQ(numbers("Invoice", Named("AccountFilter", "Stock")), "1 ");
  EXPECT_EQ(numbers("Invoice", Named("AccountFilter", "Card")), "");
  EXPECT_EQ(books.Query("Invoice", Named("AccountFilter", "Nothing")).Code(), "3140");
  EXPECT_EQ(numbers("Transaction",
                    "<TransactionItemFilter><FullName>Repair</FullName>"
                    "</TransactionItemFilter><TransactionDetailLevelFilter>"
                    "SummaryOnly</TransactionDetailLevelFilter>"),
            "2 ");
  EXPECT_EQ(numbers("Transaction", Named("TransactionClassFilter", "West") +
                                       "<TransactionDetailLevelFilter>SummaryOnly"
                                       "</TransactionDetailLevelFilter>"),
            "2 ");
}

TEST(QueryFilters, FindListObjectsByTheirTypes) {
  Books books;
  books.Add("PaymentMethod", "<Name>Visa</Name><PaymentMethodType>Visa</PaymentMethodType>");
  books.Add("PaymentMethod", "<Name>Cash</Name><PaymentMethodType>Cash</PaymentMethodType>");

  EXPECT_EQ(
      books.Query("Account", "<AccountType>Bank</AccountType><AccountType>CreditCard</AccountType>")
          .All("Name"),
      "Checking Card ");
  EXPECT_EQ(books.Query("PaymentMethod", "<PaymentMethodType>Cash</PaymentMethodType>").All("Name"),
            "Cash ");
}

TEST(QueryFilters, FindWhatIsDone) {
  Books books;
  books.Add("ToDo", "<Notes>call</Notes><IsDone>true</IsDone>");
  books.Add("ToDo", "<Notes>write</Notes>");

  EXPECT_EQ(books.Query("ToDo", "<DoneStatus>DoneOnly</DoneStatus>").All("Notes"), "call ");
  EXPECT_EQ(books.Query("ToDo", "<DoneStatus>NotDoneOnly</DoneStatus>").All("Notes"), "write ");
  EXPECT_EQ(books.Query("ToDo", "<DoneStatus>All</DoneStatus>").Count(), 2u);
}

TEST(QueryFilters, FindPriceLevelsByItem) {
  Books books;
  const auto add = [&](const std::string& name, const std::string& item) {
    books.Add("PriceLevel",
              Books::Leaf("Name", name) +
                  Books::Leaf("PriceLevelPerItem",
                              Books::Ref("ItemRef", item) + "<CustomPrice>9.00</CustomPrice>"));
  };
  add("Trade", "Hammer");
  add("Friends", "Repair");

  EXPECT_EQ(books.Query("PriceLevel", Books::Ref("ItemRef", "Repair")).All("Name"), "Friends ");
}

TEST(QueryFilters, FindCustomersByClassAndByCurrency) {
  Books books;
  books.Add("Class", "<Name>West</Name>");
  books.Add("Customer", "<Name>Yoder</Name>" + Books::Ref("ClassRef", "West"));
  books.Add("Currency", "<Name>Thaler</Name><CurrencyCode>THA</CurrencyCode>");

  EXPECT_EQ(books.Query("Customer", Named("ClassFilter", "West")).All("Name"), "Yoder ");
  EXPECT_EQ(books.Query("Customer", Named("CurrencyFilter", "Thaler")).Code(), "1");
}

TEST(QueryFilters, FindTimeByWhoWorked) {
  Books books;
  const auto add = [&](const std::string& who) {
    books.Add("TimeTracking", Books::Ref("EntityRef", who) + "<Duration>PT1H0M</Duration>");
  };
  add("Mill");
  books.Add("Vendor", "<Name>Forge</Name>");
  add("Forge");

  EXPECT_EQ(books.Query("TimeTracking", Named("TimeTrackingEntityFilter", "Forge"))
                .All("EntityRef/FullName"),
            "Forge ");
}

TEST(MixedQueries, ReturnNamesAndTermsInOneOrder) {
  Books books;
  books.Add("Vendor", "<Name>Baker</Name>");
  books.Add("DateDrivenTerms", "<Name>End</Name><DayOfMonthDue>30</DayOfMonthDue>");

  EXPECT_EQ(books.Query("Entity").All("Name"), "Abbott Barn Baker Mill Zeller ");
  EXPECT_EQ(books.Query("Entity", "<MaxReturned>3</MaxReturned>").All("Name"),
            "Abbott Barn Baker ");
  EXPECT_EQ(books.Query("Terms").All("Name"), "End Net 30 ");
}

TEST(TransactionQuery, ReturnsTransactionsOfAllKindsInTheOrderOfTheirDates) {
  Books books;
  books.InvoiceTwoHammers();
  books.Add("Bill", Books::Ref("VendorRef", "Mill") + "<TxnDate>2009-12-31</TxnDate>" +
                        Books::Leaf("ExpenseLineAdd", Books::Ref("AccountRef", "Supplies") +
                                                          "<Amount>9.00</Amount>"));
  const std::string summary =
      "<TransactionDetailLevelFilter>SummaryOnly</TransactionDetailLevelFilter>";

  const QbxmlResponse found = books.Query("Transaction", summary);
  EXPECT_EQ(found.All("TxnType"), "Bill Invoice ");
  EXPECT_EQ(found.All("AccountRef/FullName"), "Payables Receivables ");
  EXPECT_EQ(found.All("Amount"), "-9.00 25.00 ");
  EXPECT_EQ(found.All("EntityRef/FullName"), "Mill Abbott ");
  EXPECT_EQ(books.Query("Transaction", "<MaxReturned>1</MaxReturned>" + summary).All("TxnType"),
            "Bill ");
}

TEST(TransactionQuery, ReturnsLinesToo) {
  Books books;
  const QbxmlResponse bill =
      books.Add("Bill", Books::Ref("VendorRef", "Mill") +
                            Books::Leaf("ExpenseLineAdd", Books::Ref("AccountRef", "Supplies") +
                                                              "<Amount>9.00</Amount>"));

  const QbxmlResponse found = books.Query("Transaction", Books::Leaf("TxnID", bill.Text("TxnID")),
                                          "metaData='MetaDataAndResponseData'");
  EXPECT_EQ(found.All("AccountRef/FullName"), "Payables Supplies ");
  EXPECT_EQ(found.All("Amount"), "-9.00 9.00 ");
  EXPECT_EQ(found.Text("TxnLineID", 1), bill.Text("ExpenseLineRet/TxnLineID"));
  EXPECT_EQ(found.Attribute("retCount"), "2");
}

TEST(TransactionQuery, Filters) {
  Books books;
  const QbxmlResponse invoice = books.InvoiceTwoHammers();
  books.Pay(invoice, "25.00");
  books.Add("Estimate", Books::Ref("CustomerRef", "Zeller") +
                            Books::Leaf("EstimateLineAdd", Books::Ref("ItemRef", "Repair") +
                                                               "<Quantity>1</Quantity>"));
  const auto types = [&](const std::string& filter) {
    return books
        .Query(
            "Transaction",
            filter.substr(0, filter.find('|')) +
                "<TransactionDetailLevelFilter>SummaryOnly</TransactionDetailLevelFilter>" +
                (filter.find('|') == std::string::npos ? "" : filter.substr(filter.find('|') + 1)))
        .All("TxnType");
  };

  EXPECT_EQ(types("<TransactionTypeFilter><TxnTypeFilter>Estimate</TxnTypeFilter>"
                  "</TransactionTypeFilter>"),
            "Estimate ");
  EXPECT_EQ(types("|<TransactionPostingStatusFilter>NonPosting</TransactionPostingStatusFilter>"),
            "Estimate ");
  EXPECT_EQ(types("|<TransactionPostingStatusFilter>Posting</TransactionPostingStatusFilter>"),
            "Invoice ReceivePayment ");
  EXPECT_EQ(types("|<TransactionPaidStatusFilter>Open</TransactionPaidStatusFilter>"), "");
  EXPECT_EQ(types("<TransactionEntityFilter><EntityTypeFilter>Vendor</EntityTypeFilter>"
                  "</TransactionEntityFilter>"),
            "");
  EXPECT_EQ(types(Named("TransactionEntityFilter", "Zeller")), "Estimate ");
  EXPECT_EQ(types("<TransactionAccountFilter><AccountTypeFilter>IncomeAndOtherIncome"
                  "</AccountTypeFilter></TransactionAccountFilter><TransactionTypeFilter>"
                  "<TxnTypeFilter>Invoice</TxnTypeFilter></TransactionTypeFilter>"),
            "Invoice ");
  EXPECT_EQ(types("<TransactionItemFilter><ItemTypeFilter>Service</ItemTypeFilter>"
                  "</TransactionItemFilter>"),
            "Estimate ");
  EXPECT_EQ(types("<MaxReturned>5</MaxReturned><RefNumber>1</RefNumber><TransactionTypeFilter>"
                  "<TxnTypeFilter>Invoice</TxnTypeFilter></TransactionTypeFilter>"),
            "Invoice ");
  EXPECT_EQ(types("<TransactionDateRangeFilter><DateMacro>Yesterday</DateMacro>"
                  "</TransactionDateRangeFilter>"),
            "");
  EXPECT_EQ(types("<TransactionModifiedDateRangeFilter><DateMacro>Today</DateMacro>"
                  "</TransactionModifiedDateRangeFilter>"),
            "Invoice ReceivePayment Estimate ");
}

TEST(TransactionQuery, PagesThroughKinds) {
  Books books;
  books.Pay(books.InvoiceTwoHammers(), "25.00");
  const std::string page =
      "<MaxReturned>1</MaxReturned><TransactionDetailLevelFilter>SummaryOnly"
      "</TransactionDetailLevelFilter>";

  const QbxmlResponse first = books.Query("Transaction", page, "iterator='Start'");
  EXPECT_EQ(first.All("TxnType"), "Invoice ");
  EXPECT_EQ(first.Attribute("iteratorRemainingCount"), "1");
  const QbxmlResponse second =
      books.Query("Transaction", page,
                  "iterator='Continue' iteratorID='" + first.Attribute("iteratorID") + "'");
  EXPECT_EQ(second.All("TxnType"), "ReceivePayment ");
}

}  // namespace
}  // namespace ostrel::simulator
