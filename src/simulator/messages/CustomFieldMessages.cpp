// Custom fields are defined, and given to objects, lines and the company. The fields of the
// company's users are part of the object, whose EditSequence they change; those of applications
// are not.
// From memory: DataExtDefAddRq, DataExtDefModRq, DataExtDefDelRq, DataExtAddRq, DataExtModRq,
// DataExtDelRq.
#include <algorithm>

#include "simulator/company/CustomFields.h"
#include "simulator/company/Draft.h"
#include "simulator/company/Objects.h"
#include "simulator/company/Records.h"
#include "simulator/messages/Messages.h"
#include "simulator/values/LongWork.h"
#include "simulator/xml/XmlWriter.h"

namespace ostrel::simulator {
namespace {

constexpr std::string_view kDefinitionKind = "DataExtDef";
constexpr std::string_view kAssigned = "AssignToObject";
constexpr std::string_view kPublicObjects[] = {"Customer", "Vendor", "Employee", "Item"};

const Kind& DefinitionKind() { return *FindKind(kDefinitionKind); }

// "{3F2504E0-4F89-41D3-9A0C-0305E82C3301}", or the owner of the public fields.
bool IsOwner(std::string_view text) {
  constexpr std::string_view kForm = "{00000000-0000-0000-0000-000000000000}";
  if (text == kPublicOwner) return true;
  return text.size() == kForm.size() && std::ranges::equal(text, kForm, [](char c, char form) {
           return form == '0'
                      ? std::string_view("0123456789ABCDEFabcdef").find(c) != std::string_view::npos
                      : c == form;
         });
}

bool HasWord(const Element& definition, std::string_view field, std::string_view word) {
  return std::ranges::any_of(definition.children, [&](const Element& child) {
    return child.name == field && child.text == word;
  });
}

std::optional<Status> FindWrongObject(const Element& definition) {
  if (definition.ChildText("OwnerID") != kPublicOwner) return std::nullopt;
  for (const Element& child : definition.children) {
    if (child.name != kAssigned) continue;
    if (std::ranges::find(kPublicObjects, child.text) == std::end(kPublicObjects)) {
      return InvalidValue(child.text, kAssigned,
                          "The fields of the company's users belong to customers, vendors, "
                          "employees and items.");
    }
  }
  return std::nullopt;
}

std::optional<Status> JudgeDefinition(const Element& definition, const Company& company) {
  const std::string_view owner = definition.ChildText("OwnerID");
  const std::string_view name = definition.ChildText("DataExtName");
  if (!IsOwner(owner)) return InvalidValue(owner, "OwnerID", "It is no GUID.");
  if (name.empty()) return CannotStore(name, "DataExtName", "A name is needed.");
  if (FindDefinition(company, owner, name)) return NameInUse(name);
  if (Records(company, kDefinitionKind).size() >= kMostDefinitions) {
    return CannotSave(kDefinitionKind, "The company has as many custom fields as it may have.");
  }
  return FindWrongObject(definition);
}

// In the order of a response, each object once.
Element DefinitionRet(const Element& definition) {
  Element ret{.name = "DataExtDefRet"};
  for (const std::string_view name :
       {"OwnerID", "DataExtID", "DataExtName", "DataExtType", "AssignToObject",
        "DataExtListRequire", "DataExtTxnRequire", "DataExtFormatString"}) {
    for (const Element& child : definition.children) {
      const bool again = name == kAssigned && HasWord(ret, name, child.text);
      if (child.name == name && !again) ret.children.push_back(child);
    }
  }
  return ret;
}

Response SavedDefinition(const Call& call, Draft& draft, const Element& definition) {
  draft.Put(DefinitionKind(), definition);
  Status status = CommitFor(call, draft.Take(), kDefinitionKind);
  if (status.IsError()) return {.status = std::move(status)};
  return Listed(call, {DefinitionRet(definition)});
}

void SetIfGiven(Element& definition, const Element& given, std::string_view field) {
  if (const Element* child = given.Child(field)) definition.Set(field, child->text);
}

const Element* DefinitionOf(const Element& given, const Company& company) {
  return FindDefinition(company, given.ChildText("OwnerID"), given.ChildText("DataExtName"));
}

// What an Add, Mod or Del of a value is about: an object, one of its lines, or the company.
struct Holder {
  const Kind* kind = nullptr;
  std::string id = {};
  std::string line = {};  // TxnLineID; empty for the object itself
  std::optional<Status> refusal = {};
};

Holder ListHolder(const Element& given, std::string_view type, const Company& company) {
  const Element& reference = *given.Child("ListObjRef");
  const Target target = FindTarget(company, type, reference);
  if (target) return {target.kind, std::string(target.object->ChildText("ListID"))};
  const std::string_view id = reference.ChildText("ListID");
  return {.refusal =
              InvalidReference(type, id.empty() ? reference.ChildText("FullName") : id, "DataExt")};
}

Holder TxnHolder(const Element& given, std::string_view type, const Company& company) {
  const Kind* kind = FindKind(type);
  const std::string_view id = given.ChildText("TxnID");
  if (!kind || !company.List(*kind).Find(id)) return {.refusal = NotFound(id)};
  return {kind, std::string(id), std::string(given.ChildText("TxnLineID"))};
}

Holder HolderOf(const Element& given, const Company& company) {
  if (const Element* type = given.Child("ListDataExtType")) {
    return ListHolder(given, type->text, company);
  }
  if (const Element* type = given.Child("TxnDataExtType")) {
    return TxnHolder(given, type->text, company);
  }
  return {.kind = FindKind("CompanyDataExt")};
}

// The line of an object, or of a group in it.
Element* FindLine(Element& object, std::string_view id) {
  for (Element& child : object.children) {
    if (child.ChildText("TxnLineID") == id) return &child;
    for (Element& inner : child.children) {
      if (inner.ChildText("TxnLineID") == id) return &inner;
    }
  }
  return nullptr;
}

// The company's record is made with its first value.
Element& EditCompanyRecord(const Kind& kind, Draft& draft) {
  const auto& records = Records(draft.Before(), kind.name);
  if (!records.empty()) {
    return draft.Edit(kind, records.begin()->second.ChildText(kind.IdField()));
  }
  Element record = NewRecord(draft.Before(), kind.name);
  const std::string id(record.ChildText(kind.IdField()));
  draft.Put(kind, std::move(record));
  return draft.Edit(kind, id);
}

// A change of one value: where it stands, once it has been found that it may stand there.
struct ValueChange {
  const Element* definition = nullptr;
  Element* object = nullptr;
  Element* holder = nullptr;  // the object or a line of it
  std::optional<Status> refusal = {};
};

bool MayHold(const Element& definition, const Holder& holder) {
  if (holder.id.empty()) return HasWord(definition, kAssigned, "Company");
  return IsAssigned(definition, *holder.kind, !holder.line.empty());
}

ValueChange BeginChange(const Call& call, const Element& given, Draft& draft) {
  const Company& company = call.company.Data();
  const Element* definition = DefinitionOf(given, company);
  if (!definition) return {.refusal = NotFound(given.ChildText("DataExtName"))};
  const Holder holder = HolderOf(given, company);
  if (holder.refusal) return {.refusal = holder.refusal};
  if (!MayHold(*definition, holder)) {
    return {.refusal = InvalidValue(given.ChildText("DataExtName"), "DataExtName",
                                    "The field is not assigned to objects of this kind.")};
  }
  Element& object = holder.id.empty() ? EditCompanyRecord(*holder.kind, draft)
                                      : draft.Edit(*holder.kind, holder.id);
  Element* line = holder.line.empty() ? &object : FindLine(object, holder.line);
  if (!line) return {.refusal = NotFound(holder.line)};
  const bool isPublic = definition->ChildText("OwnerID") == kPublicOwner;
  if (isPublic && !holder.id.empty()) Touch(object, call.now);
  return {definition, &object, line};
}

void RemoveValue(Element& holder, const Element* value) {
  std::erase_if(holder.children, [&](const Element& child) { return &child == value; });
}

Response SaveValue(const Call& call, bool isNew) {
  const Element& given = call.element.children.front();
  Draft draft(call.company.Data());
  const ValueChange change = BeginChange(call, given, draft);
  if (change.refusal) return {*change.refusal};
  if (!change.holder || !change.definition) return {NotFound(given.ChildText("DataExtName"))};
  Element* before = FindCustomValue(*change.holder, *change.definition);
  const std::string_view name = change.definition->ChildText("DataExtName");
  const bool isPublic = change.definition->ChildText("OwnerID") == kPublicOwner;
  if (isNew && before) return {NameInUse(name)};
  if (!isNew && !before && !isPublic) return {NotFound(name)};
  std::optional<Status> refusal;
  const std::string_view text = given.ChildText("DataExtValue");
  const Element value = CustomValue(*change.definition, text, refusal);
  if (refusal) return {*refusal};
  if (text.empty()) {
    RemoveValue(*change.holder, before);
  } else if (before) {
    *before = value;
  } else {
    change.holder->children.push_back(value);
  }
  Status status = CommitFor(call, draft.Take(), "DataExt");
  if (status.IsError()) return {std::move(status)};
  XmlWriter xml(XmlForm::kResponse);
  xml.Write(value);
  return {.status = {}, .body = xml.Take()};
}

Element NewDefinition(const Element& given, const Company& company) {
  Element definition = NewRecord(company, kDefinitionKind);
  definition.Add("DataExtID", std::to_string(NumberOf(definition)));
  std::ranges::copy(given.children, std::back_inserter(definition.children));
  for (const std::string_view flag : {"DataExtListRequire", "DataExtTxnRequire"}) {
    if (!definition.Child(flag)) definition.Add(flag, "false");
  }
  if (!definition.Child("DataExtFormatString")) definition.Add("DataExtFormatString");
  return definition;
}

}  // namespace

Response AddCustomFieldDefinition(const Call& call) {
  const Company& company = call.company.Data();
  const Element definition = NewDefinition(call.element.children.front(), company);
  if (auto status = JudgeDefinition(definition, company)) return {*status};
  Draft draft(company);
  return SavedDefinition(call, draft, definition);
}

Response ModifyCustomFieldDefinition(const Call& call) {
  const Company& company = call.company.Data();
  const Element& given = call.element.children.front();
  const Element* before = DefinitionOf(given, company);
  if (!before) return {NotFound(given.ChildText("DataExtName"))};
  Element definition = *before;
  Draft draft(company);
  for (const Element& child : given.children) {
    if (child.name == kAssigned) definition.children.push_back(child);
    if (child.name != "RemoveFromObject") continue;
    std::erase_if(definition.children, [&](const Element& assigned) {
      return assigned.name == kAssigned && assigned.text == child.text;
    });
    ChangeCustomValues(*before, child.text, "", draft);
  }
  if (auto status = FindWrongObject(definition)) return {*status};
  const std::string newName(given.ChildText("DataExtNewName"));
  if (!newName.empty()) {
    const Element* other = FindDefinition(company, given.ChildText("OwnerID"), newName);
    if (other && other != before) return {NameInUse(newName)};
    ChangeCustomValues(*before, "", newName, draft);
    definition.Set("DataExtName", newName);
  }
  for (const std::string_view field :
       {"DataExtListRequire", "DataExtTxnRequire", "DataExtFormatString"}) {
    SetIfGiven(definition, given, field);
  }
  return SavedDefinition(call, draft, definition);
}

Response DeleteCustomFieldDefinition(const Call& call) {
  const Company& company = call.company.Data();
  const Element* definition = DefinitionOf(call.element, company);
  if (!definition) return {NotFound(call.element.ChildText("DataExtName"))};
  Element ret{.name = "DataExtDefDelRet"};
  ret.Add("OwnerID", definition->ChildText("OwnerID"));
  ret.Add("DataExtName", definition->ChildText("DataExtName"));
  ret.Add("TimeDeleted", call.now.text);
  Draft draft(company);
  ChangeCustomValues(*definition, "", "", draft);
  draft.Remove(DefinitionKind(), definition->ChildText(DefinitionKind().IdField()));
  Status status = CommitFor(call, draft.Take(), kDefinitionKind);
  if (status.IsError()) return {std::move(status)};
  return Listed(call, {ret});
}

Response QueryCustomFieldDefinitions(const Call& call) {
  std::vector<Element> found;
  const bool all = !call.element.Child("OwnerID") && !call.element.Child(kAssigned);
  for (const auto& entry : Records(call.company.Data(), kDefinitionKind)) {
    const Element& definition = entry.second;
    const bool isWanted = std::ranges::any_of(call.element.children, [&](const Element& filter) {
      Breathe();
      if (filter.name == kAssigned) return HasWord(definition, kAssigned, filter.text);
      return filter.name == "OwnerID" && IsSameName(filter.text, definition.ChildText("OwnerID"));
    });
    if (all || isWanted) found.push_back(DefinitionRet(definition));
  }
  return Listed(call, found);
}

Response AddCustomField(const Call& call) { return SaveValue(call, true); }

Response ModifyCustomField(const Call& call) { return SaveValue(call, false); }

Response DeleteCustomField(const Call& call) {
  Element given = call.element.children.front();
  Draft draft(call.company.Data());
  const ValueChange change = BeginChange(call, given, draft);
  if (change.refusal) return {*change.refusal};
  if (!change.holder || !change.definition) return {NotFound(given.ChildText("DataExtName"))};
  const Element* value = FindCustomValue(*change.holder, *change.definition);
  if (!value) return {NotFound(given.ChildText("DataExtName"))};
  RemoveValue(*change.holder, value);
  Status status = CommitFor(call, draft.Take(), "DataExt");
  if (status.IsError()) return {std::move(status)};
  given.name = "DataExtDelRet";
  given.Add("TimeDeleted", call.now.text);
  XmlWriter xml(XmlForm::kResponse);
  xml.Write(given);
  return {.status = {}, .body = xml.Take()};
}

}  // namespace ostrel::simulator
