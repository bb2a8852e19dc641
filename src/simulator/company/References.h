// The references from one object to others: resolved when they come in, so that objects hold both
// the ListID and the FullName of what they refer to. The ListID counts; names may change.
#pragma once

#include <optional>
#include <set>
#include <span>
#include <string_view>

#include "simulator/company/Company.h"
#include "simulator/kinds/Fields.h"
#include "simulator/values/Status.h"
#include "simulator/xml/Element.h"

namespace ostrel::simulator {

/// Completes every reference in a message's object. Returns the status for the first one that names
/// nothing, or what may not stand there. `where` is the object's kind.
std::optional<Status> Resolve(Element& object, std::span<const Field> fields, Use use,
                              const Company& company, std::string_view where);

/// Gives references of an object that lack it their ListID, where they name something.
void Link(Element& object, std::span<const Field> fields, const Company& company);
/// Whether a reference lacks its ListID.
bool HasUnlinked(const Element& object, std::span<const Field> fields);

/// Whether a reference, or a payment's link, names neither an object of the company nor one of
/// these IDs.
bool HasDangling(const Kind& kind, const Element& object, const Company& company,
                 const std::set<std::string_view>& ids);

/// Whether any object of the company refers to the list object of that ListID.
bool IsInUse(const Company& company, std::string_view listId);

}  // namespace ostrel::simulator
