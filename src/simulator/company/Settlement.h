// Payments and what they pay: amounts of a payment are applied to open transactions.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "simulator/company/Draft.h"
#include "simulator/kinds/Kinds.h"
#include "simulator/values/Decimal.h"
#include "simulator/values/Status.h"

namespace ostrel::simulator {

struct Application {
  std::string txnId;
  Decimal amount;
};
using Applications = std::vector<Application>;

/// Those that a message or a payment names.
Applications ApplicationsOf(const Element& payment);
/// To what the payer owes, the oldest first, until the payment is used up.
Applications AutomaticApplications(const Kind& kind, const Element& payment,
                                   const Company& company);

/// Applies the amounts; the payment says so then. Returns the status for one that cannot be.
std::optional<Status> Settle(const Kind& kind, Element& payment, const Applications& applications,
                             const Stamp& now, Draft& draft);
/// Opens again what the payment has paid.
void Unsettle(const Kind& kind, const Element& payment, const Stamp& now, Draft& draft);
/// Takes a transaction that is going away out of the payments that were applied to it.
void Release(const Kind& kind, const Element& settled, const Stamp& now, Draft& draft);

}  // namespace ostrel::simulator
