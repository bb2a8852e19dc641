#include "simulator/company/Ledger.h"

#include <algorithm>
#include <iterator>

#include "simulator/company/Lines.h"
#include "simulator/company/Postings.h"
#include "simulator/values/LongWork.h"

namespace ostrel::simulator {
namespace {

constexpr std::size_t kDateLength = 10;

const ObjectList& Accounts(const Company& company) {
  static const Kind& kind = *FindKind("Account");
  return company.List(kind);
}

using Visitor = std::function<void(const LedgerPosting&)>;

void VisitOpening(const Company& company, const Kind& kind, const Element& object,
                  const LedgerPeriod& period, const Visitor& visit) {
  const std::string_view date = object.ChildText("TimeCreated").substr(0, kDateLength);
  if (!object.Find(kOpeningBalance) || !period.Has(date)) return;
  ForEachOpeningEntry(kind, object, [&](const Entry& entry) {
    const Element* account = Accounts(company).Find(entry.account);
    if (account) visit({&kind, &object, nullptr, account, date, entry.amount});
  });
}

void VisitTransaction(const Company& company, const Kind& kind, const Element& transaction,
                      const LedgerPeriod& period, const Visitor& visit) {
  const std::string_view date = transaction.ChildText(kind.dateField);
  if (!period.Has(date)) return;
  ForEachEntry(kind, transaction, company, [&](const Entry& entry) {
    const Element* account = Accounts(company).Find(entry.account);
    if (!account) return;
    visit({&kind, &transaction, entry.line, account, date, entry.amount, entry.measure});
  });
}

Target Referred(const Company& company, std::string_view kinds, const Element* reference) {
  if (!reference) return {};
  return FindById(company, KindsNamed(kinds), reference->ChildText("ListID"));
}

const Element* ReferenceOf(const LedgerPosting& posting, std::string_view name) {
  const Element* ofLine = posting.line ? posting.line->Child(name) : nullptr;
  return ofLine ? ofLine : posting.source->Child(name);
}

}  // namespace

void ForEachPosted(const Company& company, const LedgerPeriod& period, const Visitor& visit) {
  for (const Kind* kind : AllKinds()) {
    if (kind->category == Category::kRecord) continue;
    const bool isList = kind->category == Category::kList;
    for (const auto& [key, object] : company.List(*kind).InOrder()) {
      BreatheLightly();
      (isList ? VisitOpening : VisitTransaction)(company, *kind, object, period, visit);
    }
  }
}

Target EntityOf(const LedgerPosting& posting, const Company& company) {
  if (posting.IsOpening()) {
    return posting.kind->family == "Entity" ? Target{posting.kind, posting.source} : Target();
  }
  for (const std::string_view name : {"EntityRef", "CustomerRef"}) {
    const Element* reference = posting.line ? posting.line->Child(name) : nullptr;
    if (const Target entity = Referred(company, "Entity", reference)) return entity;
  }
  return Referred(company, "Entity", posting.source->Child(posting.kind->entity));
}

Target ItemOf(const LedgerPosting& posting, const Company& company) {
  if (posting.IsOpening()) {
    return posting.kind->family == "Item" ? Target{posting.kind, posting.source} : Target();
  }
  const Element& line = posting.line ? *posting.line : *posting.source;
  return Referred(company, "Item", line.Child("ItemRef"));
}

Target ClassOf(const LedgerPosting& posting, const Company& company) {
  return Referred(company, "Class", ReferenceOf(posting, "ClassRef"));
}

Decimal DebitBalanceOf(const Kind& kind, const Element& object) {
  const Decimal balance = Decimal::Of(object.ChildText("Balance"));
  return BalanceSide(kind, object) < 0 ? balance.Negated() : balance;
}

bool IsOfProfitAndLoss(const Element& account) {
  constexpr std::string_view kTypes[] = {"Income", "CostOfGoodsSold", "Expense", "OtherIncome",
                                         "OtherExpense"};
  return std::ranges::find(kTypes, account.ChildText("AccountType")) != std::end(kTypes);
}

}  // namespace ostrel::simulator
