// The objects of one list, found by ListID or by full name, in the order of their names. Names are
// compared without regard to letter case.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>

#include "simulator/Element.h"
#include "util/Text.h"

namespace ostrel::simulator {

class ObjectList {
 public:
  /// False, and nothing changed, when the object's ListID or FullName is taken.
  bool Add(Element object);
  void Remove(std::string_view listId);

  const Element* FindById(std::string_view listId) const;
  const Element* FindByFullName(std::string_view fullName) const;

  const std::map<Text, Element>& ByName() const { return oByName; }

 private:
  using Names = std::map<Text, Element>;

  Names oByName;  // key: full name in small letters
  std::unordered_map<std::string, Names::iterator> oById;
};

}  // namespace ostrel::simulator
