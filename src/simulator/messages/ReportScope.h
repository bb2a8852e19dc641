// What a report is asked to cover: its period, and the accounts, entities, items, classes and types
// of transactions to which filters narrow it.
#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "simulator/company/Ledger.h"
#include "simulator/messages/Message.h"

namespace ostrel::simulator {

struct ReportScope {
  DateRange range;
  LedgerPeriod period;
  std::chrono::sys_days today;
  /// The last day of the period: what balances are as of.
  std::chrono::sys_days end;
  using Filter = std::function<bool(const LedgerPosting&, const Company&)>;
  std::vector<Filter> filters = {};
  /// The status of a report that cannot be made.
  std::optional<Status> refusal = {};

  bool Passes(const LedgerPosting& posting, const Company& company) const;
};

ReportScope ScopeOf(const Call& call);

/// Visits the postings of a period, that of the report or another, which pass the filters.
void ForEachInScope(const ReportScope& scope, const LedgerPeriod& period, const Company& company,
                    const std::function<void(const LedgerPosting&)>& visit);

}  // namespace ostrel::simulator
