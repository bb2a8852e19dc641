// Reports of what is in stock: how much of it, on order and sold already, and what it is worth.
// They are of now: the quantities of an earlier day are not known.
#include <algorithm>
#include <map>

#include "simulator/company/Postings.h"
#include "simulator/messages/ReportGroups.h"
#include "simulator/messages/Reports.h"
#include "simulator/values/LongWork.h"
#include "simulator/values/Periods.h"

namespace ostrel::simulator {
namespace {

Decimal NumberOf(const Element& item, std::string_view field) {
  return Decimal::Of(item.ChildText(field));
}

// Visits the items in stock that the filters by item take.
void ForEachInStock(const ReportOrder& order,
                    const std::function<void(const std::string& name, const Element&)>& visit) {
  std::map<std::string, Target> items;
  for (const Kind* kind : KindsNamed("Item")) {
    if (!kind->Has("QuantityOnHand")) continue;
    for (const auto& [key, item] : order.company.List(*kind).InOrder()) {
      BreatheLightly();
      if (!order.scope.Passes({.kind = kind, .source = &item}, order.company)) continue;
      items.emplace(GroupOf({kind, &item}).key, Target{kind, &item});
    }
  }
  for (const auto& [key, item] : items) {
    visit(std::string(FullNameOf(*item.kind, *item.object)), *item.object);
  }
}

// A filter by anything but items, or an earlier day, is more than the stand-in can tell.
bool CanTell(const ReportOrder& order, Report& report) {
  for (const std::string_view filter :
       {"ReportAccountFilter", "ReportEntityFilter", "ReportClassFilter", "ReportTxnTypeFilter"}) {
    const Element* found = order.call.element.Child(filter);
    if (!found) continue;
    report.status = NotInReports(found->children.front().text, filter);
    return false;
  }
  if (order.scope.end >= order.scope.today) return true;
  report.status = NotInReports(DateText(order.scope.end), "ToReportDate");
  return false;
}

std::string Count(Decimal number) { return number.ToString(0); }

}  // namespace

void MakeStockStatus(const ReportOrder& order, Report& report) {
  if (!CanTell(order, report)) return;
  report.columns = {{"", "Blank", "STRTYPE"},
                    {"Item Description", "ItemDesc", "STRTYPE"},
                    {"Reorder Pt", "ReorderPoint", "QUANTYPE"},
                    {"On Hand", "QuantityOnHand", "QUANTYPE"},
                    {"On Sales Order", "QuantityOnSalesOrder", "QUANTYPE"},
                    {"Available", "QuantityAvailable", "QUANTYPE"},
                    {"On PO", "QuantityOnOrder", "QUANTYPE"}};
  ForEachInStock(order, [&](const std::string& name, const Element& item) {
    const Decimal onHand = NumberOf(item, "QuantityOnHand");
    const Decimal sold = NumberOf(item, "QuantityOnSalesOrder");
    report.rows.push_back({RowForm::kData,
                           {name, std::string(item.ChildText("SalesDesc")),
                            std::string(item.ChildText("ReorderPoint")), Count(onHand), Count(sold),
                            Count(onHand - sold), Count(NumberOf(item, "QuantityOnOrder"))},
                           "item",
                           name});
  });
}

void MakeStockValuation(const ReportOrder& order, Report& report) {
  if (!CanTell(order, report)) return;
  report.subtitle = "As of " + LongDate(order.scope.today);
  report.columns = {{"", "Blank", "STRTYPE"},
                    {"Item Description", "ItemDesc", "STRTYPE"},
                    {"On Hand", "QuantityOnHand", "QUANTYPE"},
                    {"Avg Cost", "AverageCost", "PRICETYPE"},
                    {"Asset Value", "ValueOnHand"},
                    {"Sales Price", "UnitPrice", "PRICETYPE"},
                    {"Retail Value", "RetailValueOnHand"}};
  Decimal count, value, retail;
  ForEachInStock(order, [&](const std::string& name, const Element& item) {
    const Decimal onHand = NumberOf(item, "QuantityOnHand");
    const Decimal price = NumberOf(item, "SalesPrice");
    const Decimal worth = StockValueOf(item);
    count += onHand;
    value += worth;
    retail += (onHand * price).Cents();
    report.rows.push_back({RowForm::kData,
                           {name, std::string(item.ChildText("SalesDesc")), Count(onHand),
                            AmountText(AverageCostOf(item)), AmountText(worth), AmountText(price),
                            AmountText(onHand * price)},
                           "item",
                           name});
  });
  report.rows.push_back(
      {RowForm::kTotal,
       {"TOTAL", "", Count(count), "", AmountText(value), "", AmountText(retail)}});
}

}  // namespace ostrel::simulator
