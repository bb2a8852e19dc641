#include "simulator/messages/Merging.h"

#include <algorithm>

namespace ostrel::simulator {
namespace {

constexpr std::string_view kNotMerged[] = {"ListID", "TxnID", "TxnLineID", "EditSequence"};

}  // namespace

Element Cleaned(const Element& source) {
  Element cleaned{.name = source.name, .text = source.text};
  for (const Element& child : source.children) {
    Element copy = Cleaned(child);
    if (!copy.text.empty() || !copy.children.empty()) cleaned.children.push_back(std::move(copy));
  }
  return cleaned;
}

void DropPassing(Element& object, std::span<const Field> fields) {
  std::erase_if(object.children, [&](const Element& child) {
    return FindField(fields, child.name, kAdd) && !FindField(fields, child.name, kRet);
  });
}

void Merge(Element& object, const Element& given) {
  for (const Element& child : given.children) {
    if (std::ranges::find(kNotMerged, child.name) != std::end(kNotMerged)) continue;
    object.Drop(child.name);
    Element copy = Cleaned(child);
    if (!copy.text.empty() || !copy.children.empty()) object.children.push_back(std::move(copy));
  }
}

std::optional<Response> FindForChange(const Call& call, const Element& given,
                                      const Element*& object) {
  const Kind& kind = call.OfKind();
  const std::string_view id = given.ChildText(kind.IdField());
  object = call.company.Data().List(kind).Find(id);
  if (!object) return Response{NotFound(id)};
  const std::string_view editSequence = given.ChildText("EditSequence");
  if (editSequence == object->ChildText("EditSequence")) return std::nullopt;
  return Response{.status = OutOfDate(editSequence), .body = OneRet(call, kind, *object)};
}

}  // namespace ostrel::simulator
