#include "simulator/messages/TypeFilters.h"

#include <algorithm>
#include <iterator>

namespace ostrel::simulator {
namespace {

// The words are blanked, so that each is found whole.
struct TypeWords {
  std::string_view filter;
  std::string_view words;
};

constexpr TypeWords kItemTypes[] = {
    {"Assembly", " ItemInventoryAssembly "},
    {"Discount", " ItemDiscount "},
    {"FixedAsset", " ItemFixedAsset "},
    {"Inventory", " ItemInventory "},
    {"InventoryAndAssembly", " ItemInventory ItemInventoryAssembly "},
    {"NonInventory", " ItemNonInventory "},
    {"OtherCharge", " ItemOtherCharge "},
    {"Payment", " ItemPayment "},
    {"Sales",
     " ItemService ItemNonInventory ItemOtherCharge ItemInventory ItemInventoryAssembly "
     "ItemGroup "},
    {"SalesTax", " ItemSalesTax ItemSalesTaxGroup "},
    {"Service", " ItemService "},
};

constexpr TypeWords kAccountTypes[] = {
    {"APAndSalesTax", " AccountsPayable OtherCurrentLiability "},
    {"APOrCreditCard", " AccountsPayable CreditCard "},
    {"ARAndAP", " AccountsReceivable AccountsPayable "},
    {"Asset", " Bank AccountsReceivable OtherCurrentAsset FixedAsset OtherAsset "},
    {"BalanceSheet",
     " Bank AccountsReceivable OtherCurrentAsset FixedAsset OtherAsset AccountsPayable CreditCard "
     "OtherCurrentLiability LongTermLiability Equity "},
    {"BankAndARAndAPAndUF", " Bank AccountsReceivable AccountsPayable OtherCurrentAsset "},
    {"BankAndUF", " Bank OtherCurrentAsset "},
    {"CostOfSales", " CostOfGoodsSold "},
    {"CurrentAsset", " Bank AccountsReceivable OtherCurrentAsset "},
    {"CurrentAssetAndExpense",
     " Bank AccountsReceivable OtherCurrentAsset CostOfGoodsSold Expense OtherExpense "},
    {"CurrentLiability", " AccountsPayable CreditCard OtherCurrentLiability "},
    {"EquityAndIncomeAndExpense",
     " Equity Income OtherIncome CostOfGoodsSold Expense OtherExpense "},
    {"ExpenseAndOtherExpense", " CostOfGoodsSold Expense OtherExpense "},
    {"IncomeAndExpense", " Income OtherIncome CostOfGoodsSold Expense OtherExpense "},
    {"IncomeAndOtherIncome", " Income OtherIncome "},
    {"Liability", " AccountsPayable CreditCard OtherCurrentLiability LongTermLiability "},
    {"LiabilityAndEquity",
     " AccountsPayable CreditCard OtherCurrentLiability LongTermLiability Equity "},
    {"OrdinaryExpense", " Expense "},
    {"OrdinaryIncome", " Income "},
    {"OrdinaryIncomeAndCOGS", " Income CostOfGoodsSold "},
    {"OrdinaryIncomeAndExpense", " Income CostOfGoodsSold Expense "},
    {"OtherIncomeOrExpense", " OtherIncome OtherExpense "},
    {"AllowedFor1099", " CostOfGoodsSold Expense OtherExpense FixedAsset OtherAsset "},
};

bool HasWholeWord(std::string_view words, std::string_view word) {
  const std::size_t at = words.find(word);
  if (at == std::string_view::npos) return false;
  const bool isWhole = words[at - 1] == ' ' && words[at + word.size()] == ' ';
  return isWhole || HasWholeWord(words.substr(at + word.size()), word);
}

}  // namespace

KindList KindsOfType(const Element& typeFilter) {
  if (typeFilter.name == "AccountTypeFilter") return KindsNamed("Account");
  if (typeFilter.name == "EntityTypeFilter") return KindsNamed(typeFilter.text);
  KindList kinds = KindsNamed("Item");
  const auto row = std::ranges::find(kItemTypes, typeFilter.text, &TypeWords::filter);
  std::erase_if(kinds, [&](const Kind* kind) {
    if (row == std::end(kItemTypes)) return kind->name == "ItemFixedAsset";
    return !HasWholeWord(row->words, kind->name);
  });
  return kinds;
}

bool IsOfAccountType(std::string_view accountType, std::string_view filter) {
  const auto row = std::ranges::find(kAccountTypes, filter, &TypeWords::filter);
  return row == std::end(kAccountTypes) ? accountType == filter
                                        : HasWholeWord(row->words, accountType);
}

}  // namespace ostrel::simulator
