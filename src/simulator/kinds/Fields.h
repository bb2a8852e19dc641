// The tables of the elements that a message or an object may hold, and the checks that follow from
// them.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "simulator/values/Status.h"
#include "simulator/xml/Element.h"

namespace ostrel::simulator {

enum class FieldType {
  kText,
  kBoolean,
  kCount,  // 1 to 999999999
  kInteger,
  kAmount,
  kPrice,
  kQuantity,
  kPercent,
  kDate,
  kMoment,     // date, or date and time
  kId,         // ListID, TxnID, TxnLineID
  kReference,  // ListID or FullName of an object of another kind
  kGroup,
  kLine,  // a group of which a transaction has many, each with a TxnLineID
};

/// The messages that a field may stand in.
enum Use : unsigned { kNoUse = 0, kAdd = 1, kMod = 2, kRet = 4, kQuery = 8, kAnyUse = 15 };
constexpr Use operator|(Use a, Use b) {
  return static_cast<Use>(static_cast<unsigned>(a) | static_cast<unsigned>(b));
}

/// Where an object gets a field from that was not given: the object that one of its references
/// names, and there the first of these paths ("SalesOrPurchase/Price") that holds something.
struct Source {
  std::string_view reference = {};
  std::span<const std::string_view> paths = {};
};

/// One element of a message, in the order in which messages must hold them.
struct Field {
  std::string_view name;
  FieldType type = FieldType::kText;
  std::size_t maxLength = 0;  // characters; 0: not limited here
  Use uses = kAnyUse;
  Use required = kNoUse;  // in which messages
  bool repeated = false;
  bool suffixed = false;  // "InvoiceLine" is InvoiceLineAdd, InvoiceLineMod or InvoiceLineRet
  int choice = 0;         // only fields of one choice may stand together; 0: beside any
  int either = 0;         // only one field of this number may stand; 0: beside any
  int mixed = 0;  // fields of one number stand in any order among themselves; 0: in this one
  int since = 0;  // qbXML version times ten
  std::span<const std::string_view> values = {};  // the only ones allowed; empty: any. Of a
                                                  // reference to an account: its types
  std::span<const Field> children = {};           // of a group or line
  std::string_view refers = {};                   // the kind, or family of kinds, of a reference
  std::string_view otherwise = {};  // what a new object has that was not given one; for a reference
                                    // to an account: a type, whose first account it is
  Source source = {};
};

/// The kind of message to check, and the version that it is written in, times ten.
struct Form {
  Use use = kAnyUse;
  int version = 130;
};

/// The name under which the field stands in the message.
std::string ElementName(const Field& field, Use use);
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

/// Raises the parse error when an element is unknown, out of order, repeated, missing, of another
/// choice, not of its type, or has attributes.
void CheckFields(const Element& element, std::span<const Field> fields, Form form);

/// Puts the texts into the form in which objects hold them ("1" becomes "true", "5" becomes
/// "5.00"), without white space around them. Returns the status for the first that is too long or
/// not of its type. The element has passed CheckFields.
std::optional<Status> Normalize(Element& element, std::span<const Field> fields, Use use);

/// Length in UTF-16 units, as QuickBooks counts its limits.
std::size_t CharacterCount(std::string_view utf8);

bool IsTrue(std::string_view boolean);

}  // namespace ostrel::simulator
