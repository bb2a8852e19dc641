// Reports of what customers owe and of what vendors are owed: by age and in all.
#include <algorithm>
#include <array>
#include <map>

#include "simulator/company/OpenAmounts.h"
#include "simulator/messages/ReportGroups.h"
#include "simulator/messages/Reports.h"
#include "simulator/values/Periods.h"

namespace ostrel::simulator {
namespace {

// The ages in days behind the due date; each reaches up to its last day.
struct Age {
  std::string_view title;
  int last;
};
constexpr Age kAges[] = {
    {"Current", 0}, {"1 - 30", 30}, {"31 - 60", 60}, {"61 - 90", 90}, {"> 90", 0}};
constexpr std::size_t kOldest = std::size(kAges) - 1;

struct Side {
  std::string_view accountType;
  std::string_view about;
};

Side SideOf(std::string_view reportType) {
  const bool isPayable = reportType.starts_with("AP") || reportType.starts_with("Vendor");
  return isPayable ? Side{"AccountsPayable", "vendor"} : Side{"AccountsReceivable", "customer"};
}

// Kept: what has no date is current.
std::size_t AgeOf(const OpenItem& item, std::chrono::sys_days asOf) {
  const auto due = ParseDate(item.dueDate);
  if (!due) return 0;
  const auto days = (asOf - *due).count();
  std::size_t age = 0;
  while (age < kOldest && days > kAges[age].last) ++age;
  return age;
}

std::vector<OpenItem> OpenItemsFor(const ReportOrder& order) {
  return OpenItemsOf(
      order.company, SideOf(order.type).accountType, DateText(order.scope.end),
      [&](const LedgerPosting& posting) { return order.scope.Passes(posting, order.company); });
}

using Ages = std::array<Decimal, std::size(kAges) + 1>;  // and the total

struct EntityAges {
  std::string name;
  Ages ages = {};
};

std::vector<std::string> CellsOf(std::string_view label, const Ages& ages) {
  std::vector<std::string> cells = {std::string(label)};
  for (const Decimal amount : ages) cells.push_back(AmountText(amount));
  return cells;
}

}  // namespace

void MakeAgingSummary(const ReportOrder& order, Report& report) {
  const bool isOfToday = order.Choice("ReportAgingAsOf", "ReportEndDate") == "Today";
  const auto asOf = isOfToday ? order.scope.today : order.scope.end;
  std::map<std::string, EntityAges> rows;
  EntityAges total;
  for (const OpenItem& item : OpenItemsFor(order)) {
    if (item.open.IsZero()) continue;
    const ReportGroup entity = GroupOf(item.entity);
    for (EntityAges* row : {&rows[entity.key], &total}) {
      row->name = entity.title;
      row->ages[AgeOf(item, asOf)] += item.open;
      row->ages.back() += item.open;
    }
  }
  report.subtitle = "As of " + LongDate(order.scope.end);
  report.columns.push_back({"", "Blank", "STRTYPE"});
  for (const Age& age : kAges) report.columns.push_back({std::string(age.title)});
  report.columns.push_back({"TOTAL", "Total"});
  for (const auto& [key, row] : rows) {
    report.rows.push_back(
        {RowForm::kData, CellsOf(row.name, row.ages), SideOf(order.type).about, row.name});
  }
  report.rows.push_back({RowForm::kTotal, CellsOf("TOTAL", total.ages)});
}

void MakeBalanceSummary(const ReportOrder& order, Report& report) {
  std::map<std::string, std::pair<std::string, Decimal>> rows;
  Decimal total;
  for (const OpenItem& item : OpenItemsFor(order)) {
    const ReportGroup entity = GroupOf(item.entity);
    auto& [name, amount] = rows[entity.key];
    name = entity.title;
    amount += item.open;
    total += item.open;
  }
  const bool withZeros = order.Choice("ReturnRows", "NonZero") == "All";
  report.subtitle = "As of " + LongDate(order.scope.end);
  report.columns = {{"", "Blank", "STRTYPE"}, {ShortDate(order.scope.end)}};
  for (const auto& [key, row] : rows) {
    const auto& [name, amount] = row;
    if (amount.IsZero() && !withZeros) continue;
    report.rows.push_back(
        {RowForm::kData, {name, AmountText(amount)}, SideOf(order.type).about, name});
  }
  report.rows.push_back({RowForm::kTotal, {"TOTAL", AmountText(total)}});
}

}  // namespace ostrel::simulator
