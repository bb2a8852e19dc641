#include "simulator/ObjectList.h"

namespace ostrel::simulator {
namespace {

Text NameKey(std::string_view fullName) { return LowerCase(FromUtf8(fullName)); }

}  // namespace

bool ObjectList::Add(Element object) {
  std::string listId(object.ChildText("ListID"));
  Text key = NameKey(object.ChildText("FullName"));
  if (oByName.contains(key) || oById.contains(listId)) return false;
  const auto entry = oById.emplace(std::move(listId), oByName.end()).first;
  try {
    entry->second = oByName.emplace(std::move(key), std::move(object)).first;
  } catch (...) {
    oById.erase(entry);
    throw;
  }
  return true;
}

void ObjectList::Remove(std::string_view listId) {
  const auto found = oById.find(std::string(listId));
  if (found == oById.end()) return;
  oByName.erase(found->second);
  oById.erase(found);
}

const Element* ObjectList::FindById(std::string_view listId) const {
  const auto found = oById.find(std::string(listId));
  return found == oById.end() ? nullptr : &found->second->second;
}

const Element* ObjectList::FindByFullName(std::string_view fullName) const {
  const auto found = oByName.find(NameKey(fullName));
  return found == oByName.end() ? nullptr : &found->second;
}

}  // namespace ostrel::simulator
