// Payment application: parts of a payment are applied to open transactions, taken back and
// released. Credits of the same customer or vendor may be set against them, and discounts given.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "simulator/company/Draft.h"
#include "simulator/values/Decimal.h"
#include "simulator/values/Status.h"

namespace ostrel::simulator {

/// A part of a credit that is set against an open transaction.
struct Credit {
  std::string txnId;
  Decimal amount;
};

/// The part of a payment that pays one transaction.
struct Application {
  std::string txnId;
  Decimal amount = {};
  Decimal discount = {};
  Element account = {};  // DiscountAccountRef; without a name: none
  std::vector<Credit> credits = {};

  Decimal Settled() const;
};
using Applications = std::vector<Application>;

/// The applications that a message asks for or that a payment holds.
Applications ApplicationsOf(const Element& payment);
/// Applications to the payer's open transactions, the oldest first, until the payment is used up.
Applications AutomaticApplications(const Kind& kind, const Element& payment,
                                   const Company& company);

/// Applies the amounts, and lists them in the payment; a payment whose amount was not given comes
/// to their sum. Returns the status that refuses one.
std::optional<Status> ApplyPayment(const Kind& kind, Element& payment,
                                   const Applications& applications, const Stamp& now,
                                   Draft& draft);
/// Opens the paid transactions again, before the payment is changed or deleted.
void TakeBackPayment(const Kind& kind, const Element& payment, const Stamp& now, Draft& draft);
/// Removes a transaction that is about to be deleted from the payments that were applied to it.
void ReleasePayments(const Kind& kind, const Element& paid, const Stamp& now, Draft& draft);

/// Takes back the credits of a transaction that is about to be deleted, whether it gave or took
/// them.
void ReleaseCredits(const Kind& kind, const Element& transaction, const Stamp& now, Draft& draft);

/// The credits that a message sets against the transaction itself (SetCredit).
std::vector<Credit> CreditsOf(const Element& given);
/// Sets credits against an open transaction that is in the draft.
std::optional<Status> SetCredits(const Kind& kind, std::string_view txnId,
                                 const std::vector<Credit>& credits, const Stamp& now,
                                 Draft& draft);

}  // namespace ostrel::simulator
