// List objects are added, modified and deleted in a draft, which is committed as a whole. A change
// of name or parent reaches further than the object: the full names of all objects below it change,
// and its total moves from the old parents to the new ones.
#include <algorithm>

#include "simulator/company/Defaults.h"
#include "simulator/company/Deletions.h"
#include "simulator/company/Draft.h"
#include "simulator/company/Objects.h"
#include "simulator/company/Postings.h"
#include "simulator/company/References.h"
#include "simulator/messages/Messages.h"
#include "simulator/values/Decimal.h"
#include "simulator/values/LongWork.h"
#include "simulator/xml/XmlWriter.h"

namespace ostrel::simulator {
namespace {

constexpr std::size_t kMaxLevels = 5;

std::string_view ParentName(const Company& company, const Kind& kind, const Element& object) {
  const Element* parent = object.Child("ParentRef");
  const Element* found = parent ? company.List(kind).Find(parent->ChildText("ListID")) : nullptr;
  return found ? FullNameOf(kind, *found) : std::string_view();
}

// The object may keep its own name.
bool IsTaken(const Company& company, const Kind& kind, const Element& object) {
  const Target other = FindByName(company, NameSpace(kind), FullNameOf(kind, object));
  return other && other.object->ChildText("ListID") != object.ChildText("ListID");
}

// Makes the object's names and says what is wrong with them.
std::optional<Status> TakeName(const Call& call, const Kind& kind, Element& object) {
  const Company& company = call.company.Data();
  if (kind.nameField == kind.IdField()) return std::nullopt;
  const std::string name(object.ChildText(kind.nameField));
  if (name.find(':') != std::string::npos) {
    return CannotStore(name, kind.nameField, "A name may not contain a colon.");
  }
  MakeNames(kind, object, ParentName(company, kind, object));
  const std::string_view fullName = FullNameOf(kind, object);
  if (fullName.empty()) return CannotStore(name, kind.nameField, "A name is needed.");
  if (static_cast<std::size_t>(std::ranges::count(fullName, ':')) >= kMaxLevels) {
    return CannotSave(Described(kind, object), "You cannot have more than five levels.");
  }
  if (IsTaken(company, kind, object)) return NameInUse(object.ChildText(kind.nameField));
  return std::nullopt;
}

// An object may not lie below itself.
bool IsBelowItself(const Company& company, const Kind& kind, const Element& object) {
  const Element* before = company.List(kind).Find(object.ChildText("ListID"));
  const Element* parent = object.Child("ParentRef");
  if (!before || !parent) return false;
  const std::string_view parentId = parent->ChildText("ListID");
  if (parentId == object.ChildText("ListID")) return true;
  const auto below = company.List(kind).Below(FullNameOf(kind, *before));
  return std::ranges::any_of(
      below, [&](const Element* child) { return child->ChildText("ListID") == parentId; });
}

// A message gives the bar code in a group, an object has it alone.
void KeepBarCode(const Kind& kind, const Element& given, Element& object) {
  const Element* code = given.Child("BarCode");
  if (!code || !kind.Has("BarCodeValue")) return;
  object.Drop("BarCodeValue");
  const std::string_view value = code->ChildText("BarCodeValue");
  if (!value.empty()) object.Add("BarCodeValue", value);
}

Decimal TotalBalanceOf(const Element& object) {
  return Decimal::Of(object.ChildText("TotalBalance"));
}

std::string_view ParentId(const Element& object) {
  const Element* parent = object.Child("ParentRef");
  return parent ? parent->ChildText("ListID") : std::string_view();
}

// The total of an object counts in the totals of all objects above it.
void MoveBalance(const Kind& kind, const Element& before, const Element& after, Draft& draft) {
  if (ParentId(before) == ParentId(after)) return;
  MoveParents(kind, before, TotalBalanceOf(before).Negated(), draft);
  MoveParents(kind, after, TotalBalanceOf(after), draft);
}

// The full names of all objects below an object change with its name.
void RenameBelow(const Kind& kind, const Element& before, const Element& after, Draft& draft) {
  const std::string_view oldName = FullNameOf(kind, before);
  const std::string_view newName = FullNameOf(kind, after);
  if (!kind.Has("FullName") || oldName == newName) return;
  for (const Element* child : draft.Before().List(kind).Below(oldName)) {
    Breathe();
    Element& renamed = draft.Edit(kind, child->ChildText("ListID"));
    const std::string fullName =
        std::string(newName).append(child->ChildText("FullName").substr(oldName.size()));
    renamed.Set("FullName", fullName);
    renamed.Set("Sublevel", std::to_string(std::ranges::count(fullName, ':')));
  }
}

// The object of a merge; the response that refuses one which is unknown or has changed.
std::optional<Status> FindMerged(const Company& company, const Kind& kind, const Element& given,
                                 const Element*& object) {
  const std::string_view id = given.ChildText("ListID");
  object = company.List(kind).Find(id);
  if (!object) return NotFound(id);
  const std::string_view editSequence = given.ChildText("EditSequence");
  if (editSequence != object->ChildText("EditSequence")) return OutOfDate(editSequence);
  return std::nullopt;
}

std::optional<Status> FindMergeObstacle(const Company& company, const Kind& kind,
                                        const Element& from, const Element& into) {
  const auto refuse = [&](std::string_view why) {
    return CannotModify(Described(kind, from), why);
  };
  if (&from == &into) return refuse("An element cannot be merged with itself.");
  if (from.ChildText(kind.typeField) != into.ChildText(kind.typeField)) {
    return refuse("Only elements of one type can be merged.");
  }
  const std::string below = std::string(FullNameOf(kind, from)) + ':';
  if (FullNameOf(kind, into).starts_with(below)) {
    return refuse("An element cannot be merged with one below it.");
  }
  if (!kind.Has("FullName")) return std::nullopt;
  for (const Element* child : company.List(kind).Below(FullNameOf(kind, from))) {
    const std::string_view rest = FullNameOf(kind, *child).substr(below.size());
    if (company.List(kind).FindByName(JoinedName(FullNameOf(kind, into), rest))) {
      return NameInUse(child->ChildText(kind.nameField));
    }
  }
  return std::nullopt;
}

// Lines note accounts in attributes.
void Redirect(Element& object, std::string_view fromId, const Target& into) {
  for (Attribute& attribute : object.attributes) {
    if (attribute.value == fromId) attribute.value = into.object->ChildText("ListID");
  }
  for (Element& child : object.children) {
    if (!child.children.empty() && child.ChildText("ListID") == fromId) {
      child = ReferenceTo(child.name, into);
    } else if (!child.children.empty()) {
      Redirect(child, fromId, into);
    }
  }
}

bool Mentions(const Element& object, std::string_view listId) {
  return std::ranges::any_of(
             object.attributes,
             [&](const Attribute& attribute) { return attribute.value == listId; }) ||
         std::ranges::any_of(object.children, [&](const Element& child) {
           if (child.children.empty()) return false;
           return child.ChildText("ListID") == listId || Mentions(child, listId);
         });
}

void RedirectAll(std::string_view fromId, const Target& into, Draft& draft) {
  const bool isAccount = into.kind->name == "Account";
  for (const Kind* kind : AllKinds()) {
    const ObjectList& list = draft.Before().List(*kind);
    if (!isAccount && !list.Refers(fromId)) continue;
    for (const auto& [key, object] : list.InOrder()) {
      Breathe();
      if (!Mentions(object, fromId)) continue;
      Redirect(draft.Edit(*kind, object.ChildText(kind->IdField())), fromId, into);
    }
  }
}

void AddUp(const Element& from, Element& into, std::string_view field, int decimals) {
  if (!from.Child(field) || !into.Child(field)) return;
  const Decimal sum = Decimal::Of(from.ChildText(field)) + Decimal::Of(into.ChildText(field));
  into.Set(field, sum.ToString(decimals));
}

// An attribute that is no number is taken over where the other object has none.
void AddUpAttributes(const Element& from, Element& into) {
  for (const Attribute& attribute : from.attributes) {
    const std::string* held = into.Find(attribute.name);
    const auto number = Decimal::Parse(attribute.value);
    const auto other = held ? Decimal::Parse(*held) : std::nullopt;
    if (number && other) {
      into.SetAttribute(attribute.name, (*number + *other).ToString(2));
    } else if (!held) {
      into.SetAttribute(attribute.name, attribute.value);
    }
  }
}

// What one object had is the other's; the objects above them are told. The opening balances of
// both are taken back from other accounts and posted in one.
void MoveAll(const Kind& kind, const Element& from, const std::string& intoId, Draft& draft) {
  constexpr std::string_view kQuantities[] = {"QuantityOnHand", "QuantityOnOrder",
                                              "QuantityOnSalesOrder"};
  const Decimal total = TotalBalanceOf(from);
  MoveParents(kind, from, total.Negated(), draft);
  ReverseOpening(kind, from, draft);
  ReverseOpening(kind, draft.Edit(kind, intoId), draft);
  Element& into = draft.Edit(kind, intoId);
  for (const std::string_view balance : {"Balance", "TotalBalance"}) AddUp(from, into, balance, 2);
  for (const std::string_view quantity : kQuantities) AddUp(from, into, quantity, 0);
  AddUpAttributes(from, into);
  const Decimal count = Decimal::Of(into.ChildText("QuantityOnHand"));
  if (const std::string* value = into.Find("value"); value && count > Decimal()) {
    into.Set("AverageCost", (Decimal::Of(*value) / count).ToString(2));
  }
  const Element moved = into;
  PostOpening(kind, moved, false, draft);
  MoveParents(kind, moved, total, draft);
}

}  // namespace

// From memory: ListMergeRq.
Response MergeListObjects(const Call& call) {
  const Company& company = call.company.Data();
  const std::string_view type = call.element.ChildText("ListMergeType");
  const Kind& kind = *FindKind(type);
  const Element* from = nullptr;
  const Element* into = nullptr;
  for (const auto& [name, object] : {std::pair("MergeFrom", &from), {"MergeTo", &into}}) {
    if (auto status = FindMerged(company, kind, *call.element.Child(name), *object)) {
      return {*status};
    }
  }
  if (!from || !into) return {NotFound(call.element.Child("MergeFrom")->ChildText("ListID"))};
  if (auto status = FindMergeObstacle(company, kind, *from, *into)) return {*status};
  const std::string intoId(into->ChildText("ListID"));
  XmlWriter xml(XmlForm::kResponse);
  xml.Leaf("ListMergeType", type);
  xml.Open("MergedFrom");
  xml.Leaf("ListID", from->ChildText("ListID"));
  xml.Leaf("TimeDeleted", call.now.text);
  xml.Leaf("FullName", FullNameOf(kind, *from));
  xml.Close();
  Draft draft(company);
  RedirectAll(from->ChildText("ListID"), {&kind, into}, draft);
  RenameBelow(kind, *from, *into, draft);
  MoveAll(kind, *from, intoId, draft);
  Touch(draft.Edit(kind, intoId), call.now);
  const std::string described = Described(kind, *from);
  Delete(kind, *from, call.now, draft);
  Status status = CommitFor(call, draft.Take(), described);
  if (status.IsError()) return {std::move(status)};
  const Element& merged = *company.List(kind).Find(intoId);
  xml.Open("MergedTo");
  for (const std::string_view field : {"ListID", "TimeCreated", "TimeModified", "EditSequence"}) {
    xml.Leaf(field, merged.ChildText(field));
  }
  xml.Leaf("FullName", FullNameOf(kind, merged));
  xml.Close();
  return {.status = {}, .body = xml.Take()};
}

Response AddListObject(const Call& call) {
  const Kind& kind = call.OfKind();
  const Company& company = call.company.Data();
  Element object = Cleaned(call.element.children.front());
  if (auto status = Resolve(object, kind.fields, Use::kAdd, company, kind.name)) return {*status};
  if (auto status = TakeName(call, kind, object)) return {*status};
  Complete(kind, object, company, call.company.NewNumbers(), call.now);
  Draft draft(company);
  FixOpening(kind, object, call.company.NewNumbers(), call.now, draft);
  NameAsHeld(object, kind.fields, Use::kAdd);
  KeepBarCode(kind, call.element.children.front(), object);
  if (auto status = FindLack(kind, object)) return {*status};
  draft.Put(kind, object);
  PostOpening(kind, object, false, draft);
  MoveParents(kind, object, TotalBalanceOf(object), draft);
  return Saved(call, draft.Take(), object);
}

Response ModifyListObject(const Call& call) {
  const Kind& kind = call.OfKind();
  const Company& company = call.company.Data();
  Element given = call.element.children.front();
  const Element* before = nullptr;
  if (auto refusal = FindForChange(call, given, before)) return *std::move(refusal);
  if (auto status = Resolve(given, kind.fields, Use::kMod, company, kind.name)) return {*status};
  Element object = *before;
  NameAsHeld(given, kind.fields, Use::kMod);
  Merge(object, given, kind.fields);
  KeepBarCode(kind, call.element.children.front(), object);
  if (IsBelowItself(company, kind, object)) {
    return {CannotModify(Described(kind, *before), "An element cannot be its own parent.")};
  }
  if (auto status = TakeName(call, kind, object)) return {*status};
  if (auto status = FindLack(kind, object)) return {*status};
  MakeAddressBlocks(kind, object);
  Touch(object, call.now);
  Draft draft(company);
  RenameBelow(kind, *before, object, draft);
  draft.Put(kind, object);
  MoveBalance(kind, *before, object, draft);
  return Saved(call, draft.Take(), object);
}

Response DeleteListObject(const Call& call) {
  const Company& company = call.company.Data();
  const std::string id(call.element.ChildText("ListID"));
  const Target target = FindById(company, KindsNamed(call.element.ChildText("ListDelType")), id);
  if (!target) return {NotFound(id)};
  const Element* object = target.object;
  const Kind& kind = *target.kind;
  if (IsInUse(company, id)) {
    return {CannotDelete(id, "This list element is in use and cannot be deleted.")};
  }
  XmlWriter xml(XmlForm::kResponse);
  xml.Leaf("ListDelType", kind.name);
  xml.Leaf("ListID", id);
  xml.Leaf("TimeDeleted", call.now.text);
  xml.Leaf("FullName", FullNameOf(kind, *object));
  const std::string described = Described(kind, *object);
  Draft draft(company);
  Delete(kind, *object, call.now, draft);
  ReverseOpening(kind, *object, draft);
  MoveParents(kind, *object, TotalBalanceOf(*object).Negated(), draft);
  Status status = CommitFor(call, draft.Take(), described);
  if (status.IsError()) return {std::move(status)};
  return {.status = {}, .body = xml.Take()};
}

}  // namespace ostrel::simulator
