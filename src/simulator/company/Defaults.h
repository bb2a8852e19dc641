// The values that an object gets although nobody gave them: IDs, times, and the values that follow
// from its references.
#pragma once

#include <span>

#include "simulator/company/Company.h"
#include "simulator/kinds/Kinds.h"
#include "simulator/values/Dates.h"
#include "simulator/xml/Element.h"

namespace ostrel::simulator {

/// Adds what a new object of the kind, or one written by hand, lacks. Its references are resolved.
void Complete(const Kind& kind, Element& object, const Company& company, Numbers& numbers,
              const Stamp& now);

/// Adds the fields that the object or line lacks and that have a source or a value otherwise.
void FillIn(Element& object, std::span<const Field> fields, const Company& company);
/// Fills in anew the fields that are always taken from their source, and that no client may give.
/// To be called after every change of the references that they follow.
void FillInDerived(Element& object, std::span<const Field> fields, const Company& company);

/// A field that QuickBooks needs and the object or one of its groups or lines lacks; null when it
/// has all.
const Field* FindMissing(const Element& object, std::span<const Field> fields);
/// Writes the addresses of the object once more as blocks, where its kind has those.
void MakeAddressBlocks(const Kind& kind, Element& object);
/// Makes Name, FullName and Sublevel of a list object from its parts and its parent, whose full
/// name is empty for an object at the top.
void MakeNames(const Kind& kind, Element& object, std::string_view parentFullName);

}  // namespace ostrel::simulator
