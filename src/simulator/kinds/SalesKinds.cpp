// The kinds of transactions with customers. The tables are read by the whole stand-in: the order of
// the fields is the order in which qbXML demands and returns them, "From" names the field of the
// customer or item that fills a missing one, Sums names the fields of the totals, and the postings
// say which balances a transaction moves and to which side. A field that several kinds share is
// written once, above them.
#include "simulator/kinds/CommonFields.h"
#include "simulator/kinds/Kinds.h"

namespace ostrel::simulator {
namespace {

using namespace shape;

constexpr std::string_view kDepositTypes[] = {"Bank", "OtherCurrentAsset"};
constexpr std::string_view kDueDate[] = {"TermsRef"};

// The paths in a customer or item from which a sale takes what it was not given.
constexpr std::string_view kBillAddress[] = {"BillAddress"};
constexpr std::string_view kShipAddress[] = {"ShipAddress"};
constexpr std::string_view kSalesRep[] = {"SalesRepRef"};
constexpr std::string_view kSalesTax[] = {"ItemSalesTaxRef"};
constexpr std::string_view kTaxRate[] = {"TaxRate"};

constexpr Field kCustomer = Needed(Ref("CustomerRef", "Customer"));
constexpr Field kClass = Ref("ClassRef", "Class");
constexpr Field kReceivableRef = AccountRef("ARAccountRef", kReceivable, "AccountsReceivable");
constexpr Field kBillTo = From("CustomerRef", kBillAddress, Group("BillAddress", kAddress));
constexpr Field kShipTo = From("CustomerRef", kShipAddress, Group("ShipAddress", kAddress));
constexpr Field kTerms = From("CustomerRef", kDueDate, Ref("TermsRef", "Terms"));
constexpr Field kRep = From("CustomerRef", kSalesRep, Ref("SalesRepRef", "SalesRep"));
constexpr Field kTaxItem = From("CustomerRef", kSalesTax, Ref("ItemSalesTaxRef", "ItemSalesTax"));
constexpr Field kTaxPercentage =
    Shown(From("ItemSalesTaxRef", kTaxRate, Percent("SalesTaxPercentage")));
constexpr Field kCustomerTaxCode =
    From("CustomerRef", kTaxCode, Ref("CustomerSalesTaxCodeRef", "SalesTaxCode"));
constexpr Field kTotal = Shown(Amount("TotalAmount"));
constexpr Field kSubtotal = Shown(Amount("Subtotal"));
constexpr Field kTax = Shown(Amount("SalesTaxTotal"));
constexpr Field kDeposit = AccountRef("DepositToAccountRef", kDepositTypes, "Bank");

constexpr auto kLine = LineObject(
    Ref("ItemRef", "Item"), From("ItemRef", kSalesText, Line("Desc", 4095)), Quantity("Quantity"),
    Line("UnitOfMeasure", 31), Either(1, From("ItemRef", kSalesPrice, Price("Rate"))),
    Either(1, From("ItemRef", kSalesPercent, Percent("RatePercent"))), Ref("ClassRef", "Class"),
    Amount("Amount"), Date("ServiceDate"),
    From("ItemRef", kTaxCode, Ref("SalesTaxCodeRef", "SalesTaxCode")), Line("Other1", 29),
    Line("Other2", 29));

constexpr auto kInvoice = Transaction(
    kCustomer, kClass, kReceivableRef, Date("TxnDate"), Line("RefNumber", 11), kBillTo, kShipTo,
    Flag("IsPending", "false"), In(kAdd | kRet, Flag("IsFinanceCharge", "false")),
    Line("PONumber", 25), kTerms, Date("DueDate"), kRep, Line("FOB", 13), Date("ShipDate"),
    Ref("ShipMethodRef", "ShipMethod"), kSubtotal, kTaxItem, kTaxPercentage, kTax,
    Shown(Amount("AppliedAmount", "0.00")), Shown(Amount("BalanceRemaining")), Line("Memo", 4095),
    Shown(Flag("IsPaid")), Ref("CustomerMsgRef", "CustomerMsg"), Flag("IsToBePrinted", "false"),
    Since(60, Flag("IsToBeEmailed", "false")), kCustomerTaxCode, Since(60, Line("Other", 29)),
    Lines("InvoiceLine", kLine));

constexpr auto kSalesReceipt = Transaction(
    kCustomer, kClass, Date("TxnDate"), Line("RefNumber", 11), kBillTo, kShipTo,
    Flag("IsPending", "false"), Line("CheckNumber", 25), Ref("PaymentMethodRef", "PaymentMethod"),
    Date("DueDate"), kRep, Date("ShipDate"), Ref("ShipMethodRef", "ShipMethod"), Line("FOB", 13),
    kSubtotal, kTaxItem, kTaxPercentage, kTax, kTotal, Line("Memo", 4095),
    Ref("CustomerMsgRef", "CustomerMsg"), Flag("IsToBePrinted", "false"),
    Since(60, Flag("IsToBeEmailed", "false")), kCustomerTaxCode, kDeposit,
    Since(60, Line("Other", 29)), Lines("SalesReceiptLine", kLine));

constexpr auto kCreditMemo =
    Transaction(kCustomer, kClass, kReceivableRef, Date("TxnDate"), Line("RefNumber", 11), kBillTo,
                kShipTo, Flag("IsPending", "false"), Line("PONumber", 25), kTerms, Date("DueDate"),
                kRep, Line("FOB", 13), Date("ShipDate"), Ref("ShipMethodRef", "ShipMethod"),
                kSubtotal, kTaxItem, kTaxPercentage, kTax, kTotal, Shown(Amount("CreditRemaining")),
                Line("Memo", 4095), Ref("CustomerMsgRef", "CustomerMsg"),
                Flag("IsToBePrinted", "false"), Since(60, Flag("IsToBeEmailed", "false")),
                kCustomerTaxCode, Since(60, Line("Other", 29)), Lines("CreditMemoLine", kLine));

constexpr auto kEstimate = Transaction(
    kCustomer, kClass, Date("TxnDate"), Line("RefNumber", 11), kBillTo, kShipTo,
    Flag("IsActive", "true"), Line("PONumber", 25), kTerms, Date("DueDate"), kRep, Line("FOB", 13),
    kSubtotal, kTaxItem, kTaxPercentage, kTax, kTotal, Line("Memo", 4095),
    Ref("CustomerMsgRef", "CustomerMsg"), Since(60, Flag("IsToBeEmailed", "false")),
    kCustomerTaxCode, Since(60, Line("Other", 29)), Lines("EstimateLine", kLine));

constexpr auto kSalesOrder = Transaction(
    kCustomer, kClass, Date("TxnDate"), Line("RefNumber", 11), kBillTo, kShipTo,
    Line("PONumber", 25), kTerms, Date("DueDate"), kRep, Line("FOB", 13), Date("ShipDate"),
    Ref("ShipMethodRef", "ShipMethod"), kSubtotal, kTaxItem, kTaxPercentage, kTax, kTotal,
    Flag("IsManuallyClosed", "false"), Shown(Flag("IsFullyInvoiced", "false")), Line("Memo", 4095),
    Ref("CustomerMsgRef", "CustomerMsg"), Flag("IsToBePrinted", "false"),
    Since(60, Flag("IsToBeEmailed", "false")), kCustomerTaxCode, Since(60, Line("Other", 29)),
    Lines("SalesOrderLine", kLine));

constexpr auto kApplied =
    Table(Needed(kAdd | kMod, Of(FieldType::kId, "TxnID")),
          Needed(kAdd | kMod, In(kAdd | kMod, Amount("PaymentAmount"))), Shown(Line("TxnType", 0)),
          Shown(Date("TxnDate")), Shown(Line("RefNumber", 0)), Shown(Amount("BalanceRemaining")),
          Shown(Amount("Amount")));

constexpr Field kAppliedTo = [] {
  Field field = Either(1, Many(Group("AppliedToTxn", kApplied)));
  field.suffixed = true;
  return field;
}();

constexpr auto kPayment =
    Transaction(kCustomer, kReceivableRef, Date("TxnDate"), Line("RefNumber", 20),
                Needed(Amount("TotalAmount")), Ref("PaymentMethodRef", "PaymentMethod"),
                Line("Memo", 4095), kDeposit, Either(1, In(kAdd, Flag("IsAutoApply"))),
                Shown(Amount("UnusedPayment")), Shown(Amount("UnusedCredits", "0.00")), kAppliedTo);

constexpr Posting kInvoicePostings[] = {
    {.reference = "CustomerRef"},
    {.reference = "ARAccountRef"},
    {Measure::kAmount, "InvoiceLine", "ItemRef", kIncomeAccount, -1},
    {Measure::kQuantity, "InvoiceLine", "ItemRef", {}, -1},
};
constexpr Posting kReceiptPostings[] = {
    {.reference = "DepositToAccountRef"},
    {Measure::kAmount, "SalesReceiptLine", "ItemRef", kIncomeAccount, -1},
    {Measure::kQuantity, "SalesReceiptLine", "ItemRef", {}, -1},
};
constexpr Posting kCreditPostings[] = {
    {.reference = "CustomerRef", .side = -1},
    {.reference = "ARAccountRef", .side = -1},
    {Measure::kAmount, "CreditMemoLine", "ItemRef", kIncomeAccount, 1},
    {Measure::kQuantity, "CreditMemoLine", "ItemRef", {}, 1},
};
constexpr Posting kPaymentPostings[] = {
    {.reference = "CustomerRef", .side = -1},
    {.reference = "ARAccountRef", .side = -1},
    {.reference = "DepositToAccountRef"},
};

constexpr Sums kSalesSums = {
    .subtotal = "Subtotal", .tax = "SalesTaxTotal", .total = "TotalAmount"};

constexpr Kind kKinds[] = {
    {.name = "Invoice",
     .category = Category::kTransaction,
     .fields = kInvoice,
     .entity = "CustomerRef",
     .sums = {.subtotal = "Subtotal",
              .tax = "SalesTaxTotal",
              .applied = "AppliedAmount",
              .open = "BalanceRemaining",
              .paid = "IsPaid"},
     .postings = kInvoicePostings,
     .numbered = true},
    {.name = "SalesReceipt",
     .category = Category::kTransaction,
     .fields = kSalesReceipt,
     .entity = "CustomerRef",
     .sums = kSalesSums,
     .postings = kReceiptPostings,
     .numbered = true},
    {.name = "CreditMemo",
     .category = Category::kTransaction,
     .fields = kCreditMemo,
     .entity = "CustomerRef",
     .sums = {.subtotal = "Subtotal",
              .tax = "SalesTaxTotal",
              .total = "TotalAmount",
              .open = "CreditRemaining"},
     .postings = kCreditPostings,
     .numbered = true},
    {.name = "Estimate",
     .category = Category::kTransaction,
     .fields = kEstimate,
     .entity = "CustomerRef",
     .sums = kSalesSums,
     .numbered = true},
    {.name = "SalesOrder",
     .category = Category::kTransaction,
     .fields = kSalesOrder,
     .entity = "CustomerRef",
     .sums = kSalesSums,
     .numbered = true},
    {.name = "ReceivePayment",
     .category = Category::kTransaction,
     .fields = kPayment,
     .entity = "CustomerRef",
     .sums = {.total = "TotalAmount", .open = "UnusedPayment", .given = true},
     .postings = kPaymentPostings,
     .pays = "Invoice"},
};

}  // namespace

std::span<const Kind> SalesKinds() { return kKinds; }

}  // namespace ostrel::simulator
