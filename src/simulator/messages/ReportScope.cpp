// A filter becomes a predicate over one posting. Its names are resolved to ListIDs once, so that
// the walk over the ledger only looks these up. The words that choose groups of accounts and items
// stand in tables; a word that is in none of them refuses the report.
#include "simulator/messages/ReportScope.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <set>
#include <utility>

namespace ostrel::simulator {
namespace {

using Ids = std::set<std::string, std::less<>>;
using Words = std::string_view;  // separated by blanks
using Row = std::pair<std::string_view, Words>;

constexpr Row kAccountGroups[] = {
    {"AccountsPayable", "AccountsPayable"},
    {"AccountsReceivable", "AccountsReceivable"},
    {"APOrCreditCard", "AccountsPayable CreditCard"},
    {"ARAndAP", "AccountsReceivable AccountsPayable"},
    {"Asset", "Bank AccountsReceivable OtherCurrentAsset FixedAsset OtherAsset"},
    {"BalanceSheet",
     "Bank AccountsReceivable OtherCurrentAsset FixedAsset OtherAsset AccountsPayable CreditCard "
     "OtherCurrentLiability LongTermLiability Equity"},
    {"Bank", "Bank"},
    {"CostOfSales", "CostOfGoodsSold"},
    {"CreditCard", "CreditCard"},
    {"CurrentAsset", "Bank AccountsReceivable OtherCurrentAsset"},
    {"CurrentAssetAndExpense",
     "Bank AccountsReceivable OtherCurrentAsset CostOfGoodsSold Expense OtherExpense"},
    {"CurrentLiability", "AccountsPayable CreditCard OtherCurrentLiability"},
    {"Equity", "Equity"},
    {"EquityAndIncomeAndExpense", "Equity Income CostOfGoodsSold Expense OtherIncome OtherExpense"},
    {"ExpenseAndOtherExpense", "CostOfGoodsSold Expense OtherExpense"},
    {"FixedAsset", "FixedAsset"},
    {"IncomeAndExpense", "Income CostOfGoodsSold Expense OtherIncome OtherExpense"},
    {"IncomeAndOtherIncome", "Income OtherIncome"},
    {"Liability", "AccountsPayable CreditCard OtherCurrentLiability LongTermLiability"},
    {"LiabilityAndEquity",
     "AccountsPayable CreditCard OtherCurrentLiability LongTermLiability Equity"},
    {"LongTermLiability", "LongTermLiability"},
    {"NonPosting", "NonPosting"},
    {"OrdinaryExpense", "CostOfGoodsSold Expense"},
    {"OrdinaryIncome", "Income"},
    {"OrdinaryIncomeAndCOGS", "Income CostOfGoodsSold"},
    {"OrdinaryIncomeAndExpense", "Income CostOfGoodsSold Expense"},
    {"OtherAsset", "OtherAsset"},
    {"OtherCurrentAsset", "OtherCurrentAsset"},
    {"OtherCurrentLiability", "OtherCurrentLiability"},
    {"OtherExpense", "OtherExpense"},
    {"OtherIncome", "OtherIncome"},
    {"OtherIncomeOrExpense", "OtherIncome OtherExpense"},
};

constexpr Row kItemGroups[] = {
    {"AllExceptFixedAsset",
     "ItemService ItemNonInventory ItemOtherCharge ItemInventory ItemInventoryAssembly "
     "ItemSubtotal ItemDiscount ItemPayment ItemSalesTax ItemSalesTaxGroup ItemGroup"},
    {"Assembly", "ItemInventoryAssembly"},
    {"Discount", "ItemDiscount"},
    {"FixedAsset", "ItemFixedAsset"},
    {"Inventory", "ItemInventory"},
    {"InventoryAndAssembly", "ItemInventory ItemInventoryAssembly"},
    {"NonInventory", "ItemNonInventory"},
    {"OtherCharge", "ItemOtherCharge"},
    {"Payment", "ItemPayment"},
    {"Sales", "ItemService ItemNonInventory ItemOtherCharge ItemInventory ItemInventoryAssembly"},
    {"SalesTax", "ItemSalesTax ItemSalesTaxGroup"},
    {"Service", "ItemService"},
};

constexpr Row kEntityGroups[] = {
    {"Customer", "Customer"},
    {"Employee", "Employee"},
    {"OtherName", "OtherName"},
    {"Vendor", "Vendor"},
};

bool HasWord(Words words, std::string_view word) {
  for (std::size_t at = words.find(word); at != Words::npos; at = words.find(word, at + 1)) {
    const std::size_t end = at + word.size();
    const bool begins = at == 0 || words[at - 1] == ' ';
    if (begins && (end == words.size() || words[end] == ' ')) return true;
  }
  return false;
}

// One sort of object by which a report is filtered.
struct Sort {
  std::string_view filter;
  std::string_view kinds;
  std::span<const Row> groups;
  Target (*of)(const LedgerPosting& posting, const Company& company);
};

Target AccountOf(const LedgerPosting& posting, const Company&) {
  static const Kind& kind = *FindKind("Account");
  return posting.account ? Target{&kind, posting.account} : Target();
}

constexpr Sort kSorts[] = {
    {"ReportAccountFilter", "Account", kAccountGroups, AccountOf},
    {"ReportEntityFilter", "Entity", kEntityGroups, EntityOf},
    {"ReportItemFilter", "Item", kItemGroups, ItemOf},
    {"ReportClassFilter", "Class", {}, ClassOf},
};

// What a group of accounts goes by is their type; all others go by their kind.
std::string_view GroupedBy(const Target& target) {
  return target.kind->name == "Account" ? target.object->ChildText("AccountType")
                                        : target.kind->name;
}

void FilterByGroup(const Sort& sort, const Element& word, ReportScope& scope) {
  const auto row = std::ranges::find(sort.groups, word.text, &Row::first);
  if (row == sort.groups.end()) {
    scope.refusal = NotInReports(word.text, word.name);
    return;
  }
  scope.filters.emplace_back(
      [of = sort.of, words = row->second](const LedgerPosting& posting, const Company& company) {
        const Target target = of(posting, company);
        return target && HasWord(words, GroupedBy(target));
      });
}

void AddIds(const Element& key, const Target& target, const Company& company, Ids& ids) {
  ids.emplace(target.object->ChildText("ListID"));
  if (!key.name.ends_with("Children")) return;
  const std::string_view name = FullNameOf(*target.kind, *target.object);
  for (const Element* child : company.List(*target.kind).Below(name)) {
    ids.emplace(child->ChildText("ListID"));
  }
}

void FilterByKeys(const Sort& sort, const Element& filter, const Company& company,
                  ReportScope& scope) {
  Ids ids;
  for (const Element& key : filter.children) {
    const KindList& kinds = KindsNamed(sort.kinds);
    const Target target = key.name.starts_with("ListID") ? FindById(company, kinds, key.text)
                                                         : FindByName(company, kinds, key.text);
    if (!target) {
      scope.refusal = InvalidReference(sort.kinds, key.text, sort.filter);
      return;
    }
    AddIds(key, target, company, ids);
  }
  scope.filters.emplace_back(
      [of = sort.of, ids = std::move(ids)](const LedgerPosting& posting, const Company& within) {
        const Target target = of(posting, within);
        return target && ids.contains(target.object->ChildText("ListID"));
      });
}

void FilterByType(const Element& filter, ReportScope& scope) {
  Ids types;
  for (const Element& type : filter.children) types.insert(type.text);
  if (types.contains("All")) return;
  scope.filters.emplace_back(
      [types = std::move(types)](const LedgerPosting& posting, const Company&) {
        return types.contains(posting.kind->name);
      });
}

// The macros of reports call the parts of the calendar year what those of queries call them with
// one word more.
DateRange RangeNamed(std::string_view macro, std::chrono::sys_days today) {
  std::string name(macro);
  for (const std::string_view part : {"Quarter", "Year"}) {
    const std::size_t at = name.find(part);
    if (at != std::string::npos) name.insert(at, "Calendar");
  }
  return RangeOf(name, today);
}

DateRange RangeIn(const Element* dates, const Element* macro, std::string_view from,
                  std::string_view to, std::chrono::sys_days today) {
  if (macro) return RangeNamed(macro->text, today);
  if (!dates) return {};
  return {ParseDate(dates->ChildText(from)), ParseDate(dates->ChildText(to))};
}

LedgerPeriod PeriodOf(const DateRange& range) {
  LedgerPeriod period;
  if (range.from) period.from = DateText(*range.from);
  if (range.to) period.to = DateText(*range.to);
  return period;
}

// Kept: without dates a report is of the fiscal year to date.
void SetPeriod(const Element& query, ReportScope& scope) {
  const Element* dates = query.Child("ReportPeriod");
  const Element* macro = query.Child("ReportDateMacro");
  scope.range = dates || macro
                    ? RangeIn(dates, macro, "FromReportDate", "ToReportDate", scope.today)
                    : RangeOf("ThisFiscalYearToDate", scope.today);
  scope.period = PeriodOf(scope.range);
  scope.end = scope.range.to.value_or(scope.today);
}

void FilterByModified(const Element& query, ReportScope& scope) {
  const Element* dates = query.Child("ReportModifiedDateRangeFilter");
  const Element* macro = query.Child("ReportModifiedDateRangeMacro");
  if (!dates && !macro) return;
  const LedgerPeriod period = PeriodOf(
      RangeIn(dates, macro, "FromReportModifiedDate", "ToReportModifiedDate", scope.today));
  scope.filters.emplace_back([period](const LedgerPosting& posting, const Company&) {
    return period.Has(posting.source->ChildText("TimeModified").substr(0, 10));
  });
}

// The choices that the stand-in has of those that QuickBooks has.
constexpr Row kChoices[] = {
    {"ReportDetailLevelFilter", "All"},
    {"ReportPostingStatusFilter", "Either Posting"},
    {"ReportBasis", "Accrual None"},
    {"IncludeSubcolumns", "false 0"},
};

void CheckChoices(const Element& query, ReportScope& scope) {
  for (const auto& [name, allowed] : kChoices) {
    const Element* choice = query.Child(name);
    if (choice && !HasWord(allowed, choice->text)) {
      scope.refusal = NotInReports(choice->text, name);
    }
  }
}

}  // namespace

bool ReportScope::Passes(const LedgerPosting& posting, const Company& company) const {
  return std::ranges::all_of(filters,
                             [&](const Filter& filter) { return filter(posting, company); });
}

ReportScope ScopeOf(const Call& call) {
  ReportScope scope;
  scope.today = DayOf(call.now);
  SetPeriod(call.element, scope);
  for (const Element& child : call.element.children) {
    if (child.name == "ReportTxnTypeFilter") FilterByType(child, scope);
    const auto sort = std::ranges::find(kSorts, child.name, &Sort::filter);
    if (sort == std::end(kSorts) || child.children.empty()) continue;
    if (child.children.front().name.ends_with("TypeFilter")) {
      FilterByGroup(*sort, child.children.front(), scope);
    } else {
      FilterByKeys(*sort, child, call.company.Data(), scope);
    }
  }
  FilterByModified(call.element, scope);
  CheckChoices(call.element, scope);
  return scope;
}

void ForEachInScope(const ReportScope& scope, const LedgerPeriod& period, const Company& company,
                    const std::function<void(const LedgerPosting&)>& visit) {
  ForEachPosted(company, period, [&](const LedgerPosting& posting) {
    if (scope.Passes(posting, company)) visit(posting);
  });
}

}  // namespace ostrel::simulator
