#include "simulator/company/References.h"

#include <algorithm>

#include "simulator/company/Objects.h"
#include "simulator/values/LongWork.h"

namespace ostrel::simulator {
namespace {

bool IsReference(const Field* field) { return field && field->type == FieldType::kReference; }

std::optional<Status> ResolveOne(Element& reference, const Field& field, const Company& company,
                                 std::string_view where) {
  const std::string_view id = reference.ChildText("ListID");
  const std::string name(id.empty() ? reference.ChildText("FullName") : id);
  if (name.empty()) {
    reference.children.clear();
    return std::nullopt;
  }
  const Target target = FindTarget(company, field.refers, reference);
  if (!target) return InvalidReference(field.refers, name, where);
  const std::string_view type = target.object->ChildText(target.kind->typeField);
  if (!field.accountTypes.empty() &&
      std::ranges::find(field.accountTypes, type) == field.accountTypes.end()) {
    return WrongReference(field.refers, name, where);
  }
  reference = ReferenceTo(reference.name, target);
  return std::nullopt;
}

bool LacksId(const Element& reference) {
  return reference.ChildText("ListID").empty() && !reference.ChildText("FullName").empty();
}

bool LeadsNowhere(const Element& reference, const Field& field, const Company& company,
                  const std::set<std::string_view>& ids) {
  return !ids.contains(reference.ChildText("ListID")) &&
         !FindTarget(company, field.refers, reference);
}

bool HasDangling(const Element& object, std::span<const Field> fields, std::string_view pays,
                 const Company& company, const std::set<std::string_view>& ids) {
  return std::ranges::any_of(object.children, [&](const Element& child) {
    const Field* field =
        child.children.empty() ? nullptr : FindField(fields, child.name, Use::kRet);
    if (!field) return false;
    if (IsReference(field)) return LeadsNowhere(child, *field, company, ids);
    const bool isPaid = !pays.empty() && child.name != "LinkedTxn";
    const std::string_view paid = isPaid ? child.ChildText("TxnID") : std::string_view();
    const bool isMissing =
        !paid.empty() && !ids.contains(paid) && !FindById(company, KindsNamed(pays), paid);
    return isMissing || HasDangling(child, field->children, pays, company, ids);
  });
}

}  // namespace

std::optional<Status> Resolve(Element& object, std::span<const Field> fields, Use use,
                              const Company& company, std::string_view where) {
  for (Element& child : object.children) {
    Breathe();
    const Field* field = FindField(fields, child.name, use);
    if (!field) continue;
    const bool isLine = field->type == FieldType::kLine;
    auto status = IsReference(field)
                      ? ResolveOne(child, *field, company, where)
                      : Resolve(child, field->children, use, company,
                                isLine ? std::string(where).append(" line") : std::string(where));
    if (status) return status;
  }
  return std::nullopt;
}

void Link(Element& object, std::span<const Field> fields, const Company& company) {
  FieldFinder finder(fields, Use::kRet);
  for (Element& child : object.children) {
    const Field* field = child.children.empty() ? nullptr : finder.Find(child.name);
    if (!field) continue;
    if (!IsReference(field)) {
      Link(child, field->children, company);
    } else if (LacksId(child)) {
      const Target target = FindTarget(company, field->refers, child);
      if (target) child = ReferenceTo(child.name, target);
    }
  }
}

bool HasUnlinked(const Element& object, std::span<const Field> fields) {
  FieldFinder finder(fields, Use::kRet);
  return std::ranges::any_of(object.children, [&](const Element& child) {
    const Field* field = child.children.empty() ? nullptr : finder.Find(child.name);
    if (!field) return false;
    return IsReference(field) ? LacksId(child) : HasUnlinked(child, field->children);
  });
}

bool HasDangling(const Kind& kind, const Element& object, const Company& company,
                 const std::set<std::string_view>& ids) {
  return HasDangling(object, kind.fields, kind.pays, company, ids);
}

bool IsInUse(const Company& company, std::string_view listId) {
  return std::ranges::any_of(AllKinds(),
                             [&](const Kind* kind) { return company.List(*kind).Refers(listId); });
}

}  // namespace ostrel::simulator
