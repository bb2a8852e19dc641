// The effect of transactions on the balances of accounts, customers, vendors and items, and on the
// totals of the objects above them. Everything here changes the draft only: nothing has happened
// until that is committed, and a transaction that is refused later leaves no balance behind.
#pragma once

#include "simulator/company/Draft.h"
#include "simulator/kinds/Kinds.h"
#include "simulator/values/Decimal.h"

namespace ostrel::simulator {

/// Carries out the postings of a transaction, whose totals have been computed and whose references
/// are resolved.
void Post(const Kind& kind, const Element& transaction, Draft& draft);
/// Undoes the postings of a transaction that is changed or deleted: takes it as it was when it was
/// posted, before any change.
void Reverse(const Kind& kind, const Element& transaction, Draft& draft);

/// Posts the opening balance of a new object to its own balance and to the totals above it.
void PostOpening(const Kind& kind, const Element& object, Draft& draft);
/// Moves the totals of all objects above a list object: when it gets another parent, once with the
/// negative total below the old one and once with the total below the new one.
void MoveParents(const Kind& kind, const Element& object, Decimal amount, Draft& draft);

}  // namespace ostrel::simulator
