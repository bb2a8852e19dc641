// A small XML tree: what requests and company files are read into. All texts are UTF-8.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ostrel::simulator {

struct Attribute {
  std::string name;
  std::string value;
};

/// Either a text or children; white space between children is not kept.
struct Element {
  std::string name = {};
  std::string text = {};
  std::vector<Attribute> attributes = {};
  std::vector<Element> children = {};

  /// The first child of that name, or null.
  const Element* Child(std::string_view childName) const;
  Element* Child(std::string_view childName);
  /// The text of that child; empty without one.
  std::string_view ChildText(std::string_view childName) const;
  /// The value, or null.
  const std::string* Find(std::string_view attributeName) const;
  void DropAttribute(std::string_view attributeName);
  void SetAttribute(std::string_view attributeName, std::string_view value);
  Element& Add(std::string_view childName, std::string_view childText = {});
  /// Gives the first child of that name this text; adds one if there is none.
  void Set(std::string_view childName, std::string_view childText);
  /// Removes all children of that name.
  void Drop(std::string_view childName);
};

/// The element and all it holds.
std::size_t CountElements(const Element& element);

/// Without white space at both ends.
std::string_view Trimmed(std::string_view text);

}  // namespace ostrel::simulator
