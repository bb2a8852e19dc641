// Lists are filled in before transactions, which refer to them, and numbers that the file gives are
// known before any is given out. What objects refer to by name alone is linked in between, when
// everything that can be referred to is there. A journal's records are carried out one after the
// other on the company as its file says it; one that cannot be is left out alone.
#include "simulator/company/CompanyReader.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <span>
#include <unordered_set>
#include <utility>
#include <vector>

#include "platform/SystemError.h"
#include "simulator/company/Defaults.h"
#include "simulator/company/Objects.h"
#include "simulator/company/Records.h"
#include "simulator/company/References.h"
#include "simulator/company/Templates.h"
#include "simulator/company/Totals.h"
#include "simulator/values/LongWork.h"
#include "simulator/xml/XmlReader.h"

namespace ostrel::simulator {
namespace {

bool IsObject(const Element& child) { return FindKind(child.name) != nullptr; }

// Takes the objects out of the root element, lists first.
std::vector<Element> TakeObjects(Element& root) {
  auto& children = root.children;
  const auto first = std::stable_partition(children.begin(), children.end(),
                                           [](const Element& child) { return !IsObject(child); });
  std::vector<Element> objects;
  std::move(first, children.end(), std::back_inserter(objects));
  children.erase(first, children.end());
  std::stable_partition(objects.begin(), objects.end(), [](const Element& object) {
    return FindKind(object.name)->category == Category::kList;
  });
  return objects;
}

// Puts the objects of a file into a company that has none.
class Filler {
 public:
  Filler(Company& company, const Stamp& now) : oCompany(company), oNow(now) {}

  /// The first thing that keeps them from making a company; its `why` is empty when there is none.
  Obstacle Fill(std::vector<Element> objects);

 private:
  Obstacle NoteNumbers(const std::vector<Element>& objects);
  // These return the reason against the object, in words.
  std::string Take(const Kind& kind, Element object);
  std::string FillInTransaction(const Kind& kind, Element& object);
  std::string FillInListObject(const Kind& kind, Element& object);
  std::string TakeRecord(const Kind& kind, Element record);
  std::string Put(const Kind& kind, Element object);
  Obstacle NumberRecords();
  void LinkObjects();

  Company& oCompany;
  const Stamp& oNow;
  std::vector<std::pair<const Kind*, std::string>> oUnlinked;  // list objects, by their IDs
  std::vector<Element> oUnnumbered;                            // records without an ID
};

Obstacle Filler::Fill(std::vector<Element> objects) {
  Obstacle obstacle = NoteNumbers(objects);
  if (!obstacle.why.empty()) return obstacle;
  std::vector<std::size_t> taken(AllKinds().size());
  bool linked = false;
  for (Element& object : objects) {
    const Kind& kind = *FindKind(object.name);
    if (!linked && kind.category == Category::kTransaction) {
      LinkObjects();
      linked = true;
    }
    Breathe();
    const std::size_t number = taken[IndexOf(kind)]++;
    std::string why = Take(kind, std::move(object));
    if (!why.empty()) {
      return {.why = std::move(why), .element = std::string(kind.name), .number = number};
    }
  }
  if (!linked) LinkObjects();
  AddTemplates(oCompany);
  return NumberRecords();
}

// The obstacle is an ID that two have.
Obstacle Filler::NoteNumbers(const std::vector<Element>& objects) {
  std::unordered_set<std::string_view> ids;
  ids.reserve(objects.size());
  for (const Element& object : objects) {
    const Kind& kind = *FindKind(object.name);
    oCompany.NewNumbers().Note(kind, object);
    const std::string_view id = object.ChildText(kind.IdField());
    if (id.empty() || ids.emplace(id).second) continue;
    const std::span before(objects.data(), &object);
    return {.why = "its ID \"" + std::string(id) + "\" is there twice",
            .element = object.name,
            .number =
                static_cast<std::size_t>(std::ranges::count(before, object.name, &Element::name))};
  }
  return {};
}

std::string Filler::Put(const Kind& kind, Element object) {
  return oCompany.Put(kind, std::move(object)) ? "" : "another object has its name or ID";
}

// Records that were written by hand get the numbers behind those of the others.
std::string Filler::TakeRecord(const Kind& kind, Element record) {
  if (!record.ChildText(kind.IdField()).empty()) return Put(kind, std::move(record));
  oUnnumbered.push_back(std::move(record));
  return {};
}

Obstacle Filler::NumberRecords() {
  if (!oUnnumbered.empty()) oCompany.SetCompleted();
  for (Element& record : oUnnumbered) {
    const Kind& kind = *FindKind(record.name);
    record.Set(kind.IdField(), NewRecordId(oCompany.List(kind)));
    const std::string why = Put(kind, std::move(record));
    if (!why.empty()) return {.why = std::string(kind.name).append(": ").append(why)};
  }
  return {};
}

std::string Filler::Take(const Kind& kind, Element object) {
  if (kind.category == Category::kRecord) return TakeRecord(kind, std::move(object));
  const std::size_t given = object.children.size();
  const bool lacksId = !object.Child(kind.IdField());
  std::string why = kind.category == Category::kTransaction ? FillInTransaction(kind, object)
                                                            : FillInListObject(kind, object);
  if (!why.empty()) return why;
  if (lacksId || object.children.size() != given) oCompany.SetCompleted();
  Arrange(object, kind.fields);
  return Put(kind, std::move(object));
}

std::string Filler::FillInTransaction(const Kind& kind, Element& object) {
  Link(object, kind.fields, oCompany);
  const bool byHand = !object.Child("TxnNumber");
  if (byHand) Complete(kind, object, oCompany, oCompany.NewNumbers(), oNow);
  if (byHand) {
    auto status = ComputeTotals(kind, object, oCompany, oCompany.NewNumbers(), oNow);
    if (status) return std::move(status->message);
  }
  return object.ChildText("TxnID").empty() ? "its TxnID is missing" : "";
}

std::string Filler::FillInListObject(const Kind& kind, Element& object) {
  Complete(kind, object, oCompany, oCompany.NewNumbers(), oNow);
  if (HasUnlinked(object, kind.fields)) oUnlinked.emplace_back(&kind, object.ChildText("ListID"));
  const std::string_view name = FullNameOf(kind, object);
  if (Trimmed(name).empty()) return "its name is missing";
  if (!FindByName(oCompany, NameSpace(kind), name)) return {};
  return "its name \"" + std::string(name) + "\" is there twice";
}

// Files may name what is referred to without its ListID, and before it.
void Filler::LinkObjects() {
  for (const auto& [kind, id] : oUnlinked) {
    const Element* object = oCompany.List(*kind).Find(id);
    if (!object) continue;
    Element linked = *object;
    Link(linked, kind->fields, oCompany);
    oCompany.Put(*kind, std::move(linked));
  }
}

// Whether an object would take the place of one that the changes leave alone, or of another one of
// theirs.
bool Clashes(const Company& company, const Changes& changes) {
  std::set<std::string_view> ids;
  for (const Change& change : changes) ids.insert(change.id);
  std::set<std::pair<const Kind*, Text>> keys;
  return std::ranges::any_of(changes, [&](const Change& change) {
    if (!change.object) return false;
    const ObjectList& list = company.List(*change.kind);
    const Element* holder = list.InPlaceOf(*change.object);
    const bool taken = holder && !ids.contains(holder->ChildText(change.kind->IdField()));
    return taken || !keys.emplace(change.kind, list.KeyOf(*change.object)).second;
  });
}

bool LeadsNowhere(const Company& company, const Changes& changes) {
  std::set<std::string_view> made;
  for (const Change& change : changes) {
    if (change.object) made.insert(change.id);
  }
  return std::ranges::any_of(changes, [&](const Change& change) {
    return change.object && HasDangling(*change.kind, *change.object, company, made);
  });
}

// Carries out a whole record or nothing; returns the reason for nothing. Behind a record that was
// left out, what an object refers to may be missing. Numbers are taken even so: a client may know
// them.
std::string_view Redo(Company& company, Changes changes, bool leftOut) {
  for (const Change& change : changes) {
    if (change.object) company.NewNumbers().Note(*change.kind, *change.object);
  }
  if (Clashes(company, changes)) return "gives a name that another object has";
  if (leftOut && LeadsNowhere(company, changes)) return "refers to what a record left out has made";
  company.Apply(company.Prepare(std::move(changes)));
  return {};
}

// Reads the root's Behaviour; default ones without it.
std::optional<Behaviour> BehaviourIn(const Element& root, Obstacle& obstacle) {
  const Element* element = root.Child("Behaviour");
  if (!element) return Behaviour();
  BehaviourSlip slip;
  auto behaviour = ReadBehaviour(*element, slip);
  if (behaviour) return behaviour;
  obstacle = {.why = std::move(slip.why), .element = element->name};
  if (slip.culprit != element) {
    obstacle.why.insert(0, slip.culprit->name + ": ");
    obstacle.child = static_cast<std::size_t>(slip.culprit - element->children.data());
  }
  return std::nullopt;
}

std::optional<Company> CompanyIn(Element root, const Stamp& now, Obstacle& obstacle) {
  if (root.name != "Company") {
    obstacle.why = "its root element is " + root.name + ", not Company";
    return std::nullopt;
  }
  auto behaviour = BehaviourIn(root, obstacle);
  if (!behaviour) return std::nullopt;
  std::vector<Element> objects = TakeObjects(root);
  Company company(std::move(root), *std::move(behaviour));
  obstacle = Filler(company, now).Fill(std::move(objects));
  if (!obstacle.why.empty()) return std::nullopt;
  return company;
}

}  // namespace

std::optional<Company> CompanyFromBytes(std::string_view bytes, const Stamp& now,
                                        Obstacle* obstacle) {
  Obstacle unused;
  XmlDocument document;
  if (ReadXmlBytes(bytes, Company::kMostElements, document) == XmlFault::kNone) {
    return CompanyIn(std::move(document.root), now, obstacle ? *obstacle : unused);
  }
  if (obstacle) obstacle->why = "it is not well-formed XML, or too large";
  return std::nullopt;
}

std::optional<Company> CompanyFromFile(CompanyFile& file, const Stamp& now, int& error) {
  CompanyFile::Contents contents;
  error = file.Read(contents);
  if (error != 0) return std::nullopt;
  error = platform::kInvalidData;
  auto company = CompanyFromBytes(contents.bytes, now);
  if (!company) return std::nullopt;
  for (std::size_t i = 0; i < contents.changes.size(); ++i) {
    Breathe();
    const bool leftOut = !file.RecordsLeftOut().empty();
    const std::string_view why = Redo(*company, std::move(contents.changes[i]), leftOut);
    if (!why.empty()) file.LeaveOut({contents.places[i], why});
  }
  error = 0;
  return company;
}

}  // namespace ostrel::simulator
