// A company in memory: the contents of its file, with objects that are found fast. CompanyReader.h
// reads one.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/company/ObjectList.h"
#include "simulator/faults/Behaviour.h"
#include "simulator/kinds/Kinds.h"
#include "simulator/values/Dates.h"
#include "simulator/xml/Element.h"

namespace ostrel::simulator {

/// A change of one object. A message collects a set of these, which are carried out together or not
/// at all.
struct Change {
  const Kind* kind;
  std::string id;                 // ListID or TxnID
  std::optional<Element> object;  // complete and in order; nothing: the object is removed
};
using Changes = std::vector<Change>;

/// The numbers that are in IDs. None is given out twice, whatever becomes of the object.
class Numbers {
 public:
  /// "8000002A-1262682187" for lists; "2A-1262682187" for transactions and their lines.
  std::string NewListId(const Stamp& now);
  std::string NewTxnId(const Stamp& now);
  std::uint32_t NewTxnNumber() { return ++lTxnNumber; }
  /// Marks the numbers in the object's IDs as given out.
  void Note(const Kind& kind, const Element& object);

 private:
  std::uint32_t lList = 0;
  std::uint32_t lTxn = 0;
  std::uint32_t lTxnNumber = 0;
};

class Company {
 public:
  /// The elements that a file may hold: enough for 100,000 customers with all they have bought.
  static constexpr std::size_t kMostElements = 16'000'000;

  /// `root` is the root element of the file, without the objects.
  Company(Element root, Behaviour behaviour);
  /// The bytes of its file. Empty when the company holds more than could be read again.
  std::string ToBytes() const;
  /// True when the company holds what its file does not say, IDs and times above all: no journal
  /// may refer to them before the company has been written.
  bool IsCompleted() const { return bCompleted; }
  void SetCompleted() { bCompleted = true; }

  std::string Name() const { return Attribute("name", "Unnamed Company"); }
  std::string Product() const { return Attribute("product", "QuickBooks Premier Edition 2008"); }
  std::string MajorVersion() const { return Attribute("majorVersion", "18"); }
  std::string MinorVersion() const { return Attribute("minorVersion", "0"); }
  std::string Country() const { return Attribute("country", "US"); }
  const Behaviour& Conducts() const { return oBehaviour; }
  /// Address, telephone and so on in the order of a CompanyRet; null when the file has none.
  const Element* Information() const { return oRoot.Child("CompanyInfo"); }
  /// Groups of a PreferencesRet; null when the file has none.
  const Element* Preferences() const { return oRoot.Child("Preferences"); }

  const ObjectList& List(const Kind& kind) const { return oLists[IndexOf(kind)]; }
  Numbers& NewNumbers() { return oNumbers; }
  /// Adds the object, or replaces the one that has its ID. False, and nothing has changed, when
  /// another has its place.
  bool Put(const Kind& kind, Element object);

  /// Changes with all the memory that Apply needs.
  struct Prepared {
    std::vector<std::pair<std::size_t, ObjectList::Prepared>> puts;  // list, object
    std::vector<std::pair<std::size_t, std::string>> removals;       // list, ID
  };
  Prepared Prepare(Changes changes) const;
  /// False when one would take the name or ID of another object; that one is left out.
  bool Apply(Prepared&& prepared) noexcept;

 private:
  std::string Attribute(std::string_view name, std::string_view otherwise) const;
  std::size_t CountAllElements() const;

  Element oRoot;
  Behaviour oBehaviour;
  std::vector<ObjectList> oLists;  // in the order of AllKinds
  Numbers oNumbers;
  bool bCompleted = false;
};

}  // namespace ostrel::simulator
