// The kinds of lists: names, accounts and the small lists of choices. The tables are read by the
// whole stand-in: the order of the fields is the order in which qbXML demands and returns them, and
// the fields of a row decide what its messages accept. Lists that differ only in their name share
// one table of fields.
#include "simulator/kinds/CommonFields.h"
#include "simulator/kinds/Kinds.h"

namespace ostrel::simulator {
namespace {

using namespace shape;

constexpr std::string_view kJobStatus[] = {"Awarded", "Closed",     "InProgress",
                                           "None",    "NotAwarded", "Pending"};
constexpr std::string_view kGender[] = {"Male", "Female"};
constexpr std::string_view kSalesTaxCountry[] = {"Australia", "Canada", "UK", "US"};
constexpr std::string_view kPaymentMethodTypes[] = {
    "AmericanExpress", "Cash",       "Check", "DebitCard",       "Discover", "ECheck",
    "GiftCard",        "MasterCard", "Other", "OtherCreditCard", "Visa"};
constexpr std::string_view kAccountTypes[] = {"AccountsPayable",
                                              "AccountsReceivable",
                                              "Bank",
                                              "CostOfGoodsSold",
                                              "CreditCard",
                                              "Equity",
                                              "Expense",
                                              "FixedAsset",
                                              "Income",
                                              "LongTermLiability",
                                              "NonPosting",
                                              "OtherAsset",
                                              "OtherCurrentAsset",
                                              "OtherCurrentLiability",
                                              "OtherExpense",
                                              "OtherIncome"};
constexpr std::string_view kCreditAccounts[] = {
    "AccountsPayable",       "CreditCard", "Equity", "Income", "LongTermLiability",
    "OtherCurrentLiability", "OtherIncome"};
constexpr std::string_view kEmployeeName[] = {"FirstName", "MiddleName", "LastName"};

constexpr auto kAccount = ListObject(
    Needed(Line("Name", 31)), Shown(Line("FullName", 159)), Flag("IsActive", "true"),
    Ref("ParentRef", "Account"), Shown(Integer("Sublevel")),
    Needed(Choice("AccountType", kAccountTypes)), Line("AccountNumber", 7), Line("BankNumber", 25),
    Line("Desc", 200), In(kAdd, Amount("OpenBalance")), In(kAdd, Date("OpenBalanceDate")),
    Shown(Amount("Balance", "0.00")), Shown(Amount("TotalBalance", "0.00")));

constexpr auto kCustomer = ListObject(
    Needed(Line("Name", 41)), Shown(Line("FullName", 209)), Flag("IsActive", "true"),
    Since(120, Ref("ClassRef", "Class")), Ref("ParentRef", "Customer"), Shown(Integer("Sublevel")),
    Line("CompanyName", 41), Line("Salutation", 15), Line("FirstName", 25), Line("MiddleName", 5),
    Line("LastName", 25), Since(120, Line("JobTitle", 41)), Group("BillAddress", kAddress),
    Group("ShipAddress", kAddress), Line("PrintAs", 41), Line("Phone", 21), Line("Mobile", 21),
    Line("Pager", 21), Line("AltPhone", 21), Line("Fax", 21), Line("Email", 1023),
    Since(120, Line("Cc", 1023)), Line("Contact", 41), Line("AltContact", 41),
    Ref("CustomerTypeRef", "CustomerType"), Ref("TermsRef", "Terms"),
    Ref("SalesRepRef", "SalesRep"), Shown(Amount("Balance", "0.00")),
    Shown(Amount("TotalBalance", "0.00")), In(kAdd, Amount("OpenBalance")),
    In(kAdd, Date("OpenBalanceDate")), Ref("SalesTaxCodeRef", "SalesTaxCode"),
    Ref("ItemSalesTaxRef", "ItemSalesTax"), Line("ResaleNumber", 15), Line("AccountNumber", 99),
    Amount("CreditLimit"), Ref("PreferredPaymentMethodRef", "PaymentMethod"),
    Choice("JobStatus", kJobStatus), Date("JobStartDate"), Date("JobProjectedEndDate"),
    Date("JobEndDate"), Line("JobDesc", 99), Ref("JobTypeRef", "JobType"), Line("Notes", 4095));

constexpr auto kVendor = ListObject(
    Needed(Line("Name", 41)), Flag("IsActive", "true"), Since(120, Ref("ClassRef", "Class")),
    Line("CompanyName", 41), Line("Salutation", 15), Line("FirstName", 25), Line("MiddleName", 5),
    Line("LastName", 25), Since(120, Line("JobTitle", 41)), Group("VendorAddress", kAddress),
    Line("PrintAs", 41), Line("Phone", 21), Line("Mobile", 21), Line("Pager", 21),
    Line("AltPhone", 21), Line("Fax", 21), Line("Email", 1023), Line("Contact", 41),
    Line("AltContact", 41), Line("NameOnCheck", 41), Line("AccountNumber", 99), Line("Notes", 4095),
    Ref("VendorTypeRef", "VendorType"), Ref("TermsRef", "Terms"), Amount("CreditLimit"),
    Line("VendorTaxIdent", 20), Flag("IsVendorEligibleFor1099", "false"),
    In(kAdd, Amount("OpenBalance")), In(kAdd, Date("OpenBalanceDate")),
    Shown(Amount("Balance", "0.00")));

constexpr auto kEmployee = ListObject(
    Shown(Line("Name", 41)), Flag("IsActive", "true"), Line("Salutation", 15),
    Needed(Line("FirstName", 25)), Line("MiddleName", 5), Line("LastName", 25),
    Since(120, Line("JobTitle", 41)), Group("EmployeeAddress", kAddress), Line("PrintAs", 41),
    Line("Phone", 21), Line("Mobile", 21), Line("Pager", 21), Line("PagerPIN", 10),
    Line("AltPhone", 21), Line("Fax", 21), Line("SSN", 11), Line("Email", 1023),
    Choice("Gender", kGender), Date("HiredDate"), Date("ReleasedDate"), Date("BirthDate"),
    Line("AccountNumber", 99), Line("Notes", 4095));

constexpr auto kOtherName =
    ListObject(Needed(Line("Name", 41)), Flag("IsActive", "true"), Line("CompanyName", 41),
               Line("Salutation", 15), Line("FirstName", 25), Line("MiddleName", 5),
               Line("LastName", 25), Group("OtherNameAddress", kAddress), Line("Phone", 21),
               Line("AltPhone", 21), Line("Fax", 21), Line("Email", 1023), Line("Contact", 41),
               Line("AltContact", 41), Line("AccountNumber", 99), Line("Notes", 4095));

constexpr auto kClass =
    ListObject(Needed(Line("Name", 31)), Shown(Line("FullName", 159)), Flag("IsActive", "true"),
               Ref("ParentRef", "Class"), Shown(Integer("Sublevel")));

constexpr auto kStandardTerms =
    ListObject(Needed(Line("Name", 31)), Flag("IsActive", "true"), Integer("StdDueDays", "0"),
               Integer("StdDiscountDays"), Percent("DiscountPct"));

constexpr auto kPaymentMethod =
    ListObject(Needed(Line("Name", 31)), Flag("IsActive", "true"),
               Since(70, Choice("PaymentMethodType", kPaymentMethodTypes, "Other")));

constexpr auto kSalesRep = ListObject(Needed(Line("Initial", 5)), Flag("IsActive", "true"),
                                      Needed(Ref("SalesRepEntityRef", "Entity")));

// Customer types, vendor types and job types.
constexpr auto kNestedType = [](std::string_view kind) {
  return ListObject(Needed(Line("Name", 31)), Shown(Line("FullName", 159)),
                    Flag("IsActive", "true"), Ref("ParentRef", kind), Shown(Integer("Sublevel")));
};
constexpr auto kCustomerType = kNestedType("CustomerType");
constexpr auto kVendorType = kNestedType("VendorType");
constexpr auto kJobType = kNestedType("JobType");

constexpr auto kShipMethod = ListObject(Needed(Line("Name", 15)), Flag("IsActive", "true"));
constexpr auto kCustomerMsg = ListObject(Needed(Line("Name", 101)), Flag("IsActive", "true"));

constexpr auto kSalesTaxCode =
    ListObject(Needed(Line("Name", 3)), Flag("IsActive", "true"), Needed(Flag("IsTaxable")),
               Line("Desc", 31), Since(80, Choice("SalesTaxCountry", kSalesTaxCountry)));

constexpr Kind kKinds[] = {
    {.name = "Account",
     .fields = kAccount,
     .title = "Accounts",
     .typeField = "AccountType",
     .creditTypes = kCreditAccounts},
    {.name = "Customer", .fields = kCustomer, .title = "Customers", .family = "Entity"},
    {.name = "Vendor",
     .fields = kVendor,
     .title = "Vendors",
     .family = "Entity",
     .balanceSide = -1},
    {.name = "Employee",
     .fields = kEmployee,
     .title = "Employees",
     .family = "Entity",
     .nameParts = kEmployeeName},
    {.name = "OtherName", .fields = kOtherName, .title = "Other Names", .family = "Entity"},
    {.name = "Class", .fields = kClass, .title = "Class"},
    {.name = "StandardTerms", .fields = kStandardTerms, .title = "Terms", .family = "Terms"},
    {.name = "PaymentMethod", .fields = kPaymentMethod, .title = "Payment Method"},
    {.name = "SalesRep", .fields = kSalesRep, .title = "Sales Rep", .nameField = "Initial"},
    {.name = "CustomerType", .fields = kCustomerType, .title = "Customer Type"},
    {.name = "VendorType", .fields = kVendorType, .title = "Vendor Type"},
    {.name = "JobType", .fields = kJobType, .title = "Job Type"},
    {.name = "ShipMethod", .fields = kShipMethod, .title = "Ship Via"},
    {.name = "CustomerMsg", .fields = kCustomerMsg, .title = "Customer Message"},
    {.name = "SalesTaxCode", .fields = kSalesTaxCode, .title = "Sales Tax Code"},
};

}  // namespace

std::span<const Kind> ListKinds() { return kKinds; }

}  // namespace ostrel::simulator
