// Reports: their form, and that their figures agree with the books.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>

#include "simulator/values/Decimal.h"
#include "simulator/xml/XmlReader.h"
#include "tests/unit/simulator/Books.h"

namespace ostrel {
namespace {

using simulator::Decimal;
using simulator::Element;
using testing::HasSubstr;

/// A report, taken apart.
class ReportTable {
 public:
  explicit ReportTable(const std::string& response) {
    simulator::XmlDocument document;
    EXPECT_EQ(simulator::ReadXmlText(FromUtf8(response), 1'000'000, document),
              simulator::XmlFault::kNone);
    oResponse = document.root.Child("QBXMLMsgsRs")->children.front();
    if (!oResponse.children.empty()) oReport = oResponse.children.front();
    if (const Element* data = oReport.Child("ReportData")) oRows = data->children;
  }

  std::string Code() const { return *oResponse.Find("statusCode"); }
  std::string Message() const { return *oResponse.Find("statusMessage"); }
  std::string Text(std::string_view field) const { return std::string(oReport.ChildText(field)); }
  std::size_t Rows() const { return oRows.size(); }
  const Element& Row(std::size_t place) const { return oRows.at(place); }

  /// The titles of the columns, each with a bar behind it.
  std::string Columns() const {
    std::string titles;
    for (const Element& child : oReport.children) {
      if (child.name != "ColDesc") continue;
      const std::string* title = child.Child("ColTitle")->Find("value");
      titles += (title ? *title : "") + "|";
    }
    return titles;
  }
  /// The cell of the first row with that label, its columns from 1; "none" without the row.
  std::string Cell(std::string_view label, std::size_t column = 2) const {
    for (const Element& row : oRows) {
      if (row.name != "TextRow" && CellOf(row, 1) == label) return CellOf(row, column);
    }
    return "none";
  }
  static std::string CellOf(const Element& row, std::size_t column) {
    for (const Element& cell : row.children) {
      if (cell.name != "ColData" || *cell.Find("colID") != std::to_string(column)) continue;
      return *cell.Find("value");
    }
    return "";
  }
  /// Every row on a line of its own: its form without "Row", and its cells.
  std::string Lines() const {
    std::string lines;
    for (const Element& row : oRows) {
      lines += row.name.substr(0, row.name.size() - 3);
      if (const std::string* text = row.Find("value")) lines += " " + *text;
      for (const Element& cell : row.children) {
        if (cell.name == "ColData") lines += " " + *cell.Find("value");
      }
      lines += "\n";
    }
    return lines;
  }
  /// The figures of the rows of data by their labels.
  std::map<std::string, Decimal> Figures(std::size_t column) const {
    std::map<std::string, Decimal> figures;
    for (const Element& row : oRows) {
      if (row.name == "DataRow") figures[CellOf(row, 1)] += Decimal::Of(CellOf(row, column));
    }
    return figures;
  }

 private:
  Element oResponse;
  Element oReport;
  std::vector<Element> oRows;
};

ReportTable Report(Books& books, const std::string& sort, const std::string& type,
                   const std::string& rest = "") {
  return ReportTable(books.Ask("<" + sort + "ReportQueryRq>" +
                               Books::Leaf(sort + "ReportType", type) + rest + "</" + sort +
                               "ReportQueryRq>"));
}
ReportTable Summary(Books& books, const std::string& type, const std::string& rest = "") {
  return Report(books, "GeneralSummary", type, rest);
}
std::string Between(const std::string& from, const std::string& to) {
  return Books::Leaf("ReportPeriod",
                     Books::Leaf("FromReportDate", from) + Books::Leaf("ToReportDate", to));
}

const std::string kAlways = Between("2000-01-01", "2029-12-31");
const std::string kReportsCustomer = Books::Ref("CustomerRef", "Abbott");
const std::string kMill = Books::Ref("VendorRef", "Mill");

std::string On(const std::string& date) { return Books::Leaf("TxnDate", date); }

/// The first half of 2010: goods bought and sold, paid in part, an opening balance and a journal
/// entry; in 2009 an invoice.
class BusyBooks : public Books {
 public:
  BusyBooks() {
    Did(Add("Customer", "<Name>Old Debt</Name><OpenBalance>75.00</OpenBalance>"));
    Did(Add("Bill", kMill + On("2009-12-01") +
                        Leaf("ItemLineAdd", Ref("ItemRef", "Hammer") + "<Quantity>30</Quantity>")));
    Did(Add("Invoice", kReportsCustomer + On("2009-12-15") + InvoiceLine("Hammer", "4")));
    const QbxmlResponse january =
        Did(Add("Invoice", kReportsCustomer + On("2010-01-10") + InvoiceLine("Hammer", "2") +
                               InvoiceLine("Repair", "1")));
    Did(Add("Invoice", Ref("CustomerRef", "Abbott:Barn") + On("2010-02-20") +
                           Ref("ItemSalesTaxRef", "County") + InvoiceLine("Hammer", "10")));
    Did(Add("SalesReceipt",
            Ref("CustomerRef", "Zeller") + On("2010-03-05") +
                Ref("DepositToAccountRef", "Checking") +
                Leaf("SalesReceiptLineAdd", Ref("ItemRef", "Repair") + "<Quantity>3</Quantity>")));
    Did(Add("CreditMemo",
            kReportsCustomer + On("2010-03-08") +
                Leaf("CreditMemoLineAdd", Ref("ItemRef", "Hammer") + "<Quantity>1</Quantity>")));
    Did(Add("ReceivePayment",
            kReportsCustomer + On("2010-03-15") + "<TotalAmount>50.00</TotalAmount>" +
                Leaf("AppliedToTxnAdd", Leaf("TxnID", january.Text("TxnID")) +
                                            "<PaymentAmount>40.00</PaymentAmount>")));
    Did(Add("Bill",
            kMill + On("2010-04-02") +
                Leaf("ExpenseLineAdd", Ref("AccountRef", "Supplies") + "<Amount>33.10</Amount>")));
    Did(Add(
        "JournalEntry",
        On("2010-05-31") +
            Leaf("JournalDebitLine", Ref("AccountRef", "Supplies") + "<Amount>12.00</Amount>") +
            Leaf("JournalCreditLine", Ref("AccountRef", "Checking") + "<Amount>12.00</Amount>")));
  }

 private:
  static QbxmlResponse Did(QbxmlResponse response) {
    EXPECT_EQ(response.Code(), "0") << response.Message();
    return response;
  }
};

// The balances of the objects of a kind by full name, in debits for accounts kept in credits too.
std::map<std::string, Decimal> BalancesOf(Books& books, const std::string& kind) {
  std::map<std::string, Decimal> balances;
  const QbxmlResponse all = books.Query(kind, "<ActiveStatus>All</ActiveStatus>");
  for (std::size_t i = 0; i < all.Count(); ++i) {
    const std::string full = all.Text("FullName", i);
    const std::string type = all.Text("AccountType", i);
    const bool isCredit = type == "AccountsPayable" || type == "CreditCard" || type == "Equity" ||
                          type == "Income" || type == "OtherCurrentLiability";
    const Decimal balance = Decimal::Of(all.Text("Balance", i));
    balances[full.empty() ? all.Text("Name", i) : full] = isCredit ? balance.Negated() : balance;
  }
  return balances;
}

void DropZeros(std::map<std::string, Decimal>& figures) {
  std::erase_if(figures, [](const auto& figure) { return figure.second.IsZero(); });
}

TEST(ProfitAndLoss, ListsIncomeAndExpensesBySection) {
  BusyBooks books;

  const ReportTable report =
      Summary(books, "ProfitAndLossStandard", Between("2010-01-01", "2010-06-30"));

  ASSERT_EQ(report.Code(), "0") << report.Message();
  EXPECT_EQ(report.Text("ReportTitle"), "Profit & Loss");
  EXPECT_EQ(report.Text("ReportSubtitle"), "January through June 2010");
  EXPECT_EQ(report.Text("ReportBasis"), "Accrual");
  EXPECT_EQ(report.Columns(), "|Jan - Jun 10|");
  EXPECT_EQ(report.Text("NumRows"), std::to_string(report.Rows()));
  EXPECT_EQ(report.Lines(),
            "Text Ordinary Income/Expense\n"
            "Text Income\n"
            "Data Sales 297.50\n"
            "Data Uncategorized Income 75.00\n"
            "Subtotal Total Income 372.50\n"
            "Text Cost of Goods Sold\n"
            "Data Goods 77.00\n"
            "Subtotal Total COGS 77.00\n"
            "Subtotal Gross Profit 295.50\n"
            "Text Expense\n"
            "Data Supplies 45.10\n"
            "Subtotal Total Expense 45.10\n"
            "Subtotal Net Ordinary Income 250.40\n"
            "Total Net Income 250.40\n");
}

TEST(ProfitAndLoss, IsSummedByMonth) {
  BusyBooks books;

  const ReportTable report = Summary(
      books, "ProfitAndLossStandard",
      Between("2010-01-01", "2010-03-10") + "<SummarizeColumnsBy>Month</SummarizeColumnsBy>");

  EXPECT_EQ(report.Columns(), "|Jan 10|Feb 10|Mar 1 - 10, 10|TOTAL|");
  EXPECT_EQ(report.Cell("Sales", 3), "125.00");
  EXPECT_EQ(report.Cell("Sales", 4), "107.50");
  EXPECT_EQ(report.Cell("Sales", 5), "297.50");
}

TEST(ProfitAndLoss, IsNarrowedByFilters) {
  BusyBooks books;
  const std::string barn =
      "<ReportEntityFilter><FullName>Abbott:Barn</FullName></ReportEntityFilter>";

  EXPECT_EQ(Summary(books, "ProfitAndLossStandard", kAlways + barn).Cell("Sales"), "125.00");
  EXPECT_EQ(Summary(books, "ProfitAndLossStandard",
                    kAlways + "<ReportEntityFilter><FullNameWithChildren>Abbott"
                              "</FullNameWithChildren></ReportEntityFilter>")
                .Cell("Sales"),
            "227.50");
  EXPECT_EQ(Summary(books, "ProfitAndLossStandard",
                    kAlways + "<ReportAccountFilter><AccountTypeFilter>OrdinaryExpense"
                              "</AccountTypeFilter></ReportAccountFilter>")
                .Cell("Sales"),
            "none");
  EXPECT_EQ(Summary(books, "ProfitAndLossStandard",
                    kAlways + "<ReportTxnTypeFilter><TxnTypeFilter>CreditMemo</TxnTypeFilter>"
                              "</ReportTxnTypeFilter>")
                .Cell("Sales"),
            "-12.50");
  EXPECT_EQ(Summary(books, "ProfitAndLossStandard",
                    kAlways + "<ReportItemFilter><FullName>Repair</FullName></ReportItemFilter>")
                .Cell("Sales"),
            "160.00");
}

TEST(TrialBalance, ComesToNothingAndAgreesWithEveryAccount) {
  BusyBooks books;

  const ReportTable report = Summary(books, "TrialBalance", kAlways);

  EXPECT_EQ(report.Columns(), "|Debit|Credit|");
  EXPECT_EQ(report.Cell("TOTAL", 2), report.Cell("TOTAL", 3));
  auto figures = report.Figures(2);
  for (const auto& [name, credit] : report.Figures(3)) figures[name] += credit.Negated();
  auto balances = BalancesOf(books, "Account");
  // All years but the last are in Retained Earnings.
  Decimal earned = figures["Retained Earnings"];
  for (const std::string name : {"Sales", "Goods", "Supplies", "Uncategorized Income"}) {
    earned += balances[name].Negated();
    balances.erase(name);
  }
  EXPECT_TRUE(earned.IsZero()) << earned.ToString(2);
  figures.erase("Retained Earnings");
  DropZeros(figures);
  DropZeros(balances);
  EXPECT_EQ(figures.size(), balances.size());
  for (const auto& [name, balance] : balances) {
    EXPECT_EQ(figures[name].ToString(2), balance.ToString(2)) << name;
  }
}

TEST(TrialBalance, OfTheYearShowsIncomeAndExpenses) {
  BusyBooks books;

  const ReportTable report = Summary(books, "TrialBalance", Between("2010-01-01", "2010-12-31"));

  EXPECT_EQ(report.Text("ReportSubtitle"), "As of December 31, 2010");
  EXPECT_EQ(report.Cell("Sales", 3), "297.50");
  EXPECT_EQ(report.Cell("Retained Earnings", 3), "22.00");
}

TEST(BalanceSheet, BalancesAndItsEarningsAreThoseOfTheProfitAndLoss) {
  BusyBooks books;

  const ReportTable sheet =
      Summary(books, "BalanceSheetStandard", Between("2010-01-01", "2010-06-30"));
  const ReportTable before =
      Summary(books, "BalanceSheetStandard", Between("2009-01-01", "2009-12-31"));
  const ReportTable profit =
      Summary(books, "ProfitAndLossStandard", Between("2010-01-01", "2010-06-30"));

  EXPECT_EQ(sheet.Text("ReportSubtitle"), "As of June 30, 2010");
  EXPECT_EQ(sheet.Columns(), "|Jun 30, 10|");
  EXPECT_EQ(sheet.Cell("TOTAL ASSETS"), sheet.Cell("TOTAL LIABILITIES & EQUITY"));
  EXPECT_EQ(sheet.Cell("Net Income"), profit.Cell("Net Income"));
  EXPECT_EQ(sheet.Cell("Retained Earnings"), before.Cell("Net Income"));
  EXPECT_EQ((Decimal::Of(sheet.Cell("Total Equity")) - Decimal::Of(before.Cell("Total Equity")))
                .ToString(2),
            profit.Cell("Net Income"));
}

TEST(BalanceSheet, ByQuarterShowsBalancesAtItsEnd) {
  BusyBooks books;

  const ReportTable sheet = Summary(
      books, "BalanceSheetStandard",
      Between("2010-01-01", "2010-06-30") + "<SummarizeColumnsBy>Quarter</SummarizeColumnsBy>");

  EXPECT_EQ(sheet.Columns(), "|Mar 31, 10|Jun 30, 10|");
  EXPECT_EQ(sheet.Cell("Checking", 2), "170.00");
  EXPECT_EQ(sheet.Cell("Checking", 3), "158.00");
  EXPECT_EQ(sheet.Cell("TOTAL ASSETS", 2), sheet.Cell("TOTAL LIABILITIES & EQUITY", 2));
}

TEST(Aging, ComesToTheBalancesOfCustomersAndVendors) {
  BusyBooks books;

  for (const auto& [type, kind] :
       {std::pair("ARAgingSummary", "Customer"), {"APAgingSummary", "Vendor"}}) {
    const ReportTable report = Report(books, "Aging", type, kAlways);
    auto balances = BalancesOf(books, kind);
    DropZeros(balances);
    const auto figures = report.Figures(7);
    ASSERT_EQ(report.Code(), "0") << report.Message();
    EXPECT_EQ(figures.size(), balances.size());
    Decimal total;
    for (const auto& [name, figure] : figures) {
      EXPECT_EQ(figure.ToString(2), balances[name].ToString(2)) << name;
      total += figure;
    }
    EXPECT_EQ(report.Cell("TOTAL", 7), total.ToString(2));
  }
}

TEST(Aging, GoesByTheDaysBehindTheDueDate) {
  BusyBooks books;

  const ReportTable report =
      Report(books, "Aging", "ARAgingSummary", Between("2010-01-01", "2010-03-20"));

  EXPECT_EQ(report.Columns(), "|Current|1 - 30|31 - 60|61 - 90|> 90|TOTAL|");
  // 25.00 of the invoice of January 10th are open, due after 30 days, and all of the one of
  // December 15th; the credit is due in April, and 10.00 of the payment are not used.
  EXPECT_EQ(report.Cell("Abbott", 2), "-12.50");
  EXPECT_EQ(report.Cell("Abbott", 3), "-10.00");
  EXPECT_EQ(report.Cell("Abbott", 4), "25.00");
  EXPECT_EQ(report.Cell("Abbott", 5), "50.00");
  EXPECT_EQ(report.Cell("Abbott", 7), "52.50");
}

TEST(Aging, OfAnEarlierDayLeavesOutWhatWasPaidLater) {
  BusyBooks books;

  const ReportTable report =
      Report(books, "Aging", "ARAgingSummary", Between("2010-01-01", "2010-03-01"));

  EXPECT_EQ(report.Cell("Abbott", 7), "115.00");
}

TEST(BalanceSummary, AgreesWithTheLists) {
  BusyBooks books;

  const ReportTable customers = Summary(books, "CustomerBalanceSummary", kAlways);
  const ReportTable vendors = Summary(books, "VendorBalanceSummary", kAlways);

  EXPECT_EQ(customers.Cell("Abbott"), books.Balance("Customer", "Abbott"));
  EXPECT_EQ(customers.Cell("Old Debt"), "75.00");
  EXPECT_EQ(vendors.Cell("Mill"), books.Balance("Vendor", "Mill"));
}

// What was sold, from the lines of the transactions themselves.
Decimal SoldOf(Books& books, const std::string& item) {
  Decimal sum;
  const std::pair<std::string, int> kinds[] = {
      {"Invoice", 1}, {"SalesReceipt", 1}, {"CreditMemo", -1}};
  for (const auto& [kind, side] : kinds) {
    const QbxmlResponse all = books.Query(kind, "<IncludeLineItems>true</IncludeLineItems>");
    for (std::size_t i = 0; i < all.Count(); ++i) {
      for (int line = 0; line < 3; ++line) {
        const std::string at = kind + "LineRet[" + std::to_string(line) + "]/";
        if (all.Text(at + "ItemRef/FullName", i) != item) continue;
        const Decimal amount = Decimal::Of(all.Text(at + "Amount", i));
        sum += side < 0 ? amount.Negated() : amount;
      }
    }
  }
  return sum;
}

TEST(SalesByItem, ComesToTheLinesOfAllSales) {
  BusyBooks books;

  const ReportTable report = Summary(books, "SalesByItemSummary", kAlways);

  ASSERT_EQ(report.Code(), "0") << report.Message();
  EXPECT_EQ(report.Columns(), "|Qty|Amount|% of Sales|Avg Price|");
  EXPECT_EQ(report.Cell("Hammer", 2), "15");
  EXPECT_EQ(report.Cell("Hammer", 3), SoldOf(books, "Hammer").ToString(2));
  EXPECT_EQ(report.Cell("Repair", 3), SoldOf(books, "Repair").ToString(2));
  EXPECT_EQ(report.Cell("Hammer", 5), "12.50");
  EXPECT_EQ(report.Cell("TOTAL", 3), "347.50");
  EXPECT_EQ(report.Cell("TOTAL", 4), "100.00");
}

TEST(SalesByCustomer, LeavesTheTaxOut) {
  BusyBooks books;

  const ReportTable report = Summary(books, "SalesByCustomerSummary",
                                     kAlways + "<SummarizeColumnsBy>Year</SummarizeColumnsBy>" +
                                         "<ReturnColumns>NonZero</ReturnColumns>");

  ASSERT_EQ(report.Code(), "0") << report.Message();
  EXPECT_EQ(report.Columns(), "|Jan - Dec 09|Jan - Dec 10|TOTAL|");
  EXPECT_EQ(report.Lines(),
            "Data Abbott 50.00 52.50 102.50\n"
            "Data Abbott:Barn 0.00 125.00 125.00\n"
            "Data Zeller 0.00 120.00 120.00\n"
            "Total TOTAL 50.00 297.50 347.50\n");
}

TEST(CustomSummary, GroupsRowsAndColumnsByChoice) {
  BusyBooks books;

  const ReportTable report = Report(books, "CustomSummary", "CustomSummary",
                                    kAlways +
                                        "<ReportAccountFilter><FullName>Sales</FullName>"
                                        "</ReportAccountFilter>"
                                        "<SummarizeColumnsBy>ItemDetail</SummarizeColumnsBy>"
                                        "<SummarizeRowsBy>Customer</SummarizeRowsBy>");

  EXPECT_EQ(report.Columns(), "|Hammer|Repair|TOTAL|");
  EXPECT_EQ(report.Cell("Abbott", 2), "-62.50");
  EXPECT_EQ(report.Cell("Zeller", 3), "-120.00");
  EXPECT_EQ(report.Cell("TOTAL", 4), "-347.50");
}

TEST(Stock, IsThatOfTheItems) {
  BusyBooks books;
  books.Add("PurchaseOrder",
            kMill + Books::Leaf("PurchaseOrderLineAdd",
                                Books::Ref("ItemRef", "Hammer") + "<Quantity>5</Quantity>"));

  const ReportTable status = Summary(books, "InventoryStockStatusByItem");
  const ReportTable value = Summary(books, "InventoryValuationSummary");

  EXPECT_EQ(status.Cell("Hammer", 4), books.Find("ItemInventory", "Hammer").Text("QuantityOnHand"));
  EXPECT_EQ(status.Cell("Hammer", 7), "5");
  // 20 hammers were written into the file, 30 were bought and 15 sold in all, at 7.00.
  EXPECT_EQ(value.Cell("Hammer", 3), "35");
  EXPECT_EQ(value.Cell("Hammer", 5), "245.00");
  EXPECT_EQ(Summary(books, "InventoryValuationSummary", Between("2001-01-01", "2001-12-31")).Code(),
            "3250");
}

TEST(OpenInvoices, ShowWhatIsLeftOfThem) {
  BusyBooks books;

  const ReportTable report =
      Report(books, "GeneralDetail", "OpenInvoices", Between("2010-01-01", "2010-03-20"));

  EXPECT_EQ(report.Columns(), "|Type|Date|Num|Terms|Due Date|Aging|Open Balance|");
  EXPECT_EQ(report.Cell("Total Abbott", 8), "52.50");
  EXPECT_THAT(report.Lines(), HasSubstr("Data Invoice 2010-01-10 2 Net 30 2010-02-09 39 25.00\n"));
}

TEST(UnpaidBills, ComeToTheBalancesOfVendors) {
  BusyBooks books;

  const ReportTable report = Report(books, "GeneralDetail", "UnpaidBillsDetail", kAlways);

  EXPECT_EQ(report.Cell("Total Mill", 7), books.Balance("Vendor", "Mill"));
}

TEST(TransactionList, HasALineForEachTransaction) {
  BusyBooks books;

  const ReportTable report =
      Report(books, "GeneralDetail", "TxnListByDate", Between("2010-03-01", "2010-03-31"));

  EXPECT_EQ(report.Columns(), "|Type|Date|Num|Name|Memo|Account|Split|Amount|");
  EXPECT_EQ(report.Lines(),
            "Data SalesReceipt 2010-03-05 1 Zeller Checking Sales 120.00\n"
            "Data CreditMemo 2010-03-08 1 Abbott Receivables -SPLIT- -12.50\n"
            "Data ReceivePayment 2010-03-15 Abbott Receivables Checking -50.00\n"
            "Total TOTAL 57.50\n");
}

TEST(GeneralLedger, BringsBalancesForward) {
  BusyBooks books;

  const ReportTable report =
      Report(books, "GeneralDetail", "GeneralLedger", Between("2010-03-01", "2010-03-31"));

  EXPECT_EQ(report.Cell("Sales", 9), "-190.00");
  EXPECT_EQ(report.Cell("Total Sales", 8), "-107.50");
  EXPECT_EQ(report.Cell("Total Sales", 9), "-297.50");
  EXPECT_EQ(report.Cell("Total Checking", 9), "170.00");
  EXPECT_EQ(report.Cell("TOTAL", 8), "0.00");
}

TEST(ProfitAndLossDetail, AgreesWithTheSummary) {
  BusyBooks books;

  const ReportTable detail = Report(books, "GeneralDetail", "ProfitAndLossDetail", kAlways);
  const ReportTable summary = Summary(books, "ProfitAndLossStandard", kAlways);

  for (const std::string account : {"Sales", "Goods", "Supplies", "Uncategorized Income"}) {
    EXPECT_EQ(detail.Cell("Total " + account, 8), summary.Cell(account)) << account;
  }
}

TEST(CustomDetail, HasTheColumnsThatWereChosen) {
  BusyBooks books;
  const std::string columns =
      "<IncludeColumn>TxnType</IncludeColumn><IncludeColumn>Item</IncludeColumn>"
      "<IncludeColumn>Debit</IncludeColumn><IncludeColumn>Credit</IncludeColumn>";
  const std::string sales = "<ReportAccountFilter><FullName>Sales</FullName></ReportAccountFilter>";

  const ReportTable report =
      Report(books, "CustomDetail", "CustomTxnDetail",
             kAlways + sales + "<SummarizeRowsBy>Customer</SummarizeRowsBy>" + columns);
  const ReportTable all =
      Report(books, "CustomDetail", "CustomTxnDetail",
             kAlways + "<SummarizeRowsBy>TotalOnly</SummarizeRowsBy>" + columns);

  EXPECT_EQ(report.Columns(), "|Type|Item|Debit|Credit|");
  EXPECT_EQ(report.Cell("Total Abbott", 4), "12.50");
  EXPECT_EQ(report.Cell("Total Abbott", 5), "115.00");
  EXPECT_EQ(all.Cell("TOTAL", 4), all.Cell("TOTAL", 5));
  EXPECT_EQ(Report(books, "CustomDetail", "CustomTxnDetail",
                   "<SummarizeRowsBy>TotalOnly</SummarizeRowsBy>"
                   "<IncludeColumn>WageBase</IncludeColumn>")
                .Code(),
            "3250");
}

TEST(Reports, CountABalanceWrittenByHandFromTheBeginning) {
  Books books(R"(<Company name="By Hand">
    <Account><Name>Checking</Name><AccountType>Bank</AccountType><Balance>80.00</Balance></Account>
    <Customer><Name>Abbott</Name><Balance>12.00</Balance></Customer>
  </Company>)");

  EXPECT_EQ(
      Summary(books, "BalanceSheetStandard", Between("2001-01-01", "2001-12-31")).Cell("Checking"),
      "80.00");
  EXPECT_EQ(Report(books, "Aging", "ARAgingSummary").Cell("Abbott", 2), "12.00");
}

TEST(Reports, ThatTheStandInDoesNotMakeAreRefused) {
  BusyBooks books;

  const ReportTable tax = Summary(books, "SalesTaxLiability");

  EXPECT_EQ(tax.Code(), "3250");
  EXPECT_THAT(tax.Message(), HasSubstr("\"SalesTaxLiability\""));
  EXPECT_EQ(Summary(books, "ProfitAndLossStandard", "<ReportBasis>Cash</ReportBasis>").Code(),
            "3250");
  EXPECT_EQ(
      Summary(books, "ProfitAndLossStandard", "<SummarizeColumnsBy>ShipMethod</SummarizeColumnsBy>")
          .Code(),
      "3250");
  EXPECT_EQ(books
                .Tell("<PayrollSummaryReportQueryRq><PayrollSummaryReportType>PayrollSummary"
                      "</PayrollSummaryReportType></PayrollSummaryReportQueryRq>")
                .Code(),
            "3250");
  EXPECT_EQ(Summary(books, "ProfitAndLossStandard",
                    "<ReportEntityFilter><FullName>Nobody</FullName></ReportEntityFilter>")
                .Code(),
            "3140");
}

TEST(Reports, OfMoreColumnsThanCanBeMeantAreRefused) {
  BusyBooks books;

  const std::string days =
      Between("0001-01-01", "9999-12-31") + "<SummarizeColumnsBy>Day</SummarizeColumnsBy>";

  EXPECT_EQ(Summary(books, "ProfitAndLossStandard", days).Code(), "3250");
  EXPECT_EQ(Summary(books, "BalanceSheetStandard", days).Code(), "3250");
}

}  // namespace
}  // namespace ostrel
