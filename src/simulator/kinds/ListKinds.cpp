// The kinds of lists: names, accounts, items and the small lists of choices.
#include "simulator/kinds/Kinds.h"

namespace ostrel::simulator {
namespace {

constexpr std::string_view kCreditAccounts[] = {
    "AccountsPayable",       "CreditCard", "Equity", "Income", "LongTermLiability",
    "OtherCurrentLiability", "OtherIncome"};
constexpr std::string_view kEmployeeName[] = {"FirstName", "MiddleName", "LastName"};

constexpr Kind Item(std::string_view name, int priceSign = 1) {
  return {.name = name, .title = "Items", .family = "Item", .priceSign = priceSign};
}
constexpr Kind Small(std::string_view name, std::string_view title) {
  return {.name = name, .title = title};
}

constexpr Kind kKinds[] = {
    {.name = "Account",
     .title = "Accounts",
     .typeField = "AccountType",
     .creditTypes = kCreditAccounts},
    {.name = "Customer", .title = "Customers", .family = "Entity"},
    {.name = "Vendor", .title = "Vendors", .family = "Entity", .balanceSide = -1},
    {.name = "Employee", .title = "Employees", .family = "Entity", .nameParts = kEmployeeName},
    {.name = "OtherName", .title = "Other Names", .family = "Entity"},
    Small("Class", "Class"),
    {.name = "StandardTerms", .title = "Terms", .family = "Terms"},
    {.name = "DateDrivenTerms", .title = "Terms", .family = "Terms"},
    Small("PaymentMethod", "Payment Method"),
    {.name = "SalesRep", .title = "Sales Rep", .nameField = "Initial"},
    Small("CustomerType", "Customer Type"),
    Small("VendorType", "Vendor Type"),
    Small("JobType", "Job Type"),
    Small("ShipMethod", "Ship Via"),
    Small("CustomerMsg", "Customer Message"),
    Small("SalesTaxCode", "Sales Tax Code"),
    Item("ItemService"),
    Item("ItemNonInventory"),
    Item("ItemOtherCharge"),
    Item("ItemInventory"),
    Item("ItemInventoryAssembly"),
    Item("ItemFixedAsset"),
    Item("ItemSubtotal"),
    Item("ItemDiscount", -1),
    Item("ItemPayment"),
    Item("ItemSalesTax"),
    Item("ItemSalesTaxGroup"),
    Item("ItemGroup"),
    Small("UnitOfMeasureSet", "Unit of Measure"),
    Small("InventorySite", "Inventory Site"),
    Small("PriceLevel", "Price Level"),
    Small("BillingRate", "Billing Rate"),
    Small("PayrollItemWage", "Payroll Item"),
    Small("PayrollItemNonWage", "Payroll Item"),
    Small("WorkersCompCode", "Workers Comp Code"),
    Small("Currency", "Currency"),
    Small("Vehicle", "Vehicle"),
    Small("Template", "Template"),
    {.name = "Lead", .title = "Leads", .nameField = "FullName"},
    {.name = "ToDo", .title = "To Do", .nameField = "ListID"},
};

}  // namespace

std::span<const Kind> ListKinds() { return kKinds; }

}  // namespace ostrel::simulator
