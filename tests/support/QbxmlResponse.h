// One response element of qbXML, taken apart for tests.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "simulator/xml/XmlReader.h"

namespace ostrel {

class QbxmlResponse {
 public:
  /// Takes the "...Rs" element of that place in the response, from 0.
  explicit QbxmlResponse(std::string_view response, std::size_t index = 0) {
    simulator::XmlDocument document;
    EXPECT_EQ(simulator::ReadXmlText(FromUtf8(response), 1'000'000, document),
              simulator::XmlFault::kNone)
        << response;
    const simulator::Element* responses = document.root.Child("QBXMLMsgsRs");
    if (responses && index < responses->children.size()) oResponse = responses->children[index];
  }

  const std::string& Name() const { return oResponse.name; }
  std::string Code() const { return Attribute("statusCode"); }
  std::string Message() const { return Attribute("statusMessage"); }
  std::string Attribute(std::string_view name) const {
    const std::string* value = oResponse.Find(name);
    return value ? *value : "";
  }

  std::size_t Count() const { return oResponse.children.size(); }
  /// The text at a path such as "CustomerRef/FullName" in one of the objects; "" when it is
  /// missing. Of repeated elements, "InvoiceLineRet[1]" is the second.
  std::string Text(std::string_view path, std::size_t object = 0) const {
    const simulator::Element* at = object < Count() ? &oResponse.children[object] : nullptr;
    while (at && !path.empty()) {
      const std::size_t slash = path.find('/');
      at = Step(*at, path.substr(0, slash));
      path = slash == std::string_view::npos ? std::string_view() : path.substr(slash + 1);
    }
    return at ? at->text : "";
  }
  bool Has(std::string_view name) const {
    return Count() > 0 && oResponse.children.front().Child(name) != nullptr;
  }
  /// The texts at the path in all objects, each with a blank behind it.
  std::string All(std::string_view path) const {
    std::string all;
    for (std::size_t i = 0; i < Count(); ++i) all += Text(path, i) + ' ';
    return all;
  }
  /// The names of the first object's elements, each with a blank behind it.
  std::string Order() const {
    std::string names;
    if (Count() == 0) return names;
    for (const auto& child : oResponse.children.front().children) names += child.name + ' ';
    return names;
  }

 private:
  static const simulator::Element* Step(const simulator::Element& element, std::string_view name) {
    const std::size_t bracket = name.find('[');
    std::size_t left =
        bracket == std::string_view::npos ? 0 : static_cast<std::size_t>(name[bracket + 1] - '0');
    for (const auto& child : element.children) {
      if (child.name == name.substr(0, bracket) && left-- == 0) return &child;
    }
    return nullptr;
  }

  simulator::Element oResponse;
};

}  // namespace ostrel
