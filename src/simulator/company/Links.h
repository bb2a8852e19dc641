// Links between transactions: each of two that belong together lists the other in a LinkedTxn.
#pragma once

#include <string_view>

#include "simulator/company/Draft.h"
#include "simulator/values/Decimal.h"

namespace ostrel::simulator {

/// A transaction of a draft, by its kind and TxnID.
struct TxnPlace {
  const Kind* kind = nullptr;
  std::string id = {};
  explicit operator bool() const { return kind != nullptr; }
};

/// Finds a transaction of one of the kinds in the draft.
TxnPlace FindTxn(const Draft& draft, const KindList& kinds, std::string_view id);

/// Adds a LinkedTxn that leads to `to`, unless the kind has none.
void AddLink(const Kind& kind, Element& from, const Kind& toKind, const Element& to,
             std::string_view type, Decimal amount);
/// Removes what leads to the transaction of that TxnID.
void DropLinks(Element& from, std::string_view toId);
/// Removes from all transactions that it is linked to what leads to this one.
void DropLinksTo(const Element& transaction, const Stamp& now, Draft& draft);

}  // namespace ostrel::simulator
