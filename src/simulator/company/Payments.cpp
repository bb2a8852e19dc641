// What is open of a transaction goes down by what is paid, given as a discount, and set against it
// from a credit. The payment lists each of these in an AppliedToTxnRet, the paid transaction and
// the credit list the other one as linked, so that each can be taken back from either side.
#include "simulator/company/Payments.h"

#include <algorithm>

#include "simulator/company/Links.h"
#include "simulator/company/Objects.h"
#include "simulator/company/Postings.h"
#include "simulator/company/Totals.h"
#include "simulator/values/LongWork.h"

namespace ostrel::simulator {
namespace {

constexpr std::string_view kLinkRet = "AppliedToTxnRet";
constexpr std::string_view kRefundRet = "RefundAppliedToTxnRet";
constexpr std::string_view kAmountType = "AMTTYPE";

bool IsApplication(const Element& child) {
  return child.name.starts_with("AppliedToTxn") || child.name.starts_with("RefundAppliedToTxn");
}

bool IsRefund(const Kind& kind) { return kind.pays == "CreditMemo"; }

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

const KindList& Creditors(const Kind& paid) {
  static const KindList sales = {FindKind("CreditMemo")};
  static const KindList purchases = {FindKind("VendorCredit")};
  return paid.name == "Bill" ? purchases : sales;
}

std::optional<Status> SetOneCredit(const Kind& kind, std::string_view txnId, const Credit& credit,
                                   const Stamp& now, Draft& draft) {
  const TxnPlace place = FindTxn(draft, Creditors(kind), credit.txnId);
  if (!place) return NotFound(credit.txnId);
  const std::string amount = credit.amount.ToString(2);
  if (credit.amount <= Decimal()) {
    return InvalidValue(amount, "AppliedAmount", "The amount of a credit must be above zero.");
  }
  Element& given = draft.Edit(*place.kind, place.id);
  Element& paid = draft.Edit(kind, txnId);
  if (!MayPay(EntityId(*place.kind, given), EntityId(kind, paid), draft.Before())) {
    return InvalidReference(place.kind->name, credit.txnId, kind.name);
  }
  if (credit.amount > OpenAmountOf(*place.kind, given)) {
    return InvalidValue(amount, "AppliedAmount", "The credit is more than what is left of it.");
  }
  if (credit.amount > OpenAmountOf(kind, paid)) {
    return InvalidValue(amount, "AppliedAmount", "The credit is more than what is still open.");
  }
  ApplyAmount(kind, paid, credit.amount);
  ApplyAmount(*place.kind, given, credit.amount);
  AddLink(kind, paid, *place.kind, given, kAmountType, credit.amount.Negated());
  AddLink(*place.kind, given, kind, paid, kAmountType, credit.amount.Negated());
  Touch(given, now);
  return std::nullopt;
}

Element LinkTo(const Kind& payer, const Kind& kind, const Element& paid,
               const Application& application) {
  const bool isRefund = IsRefund(payer);
  Element link{.name = std::string(isRefund ? kRefundRet : kLinkRet)};
  link.Add("TxnID", application.txnId);
  link.Add("TxnType", kind.name);
  link.Add("TxnDate", paid.ChildText("TxnDate"));
  if (paid.Child("RefNumber")) link.Add("RefNumber", paid.ChildText("RefNumber"));
  link.Add(isRefund ? "RefundAmount" : "Amount", application.amount.ToString(2));
  if (!application.discount.IsZero()) {
    link.Add("DiscountAmount", application.discount.ToString(2));
    if (!application.account.name.empty()) link.children.push_back(application.account);
  }
  for (const Credit& credit : application.credits) {
    Element& linked = link.children.emplace_back(Element{.name = "LinkedTxn"});
    linked.Add("TxnID", credit.txnId);
    linked.Add("Amount", credit.amount.ToString(2));
  }
  return link;
}

std::optional<Status> ApplyOne(const Kind& kind, Element& payment, const Application& application,
                               const Stamp& now, Draft& draft) {
  Breathe();
  const TxnPlace place = FindTxn(draft, KindsNamed(kind.pays), application.txnId);
  if (!place) return NotFound(application.txnId);
  const Kind& paidKind = *place.kind;
  const Element& found = *draft.Find(paidKind, place.id);
  const std::string amount = application.amount.ToString(2);
  const bool isNothing = application.Settled() <= Decimal();
  if (isNothing || application.amount < Decimal() || application.discount < Decimal()) {
    return InvalidValue(amount, "PaymentAmount", "The amount of a payment must be above zero.");
  }
  if (application.Settled() > OpenAmountOf(paidKind, found)) {
    return InvalidValue(amount, "PaymentAmount", "The payment is more than what is still open.");
  }
  if (!MayPay(EntityId(kind, payment), EntityId(paidKind, found), draft.Before())) {
    return InvalidReference(paidKind.name, application.txnId, kind.name);
  }
  if (auto status = SetCredits(paidKind, place.id, application.credits, now, draft)) return status;
  Element& paid = draft.Edit(paidKind, place.id);
  const Decimal settled = application.amount + application.discount;
  ApplyAmount(paidKind, paid, settled);
  AddLink(paidKind, paid, kind, payment, kAmountType, settled.Negated());
  Touch(paid, now);
  payment.children.push_back(LinkTo(kind, paidKind, paid, application));
  return std::nullopt;
}

void SetUnused(const Kind& kind, Element& payment) {
  if (kind.sums.open.empty()) return;
  ApplyAmount(kind, payment, Decimal());
}

// A payment whose amount is not given is the sum of what it pays.
void SetTotal(const Kind& kind, Element& payment, const Applications& applications) {
  if (kind.sums.given) return;
  Decimal sum;
  for (const Application& application : applications) sum += application.amount;
  payment.Set(kind.sums.total, sum.ToString(2));
}

void TakeBackCredit(const Kind& paidKind, Element& paid, const Credit& credit, const Stamp& now,
                    Draft& draft) {
  const TxnPlace place = FindTxn(draft, Creditors(paidKind), credit.txnId);
  if (!place) return;
  Element& given = draft.Edit(*place.kind, place.id);
  ApplyAmount(*place.kind, given, credit.amount.Negated());
  ApplyAmount(paidKind, paid, credit.amount.Negated());
  DropLinks(given, paid.ChildText("TxnID"));
  DropLinks(paid, place.id);
  Touch(given, now);
}

// Removes a credit from the payments that it was taken with.
void ForgetCredit(std::string_view id, Draft& draft) {
  const auto isLink = [&](const Element& child) {
    return child.name == "LinkedTxn" && child.ChildText("TxnID") == id;
  };
  for (const Kind* payer : AllKinds()) {
    if (payer->pays.empty()) continue;
    for (const auto& [key, payment] : draft.Before().List(*payer).InOrder()) {
      Breathe();
      const bool isTaken = std::ranges::any_of(payment.children, [&](const Element& child) {
        return std::ranges::any_of(child.children, isLink);
      });
      if (!isTaken) continue;
      for (Element& child : draft.Edit(*payer, payment.ChildText("TxnID")).children) {
        std::erase_if(child.children, isLink);
      }
    }
  }
}

}  // namespace

Decimal Application::Settled() const {
  Decimal settled = amount + discount;
  for (const Credit& credit : credits) settled += credit.amount;
  return settled;
}

std::vector<Credit> CreditsOf(const Element& given) {
  std::vector<Credit> credits;
  for (const Element& child : given.children) {
    if (child.name == "SetCredit") {
      credits.push_back({std::string(child.ChildText("CreditTxnID")),
                         Decimal::Of(child.ChildText("AppliedAmount"))});
    } else if (child.name == "LinkedTxn" && given.name == kLinkRet) {
      credits.push_back(
          {std::string(child.ChildText("TxnID")), Decimal::Of(child.ChildText("Amount"))});
    }
  }
  return credits;
}

Applications ApplicationsOf(const Element& payment) {
  Applications applications;
  for (const Element& child : payment.children) {
    if (!IsApplication(child)) continue;
    const bool applied = child.name == kLinkRet;
    const bool refund = child.name.starts_with("Refund");
    const std::string_view field = refund ? "RefundAmount" : applied ? "Amount" : "PaymentAmount";
    const Element* account = child.Child("DiscountAccountRef");
    applications.push_back({std::string(child.ChildText("TxnID")),
                            Decimal::Of(child.ChildText(field)),
                            Decimal::Of(child.ChildText("DiscountAmount")),
                            account ? *account : Element(), CreditsOf(child)});
  }
  return applications;
}

Applications AutomaticApplications(const Kind& kind, const Element& payment,
                                   const Company& company) {
  Applications applications;
  Decimal left = TotalOf(kind, payment);
  for (const Kind* paidKind : KindsNamed(kind.pays)) {
    for (const auto* entry : company.List(*paidKind).FindByEntity(EntityId(kind, payment))) {
      const Decimal amount = std::min(left, OpenAmountOf(*paidKind, entry->second));
      if (amount <= Decimal()) continue;
      applications.push_back({std::string(entry->second.ChildText("TxnID")), amount});
      left += amount.Negated();
    }
  }
  return applications;
}

std::optional<Status> SetCredits(const Kind& kind, std::string_view txnId,
                                 const std::vector<Credit>& credits, const Stamp& now,
                                 Draft& draft) {
  for (const Credit& credit : credits) {
    BreatheLightly();
    if (auto status = SetOneCredit(kind, txnId, credit, now, draft)) return status;
  }
  return std::nullopt;
}

std::optional<Status> ApplyPayment(const Kind& kind, Element& payment,
                                   const Applications& applications, const Stamp& now,
                                   Draft& draft) {
  std::erase_if(payment.children, IsApplication);
  SetTotal(kind, payment, applications);
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
  for (const Application& application : ApplicationsOf(payment)) {
    const TxnPlace place = FindTxn(draft, KindsNamed(kind.pays), application.txnId);
    if (!place) continue;
    Element& paid = draft.Edit(*place.kind, place.id);
    ApplyAmount(*place.kind, paid, (application.amount + application.discount).Negated());
    DropLinks(paid, payment.ChildText("TxnID"));
    for (const Credit& credit : application.credits) {
      TakeBackCredit(*place.kind, paid, credit, now, draft);
    }
    Touch(paid, now);
  }
}

void ReleasePayments(const Kind& kind, const Element& paid, const Stamp& now, Draft& draft) {
  const std::string id(paid.ChildText("TxnID"));
  const auto isLink = [&](const Element& child) {
    return IsApplication(child) && child.ChildText("TxnID") == id;
  };
  for (const Kind* payer : AllKinds()) {
    const KindList& payable = KindsNamed(payer->pays);
    if (std::ranges::find(payable, &kind) == payable.end()) continue;
    for (const auto& [key, payment] : draft.Before().List(*payer).InOrder()) {
      Breathe();
      if (std::ranges::none_of(payment.children, isLink)) continue;
      Reverse(*payer, payment, draft);
      Element& released = draft.Edit(*payer, payment.ChildText("TxnID"));
      std::erase_if(released.children, isLink);
      SetUnused(*payer, released);
      Post(*payer, released, draft);
      Touch(released, now);
    }
  }
}

void ReleaseCredits(const Kind& kind, const Element& transaction, const Stamp& now, Draft& draft) {
  const auto isCredit = [](const Kind& any) {
    return any.name == "CreditMemo" || any.name == "VendorCredit";
  };
  for (const Element& link : transaction.children) {
    if (link.name != "LinkedTxn" || link.ChildText("LinkType") != kAmountType) continue;
    const Kind* other = FindKind(link.ChildText("TxnType"));
    if (!other || !other->pays.empty() || isCredit(kind) == isCredit(*other)) continue;
    const std::string id(link.ChildText("TxnID"));
    if (!draft.Find(*other, id)) continue;
    Element& partner = draft.Edit(*other, id);
    ApplyAmount(*other, partner, Decimal::Of(link.ChildText("Amount")));
    Touch(partner, now);
  }
  if (isCredit(kind)) ForgetCredit(transaction.ChildText("TxnID"), draft);
}

}  // namespace ostrel::simulator
