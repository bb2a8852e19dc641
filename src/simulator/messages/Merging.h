// How a message's object becomes one of the company's.
#pragma once

#include <optional>

#include "simulator/messages/Messages.h"

namespace ostrel::simulator {

/// The object of an AddRq without the fields that hold nothing.
Element Cleaned(const Element& source);

/// Removes what an AddRq may say and an object does not hold.
void DropPassing(Element& object, std::span<const Field> fields);

/// Gives `object` what a ModRq gives: a field that holds nothing takes away the object's. Lines,
/// IDs and EditSequence are left alone.
void Merge(Element& object, const Element& given);

/// The object that a ModRq is about; or the response that refuses: there is none of that ID, or it
/// has changed since the client read it, and is returned as it is now.
std::optional<Response> FindForChange(const Call& call, const Element& given,
                                      const Element*& object);

}  // namespace ostrel::simulator
