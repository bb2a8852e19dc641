// The elements of the objects of one kind: what qbXML says of them, and what the stand-in makes of
// them.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/grammar/Grammar.h"
#include "simulator/xml/Element.h"

namespace ostrel::simulator {

/// The messages that a field may stand in.
enum class Use { kAdd, kMod, kRet };

/// Where an object gets a field from that was not given: the object that one of its references
/// names, and there the first of these paths ("SalesOrPurchase/Price") that holds something.
struct Source {
  std::string_view reference = {};
  std::span<const std::string_view> paths = {};
};

/// One element of an object, in the order in which a Ret holds them. Behind them stand those that
/// only messages have.
struct Field {
  std::string_view name = {};   // in a Ret
  std::string_view inAdd = {};  // its name in an Add; empty when it may not stand there
  std::string_view inMod = {};
  FieldType type = FieldType::kText;
  bool isMany = false;
  int either = 0;  // only one field of this number may stand; 0: beside any
  int mixed = 0;   // fields of one number stand in any order among themselves; 0: in this one
  int since = 0;   // qbXML version times ten
  bool isNeeded = false;  // qbXML lets it be left out, QuickBooks refuses an object without it
  std::vector<Field> children = {};  // of a group or line

  std::string_view refers = {};                         // the kinds of what a reference names
  std::span<const std::string_view> accountTypes = {};  // it may name; empty: any
  /// What a new object has that was not given one; for a reference to an account: a type, whose
  /// first account it is.
  std::string_view otherwise = {};
  Source source = {};

  /// Empty when it may not stand there.
  std::string_view NameIn(Use use) const {
    return use == Use::kAdd ? inAdd : use == Use::kMod ? inMod : name;
  }
};

/// The field of that name in the message, or null.
const Field* FindField(std::span<const Field> fields, std::string_view name, Use use);

/// Finds what FindField finds, fast for elements that stand in the order of the table: each search
/// begins where the last one ended. No two fields of a table share a name in one use.
class FieldFinder {
 public:
  FieldFinder(std::span<const Field> fields, Use use) : oFields(fields), iUse(use) {}
  const Field* Find(std::string_view name);

 private:
  std::span<const Field> oFields;
  Use iUse;
  std::size_t lNext = 0;
};

}  // namespace ostrel::simulator
