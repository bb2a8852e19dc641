// Reads plain XML, as XmlWriter writes company files and journals, in one pass: UTF-8, elements,
// attributes and texts, and no more. XmlReader.h reads everything else.
#pragma once

#include <cstddef>
#include <string_view>

#include "simulator/xml/Element.h"

namespace ostrel::simulator {

/// Limits of a tree that is read from outside, however it is read.
inline constexpr std::size_t kMaxXmlDepth = 64;               // qbXML nests less than ten levels
inline constexpr std::size_t kMaxXmlTextBytes = 1024 * 1024;  // the longest note is 4095

/// False when the bytes are not plain XML, hold more elements, or exceed another limit; they may be
/// well-formed all the same, and `root` is unspecified. Otherwise it holds what any reader of XML
/// would find.
bool ReadPlainXml(std::string_view xml, std::size_t maxElements, Element& root);

}  // namespace ostrel::simulator
