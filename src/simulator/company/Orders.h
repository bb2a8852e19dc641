// Transactions that carry out others: an invoice a sales order or an estimate, a bill or a receipt
// of goods a purchase order, a bill a receipt of goods. An order counts what has been invoiced or
// received of each of its lines, and closes itself when nothing is left.
#pragma once

#include <optional>

#include "simulator/company/Draft.h"
#include "simulator/values/Status.h"

namespace ostrel::simulator {

/// Gives a new transaction, as its Add has it, the lines that it takes over (LinkToTxnID), and its
/// lines what they take over (LinkToTxn). Returns the status that refuses a link.
std::optional<Status> TakeOver(const Kind& kind, Element& given, const Stamp& now, Draft& draft);

/// Counts in the orders what the lines of the transaction carry out, and links both.
void CarryOut(const Kind& kind, Element& transaction, const Stamp& now, Draft& draft);
/// Removes the links to orders from a transaction that is about to be entered anew.
void DropOrderLinks(const Kind& kind, Element& transaction);
/// Takes that back, before the transaction is changed or deleted.
void TakeBackOrders(const Kind& kind, const Element& transaction, const Stamp& now, Draft& draft);

}  // namespace ostrel::simulator
