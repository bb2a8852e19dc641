#include "simulator/kinds/Kinds.h"

#include <algorithm>
#include <iterator>
#include <map>

namespace ostrel::simulator {
namespace {

KindList CollectKinds() {
  KindList all;
  for (const auto& table : {ListKinds(), ItemKinds(), SalesKinds(), PurchaseKinds()}) {
    for (const Kind& kind : table) all.push_back(&kind);
  }
  std::stable_partition(all.begin(), all.end(),
                        [](const Kind* kind) { return kind->category == Category::kList; });
  return all;
}

using Names = std::map<std::string_view, KindList>;

Names CollectNames() {
  Names names;
  for (const Kind* kind : AllKinds()) {
    names[kind->name].push_back(kind);
    if (!kind->family.empty()) names[kind->family].push_back(kind);
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
