#include "simulator/kinds/Kinds.h"

#include <algorithm>
#include <deque>
#include <iterator>
#include <map>

#include "simulator/kinds/KindFields.h"

namespace ostrel::simulator {
namespace {

struct Rows {
  std::vector<Kind> kinds;
  std::deque<std::vector<Field>> fields;  // of the kinds
};

Rows CollectRows() {
  Rows rows;
  for (const auto& table : {ListKinds(), TransactionKinds()}) {
    for (Kind kind : table) {
      kind.fields = rows.fields.emplace_back(FieldsOf(kind.name));
      rows.kinds.push_back(kind);
    }
  }
  std::ranges::copy(RecordKinds(), std::back_inserter(rows.kinds));
  return rows;
}

KindList CollectKinds() {
  static const Rows rows = CollectRows();
  KindList all;
  for (const Kind& kind : rows.kinds) all.push_back(&kind);
  return all;
}

// Kinds of several names that one reference may name.
struct Sort {
  std::string_view name;
  std::string_view kinds[2];
};
constexpr Sort kSorts[] = {
    {"SalesTaxItem", {"ItemSalesTax", "ItemSalesTaxGroup"}},
    {"OpenSale", {"Invoice", "Charge"}},
    {"SalesOrderOrEstimate", {"SalesOrder", "Estimate"}},
    {"OrderOrReceipt", {"PurchaseOrder", "ItemReceipt"}},
};

using Names = std::map<std::string_view, KindList>;

Names CollectNames() {
  Names names;
  for (const Kind* kind : AllKinds()) {
    names[kind->name].push_back(kind);
    if (!kind->family.empty()) names[kind->family].push_back(kind);
  }
  for (const Sort& sort : kSorts) {
    for (const std::string_view kind : sort.kinds) names[sort.name].push_back(names[kind].front());
  }
  return names;
}

std::map<const Kind*, std::size_t> CollectIndexes() {
  std::map<const Kind*, std::size_t> indexes;
  for (const Kind* kind : AllKinds()) indexes.emplace(kind, indexes.size());
  return indexes;
}

}  // namespace

const KindList& AllKinds() {
  static const KindList kinds = CollectKinds();
  return kinds;
}

std::size_t IndexOf(const Kind& kind) {
  static const auto indexes = CollectIndexes();
  return indexes.at(&kind);
}

const Kind* FindKind(std::string_view name) {
  const KindList& kinds = KindsNamed(name);
  return kinds.size() == 1 && kinds.front()->name == name ? kinds.front() : nullptr;
}

const KindList& KindsNamed(std::string_view nameOrFamily) {
  static const Names names = CollectNames();
  static const KindList none;
  const auto found = names.find(nameOrFamily);
  return found == names.end() ? none : found->second;
}

const KindList& NameSpace(const Kind& kind) {
  return KindsNamed(kind.family.empty() ? kind.name : kind.family);
}

}  // namespace ostrel::simulator
