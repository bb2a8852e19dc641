// What is open of the accounts receivable or payable on a day: invoices and bills as far as nothing
// has been applied to them yet, credits and payments as far as they have not been used.
#pragma once

#include <string>
#include <vector>

#include "simulator/company/Ledger.h"

namespace ostrel::simulator {

struct OpenItem {
  LedgerPosting posting;  // to the account receivable or payable; without an account: none is known
  Target entity;
  std::string dueDate;  // or the date, where none is due
  Decimal amount;       // what it was, above zero what is owed
  Decimal open;
};

/// The items of an account type ("AccountsReceivable", "AccountsPayable") by date that `passes`
/// takes. Without regard to what was done after the day `end`. Their open amounts come to the
/// balances of the entities.
std::vector<OpenItem> OpenItemsOf(const Company& company, std::string_view accountType,
                                  const std::string& end,
                                  const std::function<bool(const LedgerPosting&)>& passes);

}  // namespace ostrel::simulator
