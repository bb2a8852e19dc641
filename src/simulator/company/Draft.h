// The changes of a message while they are collected: objects are seen as they will be, and the
// company stays as it is until the changes are committed.
#pragma once

#include <map>
#include <string>
#include <string_view>

#include "simulator/company/Company.h"

namespace ostrel::simulator {

class Draft {
 public:
  explicit Draft(const Company& company) : oCompany(company) {}

  const Company& Before() const { return oCompany; }
  /// The ListID of the special account, once it has been found or made.
  std::string& IdOf(SpecialAccount account) { return oAccounts[account]; }
  /// Null when there is none of that ID.
  const Element* Find(const Kind& kind, std::string_view id) const;
  /// A copy of the existing object, to be changed.
  Element& Edit(const Kind& kind, std::string_view id);
  void Put(const Kind& kind, Element object);
  void Remove(const Kind& kind, std::string_view id);

  /// The draft is empty then.
  Changes Take();

 private:
  const Company& oCompany;
  std::map<SpecialAccount, std::string> oAccounts;
  std::map<std::string, Change, std::less<>> oChanges;  // IDs are unique in a company
};

}  // namespace ostrel::simulator
