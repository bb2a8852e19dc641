#include "simulator/company/Payments.h"

#include <algorithm>

#include "simulator/company/Objects.h"
#include "simulator/company/Totals.h"
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

Element LinkTo(const Kind& kind, const Element& paid, const Application& application) {
  Element link{.name = std::string(kLinkRet)};
  link.Add("TxnID", application.txnId);
  link.Add("TxnType", kind.name);
  link.Add("TxnDate", paid.ChildText("TxnDate"));
  if (paid.Child("RefNumber")) link.Add("RefNumber", paid.ChildText("RefNumber"));
  link.Add("Amount", application.amount.ToString(2));
  return link;
}

std::optional<Status> ApplyOne(const Kind& kind, Element& payment, const Application& application,
                               const Stamp& now, Draft& draft) {
  const Kind& paidKind = *FindKind(kind.pays);
  Breathe();
  const Element* found = draft.Find(paidKind, application.txnId);
  if (!found) return NotFound(application.txnId);
  const std::string amount = application.amount.ToString(2);
  if (application.amount <= Decimal()) {
    return InvalidValue(amount, "PaymentAmount", "The amount of a payment must be above zero.");
  }
  if (application.amount > OpenAmountOf(paidKind, *found)) {
    return InvalidValue(amount, "PaymentAmount", "The payment is more than what is still open.");
  }
  if (!MayPay(EntityId(kind, payment), EntityId(paidKind, *found), draft.Before())) {
    return InvalidReference(paidKind.name, application.txnId, kind.name);
  }
  Element& paid = draft.Edit(paidKind, application.txnId);
  ApplyAmount(paidKind, paid, application.amount);
  Touch(paid, now);
  payment.children.push_back(LinkTo(paidKind, paid, application));
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
  const Kind& paidKind = *FindKind(kind.pays);
  Applications applications;
  Decimal left = TotalOf(kind, payment);
  for (const auto* entry : company.List(paidKind).FindByEntity(EntityId(kind, payment))) {
    const Decimal amount = std::min(left, OpenAmountOf(paidKind, entry->second));
    if (amount <= Decimal()) continue;
    applications.push_back({std::string(entry->second.ChildText("TxnID")), amount});
    left += amount.Negated();
  }
  return applications;
}

std::optional<Status> ApplyPayment(const Kind& kind, Element& payment,
                                   const Applications& applications, const Stamp& now,
                                   Draft& draft) {
  payment.Drop(kLinkRet);
  for (const Application& application : applications) {
    if (auto status = ApplyOne(kind, payment, application, now, draft)) return status;
  }
  SetUnused(kind, payment);
  if (OpenAmountOf(kind, payment) < Decimal()) {
    return InvalidValue(payment.ChildText(kind.sums.total), kind.sums.total,
                        "More is applied than was paid.");
  }
  return std::nullopt;
}

void TakeBackPayment(const Kind& kind, const Element& payment, const Stamp& now, Draft& draft) {
  const Kind& paidKind = *FindKind(kind.pays);
  for (const Application& application : ApplicationsOf(payment)) {
    if (!draft.Find(paidKind, application.txnId)) continue;
    Element& paid = draft.Edit(paidKind, application.txnId);
    ApplyAmount(paidKind, paid, application.amount.Negated());
    Touch(paid, now);
  }
}

void ReleasePayments(const Kind& kind, const Element& paid, const Stamp& now, Draft& draft) {
  const std::string_view id = paid.ChildText("TxnID");
  const auto isLink = [&](const Element& child) {
    return child.name == kLinkRet && child.ChildText("TxnID") == id;
  };
  for (const Kind* payer : AllKinds()) {
    if (payer->pays != kind.name) continue;
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
