#include "simulator/Company.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <iterator>
#include <set>
#include <unordered_set>

#include "platform/SystemError.h"
#include "simulator/Defaults.h"
#include "simulator/LongWork.h"
#include "simulator/Objects.h"
#include "simulator/Reckoning.h"
#include "simulator/References.h"
#include "simulator/XmlReader.h"
#include "simulator/XmlWriter.h"

namespace ostrel::simulator {
namespace {

constexpr std::size_t kMaxElements = 16'000'000;  // 100,000 customers with all they have bought
constexpr std::uint32_t kListBit = 0x80000000;

// The number in "2A-1262682187"; 0 when the ID has another form.
std::uint32_t NumberIn(std::string_view id, int base = 16) {
  std::uint32_t number = 0;
  const auto [end, error] = std::from_chars(id.data(), id.data() + id.size(), number, base);
  return error == std::errc() ? number : 0;
}

std::string MakeId(std::uint32_t number, const Stamp& now) {
  char text[16];
  std::snprintf(text, sizeof text, "%X", number);
  return std::string(text) + '-' + std::to_string(now.seconds);
}

bool IsObject(const Element& child) { return FindKind(child.name) != nullptr; }

}  // namespace

std::string Numbers::NewListId(const Stamp& now) {
  return MakeId((++lList & ~kListBit) | kListBit, now);
}

std::string Numbers::NewTxnId(const Stamp& now) { return MakeId(++lTxn, now); }

void Numbers::Note(const Kind& kind, const Element& object) {
  const std::uint32_t number = NumberIn(object.ChildText(kind.IdField()));
  if (kind.category == Category::kList) {
    if (number & kListBit) lList = std::max(lList, number & ~kListBit);
    return;
  }
  lTxn = std::max(lTxn, number);
  lTxnNumber = std::max(lTxnNumber, NumberIn(object.ChildText("TxnNumber"), 10));
  for (const Element& line : object.children) {
    lTxn = std::max(lTxn, NumberIn(line.ChildText("TxnLineID")));
  }
}

Company::Company() {
  for (const Kind* kind : AllKinds()) oLists.emplace_back(*kind);
}

std::optional<Company> Company::FromBytes(std::string_view bytes, const Stamp& now) {
  XmlDocument document;
  if (ReadXmlBytes(bytes, kMaxElements, document) != XmlFault::kNone) return std::nullopt;
  if (document.root.name != "Company") return std::nullopt;
  Company company;
  company.oRoot = std::move(document.root);
  if (const Element* element = company.oRoot.Child("Behaviour")) {
    const auto behaviour = ReadBehaviour(*element);
    if (!behaviour) return std::nullopt;
    company.oBehaviour = *behaviour;
  }
  if (!company.TakeObjects(now)) return std::nullopt;
  return company;
}

std::optional<Company> Company::FromFile(CompanyFile& file, const Stamp& now, int& error) {
  CompanyFile::Contents contents;
  error = file.Read(contents);
  if (error != 0) return std::nullopt;
  error = platform::kInvalidData;
  auto company = FromBytes(contents.bytes, now);
  if (!company) return std::nullopt;
  for (std::size_t i = 0; i < contents.changes.size(); ++i) {
    Breathe();
    const bool leftOut = !file.RecordsLeftOut().empty();
    const std::string_view why = company->Redo(std::move(contents.changes[i]), leftOut);
    if (!why.empty()) file.LeaveOut({contents.places[i], why});
  }
  error = 0;
  return company;
}

// All of the record, or nothing; returns why nothing. Behind a record that was left out, what an
// object refers to may be missing. Numbers are taken even so: a client may know them.
std::string_view Company::Redo(Changes changes, bool leftOut) {
  for (const Change& change : changes) {
    if (change.object) oNumbers.Note(*change.kind, *change.object);
  }
  if (Clashes(changes)) return "gives a name that another object has";
  if (leftOut && LeadsNowhere(changes)) return "refers to what a record left out has made";
  Apply(Prepare(std::move(changes)));
  return {};
}

// Whether an object would take the place of one that the changes leave alone, or of another one of
// theirs.
bool Company::Clashes(const Changes& changes) const {
  std::set<std::string_view> ids;
  for (const Change& change : changes) ids.insert(change.id);
  std::set<std::pair<const Kind*, Text>> keys;
  return std::ranges::any_of(changes, [&](const Change& change) {
    if (!change.object) return false;
    const ObjectList& list = List(*change.kind);
    const Element* holder = list.InPlaceOf(*change.object);
    const bool taken = holder && !ids.contains(holder->ChildText(change.kind->IdField()));
    return taken || !keys.emplace(change.kind, list.KeyOf(*change.object)).second;
  });
}

bool Company::LeadsNowhere(const Changes& changes) const {
  std::set<std::string_view> made;
  for (const Change& change : changes) {
    if (change.object) made.insert(change.id);
  }
  return std::ranges::any_of(changes, [&](const Change& change) {
    return change.object && HasDangling(*change.kind, *change.object, *this, made);
  });
}

std::size_t Company::CountAllElements() const {
  std::size_t count = CountElements(oRoot);
  for (const ObjectList& list : oLists) {
    for (const auto& [key, object] : list.InOrder()) count += CountElements(object);
  }
  return count;
}

std::string Company::ToBytes() const {
  if (CountAllElements() > kMaxElements) return {};
  XmlWriter xml(XmlForm::kFile);
  xml.Prolog();
  xml.Open(oRoot.name, oRoot.attributes);
  for (const Element& child : oRoot.children) xml.Write(child);
  for (const ObjectList& list : oLists) {
    for (const auto& [key, object] : list.InOrder()) xml.Write(object);
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

// All go before any comes: an object may take the name of another that gives it up.
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

// Lists are taken before transactions, which refer to them. Numbers that the file gives are known
// before any is given out.
bool Company::TakeObjects(const Stamp& now) {
  auto& children = oRoot.children;
  const auto first = std::stable_partition(children.begin(), children.end(),
                                           [](const Element& child) { return !IsObject(child); });
  std::vector<Element> objects;
  std::move(first, children.end(), std::back_inserter(objects));
  children.erase(first, children.end());
  std::stable_partition(objects.begin(), objects.end(), [](const Element& object) {
    return FindKind(object.name)->category == Category::kList;
  });
  std::unordered_set<std::string> ids;
  for (const Element& object : objects) {
    const Kind& kind = *FindKind(object.name);
    oNumbers.Note(kind, object);
    const std::string_view id = object.ChildText(kind.IdField());
    if (!id.empty() && !ids.emplace(id).second) return false;
  }
  bool linked = false;
  for (Element& object : objects) {
    const Kind& kind = *FindKind(object.name);
    if (!linked && kind.category == Category::kTransaction) {
      LinkObjects();
      linked = true;
    }
    Breathe();
    if (!Take(kind, std::move(object), now)) return false;
  }
  if (!linked) LinkObjects();
  return true;
}

bool Company::Take(const Kind& kind, Element object, const Stamp& now) {
  const std::size_t given = object.children.size();
  bCompleted = bCompleted || !object.Child(kind.IdField());
  if (kind.category == Category::kTransaction) {
    Link(object, kind.fields, *this);
    const bool byHand = !object.Child("TxnNumber");
    if (byHand) Complete(kind, object, *this, oNumbers, now);
    if (byHand && Reckon(kind, object, *this, oNumbers, now)) return false;
    if (object.ChildText("TxnID").empty()) return false;
  } else {
    Complete(kind, object, *this, oNumbers, now);
    const std::string_view name = FullNameOf(kind, object);
    if (Trimmed(name).empty() || FindByName(*this, NameSpace(kind), name)) return false;
  }
  bCompleted = bCompleted || object.children.size() != given;
  Arrange(object, kind.fields);
  ObjectList& list = oLists[IndexOf(kind)];
  return list.Put(list.Prepare(std::move(object)));
}

// Files may name what is referred to without its ListID, and before it.
void Company::LinkObjects() {
  for (ObjectList& list : oLists) {
    std::vector<Element> completed;
    for (const auto& [key, object] : list.InOrder()) {
      if (!HasUnlinked(object, list.OfKind().fields)) continue;
      Link(completed.emplace_back(object), list.OfKind().fields, *this);
    }
    for (Element& object : completed) list.Put(list.Prepare(std::move(object)));
  }
}

}  // namespace ostrel::simulator
