// The kinds of transactions: with whom they are, the fields of their totals, and which balances
// they move to which side. The postings of a transaction to accounts come to the same amount on
// both sides.
#include <algorithm>
#include <array>
#include <iterator>

#include "simulator/kinds/Kinds.h"

namespace ostrel::simulator {
namespace {

// Where the kinds of items keep the accounts that their lines post to.
constexpr std::string_view kIncomeAccount[] = {
    "SalesOrPurchase/AccountRef", "SalesAndPurchase/IncomeAccountRef", "IncomeAccountRef",
    "AccountRef", "DepositToAccountRef"};
constexpr std::string_view kExpenseAccount[] = {"SalesOrPurchase/AccountRef",
                                                "SalesAndPurchase/ExpenseAccountRef",
                                                "AssetAccountRef", "AccountRef"};
constexpr std::string_view kCogsAccount[] = {"COGSAccountRef"};
constexpr std::string_view kAssetAccount[] = {"AssetAccountRef"};

constexpr Posting Whole(std::string_view reference, int side) {
  return {.reference = reference, .side = side};
}
constexpr Posting Tax(int side) {
  return {.measure = Measure::kTax,
          .side = side,
          .recorded = "taxAccount",
          .special = SpecialAccount::kSalesTaxPayable};
}
constexpr Posting Sold(std::string_view line, int side) {
  return {Measure::kAmount, line, "ItemRef", kIncomeAccount, side, "account"};
}
constexpr Posting Bought(std::string_view line, int side) {
  return {Measure::kAmount, line, "ItemRef", kExpenseAccount, side, "account"};
}
constexpr Posting CostOfSold(std::string_view line, int side) {
  return {Measure::kCost, line, "ItemRef", kCogsAccount, side, "cogs"};
}
constexpr Posting AssetOfSold(std::string_view line, int side) {
  return {Measure::kCost, line, "ItemRef", kAssetAccount, -side, "asset"};
}
constexpr Posting Stock(std::string_view line, int side, Measure value) {
  return {.measure = Measure::kQuantity,
          .line = line,
          .reference = "ItemRef",
          .side = side,
          .field = "QuantityOnHand",
          .value = value};
}
constexpr Posting Ordered(std::string_view line, std::string_view field) {
  return {.measure = Measure::kOpenQuantity, .line = line, .reference = "ItemRef", .field = field};
}
constexpr Posting Amounts(std::string_view line, std::string_view reference, int side) {
  return {.measure = Measure::kAmount, .line = line, .reference = reference, .side = side};
}

constexpr Posting kInvoicePostings[] = {Whole("CustomerRef", 1),
                                        Whole("ARAccountRef", 1),
                                        Tax(-1),
                                        Sold("InvoiceLineRet", -1),
                                        CostOfSold("InvoiceLineRet", 1),
                                        AssetOfSold("InvoiceLineRet", 1),
                                        Stock("InvoiceLineRet", -1, Measure::kCost)};
constexpr Posting kReceiptPostings[] = {
    Whole("DepositToAccountRef", 1),       Tax(-1),
    Sold("SalesReceiptLineRet", -1),       CostOfSold("SalesReceiptLineRet", 1),
    AssetOfSold("SalesReceiptLineRet", 1), Stock("SalesReceiptLineRet", -1, Measure::kCost)};
constexpr Posting kCreditPostings[] = {Whole("CustomerRef", -1),
                                       Whole("ARAccountRef", -1),
                                       Tax(1),
                                       Sold("CreditMemoLineRet", 1),
                                       CostOfSold("CreditMemoLineRet", -1),
                                       AssetOfSold("CreditMemoLineRet", -1),
                                       Stock("CreditMemoLineRet", 1, Measure::kCost)};
constexpr Posting kChargePostings[] = {
    Whole("CustomerRef", 1),
    Whole("ARAccountRef", 1),
    {.reference = "ItemRef", .paths = kIncomeAccount, .side = -1, .recorded = "account"}};
constexpr Posting kPaymentPostings[] = {
    Whole("CustomerRef", -1),
    Whole("ARAccountRef", -1),
    Whole("DepositToAccountRef", 1),
    {.measure = Measure::kDiscount, .reference = "CustomerRef", .side = -1},
    {.measure = Measure::kDiscount, .reference = "ARAccountRef", .side = -1},
    {.measure = Measure::kLineDiscount,
     .line = "AppliedToTxnRet",
     .reference = "DiscountAccountRef",
     .side = 1}};
constexpr Posting kRefundPostings[] = {Whole("CustomerRef", 1), Whole("ARAccountRef", 1),
                                       Whole("RefundFromAccountRef", -1)};

constexpr Posting kSalesOrderPostings[] = {Ordered("SalesOrderLineRet", "QuantityOnSalesOrder")};
constexpr Posting kPurchaseOrderPostings[] = {Ordered("PurchaseOrderLineRet", "QuantityOnOrder")};

constexpr Posting kBillPostings[] = {
    Whole("VendorRef", -1), Whole("APAccountRef", -1), Amounts("ExpenseLineRet", "AccountRef", 1),
    Bought("ItemLineRet", 1), Stock("ItemLineRet", 1, Measure::kAmount)};
constexpr Posting kVendorCreditPostings[] = {
    Whole("VendorRef", 1), Whole("APAccountRef", 1), Amounts("ExpenseLineRet", "AccountRef", -1),
    Bought("ItemLineRet", -1), Stock("ItemLineRet", -1, Measure::kAmount)};
constexpr Posting kCheckPostings[] = {
    Whole("AccountRef", -1), Amounts("ExpenseLineRet", "AccountRef", 1), Bought("ItemLineRet", 1),
    Stock("ItemLineRet", 1, Measure::kAmount)};
constexpr Posting kCardCreditPostings[] = {
    Whole("AccountRef", 1), Amounts("ExpenseLineRet", "AccountRef", -1), Bought("ItemLineRet", -1),
    Stock("ItemLineRet", -1, Measure::kAmount)};
constexpr std::array<Posting, 6> BillPaidFrom(std::string_view account) {
  return {{Whole("PayeeEntityRef", 1),
           Whole("APAccountRef", 1),
           Whole(account, -1),
           {.measure = Measure::kDiscount, .reference = "PayeeEntityRef", .side = 1},
           {.measure = Measure::kDiscount, .reference = "APAccountRef", .side = 1},
           {.measure = Measure::kLineDiscount,
            .line = "AppliedToTxnRet",
            .reference = "DiscountAccountRef",
            .side = -1}}};
}
constexpr auto kBillCheckPostings = BillPaidFrom("BankAccountRef");
constexpr auto kBillCardPostings = BillPaidFrom("CreditCardAccountRef");
constexpr Posting kTaxCheckPostings[] = {
    Whole("BankAccountRef", -1),
    {.recorded = "taxAccount", .special = SpecialAccount::kSalesTaxPayable}};

constexpr Posting kEntryPostings[] = {
    Amounts("JournalDebitLine", "AccountRef", 1), Amounts("JournalDebitLine", "EntityRef", 1),
    Amounts("JournalCreditLine", "AccountRef", -1), Amounts("JournalCreditLine", "EntityRef", -1)};
constexpr Posting kDepositPostings[] = {
    Whole("DepositToAccountRef", 1), Amounts("CashBackInfoRet", "AccountRef", 1),
    Amounts("DepositLineRet", "AccountRef", -1), Amounts("DepositLineRet", "EntityRef", -1)};
constexpr Posting kTransferPostings[] = {Whole("TransferFromAccountRef", -1),
                                         Whole("TransferToAccountRef", 1)};
constexpr Posting kAdjustmentPostings[] = {
    {Measure::kCost, "InventoryAdjustmentLineRet", "ItemRef", kAssetAccount, 1, "asset"},
    {.measure = Measure::kCost,
     .line = "InventoryAdjustmentLineRet",
     .side = -1,
     .recorded = "account"},
    Stock("InventoryAdjustmentLineRet", 1, Measure::kCost)};
// The assembly takes up what its components give away.
constexpr Posting kBuildPostings[] = {
    {Measure::kCost, "ComponentItemLineRet", "ItemRef", kAssetAccount, -1, "asset"},
    {.measure = Measure::kCost, .line = "ComponentItemLineRet", .side = 1, .recorded = "account"},
    Stock("ComponentItemLineRet", -1, Measure::kCost),
    {.measure = Measure::kQuantity,
     .reference = "ItemInventoryAssemblyRef",
     .side = 1,
     .field = "QuantityOnHand"}};

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
    {.name = "SalesOrder",
     .entity = "CustomerRef",
     .sums = kSalesSums,
     .postings = kSalesOrderPostings,
     .numbered = true},
    {.name = "ReceivePayment",
     .entity = "CustomerRef",
     .sums = {.total = "TotalAmount", .open = "UnusedPayment", .given = true},
     .postings = kPaymentPostings,
     .pays = "OpenSale"},
    {.name = "PurchaseOrder",
     .entity = "VendorRef",
     .sums = {.total = "TotalAmount"},
     .postings = kPurchaseOrderPostings,
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
    {.name = "Charge",
     .entity = "CustomerRef",
     .sums = {.total = "Amount", .open = "BalanceRemaining", .paid = "IsPaid", .given = true},
     .postings = kChargePostings,
     .numbered = true},
    {.name = "ItemReceipt",
     .entity = "VendorRef",
     .sums = {.total = "TotalAmount"},
     .postings = kBillPostings},
    {.name = "VendorCredit",
     .entity = "VendorRef",
     .sums = {.total = "CreditAmount", .open = "OpenAmount"},
     .postings = kVendorCreditPostings},
    {.name = "BillPaymentCheck",
     .entity = "PayeeEntityRef",
     .sums = {.total = "Amount"},
     .postings = kBillCheckPostings,
     .pays = "Bill"},
    {.name = "BillPaymentCreditCard",
     .entity = "PayeeEntityRef",
     .sums = {.total = "Amount"},
     .postings = kBillCardPostings,
     .pays = "Bill"},
    {.name = "CreditCardCharge",
     .entity = "PayeeEntityRef",
     .sums = kAmountSum,
     .postings = kCheckPostings},
    {.name = "CreditCardCredit",
     .entity = "PayeeEntityRef",
     .sums = kAmountSum,
     .postings = kCardCreditPostings},
    {.name = "SalesTaxPaymentCheck",
     .entity = "PayeeEntityRef",
     .sums = kAmountSum,
     .postings = kTaxCheckPostings},
    {.name = "Deposit", .sums = {.total = "DepositTotal"}, .postings = kDepositPostings},
    {.name = "Transfer", .sums = {.total = "Amount", .given = true}, .postings = kTransferPostings},
    {.name = "ARRefundCreditCard",
     .entity = "CustomerRef",
     .sums = {.total = "TotalAmount"},
     .postings = kRefundPostings,
     .pays = "CreditMemo"},
    {.name = "InventoryAdjustment", .postings = kAdjustmentPostings, .numbered = true},
    {.name = "BuildAssembly", .postings = kBuildPostings, .numbered = true},
    {.name = "TransferInventory", .numbered = true},
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
