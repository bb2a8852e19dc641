// Operations on objects of every kind: their names, their order, and the references between them.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "simulator/company/Company.h"
#include "simulator/kinds/Kinds.h"
#include "simulator/values/Dates.h"
#include "simulator/xml/Element.h"

namespace ostrel::simulator {

/// The attribute of a list object that says how much of its balance it was given when it was made;
/// the rest comes from transactions.
inline constexpr std::string_view kOpeningBalance = "openingBalance";

/// The attribute of a transaction whose lines say which accounts they post to.
inline constexpr std::string_view kFixed = "fixed";

/// The attribute of an item in stock that says with how many it began; without it that is not
/// known.
inline constexpr std::string_view kOpeningQuantity = "openingQuantity";

/// Puts the children into the order in which a Ret holds them.
void Arrange(Element& object, std::span<const Field> fields);

/// The full name of a list object, or its name where its kind has no full names.
std::string_view FullNameOf(const Kind& kind, const Element& object);
/// Below the parent, if there is one, and of this name.
std::string JoinedName(std::string_view parentFullName, std::string_view name);

/// "5" of "SalesOrPurchase/Price"; null where something is missing or empty.
const Element* Follow(const Element& object, std::string_view path);
/// The first of these paths that leads somewhere.
const Element* Follow(const Element& object, std::span<const std::string_view> paths);

/// An object of a company, or nothing.
struct Target {
  const Kind* kind = nullptr;
  const Element* object = nullptr;
  explicit operator bool() const { return object != nullptr; }
};

/// The object that a reference names, by its ListID or else by its FullName, in a kind or family.
Target FindTarget(const Company& company, std::string_view kinds, const Element& reference);
/// Any object that has the ID.
Target FindById(const Company& company, const KindList& kinds, std::string_view id);
/// The object that a reference of an object leads to, by its name and ListID.
Target FindReferred(const Company& company, const Element& reference);
Target FindByName(const Company& company, const KindList& kinds, std::string_view fullName);
/// A reference to the target, by ListID and FullName.
Element ReferenceTo(std::string_view name, const Target& target);

/// Gives the object a new EditSequence and the time of this change.
void Touch(Element& object, const Stamp& now);

}  // namespace ostrel::simulator
