// Queries and changes of the customer list.
#include <algorithm>
#include <cctype>
#include <charconv>
#include <limits>

#include "platform/SystemError.h"
#include "simulator/Messages.h"
#include "simulator/XmlWriter.h"

namespace ostrel::simulator {
namespace {

constexpr std::string_view kRet = "CustomerRet";

bool IsHexadecimal(std::string_view text) {
  return !text.empty() &&
         std::ranges::all_of(text, [](unsigned char c) { return std::isxdigit(c); });
}

// "80000001-1262682187"
bool IsListId(std::string_view text) {
  const std::size_t dash = text.find('-');
  return dash != std::string_view::npos && IsHexadecimal(text.substr(0, dash)) &&
         IsHexadecimal(text.substr(dash + 1));
}

std::size_t MaxReturned(const Element& query) {
  std::size_t count = std::numeric_limits<std::size_t>::max();
  const std::string_view text = Trimmed(query.ChildText("MaxReturned"));
  std::from_chars(text.data(), text.data() + text.size(), count);
  return count;
}

// Without the filter, only what is active.
bool PassesStatus(const Element& customer, std::string_view filter) {
  if (filter == "All") return true;
  return IsTrue(customer.ChildText("IsActive")) != (filter == "InactiveOnly");
}

Answer QueryByFilter(const Element& query, const ObjectList& customers) {
  const std::string_view status = Trimmed(query.ChildText("ActiveStatus"));
  std::size_t left = MaxReturned(query);
  XmlWriter xml(XmlForm::kResponse);
  for (const auto& [key, customer] : customers.ByName()) {
    if (left == 0) break;
    if (!PassesStatus(customer, status)) continue;
    xml.Write(customer, kRet);
    --left;
  }
  std::string body = xml.Take();
  return body.empty() ? Answer{NoMatch()} : Answer{{}, std::move(body)};
}

// In the order asked for. What is not there is a warning that names the first such key.
Answer QueryByKeys(const Element& query, const ObjectList& customers) {
  const bool byId = query.children.front().name == "ListID";
  Status status;
  XmlWriter xml(XmlForm::kResponse);
  for (const Element& child : query.children) {
    const std::string_view key = Trimmed(child.text);
    if (byId && !IsListId(key)) return {InvalidListId(key)};
    const Element* customer = byId ? customers.FindById(key) : customers.FindByFullName(key);
    if (customer) xml.Write(*customer, kRet);
    if (!customer && status.code == 0) status = NotAllFound(key);
  }
  return {std::move(status), xml.Take()};
}

// The fields with their white space trimmed, without those that hold nothing.
Element Cleaned(const Element& source) {
  Element cleaned{.name = source.name, .text = std::string(Trimmed(source.text))};
  for (const Element& child : source.children) {
    Element copy = Cleaned(child);
    if (!copy.text.empty() || !copy.children.empty()) cleaned.children.push_back(std::move(copy));
  }
  return cleaned;
}

void NormalizeActive(Element& customer) {
  for (Element& field : customer.children) {
    if (field.name == "IsActive") field.text = IsTrue(field.text) ? "true" : "false";
  }
}

}  // namespace

Answer QueryCustomers(const Element& message, OpenCompany& company, const Stamp&) {
  const ObjectList& customers = company.Data().Customers();
  const bool byKeys = message.Child("ListID") || message.Child("FullName");
  return byKeys ? QueryByKeys(message, customers) : QueryByFilter(message, customers);
}

Answer AddCustomer(const Element& message, OpenCompany& company, const Stamp& now) {
  Element customer = Cleaned(message.children.front());
  NormalizeActive(customer);
  const std::string name(customer.ChildText("Name"));
  if (name.find(':') != std::string::npos) {
    return {CannotStore(name, "Name", "A name may not contain a colon.")};
  }
  if (company.Data().Customers().FindByFullName(name)) return {NameInUse(name)};

  std::string listId;
  if (const int error = company.AddCustomer(std::move(customer), now, listId)) {
    return {CannotSave("Customers", name, ToUtf8(platform::SystemErrorText(error)))};
  }
  XmlWriter xml(XmlForm::kResponse);
  xml.Write(*company.Data().Customers().FindById(listId), kRet);
  return {{}, xml.Take()};
}

}  // namespace ostrel::simulator
