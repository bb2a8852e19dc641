// A value is found by its owner and name, not by an ID of its definition: that is how clients name
// it, and how it comes back. So a definition that is renamed or deleted takes its values with it,
// wherever they stand.
#include "simulator/company/CustomFields.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "simulator/company/Objects.h"
#include "simulator/company/Records.h"
#include "simulator/grammar/Grammar.h"
#include "simulator/values/LongWork.h"

namespace ostrel::simulator {
namespace {

constexpr std::string_view kValueName = "DataExtRet";

struct TypeRow {
  std::string_view name;
  FieldType type;
  std::size_t maxLength = 0;
};
constexpr TypeRow kValueTypes[] = {
    {"INTTYPE", FieldType::kInteger},      {"AMTTYPE", FieldType::kAmount},
    {"PRICETYPE", FieldType::kPrice},      {"QUANTYPE", FieldType::kQuantity},
    {"PERCENTTYPE", FieldType::kPercent},  {"DATETIMETYPE", FieldType::kMoment},
    {"STR255TYPE", FieldType::kText, 255}, {"STR1024TYPE", FieldType::kText, 1024},
};

// Puts the text into the form of the field's type.
std::optional<Status> NormalizeValue(const Element& definition, std::string& text) {
  const auto row =
      std::ranges::find(kValueTypes, definition.ChildText("DataExtType"), &TypeRow::name);
  if (row == std::end(kValueTypes)) return std::nullopt;
  Content content;
  const Particle& value = content.particles.emplace_back(
      Particle{.name = "DataExtValue", .type = row->type, .maxLength = row->maxLength});
  content.elements.emplace_back(value.name, &value);
  Element wrapped;
  wrapped.Add(value.name, text);
  if (auto status = Normalize(wrapped, content)) return status;
  text = wrapped.children.front().text;
  return std::nullopt;
}

std::string_view AssignedName(const Kind& kind) {
  return kind.family == "Item" ? kind.family : kind.name;
}

bool IsOf(const Element& child, const Element& definition) {
  return IsCustomField(child) &&
         IsSameName(child.ChildText("OwnerID"), definition.ChildText("OwnerID")) &&
         IsSameName(child.ChildText("DataExtName"), definition.ChildText("DataExtName"));
}

std::optional<Status> CompleteValue(const Kind& kind, Element& child, bool inLine,
                                    const Company& company) {
  const std::string_view name = child.ChildText("DataExtName");
  const Element* definition = FindDefinition(company, child.ChildText("OwnerID"), name);
  if (!definition || !IsAssigned(*definition, kind, inLine)) return NotFound(name);
  std::optional<Status> refusal;
  Element value = CustomValue(*definition, child.ChildText("DataExtValue"), refusal);
  value.name = child.name;
  child = std::move(value);
  return refusal;
}

std::optional<Status> CompleteHolder(const Kind& kind, Element& holder, bool isLine,
                                     const Company& company) {
  for (Element& child : holder.children) {
    if (child.children.empty()) continue;
    Breathe();
    auto status = IsCustomField(child) ? CompleteValue(kind, child, isLine, company)
                                       : CompleteHolder(kind, child, true, company);
    if (status) return status;
  }
  return std::nullopt;
}

bool HoldsValue(const Element& holder, const Element& definition) {
  return std::ranges::any_of(holder.children, [&](const Element& child) {
    return !child.children.empty() && (IsOf(child, definition) || HoldsValue(child, definition));
  });
}

void ChangeHolder(Element& holder, const Element& definition, std::string_view newName) {
  std::erase_if(holder.children, [&](Element& child) {
    if (child.children.empty()) return false;
    if (!IsOf(child, definition)) {
      ChangeHolder(child, definition, newName);
      return false;
    }
    child.Set("DataExtName", newName);
    return newName.empty();
  });
}

bool IsNamed(const Kind& kind, std::string_view assignedName) {
  if (kind.category == Category::kRecord) {
    return kind.name == "CompanyDataExt" && (assignedName.empty() || assignedName == "Company");
  }
  return assignedName.empty() || AssignedName(kind) == assignedName;
}

}  // namespace

bool IsSameName(std::string_view one, std::string_view other) {
  return one == other || LowerCase(FromUtf8(one)) == LowerCase(FromUtf8(other));
}

bool IsCustomField(const Element& child) {
  return child.name == kValueName || child.name == "DataExt";
}

const Element* FindDefinition(const Company& company, std::string_view owner,
                              std::string_view name) {
  for (const auto& [key, definition] : Records(company, "DataExtDef")) {
    if (IsSameName(definition.ChildText("OwnerID"), owner) &&
        IsSameName(definition.ChildText("DataExtName"), name)) {
      return &definition;
    }
  }
  return nullptr;
}

bool IsAssigned(const Element& definition, const Kind& kind, bool inLine) {
  std::string_view wanted = AssignedName(kind);
  const bool isPublic = definition.ChildText("OwnerID") == kPublicOwner;
  if (isPublic && kind.category == Category::kTransaction) {
    wanted = inLine ? "Item" : kind.entity == "CustomerRef" ? "Customer" : "Vendor";
  }
  return std::ranges::any_of(definition.children, [&](const Element& child) {
    return child.name == "AssignToObject" && child.text == wanted;
  });
}

Element CustomValue(const Element& definition, std::string_view text,
                    std::optional<Status>& refusal) {
  std::string normalized(text);
  refusal = NormalizeValue(definition, normalized);
  Element value{.name = std::string(kValueName)};
  for (const std::string_view field : {"OwnerID", "DataExtName", "DataExtType"}) {
    value.Add(field, definition.ChildText(field));
  }
  value.Add("DataExtValue", normalized);
  return value;
}

std::optional<Status> CompleteCustomFields(const Kind& kind, Element& object,
                                           const Company& company) {
  return CompleteHolder(kind, object, false, company);
}

Element* FindCustomValue(Element& holder, const Element& definition) {
  const auto found = std::ranges::find_if(
      holder.children, [&](const Element& child) { return IsOf(child, definition); });
  return found == holder.children.end() ? nullptr : &*found;
}

void ChangeCustomValues(const Element& definition, std::string_view assignedName,
                        std::string_view newName, Draft& draft) {
  for (const Kind* kind : AllKinds()) {
    if (!IsNamed(*kind, assignedName)) continue;
    for (const auto& [key, object] : draft.Before().List(*kind).InOrder()) {
      BreatheLightly();
      if (!HoldsValue(object, definition)) continue;
      ChangeHolder(draft.Edit(*kind, object.ChildText(kind->IdField())), definition, newName);
    }
  }
}

}  // namespace ostrel::simulator
