// List objects are added, modified and deleted in a draft, which is committed as a whole. A change
// of name or parent reaches further than the object: the full names of all objects below it change,
// and its total moves from the old parents to the new ones.
#include <algorithm>

#include "simulator/company/Defaults.h"
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

}  // namespace

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
  const Kind& kind = *FindKind(call.element.ChildText("ListDelType"));
  const std::string id(call.element.ChildText("ListID"));
  const Element* object = company.List(kind).Find(id);
  if (!object) return {NotFound(id)};
  if (IsInUse(company, id)) {
    return {CannotDelete(id, "This list element is in use and cannot be deleted.")};
  }
  XmlWriter xml(XmlForm::kResponse);
  xml.Leaf("ListDelType", kind.name);
  xml.Leaf("ListID", id);
  xml.Leaf("TimeCreated", object->ChildText("TimeCreated"));
  xml.Leaf("TimeDeleted", call.now.text);
  xml.Leaf("FullName", FullNameOf(kind, *object));
  const std::string described = Described(kind, *object);
  Draft draft(company);
  draft.Remove(kind, id);
  ReverseOpening(kind, *object, draft);
  MoveParents(kind, *object, TotalBalanceOf(*object).Negated(), draft);
  Status status = CommitFor(call, draft.Take(), described);
  if (status.IsError()) return {std::move(status)};
  return {.status = {}, .body = xml.Take()};
}

}  // namespace ostrel::simulator
