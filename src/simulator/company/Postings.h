// The effect of transactions on the balances of accounts, customers, vendors and items, and on the
// totals of the objects above them. Everything here changes the draft only: nothing has happened
// until that is committed, and a transaction that is refused later leaves no balance behind.
#pragma once

#include <functional>
#include <string>

#include "simulator/company/Draft.h"
#include "simulator/values/Decimal.h"

namespace ostrel::simulator {

/// One side of a transaction in an account's register.
struct Entry {
  std::string account;            // ListID
  Decimal amount;                 // debits above zero
  const Element* line = nullptr;  // that it comes from; null: from the whole transaction
  Measure measure = Measure::kTotal;
};

/// What the transaction posts to accounts; comes to nothing in all.
void ForEachEntry(const Kind& kind, const Element& transaction, const Company& company,
                  const std::function<void(const Entry&)>& visit);

/// Notes in a transaction and its lines which accounts they post to, and what the goods that they
/// move are worth, so that later changes of items leave the books alone. Its totals have been
/// computed and its references are resolved.
void FixAccounts(const Kind& kind, Element& transaction, Numbers& numbers, const Stamp& now,
                 Draft& draft);

/// Carries out the postings of a transaction.
void Post(const Kind& kind, const Element& transaction, Draft& draft);
/// Undoes the postings of a transaction that is changed or deleted: takes it as it was when it was
/// posted, before any change.
void Reverse(const Kind& kind, const Element& transaction, Draft& draft);

/// Notes in a new list object, whose balance or stock has been set, what it began with and which
/// accounts that is posted to.
void FixOpening(const Kind& kind, Element& object, Numbers& numbers, const Stamp& now,
                Draft& draft);
/// Posts the opening balance of a list object, to its own balance and the totals above it too
/// (`own`) or only to other accounts.
void PostOpening(const Kind& kind, const Element& object, bool own, Draft& draft);
/// What the opening balance of a list object posts to accounts.
void ForEachOpeningEntry(const Kind& kind, const Element& object,
                         const std::function<void(const Entry&)>& visit);
/// Takes the opening balance of an object that is about to be deleted back from other accounts.
void ReverseOpening(const Kind& kind, const Element& object, Draft& draft);
/// Moves the totals of all objects above a list object: when it gets another parent, once with the
/// negative total below the old one and once with the total below the new one.
void MoveParents(const Kind& kind, const Element& object, Decimal amount, Draft& draft);

/// 1 when the balance of the object is stored in debits, -1 when it is stored in credits.
int BalanceSide(const Kind& kind, const Element& object);

/// What one of an item in stock has cost.
Decimal AverageCostOf(const Element& item);
/// What all of an item in stock has cost.
Decimal StockValueOf(const Element& item);

}  // namespace ostrel::simulator
