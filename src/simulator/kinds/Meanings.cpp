// Meanings go by names, since qbXML calls the same thing the same everywhere. A row that names an
// owner ("InvoiceLine") is for its fields only, one that does not is for all.
#include "simulator/kinds/Meanings.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <span>

namespace ostrel::simulator {
namespace {

using Words = std::span<const std::string_view>;

// References by the ends of their names; the first row that fits counts.
struct Reference {
  std::string_view ending;
  std::string_view refers;
};
constexpr Reference kReferences[] = {
    {"ParentSiteRef", "InventorySite"},
    {"SiteRef", "InventorySite"},
    {"SiteLocationRef", "InventorySite"},
    {"SupervisorRef", "Employee"},
    {"ItemSalesTaxRef", "SalesTaxItem"},
    {"ItemPurchaseTaxRef", "SalesTaxItem"},
    {"ItemInventoryAssemblyRef", "ItemInventoryAssembly"},
    {"ItemInventoryRef", "Item"},
    {"ItemGroupRef", "ItemGroup"},
    {"ItemServiceRef", "ItemService"},
    {"ItemRef", "Item"},
    {"AccountRef", "Account"},
    {"VendorRef", "Vendor"},
    {"EntityRef", "Entity"},
    {"ClassRef", "Class"},
    {"CustomerMsgRef", "CustomerMsg"},
    {"CustomerTypeRef", "CustomerType"},
    {"VendorTypeRef", "VendorType"},
    {"JobTypeRef", "JobType"},
    {"CustomerRef", "Customer"},
    {"EmployeeRef", "Employee"},
    {"LeadRef", "Lead"},
    {"TermsRef", "Terms"},
    {"SalesRepRef", "SalesRep"},
    {"PaymentMethodRef", "PaymentMethod"},
    {"ShipMethodRef", "ShipMethod"},
    {"TaxCodeRef", "SalesTaxCode"},
    {"VehicleRef", "Vehicle"},
    {"PayrollItemWageRef", "PayrollItemWage"},
    {"TemplateRef", "Template"},
    {"PriceLevelRef", "PriceLevel"},
    {"BillingRateRef", "BillingRate"},
    {"UnitOfMeasureSetRef", "UnitOfMeasureSet"},
    {"UOMSetRef", "UnitOfMeasureSet"},
    {"CurrencyRef", "Currency"},
};

constexpr std::string_view kReceivable[] = {"AccountsReceivable"};
constexpr std::string_view kPayable[] = {"AccountsPayable"};
constexpr std::string_view kBank[] = {"Bank"};
constexpr std::string_view kCreditCard[] = {"CreditCard"};
constexpr std::string_view kDeposited[] = {"Bank", "OtherCurrentAsset"};

// Accounts that must be of a type, and which one is meant where a transaction names none.
struct AccountRow {
  std::string_view owner;
  std::string_view field;
  Words types;
  std::string_view otherwise = {};
};
constexpr AccountRow kAccounts[] = {
    {"Check", "AccountRef", kBank},
    {"CreditCardCharge", "AccountRef", kCreditCard},
    {"CreditCardCredit", "AccountRef", kCreditCard},
    {"", "ARAccountRef", kReceivable, "AccountsReceivable"},
    {"", "APAccountRef", kPayable, "AccountsPayable"},
    {"Deposit", "DepositToAccountRef", kDeposited},
    {"", "DepositToAccountRef", kDeposited, "Bank"},
    {"", "BankAccountRef", kBank},
    {"", "CreditCardAccountRef", kCreditCard},
};

// What a new object has that was not given one.
struct Otherwise {
  std::string_view owner;
  std::string_view field;
  std::string_view value;
};
constexpr Otherwise kOtherwise[] = {
    {"", "IsActive", "true"},
    {"", "Balance", "0.00"},
    {"", "TotalBalance", "0.00"},
    {"", "JobStatus", "None"},
    {"", "CustomerSalesTaxCodeRef", "taxable"},
    {"", "PaymentMethodType", "Other"},
    {"", "IsVendorEligibleFor1099", "false"},
    {"StandardTerms", "StdDueDays", "0"},
    {"", "QuantityOnHand", "0"},
    {"", "AverageCost", "0.00"},
    {"", "QuantityOnOrder", "0"},
    {"", "QuantityOnSalesOrder", "0"},
    {"", "IsPrintItemsInGroup", "false"},
    {"", "IsPending", "false"},
    {"", "IsFinanceCharge", "false"},
    {"", "IsToBePrinted", "false"},
    {"", "IsToBeEmailed", "false"},
    {"", "IsManuallyClosed", "false"},
    {"", "IsFullyInvoiced", "false"},
    {"", "IsFullyReceived", "false"},
    {"", "IsAdjustment", "false"},
    {"", "AppliedAmount", "0.00"},
    {"", "UnusedCredits", "0.00"},
    {"SalesOrderLine", "Invoiced", "0"},
    {"PurchaseOrderLine", "ReceivedQuantity", "0"},
    {"PurchaseOrderLine", "UnbilledQuantity", "0"},
    {"PurchaseOrderLine", "IsBilled", "false"},
    {"ToDo", "IsDone", "false"},
};

// What QuickBooks needs although its messages may leave it out, or leave it empty.
struct Need {
  std::string_view owner;
  std::string_view field;
};
constexpr Need kNeeds[] = {
    {"SalesOrPurchase", "AccountRef"},
    {"SalesAndPurchase", "IncomeAccountRef"},
    {"SalesAndPurchase", "ExpenseAccountRef"},
    {"ItemInventory", "IncomeAccountRef"},
    {"ItemInventory", "COGSAccountRef"},
    {"ItemInventory", "AssetAccountRef"},
    {"ItemInventoryAssembly", "IncomeAccountRef"},
    {"ItemInventoryAssembly", "COGSAccountRef"},
    {"ItemInventoryAssembly", "AssetAccountRef"},
    {"ItemDiscount", "AccountRef"},
    {"ItemFixedAsset", "AssetAccountRef"},
    {"SalesRep", "SalesRepEntityRef"},
    {"Invoice", "CustomerRef"},
    {"CreditMemo", "CustomerRef"},
    {"Estimate", "CustomerRef"},
    {"SalesOrder", "CustomerRef"},
    {"ReceivePayment", "CustomerRef"},
    {"Charge", "CustomerRef"},
    {"ReceivePayment", "TotalAmount"},
    {"PurchaseOrder", "VendorRef"},
    {"Bill", "VendorRef"},
    {"VendorCredit", "VendorRef"},
    {"ItemReceipt", "VendorRef"},
    {"Check", "AccountRef"},
    {"CreditCardCharge", "AccountRef"},
    {"CreditCardCredit", "AccountRef"},
    {"ExpenseLine", "AccountRef"},
    {"JournalDebitLine", "AccountRef"},
    {"JournalCreditLine", "AccountRef"},
    {"Transfer", "TransferFromAccountRef"},
    {"Transfer", "TransferToAccountRef"},
    {"Transfer", "Amount"},
};

// Where the kinds of items keep what a line takes from its item.
constexpr std::string_view kSalesText[] = {"SalesOrPurchase/Desc", "SalesAndPurchase/SalesDesc",
                                           "SalesDesc", "ItemDesc"};
constexpr std::string_view kSalesPrice[] = {"SalesOrPurchase/Price", "SalesAndPurchase/SalesPrice",
                                            "SalesPrice", "DiscountRate"};
constexpr std::string_view kSalesPercent[] = {"SalesOrPurchase/PricePercent",
                                              "DiscountRatePercent"};
constexpr std::string_view kPurchaseText[] = {
    "SalesOrPurchase/Desc", "SalesAndPurchase/PurchaseDesc", "PurchaseDesc", "ItemDesc"};
constexpr std::string_view kPurchaseCost[] = {"SalesAndPurchase/PurchaseCost", "PurchaseCost",
                                              "SalesOrPurchase/Price"};
constexpr std::string_view kTaxCode[] = {"SalesTaxCodeRef"};
constexpr std::string_view kPartNumber[] = {"ManufacturerPartNumber"};

// The paths in a customer, vendor or payee from which a transaction takes what it was not given.
constexpr std::string_view kBillAddress[] = {"BillAddress"};
constexpr std::string_view kShipAddress[] = {"ShipAddress"};
constexpr std::string_view kTerms[] = {"TermsRef"};
constexpr std::string_view kSalesRep[] = {"SalesRepRef"};
constexpr std::string_view kSalesTax[] = {"ItemSalesTaxRef"};
constexpr std::string_view kTaxRate[] = {"TaxRate"};
constexpr std::string_view kVendorAddress[] = {"VendorAddress"};
constexpr std::string_view kPayeeAddress[] = {"VendorAddress", "BillAddress", "EmployeeAddress",
                                              "OtherNameAddress"};

struct SourceRow {
  std::string_view owner;  // or the end of its name
  std::string_view field;
  std::string_view reference;
  Words paths;
};
constexpr std::string_view kSales[] = {"Invoice", "SalesReceipt", "CreditMemo", "Estimate",
                                       "SalesOrder"};
constexpr SourceRow kOfSales[] = {
    {"", "BillAddress", "CustomerRef", kBillAddress},
    {"", "ShipAddress", "CustomerRef", kShipAddress},
    {"", "TermsRef", "CustomerRef", kTerms},
    {"", "SalesRepRef", "CustomerRef", kSalesRep},
    {"", "ItemSalesTaxRef", "CustomerRef", kSalesTax},
    {"", "SalesTaxPercentage", "ItemSalesTaxRef", kTaxRate},
    {"", "CustomerSalesTaxCodeRef", "CustomerRef", kTaxCode},
};
constexpr SourceRow kOfSalesLines[] = {
    {"", "Desc", "ItemRef", kSalesText},
    {"", "Rate", "ItemRef", kSalesPrice},
    {"", "RatePercent", "ItemRef", kSalesPercent},
    {"", "SalesTaxCodeRef", "ItemRef", kTaxCode},
};
constexpr SourceRow kOfOthers[] = {
    {"PurchaseOrder", "VendorAddress", "VendorRef", kVendorAddress},
    {"PurchaseOrder", "TermsRef", "VendorRef", kTerms},
    {"Bill", "VendorAddress", "VendorRef", kVendorAddress},
    {"Bill", "TermsRef", "VendorRef", kTerms},
    {"Check", "Address", "PayeeEntityRef", kPayeeAddress},
    {"BillPaymentCheck", "Address", "PayeeEntityRef", kPayeeAddress},
    {"SalesTaxPaymentCheck", "Address", "PayeeEntityRef", kPayeeAddress},
    {"PurchaseOrderLine", "Desc", "ItemRef", kPurchaseText},
    {"PurchaseOrderLine", "Rate", "ItemRef", kPurchaseCost},
    {"PurchaseOrderLine", "ManufacturerPartNumber", "ItemRef", kPartNumber},
    {"ItemLine", "Desc", "ItemRef", kPurchaseText},
    {"ItemLine", "Cost", "ItemRef", kPurchaseCost},
    {"Charge", "Desc", "ItemRef", kSalesText},
    {"Charge", "Rate", "ItemRef", kSalesPrice},
};

template <class Row, std::size_t n>
const Row* FindRow(const Row (&rows)[n], std::string_view owner, std::string_view field) {
  const auto found = std::ranges::find_if(rows, [&](const Row& row) {
    return row.field == field && (row.owner.empty() || row.owner == owner);
  });
  return found == std::end(rows) ? nullptr : &*found;
}

bool IsSale(std::string_view name) { return std::ranges::find(kSales, name) != std::end(kSales); }

const SourceRow* SourceOf(std::string_view owner, std::string_view field) {
  constexpr std::string_view kLine = "Line";
  if (IsSale(owner)) return FindRow(kOfSales, owner, field);
  if (owner.ends_with(kLine) && IsSale(owner.substr(0, owner.size() - kLine.size()))) {
    return FindRow(kOfSalesLines, owner, field);
  }
  return FindRow(kOfOthers, owner, field);
}

}  // namespace

std::string_view KindsReferredBy(std::string_view reference) {
  const auto found = std::ranges::find_if(
      kReferences, [&](const Reference& row) { return reference.ends_with(row.ending); });
  return found == std::end(kReferences) ? std::string_view() : found->refers;
}

std::string_view BaseName(std::string_view name) {
  for (const std::string_view ending : {"Ret", "Add", "Mod"}) {
    if (name.size() > ending.size() && name.ends_with(ending)) {
      return name.substr(0, name.size() - ending.size());
    }
  }
  return name;
}

void GiveMeaning(std::string_view kind, std::string_view owner, Field& field) {
  const std::string_view base = BaseName(owner);
  const std::string_view name = !field.name.empty()    ? field.name
                                : !field.inAdd.empty() ? field.inAdd
                                                       : field.inMod;
  if (field.type == FieldType::kReference) {
    field.refers = name == "ParentRef" ? kind : KindsReferredBy(name);
  }
  if (const AccountRow* row = FindRow(kAccounts, base, name)) {
    field.accountTypes = row->types;
    field.otherwise = row->otherwise;
  }
  if (const Otherwise* row = FindRow(kOtherwise, base, name)) {
    field.otherwise = row->value;
  }
  field.isNeeded = std::ranges::any_of(
      kNeeds, [&](const Need& need) { return need.owner == base && need.field == name; });
  if (const SourceRow* row = SourceOf(base, name)) field.source = {row->reference, row->paths};
}

}  // namespace ostrel::simulator
