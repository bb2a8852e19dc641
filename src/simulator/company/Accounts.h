// The accounts that QuickBooks makes by itself when it first needs them, as it knows them again.
#pragma once

#include <cstddef>
#include <string_view>

#include "simulator/company/Company.h"

namespace ostrel::simulator {

struct AccountDescription {
  SpecialAccount account;
  std::string_view special;  // SpecialAccountType
  std::string_view name;
  std::string_view type;  // AccountType
};
const AccountDescription& DescriptionOf(SpecialAccount account);
/// As SpecialAccountType calls it; kNone for a name that has no account here.
SpecialAccount SpecialAccountOf(std::string_view type);

/// Where the chart of accounts shows accounts of that type, from 0.
std::size_t PlaceInChart(std::string_view accountType);

/// Null when the company has none.
const Element* FindAccount(const Company& company, SpecialAccount account);

}  // namespace ostrel::simulator
