// A filter becomes a predicate over one posting. Its names are resolved to ListIDs once, so that
// the walk over the ledger only looks these up. A choice that the stand-in does not have refuses
// the report.
#include "simulator/messages/ReportScope.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <set>
#include <utility>

#include "simulator/messages/TypeFilters.h"

namespace ostrel::simulator {
namespace {

using Ids = std::set<std::string, std::less<>>;
using Words = std::string_view;  // separated by blanks
using Row = std::pair<std::string_view, Words>;

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
  Target (*of)(const LedgerPosting& posting, const Company& company);
};

Target AccountOf(const LedgerPosting& posting, const Company&) {
  static const Kind& kind = *FindKind("Account");
  return posting.account ? Target{&kind, posting.account} : Target();
}

constexpr Sort kSorts[] = {
    {"ReportAccountFilter", "Account", AccountOf},
    {"ReportEntityFilter", "Entity", EntityOf},
    {"ReportItemFilter", "Item", ItemOf},
    {"ReportClassFilter", "Class", ClassOf},
};

void FilterByGroup(const Sort& sort, const Element& word, ReportScope& scope) {
  scope.filters.emplace_back([of = sort.of, kinds = KindsOfType(word), type = word.text](
                                 const LedgerPosting& posting, const Company& company) {
    const Target target = of(posting, company);
    if (!target || std::ranges::find(kinds, target.kind) == kinds.end()) return false;
    return target.kind->name != "Account" ||
           IsOfAccountType(target.object->ChildText("AccountType"), type);
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
