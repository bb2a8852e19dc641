// Summaries with a row for each customer, vendor or item: of sales, purchases, income and expenses,
// and whatever a custom summary is summed up by. A table says what each of them takes from the
// ledger, by which groups, and with which sign.
#include <algorithm>
#include <iterator>
#include <map>

#include "simulator/messages/ReportGroups.h"
#include "simulator/messages/Reports.h"

namespace ostrel::simulator {
namespace {

constexpr std::string_view kIncome[] = {"Income", "OtherIncome"};
constexpr std::string_view kExpenses[] = {"CostOfGoodsSold", "Expense", "OtherExpense"};
constexpr std::string_view kSales[] = {"Invoice", "SalesReceipt", "CreditMemo", "Charge"};
constexpr std::string_view kPurchases[] = {
    "Bill", "Check", "CreditCardCharge", "CreditCardCredit", "ItemReceipt", "VendorCredit"};

bool IsIn(std::span<const std::string_view> words, std::string_view word) {
  return std::ranges::find(words, word) != words.end();
}

bool IsIncome(const LedgerPosting& posting, const Company&) {
  return IsIn(kIncome, posting.account->ChildText("AccountType"));
}

bool IsExpense(const LedgerPosting& posting, const Company&) {
  return IsIn(kExpenses, posting.account->ChildText("AccountType"));
}

// The amount of an item, and not its cost or the tax. A payment among the items is no sale.
bool IsOfItem(const LedgerPosting& posting, const Company& company) {
  if (posting.line && posting.measure != Measure::kAmount) return false;
  if (!posting.line && posting.account->ChildText("AccountType") == "AccountsReceivable") {
    return false;
  }
  const Target item = ItemOf(posting, company);
  return item && item.kind->name != "ItemPayment";
}

bool IsSale(const LedgerPosting& posting, const Company& company) {
  return IsIn(kSales, posting.kind->name) && IsOfItem(posting, company);
}

bool IsPurchase(const LedgerPosting& posting, const Company& company) {
  return IsIn(kPurchases, posting.kind->name) && IsOfItem(posting, company);
}

bool IsAny(const LedgerPosting&, const Company&) { return true; }

struct Summary {
  std::string_view type;
  std::string_view rows;  // empty: as SummarizeRowsBy says
  bool (*takes)(const LedgerPosting& posting, const Company& company);
  int side = 1;  // 1: debits are shown above zero, -1: credits
};
constexpr Summary kSummaries[] = {
    {"SalesByCustomerSummary", "Customer", IsSale, -1},
    {"SalesByItemSummary", "ItemDetail", IsSale, -1},
    {"PurchaseByVendorSummary", "Vendor", IsPurchase},
    {"PurchaseByItemSummary", "ItemDetail", IsPurchase},
    {"IncomeByCustomerSummary", "Customer", IsIncome, -1},
    {"ExpenseByVendorSummary", "Vendor", IsExpense},
    {"CustomSummary", "", IsAny},
};

const Summary& SummaryOf(const ReportOrder& order) {
  return *std::ranges::find(kSummaries, order.type, &Summary::type);
}

void ForEachOf(const Summary& summary, const ReportOrder& order,
               const std::function<void(const LedgerPosting&, Decimal)>& visit) {
  ForEachInScope(order.scope, order.scope.period, order.company, [&](const LedgerPosting& posting) {
    if (!summary.takes(posting, order.company)) return;
    visit(posting, summary.side < 0 ? posting.amount.Negated() : posting.amount);
  });
}

using Cells = std::map<std::string, Decimal>;  // by the keys of columns
struct Row {
  std::string title = {};
  Cells cells = {};
};

// The table of a summary while it is summed up.
struct SummaryTable {
  std::map<std::string, std::string> columns;
  std::map<std::string, Row> rows = {};
  Row total = {.title = "TOTAL"};

  void Add(const ReportGroup& row, const ReportGroup& column, Decimal amount) {
    if (columns.size() <= kMostReportColumns) columns.emplace(column.key, column.title);
    Row& sums = rows[row.key];
    sums.title = row.title;
    sums.cells[column.key] += amount;
    total.cells[column.key] += amount;
  }

  std::vector<std::string> CellsOf(const Row& row) const {
    std::vector<std::string> texts = {row.title};
    Decimal sum;
    for (const auto& [key, title] : columns) {
      const auto cell = row.cells.find(key);
      const Decimal amount = cell == row.cells.end() ? Decimal() : cell->second;
      sum += amount;
      texts.push_back(AmountText(amount));
    }
    if (columns.size() > 1) texts.push_back(AmountText(sum));
    return texts;
  }
};

bool AreZero(const Cells& cells) {
  return std::ranges::all_of(cells, [](const auto& cell) { return cell.second.IsZero(); });
}

void WriteSummary(const SummaryTable& table, std::string_view about, bool withZeros,
                  Report& report) {
  report.columns.push_back({"", "Blank", "STRTYPE"});
  for (const auto& [key, title] : table.columns) report.columns.push_back({title});
  if (table.columns.size() > 1) report.columns.push_back({"TOTAL", "Total"});
  for (const auto& [key, row] : table.rows) {
    if (!withZeros && AreZero(row.cells)) continue;
    report.rows.push_back(
        {RowForm::kData, table.CellsOf(row), row.title.empty() ? "" : about, row.title});
  }
  report.rows.push_back({RowForm::kTotal, table.CellsOf(table.total)});
}

// Units of the item that a posting is about. A credit has them on the other side.
Decimal QuantityOf(const LedgerPosting& posting, Decimal amount) {
  const Element& source = posting.line ? *posting.line : *posting.source;
  const Decimal quantity = Decimal::Of(source.ChildText("Quantity"));
  return amount < Decimal() && quantity > Decimal() ? quantity.Negated() : quantity;
}

struct ItemSales {
  std::string title = {};
  Decimal quantity = {};
  Decimal amount = {};
};

std::vector<std::string> CellsOf(const ItemSales& sales, Decimal all) {
  const Decimal percent = (sales.amount * Decimal::Whole(100) / all).Cents();
  return {sales.title, sales.quantity.ToString(0), AmountText(sales.amount), percent.ToString(2),
          sales.quantity.IsZero() ? "" : AmountText(sales.amount / sales.quantity)};
}

}  // namespace

void MakeGroupedSummary(const ReportOrder& order, Report& report) {
  const Summary& summary = SummaryOf(order);
  const std::string_view byRow =
      summary.rows.empty() ? order.Choice("SummarizeRowsBy", "TotalOnly") : summary.rows;
  const std::string_view byColumn = order.Choice("SummarizeColumnsBy", "TotalOnly");
  const ReportGrouping rows(byRow, order.scope, order.company);
  const ReportGrouping columns(byColumn, order.scope, order.company);
  if (!rows.IsKnown()) report.status = NotInReports(byRow, "SummarizeRowsBy");
  if (!columns.IsKnown()) report.status = NotInReports(byColumn, "SummarizeColumnsBy");
  if (report.status.IsError()) return;
  SummaryTable table{.columns = {}};
  if (columns.IsTotal() || WantsAllColumns(order)) table.columns = columns.Expected();
  ForEachOf(summary, order, [&](const LedgerPosting& posting, Decimal amount) {
    table.Add(rows.Of(posting), columns.Of(posting), amount);
  });
  if (table.columns.size() > kMostReportColumns) {
    report.status = NotInReports(byColumn, "SummarizeColumnsBy");
    return;
  }
  WriteSummary(table, rows.About(), order.Choice("ReturnRows", "ActiveOnly") != "NonZero", report);
}

void MakeSalesByItem(const ReportOrder& order, Report& report) {
  const std::string_view byColumn = order.Choice("SummarizeColumnsBy", "TotalOnly");
  if (byColumn != "TotalOnly") return MakeGroupedSummary(order, report);
  std::map<std::string, ItemSales> rows;
  ItemSales total{.title = "TOTAL"};
  ForEachOf(SummaryOf(order), order, [&](const LedgerPosting& posting, Decimal amount) {
    const ReportGroup item = GroupOf(ItemOf(posting, order.company));
    ItemSales& row = rows[item.key];
    row.title = item.title;
    row.quantity += QuantityOf(posting, amount);
    row.amount += amount;
    total.quantity += QuantityOf(posting, amount);
    total.amount += amount;
  });
  report.columns = {{"", "Blank", "STRTYPE"},
                    {"Qty", "Quantity", "QUANTYPE"},
                    {"Amount"},
                    {"% of Sales", "Percent", "PERCENTTYPE"},
                    {"Avg Price", "UnitPrice", "PRICETYPE"}};
  for (const auto& [key, row] : rows) {
    report.rows.push_back({RowForm::kData, CellsOf(row, total.amount), "item", row.title});
  }
  report.rows.push_back({RowForm::kTotal, CellsOf(total, total.amount)});
}

}  // namespace ostrel::simulator
