#include "simulator/company/Accounts.h"

#include <algorithm>
#include <iterator>

namespace ostrel::simulator {
namespace {

constexpr AccountDescription kRows[] = {
    {SpecialAccount::kSalesTaxPayable, "SalesTaxPayable", "Sales Tax Payable",
     "OtherCurrentLiability"},
    {SpecialAccount::kUndepositedFunds, "UndepositedFunds", "Undeposited Funds",
     "OtherCurrentAsset"},
    {SpecialAccount::kOpeningBalanceEquity, "OpeningBalanceEquity", "Opening Balance Equity",
     "Equity"},
    {SpecialAccount::kUncategorizedIncome, "UncategorizedIncome", "Uncategorized Income", "Income"},
    {SpecialAccount::kUncategorizedExpenses, "UncategorizedExpenses", "Uncategorized Expenses",
     "Expense"},
    {SpecialAccount::kReceivable, "AccountsReceivable", "Accounts Receivable",
     "AccountsReceivable"},
    {SpecialAccount::kPayable, "AccountsPayable", "Accounts Payable", "AccountsPayable"},
};

constexpr std::string_view kChart[] = {"Bank",
                                       "AccountsReceivable",
                                       "OtherCurrentAsset",
                                       "FixedAsset",
                                       "OtherAsset",
                                       "AccountsPayable",
                                       "CreditCard",
                                       "OtherCurrentLiability",
                                       "LongTermLiability",
                                       "Equity",
                                       "Income",
                                       "CostOfGoodsSold",
                                       "Expense",
                                       "OtherIncome",
                                       "OtherExpense",
                                       "NonPosting"};

}  // namespace

std::size_t PlaceInChart(std::string_view accountType) {
  return static_cast<std::size_t>(std::ranges::find(kChart, accountType) - std::begin(kChart));
}

const AccountDescription& DescriptionOf(SpecialAccount account) {
  return *std::ranges::find(kRows, account, &AccountDescription::account);
}

SpecialAccount SpecialAccountOf(std::string_view type) {
  const auto found = std::ranges::find(kRows, type, &AccountDescription::special);
  return found == std::end(kRows) ? SpecialAccount::kNone : found->account;
}

// Accounts of a type that a company has but one of are told by their type, others by their name.
const Element* FindAccount(const Company& company, SpecialAccount account) {
  const AccountDescription& row = DescriptionOf(account);
  const ObjectList& accounts = company.List(*FindKind("Account"));
  const Element* named = accounts.FindByName(row.name);
  if (named && named->ChildText("AccountType") == row.type) return named;
  const bool byType = row.special == row.type;
  for (const auto& [key, object] : accounts.InOrder()) {
    const std::string_view special = object.ChildText("SpecialAccountType");
    const bool isIt =
        special == row.special || (byType && object.ChildText("AccountType") == row.type);
    if (isIt) return &object;
  }
  return nullptr;
}

}  // namespace ostrel::simulator
