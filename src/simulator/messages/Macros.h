// The macros of a request: names that its messages give to the transactions and lines that they
// add, so that later messages can refer to these before anybody knows their IDs.
#pragma once

#include <map>
#include <optional>
#include <string>

#include "simulator/values/Status.h"
#include "simulator/xml/Element.h"

namespace ostrel::simulator {

class Macros {
 public:
  /// Learns the names (defMacro) in the element of an Add, whose object was made of it.
  void Define(const Element& added, const Element& object);
  /// Puts IDs in the place of names (useMacro) in a message. Returns the status that refuses one
  /// that stands for nothing.
  std::optional<Status> Fill(Element& message) const;

 private:
  void DefineOne(const Element& named, std::string_view id);

  std::map<std::string, std::string, std::less<>> oIds;
};

}  // namespace ostrel::simulator
