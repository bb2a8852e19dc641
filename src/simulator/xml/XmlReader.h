// Reads XML from outside into a tree, in bounded time and memory: no external entities, no document
// type with declarations of its own, no network, limits on depth, on the numbers of elements,
// attributes and namespaces, and on the length of texts.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/xml/Element.h"
#include "util/Text.h"

namespace ostrel::simulator {

struct Instruction {
  std::string target;
  std::string data;
};

struct XmlDocument {
  std::vector<Instruction> instructions;  // those before the root element
  std::string publicId;                   // of the document type; empty without one
  Element root;
};

enum class XmlFault { kNone, kMalformed, kTooLarge };

/// Where things stand in a text, for those who complain about them; lines count from 1.
struct XmlPlaces {
  /// The line on which the start tag of each element ends, in the order of the text.
  std::vector<std::uint32_t> elements = {};
  std::uint32_t fault = 0;  // the line at which reading has ended with a fault
};

/// The text is decoded already: an encoding that its prolog declares is ignored. `document` is
/// unspecified after a fault.
XmlFault ReadXmlText(TextView xml, std::size_t maxElements, XmlDocument& document);

/// The bytes of a file, in the encoding that its prolog declares (UTF-8 without one). `places` may
/// be null.
XmlFault ReadXmlBytes(std::string_view xml, std::size_t maxElements, XmlDocument& document,
                      XmlPlaces* places = nullptr);

}  // namespace ostrel::simulator
