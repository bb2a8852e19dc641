#include "simulator/messages/TransactionRows.h"

#include <algorithm>

#include "simulator/company/Postings.h"
#include "simulator/company/Totals.h"

namespace ostrel::simulator {
namespace {

// From memory: TransactionQueryRq.
Element RowOf(const Kind& kind, const Element& transaction, const Element* line,
              const Target& account, Decimal amount) {
  Element row{.name = "TransactionRet"};
  row.Add("TxnType", kind.name);
  row.Add("TxnID", transaction.ChildText("TxnID"));
  if (line) row.Add("TxnLineID", line->ChildText("TxnLineID"));
  row.Add("TimeCreated", transaction.ChildText("TimeCreated"));
  row.Add("TimeModified", transaction.ChildText("TimeModified"));
  const Element* entity = kind.entity.empty() ? nullptr : transaction.Child(kind.entity);
  if (entity) row.children.emplace_back(*entity).name = "EntityRef";
  if (account) row.children.push_back(ReferenceTo("AccountRef", account));
  row.Add("TxnDate", transaction.ChildText(kind.dateField));
  if (transaction.Child("RefNumber")) row.Add("RefNumber", transaction.ChildText("RefNumber"));
  row.Add("Amount", amount.ToString(2));
  const Element* memo = line ? line->Child("Desc") : transaction.Child("Memo");
  if (line && !memo) memo = line->Child("Memo");
  if (memo) row.Add("Memo", memo->text);
  return row;
}

}  // namespace

KindList QueriedTransactionKinds() {
  KindList kinds;
  for (const std::string_view name : FindContent("TransactionRet")->Find("TxnType")->words) {
    if (const Kind* kind = FindKind(name)) kinds.push_back(kind);
  }
  return kinds;
}

// Only an entry of the whole transaction that is the first of its kind is its summary: the others,
// such as the tax, are details without a line.
std::vector<Element> TransactionRows(const Call& call, const Target& transaction) {
  const Company& company = call.company.Data();
  const Kind& kind = *transaction.kind;
  const std::string_view level = call.element.ChildText("TransactionDetailLevelFilter");
  std::vector<Element> summary, details;
  ForEachEntry(kind, *transaction.object, company, [&](const Entry& entry) {
    const Target account = FindById(company, KindsNamed("Account"), entry.account);
    const bool isSummary = !entry.line && summary.empty();
    (isSummary ? summary : details)
        .push_back(RowOf(kind, *transaction.object, entry.line, account, entry.amount));
  });
  if (summary.empty()) {
    summary.push_back(
        RowOf(kind, *transaction.object, nullptr, {}, TotalOf(kind, *transaction.object)));
  }
  if (level == "AllExceptSummary") return details;
  if (level != "SummaryOnly") {
    std::ranges::move(details, std::back_inserter(summary));
  }
  return summary;
}

}  // namespace ostrel::simulator
