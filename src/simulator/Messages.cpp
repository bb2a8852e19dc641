#include "simulator/Messages.h"

#include <algorithm>

namespace ostrel::simulator {
namespace {

constexpr std::string_view kVersions[] = {"1.0",  "1.1",  "2.0",  "2.1", "3.0", "4.0",
                                          "4.1",  "5.0",  "6.0",  "7.0", "8.0", "9.0",
                                          "10.0", "11.0", "12.0", "13.0"};

constexpr std::string_view kActiveStatus[] = {"ActiveOnly", "InactiveOnly", "All"};

constexpr Field kAddressFields[] = {
    {.name = "Addr1", .maxLength = 41},   {.name = "Addr2", .maxLength = 41},
    {.name = "Addr3", .maxLength = 41},   {.name = "Addr4", .maxLength = 41},
    {.name = "Addr5", .maxLength = 41},   {.name = "City", .maxLength = 31},
    {.name = "State", .maxLength = 21},   {.name = "PostalCode", .maxLength = 13},
    {.name = "Country", .maxLength = 31}, {.name = "Note", .maxLength = 41},
};

constexpr Field kCustomerFields[] = {
    {.name = "Name", .maxLength = 41, .required = true},
    {.name = "IsActive", .type = FieldType::kBoolean},
    {.name = "CompanyName", .maxLength = 41},
    {.name = "Salutation", .maxLength = 15},
    {.name = "FirstName", .maxLength = 25},
    {.name = "MiddleName", .maxLength = 5},
    {.name = "LastName", .maxLength = 25},
    {.name = "BillAddress", .type = FieldType::kGroup, .children = kAddressFields},
    {.name = "ShipAddress", .type = FieldType::kGroup, .children = kAddressFields},
    {.name = "PrintAs", .maxLength = 41},
    {.name = "Phone", .maxLength = 21},
    {.name = "Mobile", .maxLength = 21},
    {.name = "Pager", .maxLength = 21},
    {.name = "AltPhone", .maxLength = 21},
    {.name = "Fax", .maxLength = 21},
    {.name = "Email", .maxLength = 1023},
    {.name = "Contact", .maxLength = 41},
    {.name = "AltContact", .maxLength = 41},
    {.name = "ResaleNumber", .maxLength = 15},
    {.name = "AccountNumber", .maxLength = 99},
    {.name = "Notes", .maxLength = 4095},
};

constexpr Field kCustomerAdd[] = {
    {.name = "CustomerAdd",
     .type = FieldType::kGroup,
     .required = true,
     .children = kCustomerFields},
};

constexpr Field kCustomerQuery[] = {
    {.name = "ListID", .repeated = true, .choice = 1},
    {.name = "FullName", .repeated = true, .choice = 2},
    {.name = "MaxReturned", .type = FieldType::kCount, .choice = 3},
    {.name = "ActiveStatus", .choice = 3, .values = kActiveStatus},
};

constexpr Message kMessages[] = {
    {"HostQueryRq", {}, QueryHost},
    {"CompanyQueryRq", {}, QueryCompany},
    {"CustomerQueryRq", kCustomerQuery, QueryCustomers},
    {"CustomerAddRq", kCustomerAdd, AddCustomer},
};

}  // namespace

const Message* FindMessage(std::string_view name) {
  const auto found = std::ranges::find(kMessages, name, &Message::name);
  return found == std::end(kMessages) ? nullptr : &*found;
}

std::span<const std::string_view> SupportedVersions() { return kVersions; }

}  // namespace ostrel::simulator
