// Writes XML the two ways the stand-in needs it: a response as QuickBooks writes it, and a company
// file that people can read.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/xml/Element.h"

namespace ostrel::simulator {

/// kResponse: one element a line without indentation, LF at line ends, ASCII (other characters as
/// decimal references). kFile: UTF-8, one element a line, indented.
enum class XmlForm { kResponse, kFile };

/// The longest response. A client that asks for more has made a mistake, and would take all memory.
inline constexpr std::size_t kMaxResponseBytes = 128 * 1024 * 1024;

/// Raises the request processor's kNotEnoughMemory as soon as a response is longer than that.
class XmlWriter {
 public:
  explicit XmlWriter(XmlForm form) : iForm(form) {}

  void Prolog();
  void Open(std::string_view name, std::span<const Attribute> attributes = {});
  void Close();
  /// An element without content: "<name />".
  void Empty(std::string_view name, std::span<const Attribute> attributes = {});
  void Leaf(std::string_view name, std::string_view text);
  /// The element with all it holds, under its own name or another one.
  void Write(const Element& element) { Write(element, element.name); }
  void Write(const Element& element, std::string_view name);
  /// Lines that another writer of the same form made, or that fill a response on demand.
  void Lines(std::string_view lines) { sXml.append(lines); }

  /// Raises unless a response has room for so many more.
  void RequireRoom(std::size_t bytes) const;
  /// Bytes written so far.
  std::size_t Size() const { return sXml.size(); }
  std::string Take() { return std::move(sXml); }

 private:
  void StartTag(std::string_view name, std::span<const Attribute> attributes);
  void Indent();
  void Escaped(std::string_view text, bool inAttribute);

  XmlForm iForm;
  std::string sXml;
  std::vector<std::string> sOpenNames;
};

}  // namespace ostrel::simulator
