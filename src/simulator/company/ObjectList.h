// The objects of one kind in the order in which queries return them: lists by full name (a parent
// before its children, letter case ignored), transactions by date, records by ID. Found by ID, and
// by the names that clients search for. What queries and deletions ask of many objects at once
// stands beside them, so that nobody looks into a hundred thousand objects for it.
#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "simulator/kinds/Kinds.h"
#include "simulator/xml/Element.h"
#include "util/Text.h"

namespace ostrel::simulator {

/// Stands for the colon in keys: below every character of a name, so that children follow their
/// parent directly.
inline constexpr char16_t kLevelSeparator = 1;

/// The attribute of an object that is there without standing in a file.
inline constexpr std::string_view kBuiltIn = "builtIn";

class ObjectList {
 public:
  struct Entry : Element {
    bool isActive;         // as its field says
    std::uint64_t serial;  // from 1; an object keeps it for as long as it is in the list
  };
  using Objects = std::map<Text, Entry>;

  explicit ObjectList(const Kind& kind) : oKind(&kind) {}

  /// An object with all the memory that Put needs, so that Put cannot fail.
  class Prepared;
  Prepared Prepare(Element object) const;
  /// Adds the object, or replaces the one that has its ID. False, and nothing has changed, when
  /// another has its place: the name in a list, date and number among transactions.
  bool Put(Prepared prepared) noexcept;
  void Remove(std::string_view id) noexcept;

  /// Where the object stands in the list's order; no two share a place.
  Text KeyOf(const Element& object) const;
  /// The object of the list whose place this one would take, or null.
  const Element* InPlaceOf(const Element& object) const;
  const Element* Find(std::string_view id) const;
  /// Null once the object has been removed.
  const Element* FindBySerial(std::uint64_t serial) const;
  /// Finds the object of a list by its full name in any letter case.
  const Element* FindByName(std::string_view fullName) const;
  /// Finds transactions, in their order: those of that RefNumber in any letter case, or with the
  /// entity of that ListID.
  std::vector<const Element*> FindByRefNumber(std::string_view refNumber) const;
  std::vector<const Objects::value_type*> FindByEntity(std::string_view listId) const;
  /// All objects of a list that lie below the object of that full name.
  std::vector<const Element*> Below(std::string_view fullName) const;

  /// Whether an object of the list refers to the list object of that ListID.
  bool Refers(std::string_view listId) const;

  const Kind& OfKind() const { return *oKind; }
  const Objects& InOrder() const { return oObjects; }
  /// The highest RefNumber that is a number; 0 without one.
  std::uint32_t HighestRefNumber() const { return lHighestRefNumber; }

 private:
  using Marks = std::set<std::pair<Text, Text>>;  // what is searched for, key of the object
  struct Place {
    Objects::iterator object;
    std::vector<Marks::iterator> marks;
  };
  using Ids = std::map<std::string, Place, std::less<>>;
  using Serials = std::map<std::uint64_t, Objects::iterator>;
  using References = std::map<std::string, std::size_t, std::less<>>;  // ListID, how many refer

  Objects::const_iterator NotBefore(const Text& key) const;
  const Entry* At(const Text& key) const;
  void Count(const Element& object) noexcept;
  void Discount(const Element& object) noexcept;
  std::vector<const Objects::value_type*> FindByMark(const Text& mark) const;

  const Kind* oKind;
  Objects oObjects;
  Ids oIds;
  Marks oMarks;
  Serials oSerials;
  References oReferences;  // an ID stays when nothing refers to it any more
  std::uint64_t lLastSerial = 0;
  std::uint32_t lHighestRefNumber = 0;
};

/// The objects of a list that its company's file holds.
std::size_t CountOwn(const ObjectList& list);

class ObjectList::Prepared {
 public:
  Prepared() = default;

 private:
  friend class ObjectList;

  Objects oObject;
  Ids oId;
  Marks oMarks;
  Serials oSerial;
  References oReferences;  // those that the list does not have yet
  std::uint32_t lRefNumber = 0;
};

}  // namespace ostrel::simulator
