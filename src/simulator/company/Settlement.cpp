#include "simulator/company/Settlement.h"

#include <algorithm>

#include "simulator/company/Objects.h"
#include "simulator/company/Reckoning.h"
#include "simulator/values/LongWork.h"

namespace ostrel::simulator {
namespace {

constexpr std::string_view kLink = "AppliedToTxn";
constexpr std::string_view kLinkRet = "AppliedToTxnRet";

std::string_view EntityId(const Kind& kind, const Element& transaction) {
  const Element* entity = transaction.Child(kind.entity);
  return entity ? entity->ChildText("ListID") : std::string_view();
}

// A customer may pay for its jobs.
bool MayPay(std::string_view payer, std::string_view debtor, const Company& company) {
  if (payer == debtor) return true;
  const Target paying = FindById(company, AllKinds(), payer);
  const Target owing = FindById(company, AllKinds(), debtor);
  if (!paying || !owing || paying.kind != owing.kind) return false;
  const std::string above = std::string(FullNameOf(*paying.kind, *paying.object)) + ':';
  return FullNameOf(*owing.kind, *owing.object).starts_with(above);
}

Element LinkTo(const Kind& kind, const Element& settled, const Application& application) {
  Element link{.name = std::string(kLinkRet)};
  link.Add("TxnID", application.txnId);
  link.Add("TxnType", kind.name);
  link.Add("TxnDate", settled.ChildText("TxnDate"));
  if (settled.Child("RefNumber")) link.Add("RefNumber", settled.ChildText("RefNumber"));
  link.Add("Amount", application.amount.ToString(2));
  return link;
}

std::optional<Status> SettleOne(const Kind& kind, Element& payment, const Application& application,
                                const Stamp& now, Draft& draft) {
  const Kind& settledKind = *FindKind(kind.settles);
  Breathe();
  const Element* found = draft.Find(settledKind, application.txnId);
  if (!found) return NotFound(application.txnId);
  const std::string amount = application.amount.ToString(2);
  if (application.amount <= Decimal()) {
    return InvalidValue(amount, "PaymentAmount", "The amount of a payment must be above zero.");
  }
  if (application.amount > OpenAmountOf(settledKind, *found)) {
    return InvalidValue(amount, "PaymentAmount", "The payment is more than what is still open.");
  }
  if (!MayPay(EntityId(kind, payment), EntityId(settledKind, *found), draft.Before())) {
    return InvalidReference(settledKind.name, application.txnId, kind.name);
  }
  Element& settled = draft.Edit(settledKind, application.txnId);
  ApplyAmount(settledKind, settled, application.amount);
  Touch(settled, now);
  payment.children.push_back(LinkTo(settledKind, settled, application));
  return std::nullopt;
}

void SetUnused(const Kind& kind, Element& payment) {
  Decimal unused = TotalOf(kind, payment);
  for (const Application& application : ApplicationsOf(payment)) {
    unused += application.amount.Negated();
  }
  payment.Set(kind.sums.open, unused.ToString(2));
}

}  // namespace

Applications ApplicationsOf(const Element& payment) {
  Applications applications;
  for (const Element& child : payment.children) {
    if (!child.name.starts_with(kLink)) continue;
    const bool applied = child.name == kLinkRet;
    applications.push_back({std::string(child.ChildText("TxnID")),
                            Decimal::Of(child.ChildText(applied ? "Amount" : "PaymentAmount"))});
  }
  return applications;
}

Applications AutomaticApplications(const Kind& kind, const Element& payment,
                                   const Company& company) {
  const Kind& settledKind = *FindKind(kind.settles);
  Applications applications;
  Decimal left = TotalOf(kind, payment);
  for (const auto* entry : company.List(settledKind).FindByEntity(EntityId(kind, payment))) {
    const Decimal amount = std::min(left, OpenAmountOf(settledKind, entry->second));
    if (amount <= Decimal()) continue;
    applications.push_back({std::string(entry->second.ChildText("TxnID")), amount});
    left += amount.Negated();
  }
  return applications;
}

std::optional<Status> Settle(const Kind& kind, Element& payment, const Applications& applications,
                             const Stamp& now, Draft& draft) {
  payment.Drop(kLinkRet);
  for (const Application& application : applications) {
    if (auto status = SettleOne(kind, payment, application, now, draft)) return status;
  }
  SetUnused(kind, payment);
  if (OpenAmountOf(kind, payment) < Decimal()) {
    return InvalidValue(payment.ChildText(kind.sums.total), kind.sums.total,
                        "More is applied than was paid.");
  }
  return std::nullopt;
}

void Unsettle(const Kind& kind, const Element& payment, const Stamp& now, Draft& draft) {
  const Kind& settledKind = *FindKind(kind.settles);
  for (const Application& application : ApplicationsOf(payment)) {
    if (!draft.Find(settledKind, application.txnId)) continue;
    Element& settled = draft.Edit(settledKind, application.txnId);
    ApplyAmount(settledKind, settled, application.amount.Negated());
    Touch(settled, now);
  }
}

void Release(const Kind& kind, const Element& settled, const Stamp& now, Draft& draft) {
  const std::string_view id = settled.ChildText("TxnID");
  const auto isLink = [&](const Element& child) {
    return child.name == kLinkRet && child.ChildText("TxnID") == id;
  };
  for (const Kind* payer : AllKinds()) {
    if (payer->settles != kind.name) continue;
    for (const auto& [key, payment] : draft.Before().List(*payer).InOrder()) {
      Breathe();
      if (std::ranges::none_of(payment.children, isLink)) continue;
      Element& released = draft.Edit(*payer, payment.ChildText("TxnID"));
      std::erase_if(released.children, isLink);
      SetUnused(*payer, released);
      Touch(released, now);
    }
  }
}

}  // namespace ostrel::simulator
