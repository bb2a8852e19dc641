// A transaction that is void: it stays where it was, and everything in it comes to nothing.
#pragma once

#include "simulator/kinds/Kinds.h"
#include "simulator/xml/Element.h"

namespace ostrel::simulator {

/// Sets the amounts and quantities of a transaction and of its lines to zero, drops what it applies
/// to others, and marks its memo with "VOID:". Its totals have to be computed after that.
void MakeVoid(const Kind& kind, Element& transaction);

}  // namespace ostrel::simulator
