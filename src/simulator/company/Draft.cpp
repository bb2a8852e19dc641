#include "simulator/company/Draft.h"

#include "simulator/company/Objects.h"

namespace ostrel::simulator {

const Element* Draft::Find(const Kind& kind, std::string_view id) const {
  const auto changed = oChanges.find(id);
  if (changed == oChanges.end()) return oCompany.List(kind).Find(id);
  return changed->second.object ? &*changed->second.object : nullptr;
}

Element& Draft::Edit(const Kind& kind, std::string_view id) {
  const auto [entry, isNew] = oChanges.try_emplace(std::string(id));
  Change& change = entry->second;
  if (isNew) change = {&kind, std::string(id), *oCompany.List(kind).Find(id)};
  return *change.object;
}

void Draft::Put(const Kind& kind, Element object) {
  std::string id(object.ChildText(kind.IdField()));
  oChanges[id] = {&kind, id, std::move(object)};
}

void Draft::Remove(const Kind& kind, std::string_view id) {
  oChanges[std::string(id)] = {&kind, std::string(id), std::nullopt};
}

Changes Draft::Take() {
  Changes changes;
  changes.reserve(oChanges.size());
  for (auto& [id, change] : oChanges) {
    if (change.object) Arrange(*change.object, change.kind->fields);
    changes.push_back(std::move(change));
  }
  oChanges.clear();
  return changes;
}

}  // namespace ostrel::simulator
