// Transactions with vendors, checks, and the general journal.
#include "simulator/kinds/CommonFields.h"
#include "simulator/kinds/Kinds.h"

namespace ostrel::simulator {
namespace {

using namespace shape;

constexpr std::string_view kTermsOf[] = {"TermsRef"};
constexpr std::string_view kAddressOf[] = {"VendorAddress"};
constexpr std::string_view kPayeeAddress[] = {"VendorAddress", "BillAddress", "EmployeeAddress",
                                              "OtherNameAddress"};

constexpr Field kTerms = From("VendorRef", kTermsOf, Ref("TermsRef", "Terms"));

constexpr auto kExpense = LineObject(AccountRef("AccountRef"), Amount("Amount"), Line("Memo", 4095),
                                     Ref("CustomerRef", "Customer"), Ref("ClassRef", "Class"));

constexpr auto kItem = LineObject(
    Ref("ItemRef", "Item"), From("ItemRef", kPurchaseText, Line("Desc", 4095)),
    Quantity("Quantity"), Line("UnitOfMeasure", 31), From("ItemRef", kPurchaseCost, Price("Cost")),
    Amount("Amount"), Ref("CustomerRef", "Customer"), Ref("ClassRef", "Class"));

constexpr auto kOrderLine =
    LineObject(Ref("ItemRef", "Item"), Line("ManufacturerPartNumber", 31),
               From("ItemRef", kPurchaseText, Line("Desc", 4095)), Quantity("Quantity"),
               Line("UnitOfMeasure", 31), From("ItemRef", kPurchaseCost, Price("Rate")),
               Ref("ClassRef", "Class"), Amount("Amount"), Ref("CustomerRef", "Customer"),
               Date("ServiceDate"));

constexpr auto kPurchaseOrder = Transaction(
    Needed(Ref("VendorRef", "Vendor")), Ref("ClassRef", "Class"), Date("TxnDate"),
    Line("RefNumber", 11), From("VendorRef", kAddressOf, Group("VendorAddress", kAddress)),
    Group("ShipAddress", kAddress), kTerms, Date("DueDate"), Date("ExpectedDate"),
    Ref("ShipMethodRef", "ShipMethod"), Line("FOB", 13), Shown(Amount("TotalAmount")),
    Flag("IsManuallyClosed", "false"), Shown(Flag("IsFullyReceived", "false")), Line("Memo", 4095),
    Line("VendorMsg", 99), Flag("IsToBePrinted", "false"), Lines("PurchaseOrderLine", kOrderLine));

constexpr auto kBill = Transaction(
    Needed(Ref("VendorRef", "Vendor")), AccountRef("APAccountRef", kPayable, "AccountsPayable"),
    Date("TxnDate"), Date("DueDate"), Shown(Amount("AmountDue")), Line("RefNumber", 20), kTerms,
    Line("Memo", 4095), Shown(Flag("IsPaid")), Shown(Amount("OpenAmount")),
    Lines("ExpenseLine", kExpense), Lines("ItemLine", kItem));

constexpr auto kCheck = Transaction(
    Needed(AccountRef("AccountRef", kBank)), Ref("PayeeEntityRef", "Entity"), Line("RefNumber", 11),
    Date("TxnDate"), Shown(Amount("Amount")), Line("Memo", 4095),
    From("PayeeEntityRef", kPayeeAddress, Group("Address", kAddress)),
    Flag("IsToBePrinted", "false"), Lines("ExpenseLine", kExpense), Lines("ItemLine", kItem));

constexpr auto kEntryLine = Table(
    In(kRet, Of(FieldType::kId, "TxnLineID")), Needed(AccountRef("AccountRef")), Amount("Amount"),
    Line("Memo", 4095), Ref("EntityRef", "Entity"), Ref("ClassRef", "Class"));

// Debits and credits stand in any order among themselves.
constexpr Field EntryLines(std::string_view name) {
  Field field = In(kAdd | kRet, Lines(name, kEntryLine, 1));
  field.suffixed = false;
  return field;
}

constexpr auto kJournalEntry = Transaction(
    Date("TxnDate"), Line("RefNumber", 11), Line("Memo", 4095), Flag("IsAdjustment", "false"),
    EntryLines("JournalDebitLine"), EntryLines("JournalCreditLine"));

constexpr Posting kBillPostings[] = {
    {.reference = "VendorRef", .side = -1},
    {.reference = "APAccountRef", .side = -1},
    {Measure::kAmount, "ExpenseLine", "AccountRef", {}, 1},
    {Measure::kAmount, "ItemLine", "ItemRef", kExpenseAccount, 1},
    {Measure::kQuantity, "ItemLine", "ItemRef", {}, 1},
};
constexpr Posting kCheckPostings[] = {
    {.reference = "AccountRef", .side = -1},
    {Measure::kAmount, "ExpenseLine", "AccountRef", {}, 1},
    {Measure::kAmount, "ItemLine", "ItemRef", kExpenseAccount, 1},
    {Measure::kQuantity, "ItemLine", "ItemRef", {}, 1},
};
constexpr Posting kEntryPostings[] = {
    {Measure::kAmount, "JournalDebitLine", "AccountRef", {}, 1},
    {Measure::kAmount, "JournalCreditLine", "AccountRef", {}, -1},
};

constexpr Kind kKinds[] = {
    {.name = "PurchaseOrder",
     .category = Category::kTransaction,
     .fields = kPurchaseOrder,
     .entity = "VendorRef",
     .sums = {.total = "TotalAmount"},
     .numbered = true},
    {.name = "Bill",
     .category = Category::kTransaction,
     .fields = kBill,
     .entity = "VendorRef",
     .sums = {.total = "AmountDue", .open = "OpenAmount", .paid = "IsPaid"},
     .postings = kBillPostings},
    {.name = "Check",
     .category = Category::kTransaction,
     .fields = kCheck,
     .entity = "PayeeEntityRef",
     .sums = {.total = "Amount"},
     .postings = kCheckPostings},
    {.name = "JournalEntry",
     .category = Category::kTransaction,
     .fields = kJournalEntry,
     .sums = {.balanced = true},
     .postings = kEntryPostings,
     .numbered = true},
};

}  // namespace

std::span<const Kind> PurchaseKinds() { return kKinds; }

}  // namespace ostrel::simulator
