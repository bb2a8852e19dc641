// The types by which filters name many objects at once: "BalanceSheet" for accounts, "Assembly" for
// items, "Vendor" for names.
#pragma once

#include <string_view>

#include "simulator/kinds/Kinds.h"
#include "simulator/xml/Element.h"

namespace ostrel::simulator {

/// The kinds that an EntityTypeFilter, ItemTypeFilter or AccountTypeFilter is about.
KindList KindsOfType(const Element& typeFilter);
/// Whether accounts of that AccountType are of the type that a filter names.
bool IsOfAccountType(std::string_view accountType, std::string_view filter);

}  // namespace ostrel::simulator
