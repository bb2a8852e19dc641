// The text streams through libxml2's parser in pieces, and its events build the tree, so that no
// second copy of a long text exists. Limits hold while the tree grows: a text that would exceed
// them is refused at the element that does. Declarations are refused altogether, because entities
// and default attributes can multiply a short text into gigabytes.
#include "simulator/xml/XmlReader.h"

#include <libxml/SAX2.h>
#include <libxml/parser.h>

#include <algorithm>
#include <memory>
#include <mutex>
#include <new>

#include "platform/XmlGuard.h"
#include "simulator/values/LongWork.h"

namespace ostrel::simulator {
namespace {

constexpr std::size_t kMaxDepth = 64;  // qbXML nests less than ten levels
constexpr std::size_t kMaxInstructions = 100;
constexpr std::size_t kMaxTextBytes = 1024 * 1024;  // of one element; the longest note is 4095
constexpr std::size_t kPieceSize = 64 * 1024;

std::string_view View(const xmlChar* text) {
  return text ? std::string_view(reinterpret_cast<const char*>(text)) : std::string_view();
}

std::string QualifiedName(const xmlChar* prefix, const xmlChar* name) {
  std::string qualified(View(prefix));
  if (!qualified.empty()) qualified += ':';
  return qualified.append(View(name));
}

// Turns the parser's events into the tree. Nothing may be thrown through the parser's C frames, so
// each event runs under Guard.
class TreeBuilder {
 public:
  TreeBuilder(std::size_t maxElements, XmlDocument& document, XmlPlaces* places = nullptr)
      : lElementsLeft(maxElements), oDocument(document), pPlaces(places) {}

  void Attach(xmlParserCtxtPtr parser) { oParser = parser; }
  XmlFault Fault() const { return iFault; }
  bool Complete() const { return iFault == XmlFault::kNone && bHasRoot && oOpen.empty(); }

  void Refuse(XmlFault why) {
    if (iFault == XmlFault::kNone) {
      iFault = why;
      if (pPlaces) pPlaces->fault = Line();
    }
    if (oParser) xmlStopParser(oParser);
  }

  template <class Event>
  void Guard(Event event) noexcept {
    if (iFault != XmlFault::kNone) return;
    try {
      event();
    } catch (const std::bad_alloc&) {
      Refuse(XmlFault::kTooLarge);
    }
  }

  void Start(std::string name, const xmlChar** attributes, int count) {
    if (oOpen.size() >= kMaxDepth) return Refuse(XmlFault::kMalformed);
    if (lElementsLeft-- == 0) return Refuse(XmlFault::kTooLarge);
    if (pPlaces) pPlaces->elements.push_back(Line());
    if (!oOpen.empty() && Trimmed(oOpen.back()->text).empty()) oOpen.back()->text.clear();
    Element& element = oOpen.empty() ? oDocument.root : oOpen.back()->children.emplace_back();
    bHasRoot = true;
    element.name = std::move(name);
    AddAttributes(element, attributes, count);
    oOpen.push_back(&element);
  }

  void End() {
    Element& element = *oOpen.back();
    if (!element.children.empty() && Trimmed(element.text).empty()) element.text.clear();
    oOpen.pop_back();
  }

  void Characters(std::string_view text) {
    if (oOpen.empty()) return;
    std::string& sText = oOpen.back()->text;
    // White space between children is dropped at once, so that it never adds up to a long text.
    const bool between = !oOpen.back()->children.empty() && sText.empty();
    if (between && Trimmed(text).empty()) return;
    if (sText.size() + text.size() > kMaxTextBytes) return Refuse(XmlFault::kTooLarge);
    sText.append(text);
  }

  void AddInstruction(std::string_view target, std::string_view data) {
    if (bHasRoot) return;
    if (oDocument.instructions.size() >= kMaxInstructions) return Refuse(XmlFault::kMalformed);
    oDocument.instructions.push_back({std::string(target), std::string(data)});
  }

  void SetPublicId(std::string_view id) { oDocument.publicId = id; }

 private:
  std::uint32_t Line() const {
    return oParser ? static_cast<std::uint32_t>(xmlSAX2GetLineNumber(oParser)) : 0;
  }

  // The parser gives five pointers an attribute: name, prefix, URI, begin and end of the value.
  static void AddAttributes(Element& element, const xmlChar** attributes, int count) {
    for (int i = 0; i < count; ++i, attributes += 5) {
      const auto* begin = reinterpret_cast<const char*>(attributes[3]);
      const auto* end = reinterpret_cast<const char*>(attributes[4]);
      element.attributes.push_back(
          {QualifiedName(attributes[1], attributes[0]), std::string(begin, end)});
    }
  }

  std::size_t lElementsLeft;
  XmlDocument& oDocument;
  XmlPlaces* pPlaces;
  xmlParserCtxtPtr oParser = nullptr;
  // The path from the root; an element's address is stable while it is open, because only its
  // innermost open element gets children.
  std::vector<Element*> oOpen;
  bool bHasRoot = false;
  XmlFault iFault = XmlFault::kNone;
};

TreeBuilder& Builder(void* context) { return *static_cast<TreeBuilder*>(context); }

void OnStart(void* context, const xmlChar* name, const xmlChar* prefix, const xmlChar*, int,
             const xmlChar**, int count, int, const xmlChar** attributes) {
  Builder(context).Guard(
      [&] { Builder(context).Start(QualifiedName(prefix, name), attributes, count); });
}

void OnEnd(void* context, const xmlChar*, const xmlChar*, const xmlChar*) {
  Builder(context).Guard([&] { Builder(context).End(); });
}

void OnCharacters(void* context, const xmlChar* text, int length) {
  const std::string_view view(reinterpret_cast<const char*>(text),
                              static_cast<std::size_t>(length));
  Builder(context).Guard([&] { Builder(context).Characters(view); });
}

void OnInstruction(void* context, const xmlChar* target, const xmlChar* data) {
  Builder(context).Guard([&] { Builder(context).AddInstruction(View(target), View(data)); });
}

void OnDocumentType(void* context, const xmlChar*, const xmlChar* publicId, const xmlChar*) {
  Builder(context).Guard([&] { Builder(context).SetPublicId(View(publicId)); });
}

void OnReference(void* context, const xmlChar*) { Builder(context).Refuse(XmlFault::kMalformed); }

void OnError(void* context, xmlErrorPtr error) {
  if (error->level >= XML_ERR_ERROR) Builder(context).Refuse(XmlFault::kMalformed);
}

// Declarations are refused altogether: entities and default attributes can multiply a short text
// into gigabytes. The guard sees them in what contains ASCII; here they are seen in any encoding.
void OnEntity(void* context, const xmlChar*, int, const xmlChar*, const xmlChar*, xmlChar*) {
  Builder(context).Refuse(XmlFault::kMalformed);
}

void OnAttributeList(void* context, const xmlChar*, const xmlChar*, int, int, const xmlChar*,
                     xmlEnumerationPtr values) {
  xmlFreeEnumeration(values);
  Builder(context).Refuse(XmlFault::kMalformed);
}

void OnElementDeclaration(void* context, const xmlChar*, int, xmlElementContentPtr) {
  Builder(context).Refuse(XmlFault::kMalformed);
}

xmlSAXHandler Handlers() {
  xmlSAXHandler handlers = {};
  handlers.initialized = XML_SAX2_MAGIC;
  handlers.startElementNs = OnStart;
  handlers.endElementNs = OnEnd;
  handlers.characters = OnCharacters;
  handlers.ignorableWhitespace = OnCharacters;
  handlers.cdataBlock = OnCharacters;
  handlers.processingInstruction = OnInstruction;
  handlers.internalSubset = OnDocumentType;
  handlers.reference = OnReference;
  handlers.serror = OnError;
  handlers.entityDecl = OnEntity;
  handlers.attributeDecl = OnAttributeList;
  handlers.elementDecl = OnElementDeclaration;
  return handlers;
}

// Some failures of a decoder are reported to nobody but the library's own output.
void ReportNothing(void*, const char*, ...) {}

struct FreeParser {
  void operator()(xmlParserCtxtPtr parser) const {
    if (parser->myDoc) xmlFreeDoc(parser->myDoc);
    xmlFreeParserCtxt(parser);
  }
};

class Parser {
 public:
  Parser(TreeBuilder& builder, int options) : oBuilder(builder) {
    static std::once_flag once;
    std::call_once(once, xmlInitParser);
    xmlSetGenericErrorFunc(nullptr, ReportNothing);  // of this thread
    xmlSAXHandler handlers = Handlers();
    oContext.reset(xmlCreatePushParserCtxt(&handlers, &builder, nullptr, 0, nullptr));
    if (!oContext) throw std::bad_alloc();
    // XML_PARSE_NOENT: without it, "&amp;" in an attribute comes as "&#38;". There are no other
    // entities to substitute, since none can be declared.
    xmlCtxtUseOptions(oContext.get(), options | XML_PARSE_NONET | XML_PARSE_NOENT);
    builder.Attach(oContext.get());
  }
  ~Parser() { oBuilder.Attach(nullptr); }
  Parser(const Parser&) = delete;
  Parser& operator=(const Parser&) = delete;

  /// False when the text is refused and the rest need not be fed.
  bool Feed(std::string_view piece) {
    xmlParseChunk(oContext.get(), piece.data(), static_cast<int>(piece.size()), 0);
    return oBuilder.Fault() == XmlFault::kNone;
  }

  void Finish() {
    xmlParseChunk(oContext.get(), "", 0, 1);
    if (!oContext->wellFormed || !oBuilder.Complete()) oBuilder.Refuse(XmlFault::kMalformed);
  }

 private:
  TreeBuilder& oBuilder;
  std::unique_ptr<xmlParserCtxt, FreeParser> oContext;
};

template <class Character>
bool IsHarmless(platform::XmlGuard& guard, std::basic_string_view<Character> piece) {
  return guard.Look(piece) == platform::XmlHazard::kNone;
}

bool IsHighSurrogate(char16_t c) { return c >= 0xD800 && c < 0xDC00; }
bool IsLowSurrogate(char16_t c) { return c >= 0xDC00 && c < 0xE000; }

// XML 1.0's Char, with surrogates only in pairs.
bool HoldsOnlyXmlCharacters(TextView piece) {
  for (std::size_t i = 0; i < piece.size(); ++i) {
    const char16_t c = piece[i];
    if (IsHighSurrogate(c) && i + 1 < piece.size() && IsLowSurrogate(piece[i + 1])) {
      ++i;
      continue;
    }
    const bool control = c < 0x20 && c != u'\t' && c != u'\n' && c != u'\r';
    if (control || c >= 0xFFFE || IsHighSurrogate(c) || IsLowSurrogate(c)) return false;
  }
  return true;
}

// Up to a piece from the front of the text, never half a surrogate pair.
TextView TakePiece(TextView& xml) {
  std::size_t length = std::min(xml.size(), kPieceSize);
  if (length < xml.size() && IsHighSurrogate(xml[length - 1])) --length;
  const TextView piece = xml.substr(0, length);
  xml.remove_prefix(length);
  return piece;
}

}  // namespace

XmlFault ReadXmlText(TextView xml, std::size_t maxElements, XmlDocument& document) {
  TreeBuilder builder(maxElements, document);
  Parser parser(builder, XML_PARSE_IGNORE_ENC);
  platform::XmlGuard guard;
  if (xml.starts_with(u'\uFEFF')) xml.remove_prefix(1);
  while (!xml.empty()) {
    Breathe();
    const TextView piece = TakePiece(xml);
    const bool safe = HoldsOnlyXmlCharacters(piece) && IsHarmless(guard, piece);
    if (!safe) return XmlFault::kMalformed;
    if (!parser.Feed(ToUtf8(piece))) return builder.Fault();
  }
  parser.Finish();
  return builder.Fault();
}

XmlFault ReadXmlBytes(std::string_view xml, std::size_t maxElements, XmlDocument& document,
                      XmlPlaces* places) {
  TreeBuilder builder(maxElements, document, places);
  Parser parser(builder, 0);
  platform::XmlGuard guard;
  for (; !xml.empty(); xml.remove_prefix(std::min(xml.size(), kPieceSize))) {
    Breathe();
    const std::string_view piece = xml.substr(0, kPieceSize);
    if (!IsHarmless(guard, piece)) builder.Refuse(XmlFault::kMalformed);
    if (builder.Fault() != XmlFault::kNone || !parser.Feed(piece)) return builder.Fault();
  }
  parser.Finish();
  return builder.Fault();
}

}  // namespace ostrel::simulator
