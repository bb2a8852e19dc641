#include "simulator/xml/XmlWriter.h"

#include "simulator/values/Status.h"
#include "util/Text.h"

namespace ostrel::simulator {
namespace {

// The reference for a character that may not stand as it is, or an empty text. QuickBooks responds
// with the line breaks of its texts as they are; a file must give them back to a parser.
std::string_view Reference(char c, bool inAttribute, bool inFile) {
  switch (c) {
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    case '"':
      return "&quot;";
    case '\'':
      return "&apos;";
    case '\r':
      return inAttribute || inFile ? "&#13;" : "";
    case '\n':
      return inAttribute ? "&#10;" : "";
    case '\t':
      return inAttribute ? "&#9;" : "";
    default:
      return "";
  }
}

bool IsAscii(char c) { return static_cast<unsigned char>(c) < 0x80; }

// Decimal references for a run of characters outside ASCII.
void AppendNumbers(std::string& xml, std::string_view run) {
  const Text text = FromUtf8(run);
  for (std::size_t i = 0; i < text.size(); ++i) {
    std::uint32_t c = text[i];
    if (c >= 0xD800 && c < 0xDC00) c = 0x10000 + ((c - 0xD800) << 10) + (text[++i] - 0xDC00u);
    xml.append("&#").append(std::to_string(c)).append(";");
  }
}

}  // namespace

void XmlWriter::Prolog() {
  sXml += iForm == XmlForm::kResponse ? "<?xml version=\"1.0\" ?>\n"
                                      : "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
}

void XmlWriter::Open(std::string_view name, std::span<const Attribute> attributes) {
  StartTag(name, attributes);
  sXml += ">\n";
  sOpenNames.emplace_back(name);
}

void XmlWriter::Close() {
  const std::string name = std::move(sOpenNames.back());
  sOpenNames.pop_back();
  Indent();
  sXml.append("</").append(name).append(">\n");
}

void XmlWriter::Empty(std::string_view name, std::span<const Attribute> attributes) {
  StartTag(name, attributes);
  sXml += " />\n";
}

void XmlWriter::Leaf(std::string_view name, std::string_view text) {
  StartTag(name, {});
  sXml += '>';
  Escaped(text, false);
  sXml.append("</").append(name).append(">\n");
}

void XmlWriter::Write(const Element& element, std::string_view name) {
  if (!element.children.empty()) {
    Open(name, element.attributes);
    for (const Element& child : element.children) Write(child);
    Close();
  } else if (element.text.empty()) {
    Empty(name, element.attributes);
  } else {
    StartTag(name, element.attributes);
    sXml += '>';
    Escaped(element.text, false);
    sXml.append("</").append(name).append(">\n");
  }
}

void XmlWriter::StartTag(std::string_view name, std::span<const Attribute> attributes) {
  RequireRoom(0);
  Indent();
  sXml.append("<").append(name);
  for (const Attribute& attribute : attributes) {
    sXml.append(" ").append(attribute.name).append("=\"");
    Escaped(attribute.value, true);
    sXml += '"';
  }
}

void XmlWriter::RequireRoom(std::size_t bytes) const {
  const bool room = iForm == XmlForm::kFile || sXml.size() + bytes <= kMaxResponseBytes;
  if (!room) Fail(Hresult::kNotEnoughMemory);
}

void XmlWriter::Indent() {
  if (iForm == XmlForm::kFile) sXml.append(2 * sOpenNames.size(), ' ');
}

void XmlWriter::Escaped(std::string_view text, bool inAttribute) {
  for (std::size_t i = 0; i < text.size();) {
    if (iForm == XmlForm::kFile || IsAscii(text[i])) {
      const std::string_view reference = Reference(text[i], inAttribute, iForm == XmlForm::kFile);
      reference.empty() ? sXml.push_back(text[i]) : static_cast<void>(sXml.append(reference));
      ++i;
      continue;
    }
    const std::size_t start = i;
    while (i < text.size() && !IsAscii(text[i])) ++i;
    AppendNumbers(sXml, text.substr(start, i - start));
  }
}

}  // namespace ostrel::simulator
