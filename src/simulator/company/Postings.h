// The effect of transactions on the balances of accounts, customers, vendors and items.
#pragma once

#include "simulator/company/Draft.h"
#include "simulator/kinds/Kinds.h"
#include "simulator/values/Decimal.h"

namespace ostrel::simulator {

/// Carries out the postings of a transaction in the draft.
void Post(const Kind& kind, const Element& transaction, Draft& draft);
/// Undoes the postings of a transaction that is changed or deleted.
void Reverse(const Kind& kind, const Element& transaction, Draft& draft);

/// Posts the opening balance of a new object to its own balance and to the totals above it.
void PostOpening(const Kind& kind, const Element& object, Draft& draft);
/// Moves the totals of all objects above a list object.
void MoveParents(const Kind& kind, const Element& object, Decimal amount, Draft& draft);

}  // namespace ostrel::simulator
