#include "simulator/company/Lines.h"

#include <algorithm>
#include <string>

#include "simulator/company/Objects.h"
#include "simulator/values/Decimal.h"

namespace ostrel::simulator {
namespace {

void Expand(Element& group, std::string_view lineName, const Element& item) {
  const Element* given = group.Child("Quantity");
  const Decimal count = given ? Decimal::Of(given->text) : Decimal::Whole(1);
  if (!group.Child("Desc") && item.Child("ItemDesc")) {
    group.Add("Desc", item.ChildText("ItemDesc"));
  }
  const std::string_view printed = item.ChildText("IsPrintItemsInGroup");
  group.Set("IsPrintItemsInGroup", printed.empty() ? "false" : printed);
  for (const Element& part : item.children) {
    if (part.name != "ItemGroupLine" || !part.Child("ItemRef")) continue;
    Element& line = group.children.emplace_back(Element{.name = std::string(lineName)});
    line.children.push_back(*part.Child("ItemRef"));
    const Element* quantity = part.Child("Quantity");
    const Decimal each = quantity ? Decimal::Of(quantity->text) : Decimal::Whole(1);
    line.Add("Quantity", (count * each).ToString(0));
  }
}

}  // namespace

Target ItemOf(const Element& line, const Company& company) {
  const Element* reference = line.Child("ItemRef");
  if (!reference) return {};
  return FindById(company, KindsNamed("Item"), reference->ChildText("ListID"));
}

void ExpandGroups(const Kind& kind, Element& transaction, const Company& company) {
  for (const Field& field : kind.fields) {
    if (!IsGroup(field.name)) continue;
    const auto inner = std::ranges::find(field.children, FieldType::kLine, &Field::type);
    if (inner == field.children.end()) continue;
    for (Element& child : transaction.children) {
      if (child.name != field.name || child.Child(inner->name)) continue;
      const Element* reference = child.Child("ItemGroupRef");
      if (!reference) continue;
      const Target group =
          FindById(company, KindsNamed("ItemGroup"), reference->ChildText("ListID"));
      if (group) Expand(child, inner->name, *group.object);
    }
  }
}

}  // namespace ostrel::simulator
