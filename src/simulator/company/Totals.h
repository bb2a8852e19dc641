// The totals of a transaction: amounts of the lines, subtotal, tax, total, and what is left to pay.
#pragma once

#include <optional>

#include "simulator/company/Company.h"
#include "simulator/kinds/Kinds.h"
#include "simulator/values/Decimal.h"
#include "simulator/values/Status.h"

namespace ostrel::simulator {

/// Computes the amounts of the lines from quantities and prices, then the totals. Lines without an
/// ID get one. Returns the status that refuses totals out of balance or out of range.
std::optional<Status> ComputeTotals(const Kind& kind, Element& transaction, const Company& company,
                                    Numbers& numbers, const Stamp& now);

Decimal TotalOf(const Kind& kind, const Element& transaction);
/// The part of the total that is not paid yet; of a payment, the part that is not applied yet.
Decimal OpenAmountOf(const Kind& kind, const Element& transaction);

/// Reduces the open amount of a transaction; a negative amount increases it again.
void ApplyAmount(const Kind& kind, Element& transaction, Decimal amount);

}  // namespace ostrel::simulator
