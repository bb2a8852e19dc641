// The general ledger of a company: everything that its transactions and opening balances post to
// accounts, one posting after another. Reports are sums and lists of these.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "simulator/company/Company.h"
#include "simulator/company/Objects.h"
#include "simulator/kinds/Kinds.h"
#include "simulator/values/Decimal.h"

namespace ostrel::simulator {

/// One posting to an account.
struct LedgerPosting {
  const Kind* kind = nullptr;
  const Element* source = nullptr;  // a transaction, or the list object that began with a balance
  const Element* line = nullptr;    // of the transaction; null: the whole of it
  const Element* account = nullptr;
  std::string_view date = {};  // "2010-01-05"; of an opening, the day on which the object was made
  Decimal amount = {};         // debits above zero
  Measure measure = Measure::kTotal;

  bool IsOpening() const { return kind->category == Category::kList; }
};

/// The dates as texts, which compare as the dates do.
struct LedgerPeriod {
  std::string from = {};
  std::string to = "9999-12-31";

  bool Has(std::string_view date) const { return date >= from && date <= to; }
};

/// Visits the postings of the period: openings first, then kind by kind in the order of dates.
void ForEachPosted(const Company& company, const LedgerPeriod& period,
                   const std::function<void(const LedgerPosting&)>& visit);

/// The references of a posting; each is nothing where it has none. The entity is that of the line
/// where the line names one, and of the transaction otherwise.
Target EntityOf(const LedgerPosting& posting, const Company& company);
Target ItemOf(const LedgerPosting& posting, const Company& company);
Target ClassOf(const LedgerPosting& posting, const Company& company);

/// What the balance of an account or of a customer or vendor is now, in debits.
Decimal DebitBalanceOf(const Kind& kind, const Element& object);

/// Whether the account belongs to the profit and loss, and not to the balance sheet.
bool IsOfProfitAndLoss(const Element& account);

}  // namespace ostrel::simulator
