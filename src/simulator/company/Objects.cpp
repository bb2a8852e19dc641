#include "simulator/company/Objects.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <vector>

#include "simulator/kinds/Meanings.h"

namespace ostrel::simulator {
namespace {

// Fields that stand in any order among themselves keep it.
std::size_t Rank(std::span<const Field> fields, const Field* field) {
  if (!field) return fields.size();
  const auto first = field->mixed == 0 ? fields.begin() + (field - fields.data())
                                       : std::ranges::find(fields, field->mixed, &Field::mixed);
  return static_cast<std::size_t>(first - fields.begin());
}

}  // namespace

void Arrange(Element& object, std::span<const Field> fields) {
  std::vector<std::pair<std::size_t, std::size_t>> order;  // rank, place
  order.reserve(object.children.size());
  FieldFinder finder(fields, Use::kRet);
  for (Element& child : object.children) {
    const Field* field = finder.Find(child.name);
    order.emplace_back(Rank(fields, field), order.size());
    if (field && !child.children.empty()) Arrange(child, field->children);
  }
  if (std::ranges::is_sorted(order)) return;
  std::ranges::sort(order);
  std::vector<Element> children;
  children.reserve(order.size());
  for (const auto& [rank, place] : order) children.push_back(std::move(object.children[place]));
  object.children = std::move(children);
}

std::string_view FullNameOf(const Kind& kind, const Element& object) {
  return object.ChildText(kind.Has("FullName") ? "FullName" : kind.nameField);
}

std::string JoinedName(std::string_view parentFullName, std::string_view name) {
  if (parentFullName.empty()) return std::string(name);
  return std::string(parentFullName).append(":").append(name);
}

const Element* Follow(const Element& object, std::string_view path) {
  const std::size_t slash = path.find('/');
  const Element* child = object.Child(path.substr(0, slash));
  if (!child) return nullptr;
  if (slash != std::string_view::npos) return Follow(*child, path.substr(slash + 1));
  return child->text.empty() && child->children.empty() ? nullptr : child;
}

const Element* Follow(const Element& object, std::span<const std::string_view> paths) {
  for (const std::string_view path : paths) {
    if (const Element* found = Follow(object, path)) return found;
  }
  return nullptr;
}

Target FindTarget(const Company& company, std::string_view kinds, const Element& reference) {
  const std::string_view id = Trimmed(reference.ChildText("ListID"));
  if (!id.empty()) return FindById(company, KindsNamed(kinds), id);
  return FindByName(company, KindsNamed(kinds), Trimmed(reference.ChildText("FullName")));
}

Target FindById(const Company& company, const KindList& kinds, std::string_view id) {
  for (const Kind* kind : kinds) {
    if (const Element* object = company.List(*kind).Find(id)) return {kind, object};
  }
  return {};
}

Target FindReferred(const Company& company, const Element& reference) {
  const KindList& kinds = KindsNamed(KindsReferredBy(reference.name));
  return FindById(company, kinds, reference.ChildText("ListID"));
}

Target FindByName(const Company& company, const KindList& kinds, std::string_view fullName) {
  for (const Kind* kind : kinds) {
    if (const Element* object = company.List(*kind).FindByName(fullName)) return {kind, object};
  }
  return {};
}

Element ReferenceTo(std::string_view name, const Target& target) {
  Element reference{.name = std::string(name)};
  reference.Add("ListID", target.object->ChildText("ListID"));
  reference.Add("FullName", FullNameOf(*target.kind, *target.object));
  return reference;
}

// The seconds of now, unless the object was changed within this second already.
void Touch(Element& object, const Stamp& now) {
  std::int64_t before = 0;
  const std::string_view text = object.ChildText("EditSequence");
  std::from_chars(text.data(), text.data() + text.size(), before);
  const bool later = now.seconds > before || before == INT64_MAX;
  object.Set("EditSequence", std::to_string(later ? now.seconds : before + 1));
  object.Set("TimeModified", now.text);
}

}  // namespace ostrel::simulator
