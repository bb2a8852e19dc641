// Makes the accounts that QuickBooks makes by itself when it first needs them.
#pragma once

#include <string>

#include "simulator/company/Draft.h"

namespace ostrel::simulator {

/// The ListID of the account, which the draft makes when the company has none.
std::string NeedAccount(SpecialAccount account, Numbers& numbers, const Stamp& now, Draft& draft);

}  // namespace ostrel::simulator
