// The kinds of objects that a company holds: a row each, from which the messages and the
// bookkeeping follow. The rows stand in ListKinds.cpp and TransactionKinds.cpp; a new kind is a new
// row, whose fields are those of its definitions (grammar/Definitions.h). RecordKinds.cpp has what
// a company remembers beside its lists and transactions.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/kinds/Fields.h"

namespace ostrel::simulator {

/// A record has an ID and a content that only its own messages know: no names, no fields, no
/// references.
enum class Category { kList, kTransaction, kRecord };

/// What of a transaction moves a balance: of the whole, or of each of its lines.
enum class Measure {
  kTotal,
  kTax,
  kDiscount,  // of a payment: given with it
  kAmount,    // of each line, from here on
  kQuantity,
  kOpenQuantity,  // of an order: not invoiced or received yet
  kCost,          // of what leaves the stock
  kLineDiscount,
};

/// An account that QuickBooks makes when it first needs it.
enum class SpecialAccount {
  kNone,
  kSalesTaxPayable,
  kUndepositedFunds,
  kOpeningBalanceEquity,
  kUncategorizedIncome,
  kUncategorizedExpenses,
  kReceivable,
  kPayable
};

/// The effect of a transaction on another object: it adds to the object's balance or quantity, in
/// debit (1) or in credit (-1).
struct Posting {
  Measure measure = Measure::kTotal;
  std::string_view line = {};                    // the lines' name; empty for the whole
  std::string_view reference = {};               // names the object
  std::span<const std::string_view> paths = {};  // or there the first reference that is set
  int side = 1;                                  // 1: debit, -1: credit
  /// The attribute that keeps the account of a line, whatever becomes of the item.
  std::string_view recorded = {};
  SpecialAccount special = SpecialAccount::kNone;  // in place of a reference
  std::string_view field = {};                     // of the object: "QuantityOnOrder"
  Measure value = Measure::kCost;                  // of a quantity: what it is worth
};

/// The fields in which a transaction keeps its totals; empty for those that it does not have.
struct Sums {
  std::string_view subtotal = {};  // of the lines
  std::string_view tax = {};
  std::string_view total = {};    // with tax
  std::string_view applied = {};  // what payments have taken off, negative
  std::string_view open = {};     // what is left to pay
  std::string_view paid = {};     // whether that is nothing
  bool given = false;             // the total is the client's and not the sum of the lines
  bool balanced = false;          // debit lines and credit lines come to the same total
};

struct Kind {
  std::string_view name;  // "Customer": CustomerAddRq, CustomerRet
  Category category = Category::kList;
  std::string_view title = {};   // in status texts: the list's name; a transaction's own otherwise
  std::string_view family = {};  // kinds of a family share their names and a query: "Item"

  // Lists
  std::string_view nameField = "Name";
  std::span<const std::string_view> nameParts = {};  // the name is made of these fields
  int balanceSide = 1;              // of Balance: 1: kept in debits, -1: in credits
  std::string_view typeField = {};  // whose value decides it:
  std::span<const std::string_view> creditTypes = {};  // kept in credits
  int priceSign = 1;  // -1: what it gives a line as price takes off

  // Transactions
  std::string_view entity = {};  // the reference to whom it is with
  Sums sums = {};
  std::span<const Posting> postings = {};
  bool numbered = false;       // gets the next RefNumber when it has none
  std::string_view pays = {};  // the kinds whose open amounts a payment is applied to
  std::string_view dateField = "TxnDate";

  std::span<const Field> fields = {};  // of its definitions

  std::string_view IdField() const {
    if (category == Category::kRecord) return "RecordID";
    return category == Category::kList ? "ListID" : "TxnID";
  }
  bool Has(std::string_view field) const { return FindField(fields, field, Use::kRet) != nullptr; }
  /// "CustomerRet"
  std::string RetName() const { return std::string(name).append("Ret"); }
};

/// The rows, without their fields.
std::span<const Kind> ListKinds();
std::span<const Kind> TransactionKinds();
std::span<const Kind> RecordKinds();

using KindList = std::vector<const Kind*>;

/// All kinds: lists, transactions, records.
const KindList& AllKinds();
/// Place in AllKinds, from 0.
std::size_t IndexOf(const Kind& kind);
/// Null for an unknown name.
const Kind* FindKind(std::string_view name);
/// The kinds of a family, those that a sort of reference may name ("SalesTaxItem"), or the one kind
/// of that name; empty for an unknown name.
const KindList& KindsNamed(std::string_view nameOrFamily);
/// The kinds with which a kind shares its names, itself included.
const KindList& NameSpace(const Kind& kind);

}  // namespace ostrel::simulator
