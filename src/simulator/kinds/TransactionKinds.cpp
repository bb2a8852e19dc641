// The kinds of transactions: with whom they are, the fields of their totals, and which balances
// they move to which side.
#include <algorithm>
#include <array>
#include <iterator>

#include "simulator/kinds/Kinds.h"

namespace ostrel::simulator {
namespace {

// Where the kinds of items keep the accounts that their lines post to.
constexpr std::string_view kIncomeAccount[] = {"SalesOrPurchase/AccountRef",
                                               "SalesAndPurchase/IncomeAccountRef",
                                               "IncomeAccountRef", "AccountRef"};
constexpr std::string_view kExpenseAccount[] = {"SalesOrPurchase/AccountRef",
                                                "SalesAndPurchase/ExpenseAccountRef",
                                                "AssetAccountRef", "AccountRef"};

constexpr Posting kInvoicePostings[] = {
    {.reference = "CustomerRef"},
    {.reference = "ARAccountRef"},
    {Measure::kAmount, "InvoiceLineRet", "ItemRef", kIncomeAccount, -1},
    {Measure::kQuantity, "InvoiceLineRet", "ItemRef", {}, -1},
};
constexpr Posting kReceiptPostings[] = {
    {.reference = "DepositToAccountRef"},
    {Measure::kAmount, "SalesReceiptLineRet", "ItemRef", kIncomeAccount, -1},
    {Measure::kQuantity, "SalesReceiptLineRet", "ItemRef", {}, -1},
};
constexpr Posting kCreditPostings[] = {
    {.reference = "CustomerRef", .side = -1},
    {.reference = "ARAccountRef", .side = -1},
    {Measure::kAmount, "CreditMemoLineRet", "ItemRef", kIncomeAccount, 1},
    {Measure::kQuantity, "CreditMemoLineRet", "ItemRef", {}, 1},
};
constexpr Posting kPaymentPostings[] = {
    {.reference = "CustomerRef", .side = -1},
    {.reference = "ARAccountRef", .side = -1},
    {.reference = "DepositToAccountRef"},
};
constexpr Posting kBillPostings[] = {
    {.reference = "VendorRef", .side = -1},
    {.reference = "APAccountRef", .side = -1},
    {Measure::kAmount, "ExpenseLineRet", "AccountRef", {}, 1},
    {Measure::kAmount, "ItemLineRet", "ItemRef", kExpenseAccount, 1},
    {Measure::kQuantity, "ItemLineRet", "ItemRef", {}, 1},
};
constexpr Posting kVendorCreditPostings[] = {
    {.reference = "VendorRef", .side = 1},
    {.reference = "APAccountRef", .side = 1},
    {Measure::kAmount, "ExpenseLineRet", "AccountRef", {}, -1},
    {Measure::kAmount, "ItemLineRet", "ItemRef", kExpenseAccount, -1},
    {Measure::kQuantity, "ItemLineRet", "ItemRef", {}, -1},
};
constexpr Posting kCheckPostings[] = {
    {.reference = "AccountRef", .side = -1},
    {Measure::kAmount, "ExpenseLineRet", "AccountRef", {}, 1},
    {Measure::kAmount, "ItemLineRet", "ItemRef", kExpenseAccount, 1},
    {Measure::kQuantity, "ItemLineRet", "ItemRef", {}, 1},
};
constexpr Posting kCardCreditPostings[] = {
    {.reference = "AccountRef", .side = 1},
    {Measure::kAmount, "ExpenseLineRet", "AccountRef", {}, -1},
    {Measure::kAmount, "ItemLineRet", "ItemRef", kExpenseAccount, -1},
    {Measure::kQuantity, "ItemLineRet", "ItemRef", {}, -1},
};
constexpr Posting kEntryPostings[] = {
    {Measure::kAmount, "JournalDebitLine", "AccountRef", {}, 1},
    {Measure::kAmount, "JournalCreditLine", "AccountRef", {}, -1},
};

constexpr Sums kSalesSums = {
    .subtotal = "Subtotal", .tax = "SalesTaxTotal", .total = "TotalAmount"};
constexpr Sums kAmountSum = {.total = "Amount"};

constexpr Kind kKinds[] = {
    {.name = "Invoice",
     .entity = "CustomerRef",
     .sums = {.subtotal = "Subtotal",
              .tax = "SalesTaxTotal",
              .applied = "AppliedAmount",
              .open = "BalanceRemaining",
              .paid = "IsPaid"},
     .postings = kInvoicePostings,
     .numbered = true},
    {.name = "SalesReceipt",
     .entity = "CustomerRef",
     .sums = kSalesSums,
     .postings = kReceiptPostings,
     .numbered = true},
    {.name = "CreditMemo",
     .entity = "CustomerRef",
     .sums = {.subtotal = "Subtotal",
              .tax = "SalesTaxTotal",
              .total = "TotalAmount",
              .open = "CreditRemaining"},
     .postings = kCreditPostings,
     .numbered = true},
    {.name = "Estimate", .entity = "CustomerRef", .sums = kSalesSums, .numbered = true},
    {.name = "SalesOrder", .entity = "CustomerRef", .sums = kSalesSums, .numbered = true},
    {.name = "ReceivePayment",
     .entity = "CustomerRef",
     .sums = {.total = "TotalAmount", .open = "UnusedPayment", .given = true},
     .postings = kPaymentPostings,
     .pays = "Invoice"},
    {.name = "PurchaseOrder",
     .entity = "VendorRef",
     .sums = {.total = "TotalAmount"},
     .numbered = true},
    {.name = "Bill",
     .entity = "VendorRef",
     .sums = {.total = "AmountDue", .open = "OpenAmount", .paid = "IsPaid"},
     .postings = kBillPostings},
    {.name = "Check", .entity = "PayeeEntityRef", .sums = kAmountSum, .postings = kCheckPostings},
    {.name = "JournalEntry",
     .sums = {.balanced = true},
     .postings = kEntryPostings,
     .numbered = true},
    {.name = "VendorCredit",
     .entity = "VendorRef",
     .sums = {.total = "CreditAmount", .open = "OpenAmount"},
     .postings = kVendorCreditPostings},
    {.name = "CreditCardCharge",
     .entity = "PayeeEntityRef",
     .sums = kAmountSum,
     .postings = kCheckPostings},
    {.name = "CreditCardCredit",
     .entity = "PayeeEntityRef",
     .sums = kAmountSum,
     .postings = kCardCreditPostings},
    {.name = "TimeTracking", .entity = "EntityRef"},
    {.name = "VehicleMileage", .entity = "CustomerRef", .dateField = "TripStartDate"},
};

// All of them are transactions.
constexpr auto kTransactions = [] {
  std::array<Kind, std::size(kKinds)> kinds;
  std::copy(std::begin(kKinds), std::end(kKinds), kinds.begin());
  for (Kind& kind : kinds) kind.category = Category::kTransaction;
  return kinds;
}();

}  // namespace

std::span<const Kind> TransactionKinds() { return kTransactions; }

}  // namespace ostrel::simulator
