// The fixed lists are a table: each row names a kind and the fields of one object, in the order in
// which the objects are added, since later ones refer to earlier ones by name. The balances with
// which the year begins are one journal entry.
#include "simulator/tool/FixedLists.h"

#include <cstdio>

#include "simulator/tool/WordLists.h"
#include "simulator/values/Dates.h"

namespace ostrel::simulator {
namespace {

constexpr char kEmptyBusiness[] = R"(<?xml version="1.0" encoding="UTF-8"?>
<Company name="Tidewater Hardware and Supply" product="QuickBooks Premier Edition 2008" majorVersion="18" minorVersion="0" country="US">
  <Behaviour openConnectionSeconds="0" openConnectionError="" beginSessionSeconds="0" beginSessionError="" processRequestSeconds="0" processRequestError="" companyFileNameError="" />
  <CompanyInfo>
    <LegalCompanyName>Tidewater Hardware and Supply, Inc.</LegalCompanyName>
    <Address>
      <Addr1>1045 Main Street</Addr1>
      <City>Petaluma</City>
      <State>CA</State>
      <PostalCode>94952</PostalCode>
      <Country>USA</Country>
    </Address>
    <Phone>707-555-0100</Phone>
    <Fax>707-555-0101</Fax>
    <Email>info@tidewaterhardware.example.com</Email>
    <CompanyWebSite>www.tidewaterhardware.example.com</CompanyWebSite>
    <FirstMonthFiscalYear>January</FirstMonthFiscalYear>
    <FirstMonthIncomeTaxYear>January</FirstMonthIncomeTaxYear>
    <CompanyType>Retail</CompanyType>
    <TaxForm>Form1120S</TaxForm>
  </CompanyInfo>
</Company>
)";

// A kind, and the fields of the message that adds an object of it.
struct Row {
  std::string_view kind;
  std::initializer_list<std::pair<std::string_view, std::string_view>> fields;
};

const Row kRows[] = {
    {"SalesTaxCode", {{"Name", "Tax"}, {"IsTaxable", "true"}, {"Desc", "Taxable"}}},
    {"SalesTaxCode", {{"Name", "Non"}, {"IsTaxable", "false"}, {"Desc", "Not taxable"}}},
    {"StandardTerms", {{"Name", "Due on receipt"}, {"StdDueDays", "0"}}},
    {"StandardTerms", {{"Name", "Net 15"}, {"StdDueDays", "15"}}},
    {"StandardTerms", {{"Name", "Net 30"}, {"StdDueDays", "30"}}},
    {"StandardTerms",
     {{"Name", "2% 10 Net 30"},
      {"StdDueDays", "30"},
      {"StdDiscountDays", "10"},
      {"DiscountPct", "2.0"}}},
    {"PaymentMethod", {{"Name", "Cash"}, {"PaymentMethodType", "Cash"}}},
    {"PaymentMethod", {{"Name", "Check"}, {"PaymentMethodType", "Check"}}},
    {"PaymentMethod", {{"Name", "Visa"}, {"PaymentMethodType", "Visa"}}},
    {"CustomerType", {{"Name", "Retail"}}},
    {"CustomerType", {{"Name", "Contractor"}}},
    {"CustomerType", {{"Name", "Wholesale"}}},
    {"VendorType", {{"Name", "Goods"}}},
    {"VendorType", {{"Name", "Services"}}},
    {"ShipMethod", {{"Name", "Our truck"}}},
    {"ShipMethod", {{"Name", "Will call"}}},
    {"Class", {{"Name", "Store"}}},
    {"Class", {{"Name", "Yard"}}},
    {"CustomerMsg", {{"Name", "Thank you for your business."}}},
    {"Employee", {{"FirstName", "Rosa"}, {"LastName", "Tidewater"}, {"JobTitle", "Owner"}}},
    {"Employee", {{"FirstName", "Ben"}, {"LastName", "Aldous"}, {"JobTitle", "Counter"}}},
    {"Employee", {{"FirstName", "June"}, {"LastName", "Park"}, {"JobTitle", "Yard"}}},
    {"OtherName", {{"Name", "Mill District Properties"}, {"CompanyName", "Mill District"}}},
    {"OtherName", {{"Name", "County Power and Water"}}},
    {"ItemSalesTax", {{"Name", "Sonoma County"}, {"ItemDesc", "Sales tax"}, {"TaxRate", "7.75"}}},
};

struct Rep {
  std::string_view initial, name;
};
constexpr Rep kReps[] = {{"RT", "Rosa Tidewater"}, {"BA", "Ben Aldous"}, {"JP", "June Park"}};

struct Service {
  std::string_view kind, name, text, price;
};
constexpr Service kServices[] = {
    {"ItemService", "Delivery", "Delivery within the county", "35.00"},
    {"ItemService", "Tool sharpening", "Sharpening, each blade", "6.50"},
    {"ItemService", "Pipe threading", "Cutting and threading of pipe", "4.00"},
    {"ItemOtherCharge", "Restocking fee", "Goods taken back", "15.00"},
};

void AddServices(Bookkeeper& books) {
  for (const Service& service : kServices) {
    Element fields;
    fields.Add("Name", service.name);
    fields.children.push_back(Ref("SalesTaxCodeRef", "Non"));
    Element& sale = fields.Add("SalesOrPurchase");
    sale.Add("Desc", service.text);
    sale.Add("Price", service.price);
    sale.children.push_back(Ref("AccountRef", "Service and Delivery"));
    books.Add(service.kind, fields);
  }
  Element discount;
  discount.Add("Name", "Contractor discount");
  discount.Add("ItemDesc", "Discount for the trade");
  discount.children.push_back(Ref("SalesTaxCodeRef", "Tax"));
  discount.Add("DiscountRatePercent", "5.0");
  discount.children.push_back(Ref("AccountRef", "Discounts Given"));
  books.Add("ItemDiscount", discount);
}

void AddAccounts(Bookkeeper& books) {
  for (const words::Account& account : words::Accounts()) {
    Element fields;
    fields.Add("Name", account.name);
    fields.Add("AccountType", account.type);
    fields.Add("AccountNumber", account.number);
    if (!account.text.empty()) fields.Add("Desc", account.text);
    books.Add("Account", fields);
  }
}

struct Opening {
  std::string_view account;
  std::int64_t cents;
};
constexpr Opening kOpenings[] = {{"Checking", 2'418'350},
                                 {"Savings", 1'500'000},
                                 {"Petty Cash", 20'000},
                                 {"Inventory Asset", 3'164'500},
                                 {"Store Fixtures", 1'275'000}};

void AddEntryLine(Element& entry, std::string_view name, std::string_view account,
                  std::int64_t cents) {
  Element& line = entry.Add(name);
  line.children.push_back(Ref("AccountRef", account));
  line.Add("Amount", MoneyText(cents));
}

void AddOpeningBalances(Bookkeeper& books, std::chrono::sys_days day) {
  Element entry;
  entry.Add("TxnDate", DateText(day));
  entry.Add("Memo", "The books begin");
  std::int64_t total = 0;
  for (const Opening& opening : kOpenings) {
    AddEntryLine(entry, "JournalDebitLine", opening.account, opening.cents);
    total += opening.cents;
  }
  AddEntryLine(entry, "JournalCreditLine", "Opening Balances", total);
  books.Add("JournalEntry", entry);
}

}  // namespace

std::string_view EmptyBusiness() { return kEmptyBusiness; }

void AddFixedLists(Bookkeeper& books, People& people, std::chrono::sys_days day) {
  AddAccounts(books);
  for (const Row& row : kRows) {
    Element fields;
    for (const auto& [name, text] : row.fields) fields.Add(name, text);
    books.Add(row.kind, fields);
  }
  for (const Rep& rep : kReps) {
    people.Unique(std::string(rep.name));
    Element fields;
    fields.Add("Initial", rep.initial);
    fields.children.push_back(Ref("SalesRepEntityRef", rep.name));
    books.Add("SalesRep", fields);
  }
  AddServices(books);
  AddOpeningBalances(books, day);
}

Element Ref(std::string_view field, std::string_view fullName) {
  Element reference{.name = std::string(field)};
  reference.Add("FullName", fullName);
  return reference;
}

std::string MoneyText(std::int64_t cents) {
  char text[32];
  std::snprintf(text, sizeof text, "%lld.%02lld", static_cast<long long>(cents / 100),
                static_cast<long long>(cents % 100));
  return text;
}

}  // namespace ostrel::simulator
