// Custom fields: each belongs to an owner (0: the company's users, otherwise an application) and is
// defined before any object has a value of it. The values stand in their objects, in lines of
// transactions, and in a record of the company, as "DataExtRet".
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "simulator/company/Company.h"
#include "simulator/company/Draft.h"
#include "simulator/values/Status.h"

namespace ostrel::simulator {

/// The owner of the fields that the company's users see.
inline constexpr std::string_view kPublicOwner = "0";
/// More definitions than a company may have.
inline constexpr std::size_t kMostDefinitions = 500;

/// Letter case does not count in owners and names.
bool IsSameName(std::string_view one, std::string_view other);
/// Whether the child of an object is a value of a custom field.
bool IsCustomField(const Element& child);

/// Null when the owner has no field of that name.
const Element* FindDefinition(const Company& company, std::string_view owner,
                              std::string_view name);
/// Whether objects of that kind may have the field, in their lines or in themselves. A public field
/// of customers or vendors is one of their transactions too, one of items is one of their lines.
bool IsAssigned(const Element& definition, const Kind& kind, bool inLine);

/// A value of the field; `refusal` is set when the text is none of its type.
Element CustomValue(const Element& definition, std::string_view text,
                    std::optional<Status>& refusal);
/// Gives the values that an Add holds, in its object and in the lines, what their definitions say.
/// Returns the status that refuses one.
std::optional<Status> CompleteCustomFields(const Kind& kind, Element& object,
                                           const Company& company);

/// The value that the object or line has of the field, or null.
Element* FindCustomValue(Element& holder, const Element& definition);

/// Renames all values of a field, or removes them where `newName` is empty; of one kind of objects
/// ("Item", "Company") or, where that is empty, of all.
void ChangeCustomValues(const Element& definition, std::string_view assignedName,
                        std::string_view newName, Draft& draft);

}  // namespace ostrel::simulator
