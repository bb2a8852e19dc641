#include "simulator/company/ObjectList.h"

#include <algorithm>
#include <charconv>

namespace ostrel::simulator {
namespace {

Text Key(std::string_view name) { return LowerCase(FromUtf8(name)); }

Text NameKey(std::string_view fullName) {
  Text key = Key(fullName);
  std::ranges::replace(key, u':', kLevelSeparator);
  return key;
}

Text RefNumberMark(std::string_view refNumber) { return u"R" + Key(refNumber); }
Text EntityMark(std::string_view listId) { return u"E" + Key(listId); }

std::string_view NameOf(const Kind& kind, const Element& object) {
  return object.ChildText(kind.Has("FullName") ? "FullName" : kind.nameField);
}

std::uint32_t NumberIn(std::string_view text) {
  constexpr std::size_t kMaxDigits = 9;
  std::uint32_t number = 0;
  const auto end = std::from_chars(text.data(), text.data() + text.size(), number).ptr;
  return text.size() <= kMaxDigits && end == text.data() + text.size() ? number : 0;
}

// Gives each ListID that the object refers to to `visit`. The object's own is no reference.
template <class Visit>
void ForEachReference(const Element& object, Visit visit) {
  for (const Element& child : object.children) {
    if (child.children.empty()) continue;
    const std::string_view id = child.ChildText("ListID");
    if (!id.empty()) visit(id);
    ForEachReference(child, visit);
  }
}

}  // namespace

// Transactions of one day stand in the order in which they were entered.
Text ObjectList::KeyOf(const Element& object) const {
  if (oKind->category == Category::kList) return NameKey(NameOf(*oKind, object));
  if (oKind->category == Category::kRecord) return FromUtf8(object.ChildText(oKind->IdField()));
  constexpr std::size_t kDigits = 10;
  const bool isCounted = oKind->Has("TxnNumber");
  std::string number(object.ChildText(isCounted ? "TxnNumber" : "TxnID"));
  if (number.size() < kDigits) number.insert(0, kDigits - number.size(), '0');
  return FromUtf8(std::string(object.ChildText(oKind->dateField)).append(" ").append(number));
}

ObjectList::Prepared ObjectList::Prepare(Element object) const {
  Prepared prepared;
  const Text key = KeyOf(object);
  if (oKind->category == Category::kTransaction) {
    const std::string_view refNumber = object.ChildText("RefNumber");
    prepared.lRefNumber = NumberIn(refNumber);
    if (!refNumber.empty()) prepared.oMarks.emplace(RefNumberMark(refNumber), key);
    const Element* entity = oKind->entity.empty() ? nullptr : object.Child(oKind->entity);
    if (entity) prepared.oMarks.emplace(EntityMark(entity->ChildText("ListID")), key);
  }
  ForEachReference(object, [&](std::string_view to) {
    if (!oReferences.contains(to)) prepared.oReferences.emplace(to, 0);
  });
  std::string id(object.ChildText(oKind->IdField()));
  const auto before = oIds.find(id);
  prepared.oSerial[before == oIds.end() ? 0 : before->second.object->second.serial];
  Place& place = prepared.oId[std::move(id)];
  place.marks.reserve(prepared.oMarks.size());
  const bool isActive = IsTrue(object.ChildText("IsActive"));
  place.object = prepared.oObject.emplace(key, Entry{{std::move(object)}, isActive, 0}).first;
  return prepared;
}

// A file holds its objects in order, so that most are looked for behind the last one.
ObjectList::Objects::const_iterator ObjectList::NotBefore(const Text& key) const {
  const bool isBehind = oObjects.empty() || oObjects.rbegin()->first < key;
  return isBehind ? oObjects.end() : oObjects.lower_bound(key);
}

const ObjectList::Entry* ObjectList::At(const Text& key) const {
  const auto found = NotBefore(key);
  return found == oObjects.end() || found->first != key ? nullptr : &found->second;
}

// Only nodes of the maps change hands, which needs no memory.
bool ObjectList::Put(Prepared prepared) noexcept {
  const std::string& id = prepared.oId.begin()->first;
  const auto same = oIds.find(id);
  const Entry* taken = At(prepared.oObject.begin()->first);
  if (taken && (same == oIds.end() || &same->second.object->second != taken)) return false;
  if (same != oIds.end()) Remove(id);
  oReferences.merge(prepared.oReferences);
  const auto place = oIds.insert(prepared.oId.extract(prepared.oId.begin())).position;
  auto object = prepared.oObject.extract(prepared.oObject.begin());
  const auto behind = NotBefore(object.key());
  place->second.object = oObjects.insert(behind, std::move(object));
  while (!prepared.oMarks.empty()) {
    auto mark = prepared.oMarks.extract(prepared.oMarks.begin());
    place->second.marks.push_back(oMarks.insert(std::move(mark)).position);
  }
  auto serial = prepared.oSerial.extract(prepared.oSerial.begin());
  if (serial.key() == 0) serial.key() = ++lLastSerial;
  serial.mapped() = place->second.object;
  place->second.object->second.serial = serial.key();
  oSerials.insert(oSerials.end(), std::move(serial));
  Count(place->second.object->second);
  lHighestRefNumber = std::max(lHighestRefNumber, prepared.lRefNumber);
  return true;
}

void ObjectList::Remove(std::string_view id) noexcept {
  const auto found = oIds.find(id);
  if (found == oIds.end()) return;
  for (const auto& mark : found->second.marks) oMarks.erase(mark);
  const Entry& entry = found->second.object->second;
  Discount(entry);
  oSerials.erase(entry.serial);
  oObjects.erase(found->second.object);
  oIds.erase(found);
}

void ObjectList::Count(const Element& object) noexcept {
  ForEachReference(object, [this](std::string_view to) { ++oReferences.find(to)->second; });
}

void ObjectList::Discount(const Element& object) noexcept {
  ForEachReference(object, [this](std::string_view to) { --oReferences.find(to)->second; });
}

bool ObjectList::Refers(std::string_view listId) const {
  const auto found = oReferences.find(listId);
  return found != oReferences.end() && found->second > 0;
}

const Element* ObjectList::FindBySerial(std::uint64_t serial) const {
  const auto found = oSerials.find(serial);
  return found == oSerials.end() ? nullptr : &found->second->second;
}

const Element* ObjectList::InPlaceOf(const Element& object) const { return At(KeyOf(object)); }

const Element* ObjectList::Find(std::string_view id) const {
  const auto found = oIds.find(id);
  return found == oIds.end() ? nullptr : &found->second.object->second;
}

const Element* ObjectList::FindByName(std::string_view fullName) const {
  return oObjects.empty() ? nullptr : At(NameKey(fullName));
}

std::vector<const Element*> ObjectList::FindByRefNumber(std::string_view refNumber) const {
  std::vector<const Element*> found;
  for (const auto* entry : FindByMark(RefNumberMark(refNumber))) found.push_back(&entry->second);
  return found;
}

auto ObjectList::FindByEntity(std::string_view listId) const
    -> std::vector<const Objects::value_type*> {
  return FindByMark(EntityMark(listId));
}

auto ObjectList::FindByMark(const Text& mark) const -> std::vector<const Objects::value_type*> {
  std::vector<const Objects::value_type*> found;
  for (auto at = oMarks.lower_bound({mark, Text()}); at != oMarks.end() && at->first == mark;
       ++at) {
    found.push_back(&*oObjects.find(at->second));
  }
  return found;
}

std::vector<const Element*> ObjectList::Below(std::string_view fullName) const {
  const Text start = NameKey(fullName) + kLevelSeparator;
  std::vector<const Element*> found;
  for (auto at = oObjects.lower_bound(start); at != oObjects.end(); ++at) {
    if (!at->first.starts_with(start)) break;
    found.push_back(&at->second);
  }
  return found;
}

std::size_t CountOwn(const ObjectList& list) {
  const auto count = std::ranges::count_if(
      list.InOrder(), [](const auto& entry) { return !entry.second.Find(kBuiltIn); });
  return static_cast<std::size_t>(count);
}

}  // namespace ostrel::simulator
