// Accounts and items that QuickBooks needs for purposes of its own, made before it needs them, and
// what of its lists can be asked for besides: tax lines and bar codes.
// From memory: SpecialAccountAddRq, SpecialItemAddRq, AccountTaxLineInfoQueryRq, BarCodeQueryRq.
#include <algorithm>
#include <iterator>
#include <set>

#include "simulator/company/Defaults.h"
#include "simulator/company/Draft.h"
#include "simulator/company/Objects.h"
#include "simulator/messages/Messages.h"
#include "simulator/values/LongWork.h"

namespace ostrel::simulator {
namespace {

struct SpecialRow {
  std::string_view special;
  std::string_view name;
  std::string_view of;  // the type of an account; the kind of an item
};

constexpr SpecialRow kSpecialAccounts[] = {
    {"AccountsPayable", "Accounts Payable", "AccountsPayable"},
    {"AccountsReceivable", "Accounts Receivable", "AccountsReceivable"},
    {"CondenseItemAdjustmentExpenses", "Condense Item Adjustment Expenses", "Expense"},
    {"CostOfGoodsSold", "Cost of Goods Sold", "CostOfGoodsSold"},
    {"DirectDepositLiabilities", "Direct Deposit Liabilities", "OtherCurrentLiability"},
    {"Estimates", "Estimates", "NonPosting"},
    {"ExchangeGainLoss", "Exchange Gain or Loss", "OtherExpense"},
    {"InventoryAssets", "Inventory Asset", "OtherCurrentAsset"},
    {"ItemReceiptAccount", "Item Receipt Account", "OtherCurrentLiability"},
    {"OpeningBalanceEquity", "Opening Balance Equity", "Equity"},
    {"PayrollExpenses", "Payroll Expenses", "Expense"},
    {"PayrollLiabilities", "Payroll Liabilities", "OtherCurrentLiability"},
    {"PettyCash", "Petty Cash", "Bank"},
    {"PurchaseOrders", "Purchase Orders", "NonPosting"},
    {"ReconciliationDifferences", "Reconciliation Discrepancies", "Expense"},
    {"RetainedEarnings", "Retained Earnings", "Equity"},
    {"SalesOrders", "Sales Orders", "NonPosting"},
    {"SalesTaxPayable", "Sales Tax Payable", "OtherCurrentLiability"},
    {"UncategorizedExpenses", "Uncategorized Expenses", "Expense"},
    {"UncategorizedIncome", "Uncategorized Income", "Income"},
    {"UndepositedFunds", "Undeposited Funds", "OtherCurrentAsset"},
};

constexpr SpecialRow kSpecialItems[] = {
    {"FinanceCharge", "Fin Chg", "ItemOtherCharge"},
    {"ReimbursableExpenseGroup", "Reimb Group", "ItemGroup"},
    {"ReimbursableExpenseSubtotal", "Reimb Subt", "ItemSubtotal"},
};

// Each of them is there once.
Response AddSpecial(const Call& call, const Kind& kind, std::string_view field,
                    const SpecialRow& row, Element made) {
  const Company& company = call.company.Data();
  const auto& objects = company.List(kind).InOrder();
  const bool isThere = std::ranges::any_of(objects, [&](const auto& entry) {
    BreatheLightly();
    return entry.second.ChildText(field) == row.special;
  });
  if (isThere || FindByName(company, NameSpace(kind), row.name)) return {NameInUse(row.name)};
  made.Add("Name", row.name);
  made.Add(field, row.special);
  Complete(kind, made, company, call.company.NewNumbers(), call.now);
  const std::string id(made.ChildText("ListID"));
  Draft draft(company);
  draft.Put(kind, std::move(made));
  Status status = CommitFor(call, draft.Take(), row.name);
  if (status.IsError()) return {std::move(status)};
  return {.status = {}, .body = OneRet(call, kind, *company.List(kind).Find(id))};
}

constexpr std::string_view kTaxLines[] = {
    "<Unassigned>",
    "B/S-Assets: Cash",
    "B/S-Assets: Accts. Rec. and trade notes",
    "B/S-Assets: Inventories",
    "B/S-Assets: Other current assets",
    "B/S-Assets: Buildings/oth. depr. assets",
    "B/S-Liabs/Eq.: Accounts payable",
    "B/S-Liabs/Eq.: Other current liabilities",
    "B/S-Liabs/Eq.: Loans from shareholders",
    "Income: Gross receipts or sales",
    "Income: Other income",
    "COGS-Sch. A: Purchases",
    "COGS-Sch. A: Cost of labor",
    "Deductions: Salaries and wages",
    "Deductions: Repairs and maintenance",
    "Deductions: Rents",
    "Deductions: Taxes and licenses",
    "Deductions: Advertising",
    "Deductions: Other deductions",
};

}  // namespace

Response AddSpecialAccount(const Call& call) {
  const Element& given = call.element.children.front();
  const auto row = std::ranges::find(kSpecialAccounts, given.ChildText("SpecialAccountType"),
                                     &SpecialRow::special);
  Element made;
  made.Add("AccountType", row->of);
  return AddSpecial(call, *FindKind("Account"), "SpecialAccountType", *row, std::move(made));
}

Response AddSpecialItem(const Call& call) {
  const Element& given = call.element.children.front();
  const auto row =
      std::ranges::find(kSpecialItems, given.ChildText("SpecialItemType"), &SpecialRow::special);
  Element made;
  if (const Element* guid = given.Child("ExternalGUID")) made.children.push_back(*guid);
  return AddSpecial(call, *FindKind(row->of), "SpecialItemType", *row, std::move(made));
}

Response QueryTaxLines(const Call& call) {
  std::vector<Element> found;
  for (const std::string_view name : kTaxLines) {
    Element& line = found.emplace_back(Element{.name = "AccountTaxLineInfoRet"});
    line.Add("TaxLineID", std::to_string(found.size() - 1));
    line.Add("TaxLineName", name);
  }
  return Listed(call, found);
}

Response QueryBarCodes(const Call& call) {
  std::set<std::string_view> wanted;
  for (const Element& child : call.element.children) wanted.insert(child.text);
  std::vector<Element> found;
  for (const Kind* kind : AllKinds()) {
    if (!kind->Has("BarCodeValue")) continue;
    for (const auto& [key, object] : call.company.Data().List(*kind).InOrder()) {
      Breathe();
      const std::string_view value = object.ChildText("BarCodeValue");
      if (value.empty() || (!wanted.empty() && !wanted.contains(value))) continue;
      Element& ret = found.emplace_back(Element{.name = "BarCodeRet"});
      ret.Add("ListType", kind->name);
      ret.Add("ListID", object.ChildText("ListID"));
      ret.Add("FullName", FullNameOf(*kind, object));
    }
  }
  return Listed(call, found);
}

}  // namespace ostrel::simulator
