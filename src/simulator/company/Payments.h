// Payment application: parts of a payment are applied to open transactions, taken back and
// released.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "simulator/company/Draft.h"
#include "simulator/kinds/Kinds.h"
#include "simulator/values/Decimal.h"
#include "simulator/values/Status.h"

namespace ostrel::simulator {

/// The part of a payment that pays one transaction.
struct Application {
  std::string txnId;
  Decimal amount;
};
using Applications = std::vector<Application>;

/// The applications that a message asks for or that a payment holds.
Applications ApplicationsOf(const Element& payment);
/// Applications to the payer's open transactions, the oldest first, until the payment is used up.
Applications AutomaticApplications(const Kind& kind, const Element& payment,
                                   const Company& company);

/// Applies the amounts, and lists them in the payment. Returns the status that refuses one.
std::optional<Status> ApplyPayment(const Kind& kind, Element& payment,
                                   const Applications& applications, const Stamp& now,
                                   Draft& draft);
/// Opens the paid transactions again, before the payment is changed or deleted.
void TakeBackPayment(const Kind& kind, const Element& payment, const Stamp& now, Draft& draft);
/// Removes a transaction that is about to be deleted from the payments that were applied to it.
void ReleasePayments(const Kind& kind, const Element& paid, const Stamp& now, Draft& draft);

}  // namespace ostrel::simulator
