// A company in memory: what its file holds, its objects found fast. Its file is XML, made to be
// written by hand too: what an object lacks (ListID, times, balances) is filled in when it is read.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/Behaviour.h"
#include "simulator/Change.h"
#include "simulator/CompanyFile.h"
#include "simulator/Element.h"
#include "simulator/ObjectList.h"
#include "simulator/Stamp.h"

namespace ostrel::simulator {

/// The numbers that are in IDs. None is given out twice, whatever becomes of the object.
class Numbers {
 public:
  /// "8000002A-1262682187" for lists; "2A-1262682187" for transactions and their lines.
  std::string NewListId(const Stamp& now);
  std::string NewTxnId(const Stamp& now);
  std::uint32_t NewTxnNumber() { return ++lTxnNumber; }
  /// The object's numbers are taken.
  void Note(const Kind& kind, const Element& object);

 private:
  std::uint32_t lList = 0;
  std::uint32_t lTxn = 0;
  std::uint32_t lTxnNumber = 0;
};

class Company {
 public:
  /// Nothing when the bytes are not a company file, or hold the same name or ID twice.
  static std::optional<Company> FromBytes(std::string_view bytes, const Stamp& now);
  /// With what its journal adds; the file says which records were left out. On failure the error
  /// number of platform/SystemError.h is in `error`: kInvalidData when the file is not a company.
  static std::optional<Company> FromFile(CompanyFile& file, const Stamp& now, int& error);
  /// Empty when the company holds more than could be read again.
  std::string ToBytes() const;
  /// True when the company holds what its file does not say, IDs and times above all: no journal
  /// may refer to them before the company has been written.
  bool IsCompleted() const { return bCompleted; }

  std::string Name() const { return Attribute("name", "Unnamed Company"); }
  std::string Product() const { return Attribute("product", "QuickBooks Premier Edition 2008"); }
  std::string MajorVersion() const { return Attribute("majorVersion", "18"); }
  std::string MinorVersion() const { return Attribute("minorVersion", "0"); }
  std::string Country() const { return Attribute("country", "US"); }
  const Behaviour& Conducts() const { return oBehaviour; }
  /// Address, telephone and so on in the order of a CompanyRet; null when the file has none.
  const Element* Information() const { return oRoot.Child("CompanyInfo"); }

  const ObjectList& List(const Kind& kind) const { return oLists[IndexOf(kind)]; }
  Numbers& NewNumbers() { return oNumbers; }

  /// Changes with all the memory that Apply needs.
  struct Prepared {
    std::vector<std::pair<std::size_t, ObjectList::Prepared>> puts;  // list, object
    std::vector<std::pair<std::size_t, std::string>> removals;       // list, ID
  };
  Prepared Prepare(Changes changes) const;
  /// False when one would take the name or ID of another object; that one is left out.
  bool Apply(Prepared&& prepared) noexcept;

 private:
  Company();
  std::string Attribute(std::string_view name, std::string_view otherwise) const;
  bool TakeObjects(const Stamp& now);
  bool Take(const Kind& kind, Element object, const Stamp& now);
  std::string_view Redo(Changes changes, bool leftOut);
  bool Clashes(const Changes& changes) const;
  bool LeadsNowhere(const Changes& changes) const;
  std::size_t CountAllElements() const;
  void LinkObjects();

  Element oRoot;  // without the objects
  Behaviour oBehaviour;
  std::vector<ObjectList> oLists;  // in the order of AllKinds
  Numbers oNumbers;
  bool bCompleted = false;
};

}  // namespace ostrel::simulator
