#include "simulator/Company.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <iterator>

#include "simulator/XmlReader.h"
#include "simulator/XmlWriter.h"

namespace ostrel::simulator {
namespace {

constexpr std::size_t kMaxElements = 4'000'000;  // 100,000 customers with all their fields
constexpr std::string_view kCustomer = "Customer";

// The order in which a CustomerRet holds its elements.
constexpr std::string_view kCustomerOrder[] = {
    "ListID",
    "TimeCreated",
    "TimeModified",
    "EditSequence",
    "Name",
    "FullName",
    "IsActive",
    "ParentRef",
    "Sublevel",
    "CompanyName",
    "Salutation",
    "FirstName",
    "MiddleName",
    "LastName",
    "JobTitle",
    "BillAddress",
    "ShipAddress",
    "PrintAs",
    "Phone",
    "Mobile",
    "Pager",
    "AltPhone",
    "Fax",
    "Email",
    "Contact",
    "AltContact",
    "CustomerTypeRef",
    "TermsRef",
    "SalesRepRef",
    "Balance",
    "TotalBalance",
    "SalesTaxCodeRef",
    "ItemSalesTaxRef",
    "ResaleNumber",
    "AccountNumber",
    "CreditLimit",
    "JobStatus",
    "JobStartDate",
    "JobEndDate",
    "Notes",
};

auto Rank(const Element& field) {
  return std::ranges::find(kCustomerOrder, field.name) - std::begin(kCustomerOrder);
}

void AddIfMissing(Element& object, std::string_view name, std::string_view value) {
  if (!object.Child(name)) object.Add(name, value);
}

// The number in "8000002A-1262682187"; 0 when the ListID has another form.
std::uint32_t ObjectNumber(std::string_view listId) {
  constexpr std::uint32_t kListBit = 0x80000000;
  std::uint32_t number = 0;
  const auto [end, error] =
      std::from_chars(listId.data(), listId.data() + listId.size(), number, 16);
  return error == std::errc() && (number & kListBit) ? number & ~kListBit : 0;
}

}  // namespace

std::optional<Company> Company::FromBytes(std::string_view bytes, const Stamp& now) {
  XmlDocument document;
  if (ReadXmlBytes(bytes, kMaxElements, document) != XmlFault::kNone) return std::nullopt;
  if (document.root.name != "Company") return std::nullopt;
  Company company;
  company.oRoot = std::move(document.root);
  if (const Element* element = company.oRoot.Child("Behaviour")) {
    const auto behaviour = ReadBehaviour(*element);
    if (!behaviour) return std::nullopt;
    company.oBehaviour = *behaviour;
  }
  if (!company.TakeCustomers(now)) return std::nullopt;
  return company;
}

std::string Company::ToBytes() const {
  XmlWriter xml(XmlForm::kFile);
  xml.Prolog();
  xml.Open(oRoot.name, oRoot.attributes);
  for (const Element& child : oRoot.children) xml.Write(child);
  for (const auto& [key, customer] : oCustomers.ByName()) xml.Write(customer);
  xml.Close();
  return xml.Take();
}

std::string Company::AddCustomer(Element customer, const Stamp& now) {
  customer.name = kCustomer;
  Complete(customer, now);
  std::string listId(customer.ChildText("ListID"));
  oCustomers.Add(std::move(customer));
  return listId;
}

std::string Company::Attribute(std::string_view name, std::string_view otherwise) const {
  const std::string* value = oRoot.Find(name);
  return value && !value->empty() ? *value : std::string(otherwise);
}

// Numbers that the file gives are known before any is given out.
bool Company::TakeCustomers(const Stamp& now) {
  const auto isOther = [](const Element& child) { return child.name != kCustomer; };
  const auto first = std::stable_partition(oRoot.children.begin(), oRoot.children.end(), isOther);
  for (auto customer = first; customer != oRoot.children.end(); ++customer) {
    lLastObjectNumber = std::max(lLastObjectNumber, ObjectNumber(customer->ChildText("ListID")));
  }
  for (auto customer = first; customer != oRoot.children.end(); ++customer) {
    if (Trimmed(customer->ChildText("Name")).empty()) return false;
    Complete(*customer, now);
    if (!oCustomers.Add(std::move(*customer))) return false;
  }
  oRoot.children.erase(first, oRoot.children.end());
  return true;
}

void Company::Complete(Element& customer, const Stamp& now) {
  if (!customer.Child("ListID")) customer.Add("ListID", NewListId(now));
  AddIfMissing(customer, "TimeCreated", now.text);
  AddIfMissing(customer, "TimeModified", now.text);
  AddIfMissing(customer, "EditSequence", std::to_string(now.seconds));
  AddIfMissing(customer, "FullName", std::string(customer.ChildText("Name")));
  AddIfMissing(customer, "IsActive", "true");
  AddIfMissing(customer, "Sublevel", "0");
  AddIfMissing(customer, "Balance", "0.00");
  AddIfMissing(customer, "TotalBalance", std::string(customer.ChildText("Balance")));
  std::ranges::stable_sort(customer.children, {}, Rank);
}

std::string Company::NewListId(const Stamp& now) {
  char number[16];
  std::snprintf(number, sizeof number, "8%07X", ++lLastObjectNumber & 0x0FFFFFFFu);
  return std::string(number) + '-' + std::to_string(now.seconds);
}

}  // namespace ostrel::simulator
