// The reports: which types of them there are, and who makes each.
#pragma once

#include <string_view>

#include "simulator/messages/Message.h"
#include "simulator/messages/ReportScope.h"
#include "simulator/messages/ReportTable.h"

namespace ostrel::simulator {

/// A report that a message asks for.
struct ReportOrder {
  const Call& call;
  const Company& company;
  std::string_view type;
  ReportScope scope;

  /// The text of the element, or another one without it.
  std::string_view Choice(std::string_view element, std::string_view otherwise) const {
    const Element* chosen = call.element.Child(element);
    return chosen ? std::string_view(chosen->text) : otherwise;
  }
};

/// Whether parts of the calendar in which nothing was posted have columns too.
inline bool WantsAllColumns(const ReportOrder& order) {
  return order.Choice("ReturnColumns", "All") == "All";
}

using ReportMaker = void (*)(const ReportOrder& order, Report& report);

// The makers give the report its columns and rows; its title and the title of its period stand.
void MakeProfitAndLoss(const ReportOrder& order, Report& report);
void MakeBalanceSheet(const ReportOrder& order, Report& report);
void MakeTrialBalance(const ReportOrder& order, Report& report);
void MakeAgingSummary(const ReportOrder& order, Report& report);
void MakeBalanceSummary(const ReportOrder& order, Report& report);
void MakeGroupedSummary(const ReportOrder& order, Report& report);
void MakeSalesByItem(const ReportOrder& order, Report& report);
void MakeStockStatus(const ReportOrder& order, Report& report);
void MakeStockValuation(const ReportOrder& order, Report& report);
void MakePostingList(const ReportOrder& order, Report& report);
void MakeTransactionList(const ReportOrder& order, Report& report);
void MakeOpenItemList(const ReportOrder& order, Report& report);

}  // namespace ostrel::simulator
