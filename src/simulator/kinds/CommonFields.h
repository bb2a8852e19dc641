// Parts that the tables of several kinds share.
#pragma once

#include "simulator/kinds/FieldShapes.h"

namespace ostrel::simulator {

inline constexpr auto kAddress =
    shape::Table(shape::Line("Addr1", 41), shape::Line("Addr2", 41), shape::Line("Addr3", 41),
                 shape::Line("Addr4", 41), shape::Line("Addr5", 41), shape::Line("City", 31),
                 shape::Line("State", 21), shape::Line("PostalCode", 13),
                 shape::Line("Country", 31), shape::Line("Note", 41));

// Types of accounts
inline constexpr std::string_view kReceivable[] = {"AccountsReceivable"};
inline constexpr std::string_view kPayable[] = {"AccountsPayable"};
inline constexpr std::string_view kBank[] = {"Bank"};

// Where the kinds of items keep what a line takes from its item.
inline constexpr std::string_view kSalesText[] = {
    "SalesOrPurchase/Desc", "SalesAndPurchase/SalesDesc", "SalesDesc", "ItemDesc"};
inline constexpr std::string_view kSalesPrice[] = {
    "SalesOrPurchase/Price", "SalesAndPurchase/SalesPrice", "SalesPrice", "DiscountRate"};
inline constexpr std::string_view kSalesPercent[] = {"SalesOrPurchase/PricePercent",
                                                     "DiscountRatePercent"};
inline constexpr std::string_view kIncomeAccount[] = {"SalesOrPurchase/AccountRef",
                                                      "SalesAndPurchase/IncomeAccountRef",
                                                      "IncomeAccountRef", "AccountRef"};
inline constexpr std::string_view kPurchaseText[] = {
    "SalesOrPurchase/Desc", "SalesAndPurchase/PurchaseDesc", "PurchaseDesc", "ItemDesc"};
inline constexpr std::string_view kPurchaseCost[] = {"SalesAndPurchase/PurchaseCost",
                                                     "PurchaseCost", "SalesOrPurchase/Price"};
inline constexpr std::string_view kExpenseAccount[] = {"SalesOrPurchase/AccountRef",
                                                       "SalesAndPurchase/ExpenseAccountRef",
                                                       "AssetAccountRef", "AccountRef"};
inline constexpr std::string_view kTaxCode[] = {"SalesTaxCodeRef"};

}  // namespace ostrel::simulator
