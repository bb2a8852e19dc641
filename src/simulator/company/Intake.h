// What some kinds of transactions say in their messages otherwise than in what they are: a deposit
// names payments, a build names an assembly, an adjustment of stock names new quantities.
#pragma once

#include <optional>

#include "simulator/company/Draft.h"
#include "simulator/values/Status.h"

namespace ostrel::simulator {

/// Completes a new transaction, as its Add has it, by what follows from the objects that it names.
/// Returns the status that refuses it.
std::optional<Status> TakeIn(const Kind& kind, Element& given, const Stamp& now, Draft& draft);

/// Computes a completed transaction of such a kind anew, when it is entered.
void WorkOut(const Kind& kind, Element& transaction, Draft& draft);

/// Gives back what only this transaction used up, before it is changed or deleted.
void GiveBack(const Kind& kind, const Element& transaction, const Stamp& now, Draft& draft);

}  // namespace ostrel::simulator
