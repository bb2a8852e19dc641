// A company in memory: what its file holds, its customers found fast. Its file is XML, made to be
// written by hand too: what an object lacks (ListID, times, balances) is filled in when it is read.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "simulator/Behaviour.h"
#include "simulator/Element.h"
#include "simulator/ObjectList.h"
#include "simulator/Stamp.h"

namespace ostrel::simulator {

class Company {
 public:
  /// Nothing when the bytes are not a company file, or hold the same name or ListID twice.
  static std::optional<Company> FromBytes(std::string_view bytes, const Stamp& now);
  std::string ToBytes() const;

  std::string Name() const { return Attribute("name", "Unnamed Company"); }
  std::string Product() const { return Attribute("product", "QuickBooks Premier Edition 2008"); }
  std::string MajorVersion() const { return Attribute("majorVersion", "18"); }
  std::string MinorVersion() const { return Attribute("minorVersion", "0"); }
  std::string Country() const { return Attribute("country", "US"); }
  const Behaviour& Conducts() const { return oBehaviour; }
  /// Address, telephone and so on in the order of a CompanyRet; null when the file has none.
  const Element* Information() const { return oRoot.Child("CompanyInfo"); }

  const ObjectList& Customers() const { return oCustomers; }
  /// Completes the customer (Name is there, and free) and adds it. Returns its ListID.
  std::string AddCustomer(Element customer, const Stamp& now);
  void RemoveCustomer(std::string_view listId) { oCustomers.Remove(listId); }

 private:
  std::string Attribute(std::string_view name, std::string_view otherwise) const;
  bool TakeCustomers(const Stamp& now);
  void Complete(Element& customer, const Stamp& now);
  std::string NewListId(const Stamp& now);

  Element oRoot;  // without the customers
  Behaviour oBehaviour;
  ObjectList oCustomers;
  std::uint32_t lLastObjectNumber = 0;
};

}  // namespace ostrel::simulator
