// IDs are a number and the second in which it was given out, as QuickBooks makes them. The numbers
// of lists have their highest bit set. A company notes every number that its file and its journal
// mention, of removed objects too, because a client may remember the ID of an object that is gone.
//
// A set of changes is prepared first, which may run out of memory, and then applied, which cannot:
// between the two the changes are written to disk, and after that nothing may fail any more.
#include "simulator/company/Company.h"

#include <algorithm>
#include <charconv>
#include <cstdio>

#include "simulator/xml/XmlWriter.h"

namespace ostrel::simulator {
namespace {

constexpr std::uint32_t kListBit = 0x80000000;

// The number in "2A-1262682187"; 0 when the ID has another form.
std::uint32_t NumberOfId(std::string_view id, int base = 16) {
  std::uint32_t number = 0;
  const auto [end, error] = std::from_chars(id.data(), id.data() + id.size(), number, base);
  return error == std::errc() ? number : 0;
}

std::string MakeId(std::uint32_t number, const Stamp& now) {
  char text[16];
  std::snprintf(text, sizeof text, "%X", number);
  return std::string(text) + '-' + std::to_string(now.seconds);
}

}  // namespace

std::string Numbers::NewListId(const Stamp& now) {
  return MakeId((++lList & ~kListBit) | kListBit, now);
}

std::string Numbers::NewTxnId(const Stamp& now) { return MakeId(++lTxn, now); }

void Numbers::Note(const Kind& kind, const Element& object) {
  if (kind.category == Category::kRecord) return;
  const std::uint32_t number = NumberOfId(object.ChildText(kind.IdField()));
  if (kind.category == Category::kList) {
    if (number & kListBit) lList = std::max(lList, number & ~kListBit);
    return;
  }
  lTxn = std::max(lTxn, number);
  lTxnNumber = std::max(lTxnNumber, NumberOfId(object.ChildText("TxnNumber"), 10));
  for (const Element& line : object.children) {
    lTxn = std::max(lTxn, NumberOfId(line.ChildText("TxnLineID")));
  }
}

Company::Company(Element root, Behaviour behaviour)
    : oRoot(std::move(root)), oBehaviour(std::move(behaviour)) {
  for (const Kind* kind : AllKinds()) oLists.emplace_back(*kind);
}

std::size_t Company::CountAllElements() const {
  std::size_t count = CountElements(oRoot);
  for (const ObjectList& list : oLists) {
    for (const auto& [key, object] : list.InOrder()) count += CountElements(object);
  }
  return count;
}

std::string Company::ToBytes() const {
  if (CountAllElements() > Company::kMostElements) return {};
  XmlWriter xml(XmlForm::kFile);
  xml.Prolog();
  xml.Open(oRoot.name, oRoot.attributes);
  for (const Element& child : oRoot.children) xml.Write(child);
  for (const ObjectList& list : oLists) {
    for (const auto& [key, object] : list.InOrder()) {
      if (!object.Find(kBuiltIn)) xml.Write(object);
    }
  }
  xml.Close();
  return xml.Take();
}

Company::Prepared Company::Prepare(Changes changes) const {
  Prepared prepared;
  prepared.puts.reserve(changes.size());
  prepared.removals.reserve(changes.size());
  for (Change& change : changes) {
    const std::size_t list = IndexOf(*change.kind);
    prepared.removals.emplace_back(list, std::move(change.id));
    if (!change.object) continue;
    prepared.puts.emplace_back(list, oLists[list].Prepare(*std::move(change.object)));
  }
  return prepared;
}

bool Company::Put(const Kind& kind, Element object) {
  ObjectList& list = oLists[IndexOf(kind)];
  return list.Put(list.Prepare(std::move(object)));
}

// All removals come before all puts: an object may take a name that another gives up.
bool Company::Apply(Prepared&& prepared) noexcept {
  bool all = true;
  for (const auto& [list, id] : prepared.removals) oLists[list].Remove(id);
  for (auto& [list, object] : prepared.puts) all = oLists[list].Put(std::move(object)) && all;
  return all;
}

std::string Company::Attribute(std::string_view name, std::string_view otherwise) const {
  const std::string* value = oRoot.Find(name);
  return value && !value->empty() ? *value : std::string(otherwise);
}

}  // namespace ostrel::simulator
