#include "simulator/messages/ReportGroups.h"

#include <algorithm>
#include <iterator>

#include "simulator/company/Accounts.h"
#include "simulator/messages/ReportTable.h"
#include "simulator/values/Periods.h"

namespace ostrel::simulator {
namespace {

const Kind& AccountKind() {
  static const Kind& kind = *FindKind("Account");
  return kind;
}

Target AccountOf(const LedgerPosting& posting, const Company&) {
  return {&AccountKind(), posting.account};
}

// The entity, where it is of that kind.
template <const char* kName>
Target EntityNamed(const LedgerPosting& posting, const Company& company) {
  const Target entity = EntityOf(posting, company);
  return entity && entity.kind->name == kName ? entity : Target();
}

constexpr char kCustomer[] = "Customer";
constexpr char kVendor[] = "Vendor";
constexpr char kEmployee[] = "Employee";

struct Row {
  std::string_view word;
  std::string_view about;
  Target (*of)(const LedgerPosting& posting, const Company& company);
};
constexpr Row kRows[] = {
    {"Account", "account", AccountOf},
    {"Class", "class", ClassOf},
    {"Customer", "customer", EntityNamed<kCustomer>},
    {"Employee", "employee", EntityNamed<kEmployee>},
    {"ItemDetail", "item", ItemOf},
    {"Payee", "name", EntityOf},
    {"Vendor", "vendor", EntityNamed<kVendor>},
};

const Row* RowOf(std::string_view word) {
  const auto row = std::ranges::find(kRows, word, &Row::word);
  return row == std::end(kRows) ? nullptr : &*row;
}

std::string Folded(std::string_view name) { return ToUtf8(LowerCase(FromUtf8(name))); }

// Behind all names.
constexpr std::string_view kLast = "\xff";

}  // namespace

std::string AccountKey(const Element& account) {
  const auto place = static_cast<char>('A' + PlaceInChart(account.ChildText("AccountType")));
  return place + Folded(FullNameOf(AccountKind(), account));
}

ReportGroup GroupOf(const Target& target) {
  if (!target) return {std::string(kLast), ""};
  if (target.kind == &AccountKind()) {
    return {AccountKey(*target.object), std::string(FullNameOf(*target.kind, *target.object))};
  }
  const std::string_view name = FullNameOf(*target.kind, *target.object);
  return {Folded(name), std::string(name)};
}

ReportGrouping::ReportGrouping(std::string_view word, const ReportScope& scope,
                               const Company& company)
    : sWord(word),
      oScope(scope),
      oCompany(company),
      bKnown(word == "TotalOnly" || IsCalendarPart(word) || RowOf(word)) {}

ReportGroup ReportGrouping::PartWith(std::chrono::sys_days day) const {
  DateRange part = PartOf(sWord, day);
  const std::string key = DateText(*part.from);
  if (oScope.range.from) part.from = std::max(*part.from, *oScope.range.from);
  if (oScope.range.to) part.to = std::min(*part.to, *oScope.range.to);
  return {key, ShortPeriodTitle(part)};
}

ReportGroup ReportGrouping::Of(const LedgerPosting& posting) const {
  if (const Row* row = RowOf(sWord)) return GroupOf(row->of(posting, oCompany));
  const auto day = ParseDate(posting.date);
  if (!IsCalendarPart(sWord) || !day) return {"", ShortPeriodTitle(oScope.range)};
  return PartWith(*day);
}

std::map<std::string, std::string> ReportGrouping::Expected() const {
  if (sWord == "TotalOnly") return {{"", ShortPeriodTitle(oScope.range)}};
  std::map<std::string, std::string> groups;
  const bool isBounded = oScope.range.from && oScope.range.to;
  if (!IsCalendarPart(sWord) || !isBounded) return groups;
  auto day = *oScope.range.from;
  while (day <= *oScope.range.to && groups.size() <= kMostReportColumns) {
    const ReportGroup group = PartWith(day);
    groups.emplace(group.key, group.title);
    day = *PartOf(sWord, day).to + std::chrono::days(1);
  }
  return groups;
}

std::string_view ReportGrouping::About() const {
  const Row* row = RowOf(sWord);
  return row ? row->about : std::string_view();
}

}  // namespace ostrel::simulator
