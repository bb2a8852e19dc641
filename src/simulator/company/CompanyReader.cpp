// Lists are filled in before transactions, which refer to them, and numbers that the file gives are
// known before any is given out. What objects refer to by name alone is linked in between, when
// everything that can be referred to is there. A journal's records are carried out one after the
// other on the company as its file says it; one that cannot be is left out alone.
#include "simulator/company/CompanyReader.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <unordered_set>
#include <utility>
#include <vector>

#include "platform/SystemError.h"
#include "simulator/company/Defaults.h"
#include "simulator/company/Objects.h"
#include "simulator/company/Records.h"
#include "simulator/company/References.h"
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

  /// False when they do not make a company.
  bool Fill(std::vector<Element> objects);

 private:
  bool NoteNumbers(const std::vector<Element>& objects);
  bool Take(const Kind& kind, Element object);
  bool FillInTransaction(const Kind& kind, Element& object);
  bool FillInListObject(const Kind& kind, Element& object);
  bool TakeRecord(const Kind& kind, Element record);
  bool NumberRecords();
  void LinkObjects();

  Company& oCompany;
  const Stamp& oNow;
  std::vector<std::pair<const Kind*, std::string>> oUnlinked;  // list objects, by their IDs
  std::vector<Element> oUnnumbered;                            // records without an ID
};

bool Filler::Fill(std::vector<Element> objects) {
  if (!NoteNumbers(objects)) return false;
  bool linked = false;
  for (Element& object : objects) {
    const Kind& kind = *FindKind(object.name);
    if (!linked && kind.category == Category::kTransaction) {
      LinkObjects();
      linked = true;
    }
    Breathe();
    if (!Take(kind, std::move(object))) return false;
  }
  if (!linked) LinkObjects();
  return NumberRecords();
}

// False when two have the same ID.
bool Filler::NoteNumbers(const std::vector<Element>& objects) {
  std::unordered_set<std::string_view> ids;
  ids.reserve(objects.size());
  for (const Element& object : objects) {
    const Kind& kind = *FindKind(object.name);
    oCompany.NewNumbers().Note(kind, object);
    const std::string_view id = object.ChildText(kind.IdField());
    if (!id.empty() && !ids.emplace(id).second) return false;
  }
  return true;
}

// Records that were written by hand get the numbers behind those of the others.
bool Filler::TakeRecord(const Kind& kind, Element record) {
  if (!record.ChildText(kind.IdField()).empty()) return oCompany.Put(kind, std::move(record));
  oUnnumbered.push_back(std::move(record));
  return true;
}

bool Filler::NumberRecords() {
  if (!oUnnumbered.empty()) oCompany.SetCompleted();
  return std::ranges::all_of(oUnnumbered, [&](Element& record) {
    const Kind& kind = *FindKind(record.name);
    record.Set(kind.IdField(), NewRecordId(oCompany.List(kind)));
    return oCompany.Put(kind, std::move(record));
  });
}

bool Filler::Take(const Kind& kind, Element object) {
  if (kind.category == Category::kRecord) return TakeRecord(kind, std::move(object));
  const std::size_t given = object.children.size();
  const bool lacksId = !object.Child(kind.IdField());
  const bool isUsable = kind.category == Category::kTransaction ? FillInTransaction(kind, object)
                                                                : FillInListObject(kind, object);
  if (!isUsable) return false;
  if (lacksId || object.children.size() != given) oCompany.SetCompleted();
  Arrange(object, kind.fields);
  return oCompany.Put(kind, std::move(object));
}

bool Filler::FillInTransaction(const Kind& kind, Element& object) {
  Link(object, kind.fields, oCompany);
  const bool byHand = !object.Child("TxnNumber");
  if (byHand) Complete(kind, object, oCompany, oCompany.NewNumbers(), oNow);
  if (byHand && ComputeTotals(kind, object, oCompany, oCompany.NewNumbers(), oNow)) return false;
  return !object.ChildText("TxnID").empty();
}

bool Filler::FillInListObject(const Kind& kind, Element& object) {
  Complete(kind, object, oCompany, oCompany.NewNumbers(), oNow);
  if (HasUnlinked(object, kind.fields)) oUnlinked.emplace_back(&kind, object.ChildText("ListID"));
  const std::string_view name = FullNameOf(kind, object);
  return !Trimmed(name).empty() && !FindByName(oCompany, NameSpace(kind), name);
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

}  // namespace

std::optional<Company> CompanyFromBytes(std::string_view bytes, const Stamp& now) {
  XmlDocument document;
  if (ReadXmlBytes(bytes, Company::kMostElements, document) != XmlFault::kNone) return std::nullopt;
  if (document.root.name != "Company") return std::nullopt;
  std::optional<Behaviour> behaviour = Behaviour();
  if (const Element* element = document.root.Child("Behaviour")) {
    behaviour = ReadBehaviour(*element);
  }
  if (!behaviour) return std::nullopt;
  std::vector<Element> objects = TakeObjects(document.root);
  Company company(std::move(document.root), *std::move(behaviour));
  if (!Filler(company, now).Fill(std::move(objects))) return std::nullopt;
  return company;
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
