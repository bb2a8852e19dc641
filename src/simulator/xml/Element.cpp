#include "simulator/xml/Element.h"

#include <algorithm>
#include <utility>

namespace ostrel::simulator {
namespace {

// Nearly all names differ in their lengths or first letters, which needs no call to find out.
bool IsSameName(std::string_view one, std::string_view other) {
  if (one.size() != other.size()) return false;
  return one.empty() || (one.front() == other.front() && one == other);
}

}  // namespace

const Element* Element::Child(std::string_view childName) const {
  const auto found = std::ranges::find_if(
      children, [&](const Element& child) { return IsSameName(child.name, childName); });
  return found == children.end() ? nullptr : &*found;
}

Element* Element::Child(std::string_view childName) {
  return const_cast<Element*>(std::as_const(*this).Child(childName));
}

std::string_view Element::ChildText(std::string_view childName) const {
  const Element* child = Child(childName);
  return child ? std::string_view(child->text) : std::string_view();
}

const std::string* Element::Find(std::string_view attributeName) const {
  const auto found = std::ranges::find(attributes, attributeName, &Attribute::name);
  return found == attributes.end() ? nullptr : &found->value;
}

void Element::DropAttribute(std::string_view attributeName) {
  std::erase_if(attributes,
                [&](const Attribute& attribute) { return attribute.name == attributeName; });
}

void Element::SetAttribute(std::string_view attributeName, std::string_view value) {
  const auto found = std::ranges::find(attributes, attributeName, &Attribute::name);
  if (found == attributes.end()) {
    attributes.push_back({std::string(attributeName), std::string(value)});
  } else {
    found->value = value;
  }
}

Element& Element::Add(std::string_view childName, std::string_view childText) {
  return children.emplace_back(
      Element{.name = std::string(childName), .text = std::string(childText)});
}

void Element::Set(std::string_view childName, std::string_view childText) {
  Element* child = Child(childName);
  (child ? *child : Add(childName)).text = childText;
}

void Element::Drop(std::string_view childName) {
  std::erase_if(children, [&](const Element& child) { return child.name == childName; });
}

std::size_t CountElements(const Element& element) {
  std::size_t count = 1;
  for (const Element& child : element.children) count += CountElements(child);
  return count;
}

std::string_view Trimmed(std::string_view text) {
  constexpr std::string_view kWhiteSpace = " \t\r\n";
  const std::size_t first = text.find_first_not_of(kWhiteSpace);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kWhiteSpace) - first + 1);
}

}  // namespace ostrel::simulator
