// The books of a hardware store before the first customer comes: accounts, terms, employees,
// services, and the balances with which the year begins.
#pragma once

#include "simulator/tool/Bookkeeper.h"
#include "simulator/tool/People.h"
#include "simulator/xml/Element.h"

namespace ostrel::simulator {

/// The company file without lists and transactions.
std::string_view EmptyBusiness();

void AddFixedLists(Bookkeeper& books, People& people, std::chrono::sys_days day);

/// A field that names an object of another list.
Element Ref(std::string_view field, std::string_view fullName);
/// "12.50" of 1250.
std::string MoneyText(std::int64_t cents);

}  // namespace ostrel::simulator
