// The titles, the titles of columns and the order of rows are written from memory of how such
// reports look.
//
// From memory: AgingReportQueryRq, CustomDetailReportQueryRq, CustomSummaryReportQueryRq,
// GeneralDetailReportQueryRq, GeneralSummaryReportQueryRq.
#include "simulator/messages/Reports.h"

#include <algorithm>
#include <iterator>

#include "simulator/messages/Messages.h"
#include "simulator/values/Periods.h"

namespace ostrel::simulator {
namespace {

struct ReportType {
  std::string_view name;
  std::string_view title;
  ReportMaker make;
  bool hasBasis = true;
};

constexpr ReportType kTypes[] = {
    {"ProfitAndLossStandard", "Profit & Loss", MakeProfitAndLoss},
    {"ProfitAndLossByClass", "Profit & Loss by Class", MakeProfitAndLoss},
    {"ProfitAndLossByJob", "Profit & Loss by Job", MakeProfitAndLoss},
    {"BalanceSheetStandard", "Balance Sheet", MakeBalanceSheet},
    {"TrialBalance", "Trial Balance", MakeTrialBalance},
    {"ARAgingSummary", "A/R Aging Summary", MakeAgingSummary, false},
    {"APAgingSummary", "A/P Aging Summary", MakeAgingSummary, false},
    {"CustomerBalanceSummary", "Customer Balance Summary", MakeBalanceSummary, false},
    {"VendorBalanceSummary", "Vendor Balance Summary", MakeBalanceSummary, false},
    {"SalesByCustomerSummary", "Sales by Customer Summary", MakeGroupedSummary},
    {"SalesByItemSummary", "Sales by Item Summary", MakeSalesByItem},
    {"PurchaseByVendorSummary", "Purchases by Vendor Summary", MakeGroupedSummary},
    {"PurchaseByItemSummary", "Purchases by Item Summary", MakeGroupedSummary},
    {"IncomeByCustomerSummary", "Income by Customer Summary", MakeGroupedSummary},
    {"ExpenseByVendorSummary", "Expenses by Vendor Summary", MakeGroupedSummary},
    {"CustomSummary", "Custom Summary Report", MakeGroupedSummary},
    {"InventoryStockStatusByItem", "Inventory Stock Status by Item", MakeStockStatus, false},
    {"InventoryValuationSummary", "Inventory Valuation Summary", MakeStockValuation, false},
    {"GeneralLedger", "General Ledger", MakePostingList},
    {"TxnDetailByAccount", "Transaction Detail by Account", MakePostingList},
    {"ProfitAndLossDetail", "Profit & Loss Detail", MakePostingList},
    {"CustomTxnDetail", "Custom Transaction Detail Report", MakePostingList},
    {"TxnListByDate", "Transaction List by Date", MakeTransactionList, false},
    {"TxnListByCustomer", "Transaction List by Customer", MakeTransactionList, false},
    {"TxnListByVendor", "Transaction List by Vendor", MakeTransactionList, false},
    {"OpenInvoices", "Open Invoices", MakeOpenItemList, false},
    {"UnpaidBillsDetail", "Unpaid Bills Detail", MakeOpenItemList, false},
};

// The first element of the message says which report it wants.
const Element& TypeIn(const Element& query) { return query.children.front(); }

}  // namespace

Response QueryReport(const Call& call) {
  const Element& wanted = TypeIn(call.element);
  const auto type = std::ranges::find(kTypes, wanted.text, &ReportType::name);
  if (type == std::end(kTypes)) return {.status = NotInReports(wanted.text, wanted.name)};
  ReportOrder order{call, call.company.Data(), type->name, ScopeOf(call)};
  if (order.scope.refusal) return {.status = *order.scope.refusal};
  Report report{.title = std::string(type->title),
                .subtitle = PeriodTitle(order.scope.range),
                .hasBasis = type->hasBasis};
  type->make(order, report);
  if (report.status.IsError()) return {.status = std::move(report.status)};
  XmlWriter xml(XmlForm::kResponse);
  WriteReport(xml, report);
  return {.status = {}, .body = xml.Take()};
}

}  // namespace ostrel::simulator
