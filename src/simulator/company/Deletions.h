// What a company remembers of objects that were deleted, for clients that keep a copy of its data.
#pragma once

#include "simulator/company/Draft.h"
#include "simulator/kinds/Kinds.h"
#include "simulator/values/Dates.h"

namespace ostrel::simulator {

/// Removes the object and remembers that. Beyond ten thousand deletions the oldest is forgotten.
/// At most one object of a draft.
void Delete(const Kind& kind, const Element& object, const Stamp& now, Draft& draft);

}  // namespace ostrel::simulator
