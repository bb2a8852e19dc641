// The sums of a transaction, and what it does to the balances of others.
#pragma once

#include <optional>

#include "simulator/company/Company.h"
#include "simulator/company/Draft.h"
#include "simulator/kinds/Kinds.h"
#include "simulator/values/Decimal.h"
#include "simulator/values/Status.h"

namespace ostrel::simulator {

/// Reckons the amounts of the lines from quantities and prices, then the sums. Lines get their IDs.
/// Returns the status for sums that cannot be.
std::optional<Status> Reckon(const Kind& kind, Element& transaction, const Company& company,
                             Numbers& numbers, const Stamp& now);

Decimal TotalOf(const Kind& kind, const Element& transaction);
Decimal OpenAmountOf(const Kind& kind, const Element& transaction);

/// Takes the amount off what is open, or gives it back when it is negative.
void ApplyAmount(const Kind& kind, Element& transaction, Decimal amount);

/// Carries out the transaction's postings, or takes them back.
/// Moves the totals of all that a list object lies below.
void MoveParents(const Kind& kind, const Element& object, Decimal amount, Draft& draft);
/// Moves an object's balance, and the totals above it, by what it was given when it was made.
void PostOpening(const Kind& kind, const Element& object, Draft& draft);
void Post(const Kind& kind, const Element& transaction, Draft& draft);
void TakeBack(const Kind& kind, const Element& transaction, Draft& draft);

}  // namespace ostrel::simulator
